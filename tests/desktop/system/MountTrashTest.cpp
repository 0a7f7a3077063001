// The trash of other file systems.
#include "tests/desktop/system/MountTrashTest.h"

#include "desktop/linux/system/LinuxStandardDirectories.h"

namespace quenlio {
namespace {

TEST_F(MountTrashTest, aFileOnAnotherFileSystemGoesIntoATrashOfItsOwnThere) {
  withDisk([&](TrashUser& user) {
    std::filesystem::create_directories((disk / "in/ä").path());
    writeFile(disk / "in/ä/a.png", "picture");
    const FileURL trash = disk / (".Trash-" + userId);
    const FileURL place = user.put(disk / "in/ä/a.png");
    EXPECT_EQ(place, trash / "files/a.png");
    EXPECT_EQ(contents(place), "picture");
    EXPECT_EQ(wholeTrash(trash), std::vector<std::string>{"a.png"});
    EXPECT_EQ(noted(trash, "a.png", "Path"), "in/%C3%A4/a.png");
    EXPECT_EQ(std::filesystem::status(trash.path()).permissions(), std::filesystem::perms::owner_all);
    EXPECT_TRUE(namesIn(home).empty());

    ASSERT_TRUE(user.files.moveItemAtURL(place, disk / "in/ä/a.png"));
    EXPECT_TRUE(wholeTrash(trash).empty());
  });
}

// The note is as seen from the top of the file system, whatever links lead there.
TEST_F(MountTrashTest, linksOnTheWayToTheFileAreNoPartOfTheNote) {
  withDisk([&](TrashUser& user) {
    std::filesystem::create_directory((disk / "in").path());
    writeFile(disk / "in/a.png", "picture");
    check(::symlink((disk / "in").path().c_str(), (home / "Captures").path().c_str()) == 0, "link");
    EXPECT_EQ(user.put(home / "Captures/a.png"), disk / (".Trash-" + userId) / "files/a.png");
    EXPECT_EQ(noted(disk / (".Trash-" + userId), "a.png", "Path"), "in/a.png");
  });
}

TEST_F(MountTrashTest, aTrashThatIsSetUpForAllIsUsed) {
  withDisk([&](TrashUser& user) {
    std::filesystem::create_directory((disk / ".Trash").path());
    check(::chmod((disk / ".Trash").path().c_str(), 01777) == 0, "sticky");
    writeFile(disk / "a.png", "picture");
    const FileURL trash = disk / ".Trash" / userId;
    const FileURL place = user.put(disk / "a.png");
    EXPECT_EQ(place, trash / "files/a.png");
    EXPECT_EQ(noted(trash, "a.png", "Path"), "a.png");
    EXPECT_FALSE(exists(disk / (".Trash-" + userId)));
    ASSERT_TRUE(user.files.moveItemAtURL(place, disk / "a.png"));
    EXPECT_TRUE(wholeTrash(trash).empty());
  });
}

TEST_F(MountTrashTest, aTrashForAllThatIsNotSafeIsNotUsed) {
  for (const std::string unsafe : {"without the sticky bit", "a link", "a file", "a foreign folder in it"}) {
    withDisk([&](TrashUser& user) {
      std::filesystem::create_directory((disk / "other").path());
      check(::chmod((disk / "other").path().c_str(), 01777) == 0, "sticky");
      if (unsafe == "a link") {
        check(::symlink("other", (disk / ".Trash").path().c_str()) == 0, "link");
      } else if (unsafe == "a file") {
        writeFile(disk / ".Trash", "x");
      } else {
        std::filesystem::create_directory((disk / ".Trash").path());
      }
      if (unsafe == "a foreign folder in it") {
        check(::chmod((disk / ".Trash").path().c_str(), 01777) == 0, "sticky");
        check(::symlink("../other", (disk / ".Trash" / userId).path().c_str()) == 0, "link");
      }
      writeFile(disk / "a.png", "picture");
      EXPECT_EQ(user.put(disk / "a.png"), disk / (".Trash-" + userId) / "files/a.png") << unsafe;
      EXPECT_TRUE(namesIn(disk / "other").empty()) << unsafe;
    });
  }
}

// Who may write to the top of a file system could lay out a trap for what others trash.
TEST_F(MountTrashTest, aTrashThatIsNotTheUsersOwnFolderIsNotUsed) {
  const bool isRoot = ::geteuid() == 0;
  const FileURL trap = disk / (".Trash-" + userId);
  for (const std::string kind : {"a link", "a file", "somebody else's"}) {
    withPrivateMounts(
        [&] {
          mountMemory(disk);
          if (kind == "somebody else's" && isRoot) {
            makeOrdinaryFolder(trap, 0777);
            check(::chown(trap.path().c_str(), 1, 1) == 0, "another owner");
          }
        },
        [&] {
          TrashUser user(home);
          std::filesystem::create_directory((disk / "other").path());
          if (kind == "a file") {
            writeFile(trap, "x");
          } else if (!exists(trap)) {
            check(::symlink("other", trap.path().c_str()) == 0, "link");
          }
          writeFile(disk / "a.png", "picture");
          // A copy in the user's own trash, then.
          const FileURL place = user.put(disk / "a.png");
          EXPECT_EQ(place, user.trash() / "files/a.png") << kind;
          EXPECT_EQ(noted(user.trash(), "a.png", "Path"), (disk / "a.png").path());
          EXPECT_TRUE(namesIn(disk / "other").empty()) << kind;
          EXPECT_TRUE(kind != "somebody else's" || namesIn(trap).empty());
          check(std::filesystem::remove_all(user.trash().path()) > 0, "the trash");
        });
  }
}

TEST_F(MountTrashTest, anotherMountOfTheSameDeviceHasATrashOfItsOwn) {
  withPrivateMounts(
      [&] {
        makeOrdinaryFolder(folder / "data");
        mountAgain(folder / "data", disk);
      },
      [&] {
        TrashUser user(home);
        writeFile(disk / "a.png", "picture");
        EXPECT_EQ(user.put(disk / "a.png"), disk / (".Trash-" + userId) / "files/a.png");
        EXPECT_TRUE(wholeTrash(user.trash()).empty());
        EXPECT_EQ(wholeTrash(disk / (".Trash-" + userId)), std::vector<std::string>{"a.png"});
      });
}

TEST_F(MountTrashTest, withoutAHomeThereIsStillTheTrashOfOtherFileSystems) {
  withDisk([&](TrashUser&) {
    const FakeProcessInfo nothing;
    const LinuxStandardDirectories directories(nothing);
    OwnFiles own;
    const LinuxClock clock;
    LinuxFileManager files(own, clock, directories);
    writeFile(disk / "a.png", "picture");
    const auto trashed = files.trashItemAtURL(disk / "a.png");
    ASSERT_TRUE(trashed) << trashed.error().localizedDescription;
    EXPECT_EQ(trashed.value(), disk / (".Trash-" + userId) / "files/a.png");
    EXPECT_EQ(wholeTrash(disk / (".Trash-" + userId)), std::vector<std::string>{"a.png"});
  });
}

}  // namespace
}  // namespace quenlio
