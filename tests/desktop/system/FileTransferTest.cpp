#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <sys/xattr.h>

#include "desktop/linux/system/FileTransfer.h"
#include "desktop/linux/system/LinuxClock.h"
#include "desktop/linux/system/LinuxFileManager.h"

#include "tests/desktop/system/AttributeFolder.h"
#include "tests/desktop/system/TemporaryFolder.h"
#include "tests/fakes/FakeDesktop.h"

namespace quenlio {
namespace {

struct stat statusOf(const FileURL& url) {
  struct stat status {};
  check(::lstat(url.path().c_str(), &status) == 0, url.path());
  return status;
}

class MoveTest : public testing::Test {
 protected:
  // The two folders must lie on two file systems for what this tests.
  void SetUp() override { ASSERT_NE(statusOf(here.url()).st_dev, statusOf(there.url()).st_dev); }

  AttributeFolder here;
  TemporaryFolder there{"/dev/shm"};
  OwnFiles own;
  LinuxClock clock;
  FakeDirectories directories;
  LinuxFileManager files{own, clock, directories};
};

TEST_F(MoveTest, aMoveGivesTheFileItsNewName) {
  writeFile(here / "a", "text");
  const auto inode = statusOf(here / "a").st_ino;
  EXPECT_TRUE(files.moveItemAtURL(here / "a", here / "b"));
  EXPECT_FALSE(exists(here / "a"));
  EXPECT_EQ(statusOf(here / "b").st_ino, inode);
}

TEST_F(MoveTest, aMoveNeverReplacesWhatIsThere) {
  for (const FileURL& to : {here / "b", there / "b"}) {
    writeFile(here / "a", "mine");
    writeFile(to, "yours");
    const auto moved = files.moveItemAtURL(here / "a", to);
    ASSERT_FALSE(moved);
    EXPECT_EQ(moved.error().localizedDescription, "The file “a” could not be moved: File exists.");
    EXPECT_EQ(contents(here / "a"), "mine");
    EXPECT_EQ(contents(to), "yours");
    EXPECT_EQ(entryCount(there.url()), to == there / "b" ? 1U : 0U);
  }
}

TEST_F(MoveTest, aLinkThatLeadsNowhereIsNotReplacedEither) {
  writeFile(here / "a", "mine");
  ASSERT_EQ(::symlink("nowhere", (here / "b").path().c_str()), 0);
  ASSERT_EQ(::symlink("nowhere", (there / "b").path().c_str()), 0);
  EXPECT_FALSE(files.moveItemAtURL(here / "a", here / "b"));
  EXPECT_FALSE(files.moveItemAtURL(here / "a", there / "b"));
  EXPECT_FALSE(files.copyItemAtURL(here / "a", here / "b"));
  EXPECT_TRUE(exists(here / "a"));
}

TEST_F(MoveTest, aMoveAcrossFileSystemsKeepsContentsModeTimesAttributesAndBirth) {
  const std::string bytes(700'000, 'x');
  writeFile(here / "a", bytes);
  ASSERT_EQ(::chmod((here / "a").path().c_str(), 0640), 0);
  ASSERT_EQ(::setxattr((here / "a").path().c_str(), "user.note", "kept", 4, 0), 0);
  const std::array times{timespec{.tv_sec = 1000, .tv_nsec = 5}, timespec{.tv_sec = 2000, .tv_nsec = 7}};
  ASSERT_EQ(::utimensat(AT_FDCWD, (here / "a").path().c_str(), times.data(), 0), 0);
  const auto before = files.attributesOfItemAtPath(here / "a");
  ASSERT_TRUE(before);
  ASSERT_TRUE(before.value().creationDate);

  ASSERT_TRUE(files.moveItemAtURL(here / "a", there / "b"));
  EXPECT_FALSE(exists(here / "a"));
  EXPECT_EQ(contents(there / "b"), bytes);
  EXPECT_EQ(entryCount(there.url()), 1U);
  // And back, since the folder there need not keep attributes.
  ASSERT_TRUE(files.moveItemAtURL(there / "b", here / "c"));
  const struct stat status = statusOf(here / "c");
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
  EXPECT_EQ(status.st_mtim.tv_sec, 2000);
  EXPECT_EQ(status.st_mtim.tv_nsec, 7);
}

TEST_F(MoveTest, aCopyKeepsAttributesAndTheDateOfCreation) {
  writeFile(here / "a", "text");
  ASSERT_EQ(::setxattr((here / "a").path().c_str(), "user.note", "kept", 4, 0), 0);
  const auto before = files.attributesOfItemAtPath(here / "a");
  ASSERT_TRUE(before && before.value().creationDate);
  ASSERT_TRUE(files.copyItemAtURL(here / "a", here / "b"));
  EXPECT_EQ(contents(here / "a"), "text");
  EXPECT_EQ(contents(here / "b"), "text");
  std::array<char, 8> value{};
  EXPECT_EQ(::getxattr((here / "b").path().c_str(), "user.note", value.data(), value.size()), 4);
  EXPECT_EQ(files.attributesOfItemAtPath(here / "b").value().creationDate, before.value().creationDate);
}

TEST_F(MoveTest, aLinkIsMovedAsALink) {
  ASSERT_EQ(::symlink("nowhere", (here / "a").path().c_str()), 0);
  ASSERT_TRUE(files.moveItemAtURL(here / "a", here / "b"));
  ASSERT_TRUE(files.moveItemAtURL(here / "b", there / "c"));
  EXPECT_FALSE(exists(here / "b"));
  EXPECT_TRUE(S_ISLNK(statusOf(there / "c").st_mode));
}

TEST_F(MoveTest, aLinkIsCopiedAsALinkWhereverItLeads) {
  writeFile(here / "file", "text");
  std::filesystem::create_directory((here / "folder").path());
  for (const std::string target : {"file", "folder", "nowhere", "/nowhere/at/all"}) {
    ASSERT_EQ(::symlink(target.c_str(), (here / "link").path().c_str()), 0);
    for (const FileURL& copy : {here / "copy", there / "copy"}) {
      ASSERT_TRUE(files.copyItemAtURL(here / "link", copy)) << target;
      ASSERT_TRUE(S_ISLNK(statusOf(copy).st_mode)) << target;
      EXPECT_EQ(std::filesystem::read_symlink(copy.path()), target);
      ASSERT_EQ(::unlink(copy.path().c_str()), 0);
    }
    EXPECT_EQ(std::filesystem::read_symlink((here / "link").path()), target);
    ASSERT_EQ(::unlink((here / "link").path().c_str()), 0);
  }
}

TEST_F(MoveTest, aCopiedLinkReplacesNothing) {
  ASSERT_EQ(::symlink("nowhere", (here / "link").path().c_str()), 0);
  writeFile(here / "file", "yours");
  ASSERT_EQ(::symlink("elsewhere", (here / "other").path().c_str()), 0);
  EXPECT_EQ(files.copyItemAtURL(here / "link", here / "file").error().localizedDescription,
            "The file “link” could not be copied: File exists.");
  EXPECT_FALSE(files.copyItemAtURL(here / "link", here / "other"));
  EXPECT_EQ(contents(here / "file"), "yours");
  EXPECT_EQ(std::filesystem::read_symlink((here / "other").path()), "elsewhere");
}

TEST_F(MoveTest, aFolderMovesWithItsContentsAndOnItsFileSystemOnly) {
  std::filesystem::create_directory((here / "a").path());
  writeFile(here / "a/b", "text");
  ASSERT_TRUE(files.moveItemAtURL(here / "a", here / "c"));
  EXPECT_EQ(contents(here / "c/b"), "text");
  EXPECT_FALSE(files.moveItemAtURL(here / "c", there / "c"));
  EXPECT_EQ(contents(here / "c/b"), "text");
  EXPECT_EQ(entryCount(there.url()), 0U);
}

TEST_F(MoveTest, anyNameAFileSystemTakesIsMoved) {
  for (const std::string& name : {std::string(255, 'x'), std::string("\xFF\xFE invalid"), std::string("new\nline"),
                                  std::string(251, 'y') + ".png", std::string("-rf *")}) {
    writeFile(here / name, name);
    ASSERT_TRUE(files.moveItemAtURL(here / name, there / name)) << name;
    EXPECT_EQ(contents(there / name), name);
    ASSERT_TRUE(files.moveItemAtURL(there / name, here / name)) << name;
    EXPECT_EQ(contents(here / name), name);
  }
}

TEST_F(MoveTest, whatCannotBeMovedIsTold) {
  EXPECT_EQ(files.moveItemAtURL(here / "a", here / "b").error().localizedDescription,
            "The file “a” could not be moved: No such file or directory.");
  writeFile(here / "a", "text");
  EXPECT_FALSE(files.moveItemAtURL(here / "a", here / "none/b"));
  EXPECT_FALSE(files.moveItemAtURL(here / "a", there / "none/b"));
  EXPECT_EQ(contents(here / "a"), "text");
}

TEST_F(MoveTest, whatIsMovedOrCopiedIsKnownAsOurOwn) {
  writeFile(here / "a", "text");
  EXPECT_FALSE(own.contains(here / "a"));
  ASSERT_TRUE(files.moveItemAtURL(here / "a", here / "b"));
  EXPECT_TRUE(own.contains(here / "b"));
  ASSERT_TRUE(files.moveItemAtURL(here / "b", there / "c"));
  EXPECT_TRUE(own.contains(there / "c"));
  ASSERT_TRUE(files.copyItemAtURL(there / "c", there / "d"));
  EXPECT_TRUE(own.contains(there / "d"));
}

// What renames on a file system that cannot refuse to replace.
TEST_F(MoveTest, bothOtherWaysOfRenamingNeverReplaceEither) {
  for (const auto rename : {linkAndUnlink, claimAndRename}) {
    writeFile(here / "a", "mine");
    writeFile(here / "b", "yours");
    EXPECT_EQ(rename((here / "a").path(), (here / "b").path()), EEXIST);
    EXPECT_EQ(contents(here / "a"), "mine");
    EXPECT_EQ(contents(here / "b"), "yours");
    ASSERT_EQ(::unlink((here / "b").path().c_str()), 0);
    EXPECT_EQ(rename((here / "a").path(), (here / "b").path()), 0);
    EXPECT_EQ(contents(here / "b"), "mine");
    EXPECT_FALSE(exists(here / "a"));
    EXPECT_EQ(rename((here / "none").path(), (here / "c").path()), ENOENT);
    EXPECT_FALSE(exists(here / "c"));
    EXPECT_EQ(rename((here / "b").path(), (there / "c").path()), EXDEV);
    EXPECT_FALSE(exists(there / "c"));
  }
}

TEST_F(MoveTest, aLinkIsRenamedItselfWhereTheFileSystemCannotHelp) {
  for (const auto rename : {linkAndUnlink, claimAndRename}) {
    ASSERT_EQ(::symlink("nowhere", (here / "a").path().c_str()), 0);
    EXPECT_EQ(rename((here / "a").path(), (here / "b").path()), 0);
    EXPECT_EQ(std::filesystem::read_symlink((here / "b").path()), "nowhere");
    EXPECT_FALSE(std::filesystem::is_symlink((here / "a").path()));
    ASSERT_EQ(::unlink((here / "b").path().c_str()), 0);
  }
}

TEST_F(MoveTest, aNameIsRemovedOnlyIfItIsTheOpenFiles) {
  writeFile(here / "a", "mine");
  const UniqueFd file(::open((here / "a").path().c_str(), O_RDONLY | O_CLOEXEC));
  ASSERT_EQ(::rename((here / "a").path().c_str(), (here / "b").path().c_str()), 0);
  EXPECT_EQ(removeNameOf(file, (here / "a").path()), ENOENT);
  writeFile(here / "a", "theirs");
  EXPECT_EQ(removeNameOf(file, (here / "a").path()), EBUSY);
  EXPECT_EQ(contents(here / "a"), "theirs");
  EXPECT_EQ(removeNameOf(file, (here / "b").path()), 0);
  EXPECT_EQ(entryCount(here.url()), 1U);
}

TEST_F(MoveTest, aFolderIsRenamedWithoutReplacingWhereTheFileSystemCannotHelp) {
  std::filesystem::create_directory((here / "a").path());
  writeFile(here / "a/x", "mine");
  std::filesystem::create_directory((here / "b").path());
  EXPECT_EQ(claimAndRename((here / "a").path(), (here / "b").path()), EEXIST);
  EXPECT_EQ(claimAndRename((here / "a").path(), (here / "c").path()), 0);
  EXPECT_EQ(contents(here / "c/x"), "mine");
}

TEST_F(MoveTest, onlyOneFileIsCopied) {
  std::filesystem::create_directory((here / "a").path());
  EXPECT_FALSE(files.copyItemAtURL(here / "a", here / "b"));
  ASSERT_EQ(::mkfifo((here / "f").path().c_str(), 0600), 0);
  EXPECT_FALSE(files.copyItemAtURL(here / "f", here / "b"));
  EXPECT_FALSE(exists(here / "b"));
}

TEST_F(MoveTest, aCopyThatFailsLeavesNothingBehind) {
  writeFile(here / "a", "mine");
  writeFile(here / "b", "yours");
  EXPECT_FALSE(files.copyItemAtURL(here / "a", here / "b"));
  EXPECT_FALSE(files.copyItemAtURL(here / "none", here / "c"));
  EXPECT_EQ(entryCount(here.url()), 2U);
  EXPECT_EQ(contents(here / "b"), "yours");
}

TEST_F(MoveTest, aCopyIsGivenUpWhenItsSourceChangesMeanwhile) {
  const auto changes = std::to_array<std::function<void()>>({
      [&] { writeFile(here / "a", "changed"); },
      [&] {
        const UniqueFd fd(::open((here / "a").path().c_str(), O_WRONLY | O_APPEND | O_CLOEXEC));
        check(::write(fd.get(), "more", 4) == 4, "append");
      },
      [&] {
        writeFile(here / "new", "another");
        check(::rename((here / "new").path().c_str(), (here / "a").path().c_str()) == 0, "rename");
      },
  });
  for (const auto& change : changes) {
    writeFile(here / "a", "before");
    FileCopy copy(own);
    ASSERT_EQ(copy.make(here / "a", there.url(), Durability::onDisk), 0);
    change();
    const std::string now = contents(here / "a");
    EXPECT_EQ(copy.takeOver((there / "b").path()), EBUSY);
    EXPECT_EQ(contents(here / "a"), now);
    EXPECT_EQ(entryCount(there.url()), 0U);
  }
}

TEST_F(MoveTest, aCopyThatGetsNoNameIsRemovedAndASecondNameMayBeTried) {
  writeFile(here / "a", "mine");
  writeFile(there / "b", "yours");
  {
    FileCopy copy(own);
    ASSERT_EQ(copy.make(here / "a", there.url(), Durability::onDisk), 0);
    EXPECT_EQ(copy.takeOver((there / "b").path()), EEXIST);
    EXPECT_EQ(contents(there / "b"), "yours");
    EXPECT_EQ(entryCount(there.url()), 2U);
  }
  EXPECT_EQ(entryCount(there.url()), 1U);
  FileCopy copy(own);
  ASSERT_EQ(copy.make(here / "a", there.url(), Durability::onDisk), 0);
  EXPECT_EQ(copy.takeOver((there / "b").path()), EEXIST);
  EXPECT_EQ(copy.takeOver((there / "c").path()), 0);
  EXPECT_EQ(contents(there / "c"), "mine");
  EXPECT_FALSE(exists(here / "a"));
}

}  // namespace
}  // namespace quenlio
