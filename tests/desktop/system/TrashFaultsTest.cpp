// What comes of folders and disks that stand in the way of the trash, and of file systems that can have none.
#include <array>
#include <sys/xattr.h>

#include "desktop/linux/system/XdgTrash.h"

#include "tests/desktop/system/KilledProcess.h"
#include "tests/desktop/system/MountTrashTest.h"

namespace quenlio {
namespace {

using TrashFaultsTest = MountTrashTest;

// As many bytes as there is room for.
void fill(const FileURL& url) {
  const UniqueFd fd(::open(url.path().c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  check(static_cast<bool>(fd), url.path());
  for (const std::size_t block : {std::size_t{4096}, std::size_t{1}}) {
    const std::string bytes(block, 'x');
    while (::write(fd.get(), bytes.data(), bytes.size()) > 0) {
    }
    check(errno == ENOSPC, "a full file system");
  }
}

class NoMountTrashTest : public MountTrashTest {
 protected:
  // A file system to whose top the user may not write, with a folder of the user's.
  void inFolderOfOthers(const std::function<void(TrashUser&)>& body) {
    withPrivateMounts(
        [&] {
          makeOrdinaryFolder(folder / "data");
          mountAgain(folder / "data", disk);
          makeOrdinaryFolder(captures);
          check(::chmod(disk.path().c_str(), 0555) == 0, "a top that is not written to");
        },
        [&] {
          TrashUser user(home);
          body(user);
          EXPECT_EQ(namesIn(disk), std::vector<std::string>{"captures"});
        });
  }

  FileURL captures = disk / "captures";
};

TEST_F(NoMountTrashTest, aFileIsCopiedToTheTrashAtHomeAndComesBackAsItWas) {
  inFolderOfOthers([&](TrashUser& user) {
    const FileURL file = captures / "a.png";
    const std::string bytes(700'000, 'x');
    writeFile(file, bytes);
    check(::chmod(file.path().c_str(), 0640) == 0, "mode");
    check(::setxattr(file.path().c_str(), "user.note", "kept", 4, 0) == 0, "attribute");
    const std::array times{timespec{.tv_sec = 1000, .tv_nsec = 5}, timespec{.tv_sec = 2000, .tv_nsec = 7}};
    check(::utimensat(AT_FDCWD, file.path().c_str(), times.data(), 0) == 0, "times");
    const auto created = user.files.attributesOfItemAtPath(file).value().creationDate;
    ASSERT_TRUE(created);

    const FileURL place = user.put(file);
    EXPECT_EQ(place, user.trash() / "files/a.png");
    EXPECT_EQ(contents(place), bytes);
    EXPECT_FALSE(exists(file));
    EXPECT_EQ(noted(user.trash(), "a.png", "Path"), file.path());
    EXPECT_EQ(wholeTrash(user.trash()), std::vector<std::string>{"a.png"});
    EXPECT_EQ(namesIn(user.trash()), (std::vector<std::string>{"files", "info"}));
    EXPECT_EQ(user.files.attributesOfItemAtPath(place).value().creationDate, created);

    ASSERT_TRUE(user.files.moveItemAtURL(place, file));
    struct stat status {};
    check(::stat(file.path().c_str(), &status) == 0, file.path());
    EXPECT_EQ(status.st_mode, static_cast<mode_t>(S_IFREG | 0640));
    EXPECT_EQ(status.st_mtim.tv_sec, 2000);
    EXPECT_EQ(status.st_mtim.tv_nsec, 7);
    std::array<char, 8> value{};
    EXPECT_EQ(::getxattr(file.path().c_str(), "user.note", value.data(), value.size()), 4);
    EXPECT_EQ(user.files.attributesOfItemAtPath(file).value().creationDate, created);
    EXPECT_EQ(contents(file), bytes);
    EXPECT_TRUE(wholeTrash(user.trash()).empty());
  });
}

TEST_F(NoMountTrashTest, copiesOfOneNameGetNamesOfTheirOwn) {
  inFolderOfOthers([&](TrashUser& user) {
    for (const std::string text : {"1", "2", "3"}) {
      writeFile(captures / "a.png", text);
      EXPECT_EQ(contents(user.put(captures / "a.png")), text);
    }
    EXPECT_EQ(wholeTrash(user.trash()), (std::vector<std::string>{"a.2.png", "a.3.png", "a.png"}));
  });
}

// What is half copied is nothing in the trash, also when there is nobody left to take it away.
TEST_F(NoMountTrashTest, aCopyThatIsCutOffByAKillIsNotInTheTrashAndTheNextOneGoesWell) {
  inFolderOfOthers([&](TrashUser& user) {
    const std::string bytes(700'000, 'x');
    writeFile(captures / "a.png", bytes);
    EXPECT_EQ(signalThatEndsAfter(100'000, [&] { (void)user.files.trashItemAtURL(captures / "a.png"); }), SIGXFSZ);
    EXPECT_EQ(contents(captures / "a.png"), bytes);
    EXPECT_TRUE(wholeTrash(user.trash()).empty());
    EXPECT_EQ(namesIn(user.trash()).size(), 3U);

    EXPECT_EQ(contents(user.put(captures / "a.png")), bytes);
    EXPECT_EQ(namesIn(user.trash()), (std::vector<std::string>{"files", "info"}));
  });
}

TEST_F(NoMountTrashTest, aFileThatWouldTakeLongToCopyStays) {
  inFolderOfOthers([&](TrashUser& user) {
    writeFile(captures / "a.png", "");
    check(::truncate((captures / "a.png").path().c_str(), kLargestTrashCopy + 1) == 0, "size");
    EXPECT_EQ(user.refusal(captures / "a.png"), "The file “a.png” could not be moved to the trash: File too large.");
    EXPECT_TRUE(exists(captures / "a.png"));
    EXPECT_TRUE(wholeTrash(user.trash()).empty());
    check(::truncate((captures / "a.png").path().c_str(), kLargestTrashCopy) == 0, "size");
    (void)user.put(captures / "a.png");
  });
}

TEST_F(NoMountTrashTest, aFolderStays) {
  inFolderOfOthers([&](TrashUser& user) {
    std::filesystem::create_directory((captures / "a").path());
    writeFile(captures / "a/b", "x");
    EXPECT_NE(user.refusal(captures / "a"), "(it was)");
    EXPECT_EQ(contents(captures / "a/b"), "x");
    EXPECT_TRUE(wholeTrash(user.trash()).empty());
  });
}

TEST_F(NoMountTrashTest, aFileInAFolderThatIsNotTheUsersToChangeStays) {
  inFolderOfOthers([&](TrashUser& user) {
    writeFile(captures / "a.png", "picture");
    check(::chmod(captures.path().c_str(), 0555) == 0, "a folder that is not written to");
    EXPECT_EQ(user.refusal(captures / "a.png"), "The file “a.png” could not be moved to the trash: Permission denied.");
    EXPECT_EQ(contents(captures / "a.png"), "picture");
    EXPECT_TRUE(namesIn(home).empty());
  });
}

TEST_F(NoMountTrashTest, aCopyThatFindsNoRoomLeavesNothingBehind) {
  withPrivateMounts(
      [&] {
        mountMemory(home, "size=256k");
        makeOrdinaryFolder(folder / "data");
        mountAgain(folder / "data", disk);
        makeOrdinaryFolder(captures);
        check(::chmod(disk.path().c_str(), 0555) == 0, "a top that is not written to");
      },
      [&] {
        TrashUser user(home);
        const std::string bytes(400'000, 'x');
        writeFile(captures / "a.png", bytes);
        EXPECT_EQ(user.refusal(captures / "a.png"),
                  "The file “a.png” could not be moved to the trash: No space left on device.");
        EXPECT_EQ(contents(captures / "a.png"), bytes);
        EXPECT_TRUE(wholeTrash(user.trash()).empty());
        EXPECT_EQ(namesIn(user.trash()), (std::vector<std::string>{"files", "info"}));
      });
}

TEST_F(NoMountTrashTest, withoutAHomeAndWithoutAnotherTrashTheFileStays) {
  inFolderOfOthers([&](TrashUser& user) {
    user.directories.applicationSupport = FileURL("/nonexistent/home/.local/share");
    writeFile(captures / "a.png", "picture");
    EXPECT_EQ(user.refusal(captures / "a.png"), "The file “a.png” could not be moved to the trash: Permission denied.");
    EXPECT_EQ(contents(captures / "a.png"), "picture");
    EXPECT_EQ(namesIn(captures), std::vector<std::string>{"a.png"});
  });
}

TEST_F(TrashFaultsTest, aFileInAReadOnlyFolderStaysAndNoTrashIsMade) {
  for (const bool isSameFileSystem : {true, false}) {
    withDisk([&](TrashUser& user) {
      const FileURL locked = (isSameFileSystem ? home : disk) / "locked";
      std::filesystem::create_directory(locked.path());
      writeFile(locked / "a.png", "picture");
      check(::chmod(locked.path().c_str(), 0555) == 0, "mode");
      EXPECT_EQ(user.refusal(locked / "a.png"), "The file “a.png” could not be moved to the trash: Permission denied.");
      EXPECT_EQ(contents(locked / "a.png"), "picture");
      EXPECT_FALSE(exists(user.trash()));
      EXPECT_FALSE(exists(disk / (".Trash-" + userId)));
    });
  }
}

TEST_F(TrashFaultsTest, aFileOnAReadOnlyFileSystemStays) {
  withPrivateMounts(
      [&] {
        mountMemory(disk);
        writeFile(disk / "a.png", "picture");
        giveToOrdinaryUser(disk / "a.png");
        makeReadOnly(disk);
      },
      [&] {
        TrashUser user(home);
        EXPECT_EQ(user.refusal(disk / "a.png"),
                  "The file “a.png” could not be moved to the trash: Read-only file system.");
        EXPECT_EQ(contents(disk / "a.png"), "picture");
        EXPECT_TRUE(namesIn(home).empty());
      });
}

TEST_F(TrashFaultsTest, aTrashThatIsNotTheUsersToWriteToIsToldAndTheFileStays) {
  atHome([&](TrashUser& user) {
    writeFile(home / "a.png", "first");
    (void)user.put(home / "a.png");
    for (const FileURL& locked : {user.trash() / "files", user.trash() / "info"}) {
      writeFile(home / "a.png", "second");
      check(::chmod(locked.path().c_str(), 0500) == 0, "mode");
      EXPECT_EQ(user.refusal(home / "a.png"), "The file “a.png” could not be moved to the trash: Permission denied.");
      EXPECT_EQ(contents(home / "a.png"), "second");
      EXPECT_EQ(wholeTrash(user.trash()), std::vector<std::string>{"a.png"});
      check(::chmod(locked.path().c_str(), 0700) == 0, "mode");
    }
  });
}

TEST_F(TrashFaultsTest, aFullDiskTakesNoFileAwayAndLeavesNoNote) {
  for (const bool isHome : {true, false}) {
    const auto prepare = [&] { mountMemory(isHome ? home : disk, "size=256k"); };
    withPrivateMounts(prepare, [&] {
      const FileURL& full = isHome ? home : disk;
      TrashUser user(home);
      const FileURL trash = isHome ? user.trash() : disk / (".Trash-" + userId);
      writeFile(full / "a.png", "first");
      (void)user.put(full / "a.png");
      writeFile(full / "a.png", "second");
      fill(full / "filler");
      EXPECT_EQ(user.refusal(full / "a.png"),
                "The file “a.png” could not be moved to the trash: No space left on device.");
      EXPECT_EQ(contents(full / "a.png"), "second");
      EXPECT_EQ(wholeTrash(trash), std::vector<std::string>{"a.png"});

      check(::unlink((full / "filler").path().c_str()) == 0, "filler");
      EXPECT_EQ(contents(user.put(full / "a.png")), "second");
      EXPECT_EQ(wholeTrash(trash), (std::vector<std::string>{"a.2.png", "a.png"}));
    });
  }
}

}  // namespace
}  // namespace quenlio
