#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "core/base/ImageExtensions.h"

#include "desktop/linux/system/FileTransfer.h"
#include "desktop/linux/system/LinuxClock.h"
#include "desktop/linux/system/LinuxFileManager.h"

#include "tests/desktop/system/AttributeFolder.h"
#include "tests/desktop/system/SampleFiles.h"
#include "tests/desktop/system/TemporaryFolder.h"
#include "tests/fakes/FakeDesktop.h"

namespace quenlio {
namespace {

class LinuxFileManagerTest : public testing::Test {
 protected:
  std::map<std::string, DirectoryEntry> list(HiddenFiles hidden = HiddenFiles::skip) const {
    const auto listed = files.contentsOfDirectoryAtURL(folder.url(), hidden);
    std::map<std::string, DirectoryEntry> entries;
    for (const DirectoryEntry& entry : listed.value()) {
      entries.emplace(entry.url.lastPathComponent(), entry);
    }
    return entries;
  }

  AttributeFolder folder;
  OwnFiles own;
  StandingClock clock{LinuxClock().now()};
  FakeDirectories directories;
  LinuxFileManager files{own, clock, directories};
};

TEST_F(LinuxFileManagerTest, theListingHoldsTheDirectContentsWithTheirValues) {
  writeFile(folder / "a.png", samples::png());
  writeFile(folder / "b.txt", "text");
  std::filesystem::create_directory((folder / "c").path());
  writeFile(folder / "c/inner.png", samples::png());
  const auto entries = list();
  ASSERT_EQ(entries.size(), 3U);
  EXPECT_EQ(entries.at("a.png").isRegularFile, true);
  EXPECT_EQ(entries.at("a.png").url, folder / "a.png");
  EXPECT_EQ(entries.at("a.png").creationDate, files.attributesOfItemAtPath(folder / "a.png").value().creationDate);
  EXPECT_EQ(entries.at("b.txt").isRegularFile, true);
  EXPECT_EQ(entries.at("c").isRegularFile, false);
}

TEST_F(LinuxFileManagerTest, namesWithALeadingDotAreHidden) {
  writeFile(folder / ".a.png", samples::png());
  EXPECT_TRUE(list().empty());
  EXPECT_EQ(list(HiddenFiles::include).size(), 1U);
}

TEST_F(LinuxFileManagerTest, theListingComesInTheOrderOfTheFileSystem) {
  for (int i = 0; i < 200; ++i) {
    writeFile(folder / (std::to_string(i * 7919 % 200) + ".txt"), "x");
  }
  const auto listed = files.contentsOfDirectoryAtURL(folder.url(), HiddenFiles::skip);
  std::vector<std::string> expected;
  for (const auto& entry : std::filesystem::directory_iterator(folder.url().path())) {
    expected.push_back(entry.path().string());
  }
  std::vector<std::string> got;
  for (const DirectoryEntry& entry : listed.value()) {
    got.push_back(entry.url.path());
  }
  EXPECT_EQ(got, expected);
}

TEST_F(LinuxFileManagerTest, aFileThatIsBeingWrittenHasNoValues) {
  const std::string bytes = samples::png();
  for (const std::string name : {"a.png", "b.JPG", "c.jpeg", "d.heic", "e.tiff", "f.Pdf"}) {
    writeFile(folder / name, bytes.substr(0, 60));
    clock.set(LinuxClock().now());
    const DirectoryEntry entry = list().at(name);
    EXPECT_FALSE(entry.isRegularFile) << name;
    EXPECT_FALSE(entry.creationDate) << name;
    writeFile(folder / name, bytes);
    EXPECT_EQ(list().at(name).isRegularFile, true) << name;
    EXPECT_TRUE(list().at(name).creationDate) << name;
  }
}

TEST_F(LinuxFileManagerTest, anUnfinishedFileGetsItsValuesAfterTwoSecondsWithoutATouch) {
  writeFile(folder / "a.png", samples::png().substr(0, 60));
  clock.set(LinuxClock().now());
  EXPECT_FALSE(list().at("a.png").isRegularFile);
  clock.set(clock.now() + std::chrono::seconds(2));
  EXPECT_EQ(list().at("a.png").isRegularFile, true);
}

TEST_F(LinuxFileManagerTest, anEmptyPictureNeverHasValues) {
  writeFile(folder / "a.png", "");
  clock.set(clock.now() + std::chrono::hours(10));
  EXPECT_FALSE(list().at("a.png").isRegularFile);
}

TEST_F(LinuxFileManagerTest, onlyPicturesNeedToBeFinished) {
  writeFile(folder / "a.txt", "");
  writeFile(folder / "b", "half");
  EXPECT_EQ(list().at("a.txt").isRegularFile, true);
  EXPECT_EQ(list().at("b").isRegularFile, true);
}

TEST_F(LinuxFileManagerTest, aPictureIsToldByItsNameAsByItsPlace) {
  const std::map<std::string, bool> names{{"a.png", true},    {"a.b.JpEg", true}, {"a.HEIC", true}, {".a.tiff", true},
                                          {"\xFF.pdf", true}, {".png", false},    {"png", false},   {"a.png.", false},
                                          {"a.tif", false},   {"a.pngx", false},  {"a.", false},    {"a.png~", false}};
  for (const auto& [name, isPicture] : names) {
    EXPECT_EQ(hasImageExtension(std::string_view(name)), isPicture) << name;
    EXPECT_EQ(hasImageExtension(FileURL("/some.folder/" + name)), isPicture) << name;
    EXPECT_EQ(hasImageExtension(FileURL(name)), isPicture) << name;
  }
}

TEST_F(LinuxFileManagerTest, aFinishedFileThatIsWrittenAnewLosesItsValues) {
  const std::string bytes = samples::png();
  writeFile(folder / "a.png", bytes);
  EXPECT_EQ(list().at("a.png").isRegularFile, true);
  writeFile(folder / "a.png", bytes.substr(0, 50));
  clock.set(LinuxClock().now());
  EXPECT_FALSE(list().at("a.png").isRegularFile);
}

TEST_F(LinuxFileManagerTest, aNewFileInPlaceOfARemovedOneIsJudgedAnew) {
  const std::string bytes = samples::png();
  for (int i = 0; i < 20; ++i) {
    writeFile(folder / "a.png", bytes);
    ASSERT_EQ(list().at("a.png").isRegularFile, true);
    ASSERT_EQ(::unlink((folder / "a.png").path().c_str()), 0);
    writeFile(folder / "a.png", bytes.substr(0, bytes.size() - 1));
    clock.set(LinuxClock().now());
    ASSERT_FALSE(list().at("a.png").isRegularFile);
  }
}

TEST_F(LinuxFileManagerTest, linksFifosAndFoldersAreNoRegularFiles) {
  writeFile(folder / "a.png", samples::png());
  ASSERT_EQ(::symlink("a.png", (folder / "link.png").path().c_str()), 0);
  ASSERT_EQ(::mkfifo((folder / "fifo.png").path().c_str(), 0600), 0);
  std::filesystem::create_directory((folder / "folder.png").path());
  const auto entries = list();
  for (const std::string name : {"link.png", "fifo.png", "folder.png"}) {
    EXPECT_EQ(entries.at(name).isRegularFile, false) << name;
  }
}

TEST_F(LinuxFileManagerTest, namesOfAnyBytesAreListedByteForByte) {
  const std::set<std::string> names{std::string(251, 'x') + ".png", "\xFF\xFE.png", "new\nline.png"};
  for (const std::string& name : names) {
    writeFile(folder / name, samples::png());
  }
  std::set<std::string> got;
  for (const auto& [name, entry] : list()) {
    got.insert(name);
    EXPECT_EQ(entry.isRegularFile, true);
  }
  EXPECT_EQ(got, names);
}

TEST_F(LinuxFileManagerTest, aFolderThatIsNotThereCannotBeListed) {
  const auto listed = files.contentsOfDirectoryAtURL(folder / "none", HiddenFiles::skip);
  ASSERT_FALSE(listed);
  EXPECT_EQ(listed.error().localizedDescription, "The file “none” could not be listed: No such file or directory.");
}

TEST_F(LinuxFileManagerTest, theBirthIsTheDateOfCreationUnlessAMarkCarriesTheOriginalOne) {
  const Date before = LinuxClock().now() - std::chrono::milliseconds(50);
  writeFile(folder / "a", "text");
  const auto attributes = files.attributesOfItemAtPath(folder / "a");
  ASSERT_TRUE(attributes && attributes.value().creationDate);
  EXPECT_GE(*attributes.value().creationDate, before);
  EXPECT_EQ(attributes.value().size, 4);

  ASSERT_EQ(::setxattr((folder / "a").path().c_str(), kCreatedMark, "1700000000123456789", 19, 0), 0);
  const Date original(std::chrono::nanoseconds(1700000000123456789));
  EXPECT_EQ(files.attributesOfItemAtPath(folder / "a").value().creationDate, original);
  EXPECT_EQ(list().at("a").creationDate, original);
  ASSERT_EQ(::setxattr((folder / "a").path().c_str(), kCreatedMark, "17x", 3, 0), 0);
  EXPECT_EQ(files.attributesOfItemAtPath(folder / "a").value().creationDate, attributes.value().creationDate);
  EXPECT_EQ(list().at("a").creationDate, attributes.value().creationDate);
}

TEST_F(LinuxFileManagerTest, whereTheFileSystemKeepsNoBirthThereIsNoDateOfCreation) {
  const auto attributes = files.attributesOfItemAtPath(FileURL("/proc/self/status"));
  ASSERT_TRUE(attributes);
  EXPECT_EQ(attributes.value().creationDate, std::nullopt);
}

TEST_F(LinuxFileManagerTest, attributesOfWhatIsNotThereAreAFailure) {
  EXPECT_FALSE(files.attributesOfItemAtPath(folder / "none"));
}

TEST_F(LinuxFileManagerTest, questionsFollowLinks) {
  ASSERT_EQ(::symlink("nowhere", (folder / "broken").path().c_str()), 0);
  ASSERT_EQ(::symlink(".", (folder / "here").path().c_str()), 0);
  EXPECT_FALSE(files.fileExistsAtPath(folder / "broken"));
  EXPECT_TRUE(files.fileExistsAtPath(folder / "here"));
  EXPECT_TRUE(files.isDirectory(folder / "here"));
  EXPECT_TRUE(files.isReadableFileAtPath(folder / "here"));
  EXPECT_FALSE(files.isReadableFileAtPath(folder / "broken"));
  EXPECT_FALSE(files.isDirectory(folder / "none"));
}

// A process of an ordinary user's, since root may look everywhere; its status is the answer.
TEST_F(LinuxFileManagerTest, aFileInAFolderThatIsLockedIsNotSaidToBeGone) {
  std::filesystem::create_directory((folder / "locked").path());
  writeFile(folder / "locked/a.png", samples::png());
  ASSERT_EQ(::chmod(folder.url().path().c_str(), 0755), 0);
  ASSERT_EQ(::chmod((folder / "locked").path().c_str(), 0), 0);
  constexpr uid_t nobody = 65534;
  const pid_t child = ::fork();
  if (child == 0) {
    const bool isOrdinary = ::geteuid() != 0 || ::setresuid(nobody, nobody, nobody) == 0;
    const bool isThere = files.fileExistsAtPath(folder / "locked/a.png");
    const bool isGone = !files.fileExistsAtPath(folder / "none.png");
    const bool isReadable = files.isReadableFileAtPath(folder / "locked/a.png");
    ::_exit(isOrdinary && isThere && isGone && !isReadable ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  ASSERT_EQ(::chmod((folder / "locked").path().c_str(), 0755), 0);
}

TEST_F(LinuxFileManagerTest, foldersAreMadeWithThoseAboveThem) {
  EXPECT_TRUE(files.createDirectoryAtURL(folder / "a/b/c"));
  EXPECT_TRUE(files.isDirectory(folder / "a/b/c"));
  EXPECT_TRUE(files.createDirectoryAtURL(folder / "a/b/c"));
  writeFile(folder / "file", "x");
  EXPECT_EQ(files.createDirectoryAtURL(folder / "file").error().localizedDescription,
            "The file “file” could not be created: File exists.");
  EXPECT_FALSE(files.createDirectoryAtURL(folder / "file/below"));
}

TEST_F(LinuxFileManagerTest, enumerationGivesEachFolderBeforeItsContentsAndFollowsNoLink) {
  ASSERT_TRUE(files.createDirectoryAtURL(folder / "a/.b"));
  writeFile(folder / "a/.b/c", "x");
  writeFile(folder / ".hidden", "x");
  ASSERT_EQ(::symlink("..", (folder / "a/up").path().c_str()), 0);
  std::vector<std::pair<std::string, bool>> visited;
  EXPECT_TRUE(files.enumerateAtURL(folder.url(), [&](const FileURL& url, bool isDirectory) {
    visited.emplace_back(url.path().substr(folder.url().path().size() + 1), isDirectory);
  }));
  const auto place = [&](const std::string& path, bool isDirectory) {
    return std::ranges::find(visited, std::pair(path, isDirectory)) - visited.begin();
  };
  ASSERT_EQ(visited.size(), 5U);
  EXPECT_LT(place("a", true), place("a/.b", true));
  EXPECT_LT(place("a/.b", true), place("a/.b/c", false));
  EXPECT_LT(place("a/.b/c", false), 5);
  EXPECT_LT(place(".hidden", false), 5);
  EXPECT_LT(place("a/up", false), 5);
  EXPECT_FALSE(files.enumerateAtURL(folder / "none", [](const FileURL&, bool) {}));
}

TEST_F(LinuxFileManagerTest, removingTakesAFolderWithItsContentsAndALinkAlone) {
  ASSERT_TRUE(files.createDirectoryAtURL(folder / "a/b"));
  writeFile(folder / "a/b/c", "x");
  std::filesystem::create_directory((folder / "kept").path());
  writeFile(folder / "kept/x", "x");
  ASSERT_EQ(::symlink("../kept", (folder / "a/link").path().c_str()), 0);
  EXPECT_TRUE(files.removeItemAtURL(folder / "a"));
  EXPECT_FALSE(exists(folder / "a"));
  EXPECT_TRUE(exists(folder / "kept/x"));
  EXPECT_EQ(files.removeItemAtURL(folder / "a").error().localizedDescription,
            "The file “a” could not be removed: No such file or directory.");
}

}  // namespace
}  // namespace quenlio
