// Files that are being written under a hidden name: what a killed process leaves behind goes with the next write, and
// nothing else ever does.
#include <algorithm>
#include <array>
#include <csignal>
#include <gtest/gtest.h>
#include <set>
#include <sys/wait.h>
#include <vector>

#include "desktop/linux/system/FileTransfer.h"
#include "desktop/linux/system/HiddenFile.h"
#include "desktop/linux/system/LinuxFileContents.h"

#include "tests/desktop/system/KilledProcess.h"
#include "tests/desktop/system/TemporaryFolder.h"

namespace quenlio {
namespace {

using Names = std::set<std::string>;

Names namesIn(const FileURL& folder) {
  Names names;
  for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
    names.insert(entry.path().filename().string());
  }
  return names;
}

ino_t inodeOf(const FileURL& url) {
  struct stat status {};
  check(::lstat(url.path().c_str(), &status) == 0, url.path());
  return status.st_ino;
}

class HiddenFileTest : public testing::Test {
 protected:
  static constexpr const char* kHidden = ".quenlio-a.unfinished";

  TemporaryFolder folder;
  LinuxFileContents files;
  OwnFiles own;
};

TEST_F(HiddenFileTest, killsInTheMiddleOfWritingLeaveOneFileThatTheNextWriteTakesAway) {
  ASSERT_TRUE(files.writeAtomically(folder / "a", "old"));
  for (int kill = 0; kill < 5; ++kill) {
    ASSERT_EQ(signalThatEndsAfter(4096, [&] { (void)files.writeAtomically(folder / "a", std::string(9000, 'x')); }),
              SIGXFSZ);
    EXPECT_EQ(namesIn(folder.url()), (Names{"a", kHidden}));
    EXPECT_EQ(contents(folder / kHidden).size(), 4096U) << "killed with half of it written";
    EXPECT_EQ(contents(folder / "a"), "old");
  }
  ASSERT_TRUE(files.writeAtomically(folder / "a", "new"));
  EXPECT_EQ(contents(folder / "a"), "new");
  EXPECT_EQ(namesIn(folder.url()), Names{"a"});
}

TEST_F(HiddenFileTest, killsInTheMiddleOfCopyingLeaveOneFileThatTheNextCopyTakesAway) {
  writeFile(folder / "from", std::string(9000, 'x'));
  for (const char* to : {"one", "two", "three"}) {
    ASSERT_EQ(signalThatEndsAfter(
                  4096, [&] { (void)copyFile(folder / "from", folder / to, own, Durability::whenTheSystemLikes); }),
              SIGXFSZ);
    EXPECT_EQ(namesIn(folder.url()), (Names{"from", ".quenlio-copy.unfinished"}));
  }
  ASSERT_EQ(copyFile(folder / "from", folder / "to", own, Durability::whenTheSystemLikes), 0);
  EXPECT_EQ(contents(folder / "to"), contents(folder / "from"));
  EXPECT_EQ(namesIn(folder.url()), (Names{"from", "to"}));
}

TEST_F(HiddenFileTest, aRemnantThatMayOnlyBeReadIsTakenAwayToo) {
  writeFile(folder / kHidden, "half");
  ASSERT_EQ(::chmod((folder / kHidden).path().c_str(), 0444), 0);
  ASSERT_TRUE(files.writeAtomically(folder / "a", "new"));
  EXPECT_EQ(namesIn(folder.url()), Names{"a"});
}

TEST_F(HiddenFileTest, aNewFileHasNothingOfTheRemnant) {
  writeFile(folder / kHidden, "half");
  const UniqueFd open(::open((folder / kHidden).path().c_str(), O_RDONLY | O_CLOEXEC));
  ASSERT_TRUE(files.writeAtomically(folder / "a", "new"));
  struct stat remnant {};
  ASSERT_EQ(::fstat(open.get(), &remnant), 0);
  EXPECT_EQ(remnant.st_nlink, 0U);
  EXPECT_EQ(remnant.st_size, 4);
  EXPECT_NE(inodeOf(folder / "a"), remnant.st_ino);
}

TEST_F(HiddenFileTest, whatSomebodyIsWritingIsLeftAlone) {
  std::string path;
  const UniqueFd first = makeHiddenFile(folder.url(), "a", path);
  ASSERT_TRUE(first);
  EXPECT_EQ(FileURL(path), folder / kHidden);
  const auto inode = inodeOf(FileURL(path));
  ASSERT_TRUE(files.writeAtomically(folder / "a", "second"));
  EXPECT_EQ(contents(folder / "a"), "second");
  EXPECT_EQ(namesIn(folder.url()), (Names{"a", kHidden}));
  EXPECT_EQ(inodeOf(FileURL(path)), inode);
  ASSERT_EQ(writeAll(first.get(), "first"), 0);
  ASSERT_EQ(::rename(path.c_str(), (folder / "a").path().c_str()), 0);
  EXPECT_EQ(contents(folder / "a"), "first");
}

TEST_F(HiddenFileTest, whatAnotherProcessIsWritingIsLeftAlone) {
  std::array<int, 2> ready{};
  std::array<int, 2> end{};
  ASSERT_EQ(::pipe(ready.data()), 0);
  ASSERT_EQ(::pipe(end.data()), 0);
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    ::close(end[1]);
    std::string path;
    const UniqueFd fd = makeHiddenFile(folder.url(), "a", path);
    char byte = fd ? 'y' : 'n';
    (void)!::write(ready[1], &byte, 1);
    (void)!::read(end[0], &byte, 1);  // until the other end is closed
    ::_exit(::rename(path.c_str(), (folder / "a").path().c_str()) == 0 ? 0 : 1);
  }
  ::close(ready[1]);
  ::close(end[0]);
  char answer = 'n';
  ASSERT_EQ(::read(ready[0], &answer, 1), 1);
  EXPECT_EQ(answer, 'y');
  EXPECT_TRUE(files.writeAtomically(folder / "a", "ours"));
  EXPECT_EQ(namesIn(folder.url()), (Names{"a", kHidden}));
  ::close(end[1]);
  ::close(ready[0]);
  int status = -1;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0) << "its file was still there to be renamed";
  EXPECT_EQ(contents(folder / "a"), "");
}

TEST_F(HiddenFileTest, manyWritersAtOnceAllSucceedAndLeaveNothing) {
  std::vector<pid_t> writers;
  for (char letter = 'a'; letter < 'e'; ++letter) {
    writers.push_back(::fork());
    ASSERT_GE(writers.back(), 0);
    if (writers.back() == 0) {
      bool isGood = true;
      for (int i = 0; i < 600; ++i) {
        isGood = files.writeAtomically(folder / "a", std::string(3000, letter)).ok() && isGood;
      }
      ::_exit(isGood ? 0 : 1);
    }
  }
  for (const pid_t writer : writers) {
    int status = -1;
    ASSERT_EQ(::waitpid(writer, &status, 0), writer);
    EXPECT_EQ(status, 0);
  }
  EXPECT_EQ(namesIn(folder.url()), Names{"a"});
  const std::string last = contents(folder / "a");
  EXPECT_EQ(last, std::string(3000, last.front()));
}

TEST_F(HiddenFileTest, aLinkUnderTheHiddenNameIsNeitherFollowedNorRemoved) {
  writeFile(folder / "mine", "precious");
  ASSERT_EQ(::symlink("mine", (folder / kHidden).path().c_str()), 0);
  ASSERT_TRUE(files.writeAtomically(folder / "a", "new"));
  EXPECT_EQ(contents(folder / "a"), "new");
  EXPECT_EQ(contents(folder / "mine"), "precious");
  EXPECT_EQ(namesIn(folder.url()), (Names{"a", "mine", kHidden}));
}

TEST_F(HiddenFileTest, aSecondNameOfAFileIsNeitherWrittenNorRemoved) {
  writeFile(folder / "mine", "precious");
  ASSERT_EQ(::link((folder / "mine").path().c_str(), (folder / kHidden).path().c_str()), 0);
  ASSERT_TRUE(files.writeAtomically(folder / "a", "new"));
  EXPECT_EQ(contents(folder / "a"), "new");
  EXPECT_EQ(contents(folder / kHidden), "precious");
  EXPECT_EQ(inodeOf(folder / kHidden), inodeOf(folder / "mine"));
}

TEST_F(HiddenFileTest, whatIsNoFileUnderTheHiddenNameIsLeftAlone) {
  std::filesystem::create_directory((folder / kHidden).path());
  ASSERT_TRUE(files.writeAtomically(folder / "a", "new"));
  EXPECT_EQ(namesIn(folder.url()), (Names{"a", kHidden}));
  ASSERT_EQ(::rmdir((folder / kHidden).path().c_str()), 0);
  ASSERT_EQ(::mkfifo((folder / kHidden).path().c_str(), 0600), 0);
  ASSERT_TRUE(files.writeAtomically(folder / "a", "newer"));
  EXPECT_EQ(namesIn(folder.url()), (Names{"a", kHidden}));
}

TEST_F(HiddenFileTest, otherHiddenFilesAreNotTouchedWhateverTheyAreCalled) {
  const Names others{".quenlio-0123456789abcdef", ".quenlio-b.unfinished", ".quenlio-copy.unfinished", ".quenlio"};
  for (const std::string& name : others) {
    writeFile(folder / name, "kept");
  }
  ASSERT_TRUE(files.writeAtomically(folder / "a", "new"));
  EXPECT_TRUE(std::ranges::includes(namesIn(folder.url()), others));
}

TEST_F(HiddenFileTest, aNameThatLeavesNoRoomForTheHiddenOneIsWrittenAllTheSame) {
  const std::string name(255, 'n');
  ASSERT_TRUE(files.writeAtomically(folder / name, "new"));
  EXPECT_EQ(namesIn(folder.url()), Names{name});
}

}  // namespace
}  // namespace quenlio
