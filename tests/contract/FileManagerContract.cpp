// What every file manager does, the fake and the real one.
#include <gtest/gtest.h>
#include <unistd.h>

#include "desktop/linux/system/LinuxClock.h"
#include "desktop/linux/system/LinuxFileContents.h"
#include "desktop/linux/system/LinuxFileManager.h"
#include "desktop/linux/system/OwnFiles.h"

#include "tests/contract/TemporaryFolder.h"
#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/harness/VirtualTime.h"

namespace quenlio {
namespace {

struct FakeFiles {
  VirtualTime time;
  CallLog log;
  FakeFileSystem system{time, log};
  FileURL root{"/root"};
  FileURL trash{FakeFileSystem::kTrash};

  FakeFiles() { system.makeFolder("/root"); }
  FileManager& files() { return system; }
  FileContents& contents() { return system; }
  const Clock& clock() { return time; }
};

struct RealFiles {
  LinuxClock linuxClock;
  OwnFiles own;
  FakeDirectories directories;
  LinuxFileManager manager{own, linuxClock, directories};
  LinuxFileContents fileContents;
  TemporaryFolder folder;
  TemporaryFolder data;
  FileURL root = folder.url();
  FileURL trash = data.url().appending("Trash");

  RealFiles() { directories.applicationSupport = data.url(); }

  FileManager& files() { return manager; }
  FileContents& contents() { return fileContents; }
  const Clock& clock() { return linuxClock; }
};

template <class Files>
class FileManagerContract : public testing::Test {
 protected:
  FileURL path(std::string_view relative) const { return this->system.root.appending(relative); }
  FileManager& files() { return system.files(); }
  FileContents& contents() { return system.contents(); }
  void write(std::string_view relative, std::string_view text) {
    ASSERT_TRUE(contents().writeAtomically(path(relative), text).ok());
  }
  std::string read(std::string_view relative) {
    const auto text = contents().read(path(relative));
    return text.ok() ? text.value() : "(unreadable)";
  }
  std::vector<std::string> names(HiddenFiles hidden) {
    std::vector<std::string> found;
    const auto entries = files().contentsOfDirectoryAtURL(system.root, hidden);
    if (entries.ok()) {
      for (const DirectoryEntry& entry : entries.value()) {
        found.push_back(entry.url.lastPathComponent());
      }
    }
    std::ranges::sort(found);
    return found;
  }

  // The regular files below the trash that hold what was trashed, by their text, in order; its own notes are not meant.
  std::vector<std::string> filesInTrash() {
    std::vector<std::string> found;
    files().enumerateAtURL(system.trash, [&](const FileURL& url, bool isDirectory) {
      if (!isDirectory && url.pathExtension() != "trashinfo") {
        found.push_back(contents().read(url).value());
      }
    });
    std::ranges::sort(found);
    return found;
  }
  // Everything below the trash but the folders that it is made of, its own notes too.
  std::size_t entriesInTrash() {
    std::size_t count = 0;
    files().enumerateAtURL(system.trash, [&](const FileURL&, bool isDirectory) { count += isDirectory ? 0U : 1U; });
    return count;
  }

  Files system;
};

using Systems = testing::Types<FakeFiles, RealFiles>;
TYPED_TEST_SUITE(FileManagerContract, Systems);

TYPED_TEST(FileManagerContract, aWrittenFileIsThereWithItsSizeAndCreationDate) {
  const Date before = this->system.clock().now();
  this->write("a.txt", "hello");

  EXPECT_TRUE(this->files().fileExistsAtPath(this->path("a.txt")));
  EXPECT_FALSE(this->files().isDirectory(this->path("a.txt")));
  const auto attributes = this->files().attributesOfItemAtPath(this->path("a.txt"));
  ASSERT_TRUE(attributes.ok());
  EXPECT_EQ(attributes.value().size, 5);
  ASSERT_TRUE(attributes.value().creationDate.has_value());
  // The kernel stamps files with a clock that runs a few milliseconds behind.
  EXPECT_GE(*attributes.value().creationDate, before - std::chrono::milliseconds(20));
  EXPECT_EQ(this->read("a.txt"), "hello");
}

TYPED_TEST(FileManagerContract, whatIsNotThereHasNoAttributesAndCannotBeRead) {
  EXPECT_FALSE(this->files().fileExistsAtPath(this->path("none")));
  EXPECT_FALSE(this->files().isReadableFileAtPath(this->path("none")));
  EXPECT_FALSE(this->files().attributesOfItemAtPath(this->path("none")).ok());
  EXPECT_FALSE(this->contents().read(this->path("none")).ok());
  EXPECT_FALSE(this->files().contentsOfDirectoryAtURL(this->path("none"), HiddenFiles::skip).ok());
  EXPECT_FALSE(this->files().removeItemAtURL(this->path("none")).ok());
  EXPECT_FALSE(this->files().moveItemAtURL(this->path("none"), this->path("other")).ok());
}

TYPED_TEST(FileManagerContract, aFileKeepsItsIdentityWhereverItIsMovedAndNoOtherHasIt) {
  this->write("a.png", "hello");
  this->write("b.png", "hello");
  const auto identity = this->files().identityOfItemAtPath(this->path("a.png"));
  ASSERT_TRUE(identity);
  EXPECT_NE(this->files().identityOfItemAtPath(this->path("b.png")), identity);
  ASSERT_TRUE(this->files().moveItemAtURL(this->path("a.png"), this->path("c.png")).ok());
  EXPECT_EQ(this->files().identityOfItemAtPath(this->path("c.png")), identity);
  EXPECT_EQ(this->files().identityOfItemAtPath(this->path("a.png")), std::nullopt);
  const FileURL place = *this->files().trashItemAtURL(this->path("c.png")).value();
  EXPECT_EQ(this->files().identityOfItemAtPath(place), identity);
  // The place is taken again by one that may be given the number of the one that has gone.
  ASSERT_TRUE(this->files().removeItemAtURL(place).ok());
  ASSERT_TRUE(this->contents().writeAtomically(place, "hello").ok());
  EXPECT_NE(this->files().identityOfItemAtPath(place), identity);
}

TYPED_TEST(FileManagerContract, aLinkThatLeadsNowhereHasItsNameAndIsNoFile) {
  this->write("a.png", "hello");
  if constexpr (std::is_same_v<TypeParam, FakeFiles>) {
    this->system.system.makeDanglingLink("/root/link.png");
  } else {
    ASSERT_EQ(::symlink("nowhere", this->path("link.png").path().c_str()), 0);
  }
  EXPECT_FALSE(this->files().fileExistsAtPath(this->path("link.png")));
  EXPECT_TRUE(this->files().identityOfItemAtPath(this->path("link.png")));
  EXPECT_FALSE(this->files().moveItemAtURL(this->path("a.png"), this->path("link.png")).ok());
  EXPECT_FALSE(this->files().copyItemAtURL(this->path("a.png"), this->path("link.png")).ok());
  EXPECT_EQ(this->read("a.png"), "hello");
}

TYPED_TEST(FileManagerContract, aMoveKeepsContentAndCreationDate) {
  this->write("a.txt", "hello");
  const auto created = this->files().attributesOfItemAtPath(this->path("a.txt")).value().creationDate;

  ASSERT_TRUE(this->files().moveItemAtURL(this->path("a.txt"), this->path("b.txt")).ok());

  EXPECT_FALSE(this->files().fileExistsAtPath(this->path("a.txt")));
  EXPECT_EQ(this->read("b.txt"), "hello");
  EXPECT_EQ(this->files().attributesOfItemAtPath(this->path("b.txt")).value().creationDate, created);
}

TYPED_TEST(FileManagerContract, aMoveOrCopyOntoAFileFailsAndLeavesBoth) {
  this->write("a.txt", "from");
  this->write("b.txt", "there");

  EXPECT_FALSE(this->files().moveItemAtURL(this->path("a.txt"), this->path("b.txt")).ok());
  EXPECT_FALSE(this->files().copyItemAtURL(this->path("a.txt"), this->path("b.txt")).ok());

  EXPECT_EQ(this->read("a.txt"), "from");
  EXPECT_EQ(this->read("b.txt"), "there");
}

TYPED_TEST(FileManagerContract, aMoveIntoNoFolderOrToTooLongANameFailsAndLeavesTheFile) {
  this->write("a.txt", "hello");

  EXPECT_FALSE(this->files().moveItemAtURL(this->path("a.txt"), this->path("none").appending("a.txt")).ok());
  EXPECT_FALSE(this->files().moveItemAtURL(this->path("a.txt"), this->path(std::string(256, 'n'))).ok());
  EXPECT_EQ(this->read("a.txt"), "hello");

  ASSERT_TRUE(this->files().moveItemAtURL(this->path("a.txt"), this->path(std::string(255, 'n'))).ok());
  EXPECT_EQ(this->read(std::string(255, 'n')), "hello");
}

TYPED_TEST(FileManagerContract, aMovedFolderBringsItsContents) {
  ASSERT_TRUE(this->files().createDirectoryAtURL(this->path("old/inner")).ok());
  this->write("old/inner/a.txt", "hello");

  ASSERT_TRUE(this->files().moveItemAtURL(this->path("old"), this->path("new")).ok());

  EXPECT_EQ(this->read("new/inner/a.txt"), "hello");
  EXPECT_FALSE(this->files().fileExistsAtPath(this->path("old")));
}

TYPED_TEST(FileManagerContract, aCopyLeavesTheSource) {
  this->write("a.txt", "hello");
  ASSERT_TRUE(this->files().copyItemAtURL(this->path("a.txt"), this->path("b.txt")).ok());
  EXPECT_EQ(this->read("a.txt"), "hello");
  EXPECT_EQ(this->read("b.txt"), "hello");
}

TYPED_TEST(FileManagerContract, foldersAreMadeWithThoseAboveAndASecondTimeIsNoError) {
  ASSERT_TRUE(this->files().createDirectoryAtURL(this->path("a/b/c")).ok());
  EXPECT_TRUE(this->files().isDirectory(this->path("a/b/c")));
  EXPECT_TRUE(this->files().createDirectoryAtURL(this->path("a/b/c")).ok());
  this->write("file", "x");
  EXPECT_FALSE(this->files().createDirectoryAtURL(this->path("file")).ok());
}

TYPED_TEST(FileManagerContract, aListingTellsFilesFromFoldersAndSkipsHiddenOnesWhenAsked) {
  this->write("a.txt", "x");
  this->write(".hidden", "x");
  ASSERT_TRUE(this->files().createDirectoryAtURL(this->path("folder")).ok());

  EXPECT_EQ(this->names(HiddenFiles::skip), (std::vector<std::string>{"a.txt", "folder"}));
  EXPECT_EQ(this->names(HiddenFiles::include), (std::vector<std::string>{".hidden", "a.txt", "folder"}));
  const auto listed = this->files().contentsOfDirectoryAtURL(this->system.root, HiddenFiles::skip);
  for (const DirectoryEntry& entry : listed.value()) {
    EXPECT_EQ(entry.isRegularFile, entry.url.lastPathComponent() == "a.txt");
  }
}

TYPED_TEST(FileManagerContract, aFolderCanBeListedAndNothingElse) {
  this->write("file", "x");
  EXPECT_TRUE(this->files().canListDirectoryAtURL(this->system.root));
  EXPECT_FALSE(this->files().canListDirectoryAtURL(this->path("file")));
  EXPECT_FALSE(this->files().canListDirectoryAtURL(this->path("none")));
}

TYPED_TEST(FileManagerContract, anEnumerationVisitsHiddenFilesAndFoldersBeforeTheirContents) {
  ASSERT_TRUE(this->files().createDirectoryAtURL(this->path("folder")).ok());
  this->write("folder/.hidden", "x");
  std::vector<std::pair<std::string, bool>> visited;

  ASSERT_TRUE(this->files().enumerateAtURL(this->system.root, [&](const FileURL& url, bool isDirectory) {
    visited.emplace_back(url.lastPathComponent(), isDirectory);
  }));

  EXPECT_EQ(visited, (std::vector<std::pair<std::string, bool>>{{"folder", true}, {".hidden", false}}));
  EXPECT_FALSE(this->files().enumerateAtURL(this->path("none"), [](const FileURL&, bool) {}));
}

TYPED_TEST(FileManagerContract, anAtomicWriteReplacesTheWholeFile) {
  this->write("a.txt", "a long first text");
  this->write("a.txt", "short");
  EXPECT_EQ(this->read("a.txt"), "short");
  EXPECT_EQ(this->names(HiddenFiles::include), std::vector<std::string>{"a.txt"});
}

TYPED_TEST(FileManagerContract, aFileCannotBeWrittenWhereThereIsNoFolderOrAFolderInTheWay) {
  EXPECT_FALSE(this->contents().writeAtomically(this->path("none/a.txt"), "x").ok());
  EXPECT_FALSE(this->contents().append(this->path("none/a.txt"), "x").ok());
  ASSERT_TRUE(this->files().createDirectoryAtURL(this->path("folder")).ok());
  EXPECT_FALSE(this->contents().writeAtomically(this->path("folder"), "x").ok());
  EXPECT_TRUE(this->files().isDirectory(this->path("folder")));
}

TYPED_TEST(FileManagerContract, appendingMakesTheFileAndAddsAtItsEnd) {
  ASSERT_TRUE(this->contents().append(this->path("log"), "one\n").ok());
  ASSERT_TRUE(this->contents().append(this->path("log"), "two\n").ok());
  EXPECT_EQ(this->read("log"), "one\ntwo\n");
}

TYPED_TEST(FileManagerContract, aPictureThatIsStillEmptyHasNoValuesInAListing) {
  if constexpr (std::is_same_v<TypeParam, FakeFiles>) {
    this->system.system.write("/root/shot.png", "");
    this->system.system.setUnfinished("/root/shot.png", true);
  } else {
    this->write("shot.png", "");
  }
  const auto listed = this->files().contentsOfDirectoryAtURL(this->system.root, HiddenFiles::skip);
  ASSERT_TRUE(listed.ok());
  ASSERT_EQ(listed.value().size(), 1U);
  EXPECT_FALSE(listed.value().front().isRegularFile.has_value());
  EXPECT_FALSE(listed.value().front().creationDate.has_value());
}

TYPED_TEST(FileManagerContract, aTrashedFileIsWholeWhereTheTrashSaysThatItIs) {
  this->write("a.png", "hello");
  const auto created = this->files().attributesOfItemAtPath(this->path("a.png")).value().creationDate;

  const auto trashed = this->files().trashItemAtURL(this->path("a.png"));

  ASSERT_TRUE(trashed.ok());
  ASSERT_TRUE(trashed.value().has_value());
  const FileURL place = *trashed.value();
  EXPECT_FALSE(this->files().fileExistsAtPath(this->path("a.png")));
  EXPECT_EQ(this->contents().read(place).value(), "hello");
  EXPECT_EQ(place.pathExtension(), "png");
  EXPECT_EQ(this->files().attributesOfItemAtPath(place).value().creationDate, created);
  EXPECT_EQ(this->filesInTrash(), std::vector<std::string>{"hello"});
}

TYPED_TEST(FileManagerContract, aFileThatIsMovedBackOutOfTheTrashLeavesNothingThere) {
  this->write("a.png", "hello");
  const auto created = this->files().attributesOfItemAtPath(this->path("a.png")).value().creationDate;
  const FileURL place = *this->files().trashItemAtURL(this->path("a.png")).value();

  ASSERT_TRUE(this->files().moveItemAtURL(place, this->path("b.png")).ok());

  EXPECT_EQ(this->read("b.png"), "hello");
  EXPECT_EQ(this->files().attributesOfItemAtPath(this->path("b.png")).value().creationDate, created);
  EXPECT_EQ(this->entriesInTrash(), 0U);
}

TYPED_TEST(FileManagerContract, aFileThatCannotBeMovedBackStaysInTheTrash) {
  this->write("a.png", "hello");
  const FileURL place = *this->files().trashItemAtURL(this->path("a.png")).value();
  const std::size_t before = this->entriesInTrash();
  this->write("a.png", "another");

  EXPECT_FALSE(this->files().moveItemAtURL(place, this->path("a.png")).ok());

  EXPECT_EQ(this->read("a.png"), "another");
  EXPECT_EQ(this->contents().read(place).value(), "hello");
  EXPECT_EQ(this->entriesInTrash(), before);
}

TYPED_TEST(FileManagerContract, filesOfOneNameLieInTheTrashSideBySide) {
  for (const std::string text : {"one", "two", "three"}) {
    this->write("a.png", text);
    const auto trashed = this->files().trashItemAtURL(this->path("a.png"));
    ASSERT_TRUE(trashed.ok());
    EXPECT_EQ(this->contents().read(*trashed.value()).value(), text);
  }
  EXPECT_EQ(this->filesInTrash(), (std::vector<std::string>{"one", "three", "two"}));
}

TYPED_TEST(FileManagerContract, aTrashedFolderTakesItsContentsAlong) {
  ASSERT_TRUE(this->files().createDirectoryAtURL(this->path("folder")).ok());
  this->write("folder/a.png", "hello");
  const auto trashed = this->files().trashItemAtURL(this->path("folder"));
  ASSERT_TRUE(trashed.ok());
  EXPECT_FALSE(this->files().fileExistsAtPath(this->path("folder")));
  EXPECT_EQ(this->contents().read(trashed.value()->appending("a.png")).value(), "hello");
}

TYPED_TEST(FileManagerContract, whatIsNotThereCannotBeTrashed) {
  EXPECT_FALSE(this->files().trashItemAtURL(this->path("none")).ok());
  EXPECT_EQ(this->entriesInTrash(), 0U);
}

}  // namespace
}  // namespace quenlio
