// The trash in the user's own folder.
#include <array>
#include <atomic>
#include <cstdlib>
#include <sys/xattr.h>
#include <thread>

#include "tests/desktop/system/AttributeFolder.h"
#include "tests/desktop/system/PrivateMounts.h"
#include "tests/desktop/system/TrashTest.h"

namespace quenlio {
namespace {

mode_t modeOf(const FileURL& url) {
  struct stat status {};
  check(::lstat(url.path().c_str(), &status) == 0, url.path());
  return status.st_mode;
}

class XdgTrashTest : public testing::Test {
 protected:
  XdgTrashTest() { std::filesystem::create_directory(captures.path()); }

  AttributeFolder folder;
  FileURL captures = folder / "Captures";
  TrashUser user{folder / "home/share"};
  FileURL trash = user.trash();
};

TEST_F(XdgTrashTest, aFileIsMovedWithANoteOfItsPlaceAndTheMoment) {
  writeFile(captures / "a b.png", "picture");
  const Date before = user.clock.now();
  const FileURL place = user.put(captures / "a b.png");
  EXPECT_EQ(place, trash / "files/a b.png");
  EXPECT_EQ(contents(place), "picture");
  EXPECT_FALSE(exists(captures / "a b.png"));
  EXPECT_EQ(wholeTrash(trash), std::vector<std::string>{"a b.png"});
  EXPECT_EQ(noted(trash, "a b.png", "Path"), captures.path() + "/a%20b.png");

  std::tm time{};
  const std::string date = noted(trash, "a b.png", "DeletionDate");
  ASSERT_EQ(*::strptime(date.c_str(), "%Y-%m-%dT%H:%M:%S", &time), '\0') << date;
  time.tm_isdst = -1;
  const auto moment = std::chrono::system_clock::from_time_t(std::mktime(&time));
  EXPECT_GE(moment + std::chrono::seconds(1), before);
  EXPECT_LE(moment, user.clock.now());
}

TEST_F(XdgTrashTest, theFoldersAreMadeForTheUserAlone) {
  writeFile(captures / "a", "x");
  (void)user.put(captures / "a");
  for (const FileURL& made : {folder / "home/share", trash, trash / "files", trash / "info"}) {
    EXPECT_EQ(modeOf(made), static_cast<mode_t>(S_IFDIR | 0700)) << made.path();
  }
  EXPECT_EQ(modeOf(trash / "info/a.trashinfo"), static_cast<mode_t>(S_IFREG | 0600));
}

TEST_F(XdgTrashTest, filesOfOneNameGetNamesOfTheirOwn) {
  for (const std::string text : {"1", "2", "3"}) {
    writeFile(captures / "a.png", text);
    EXPECT_EQ(contents(user.put(captures / "a.png")), text);
  }
  EXPECT_EQ(wholeTrash(trash), (std::vector<std::string>{"a.2.png", "a.3.png", "a.png"}));
  EXPECT_EQ(noted(trash, "a.3.png", "Path"), (captures / "a.png").path());
}

TEST_F(XdgTrashTest, aHundredFilesOfOneNameFindRoom) {
  for (int i = 0; i < 100; ++i) {
    writeFile(captures / "a.png", std::to_string(i));
    EXPECT_EQ(contents(user.put(captures / "a.png")), std::to_string(i));
  }
  EXPECT_EQ(wholeTrash(trash).size(), 100U);
}

// A program that was killed may leave one without the other: neither is overwritten.
TEST_F(XdgTrashTest, aFileWithoutANoteAndANoteWithoutAFileStay) {
  std::filesystem::create_directories((trash / "files").path());
  std::filesystem::create_directories((trash / "info").path());
  writeFile(trash / "files/a.png", "theirs");
  writeFile(trash / "info/a.2.png.trashinfo", "their note");
  std::filesystem::create_directory((trash / "files/a.3.png").path());
  ASSERT_EQ(::symlink("nowhere", (trash / "files/a.4.png").path().c_str()), 0);
  writeFile(captures / "a.png", "mine");
  EXPECT_EQ(user.put(captures / "a.png"), trash / "files/a.5.png");
  EXPECT_EQ(contents(trash / "files/a.png"), "theirs");
  EXPECT_EQ(contents(trash / "info/a.2.png.trashinfo"), "their note");
  EXPECT_EQ(namesIn(trash / "info"), (std::vector<std::string>{"a.2.png.trashinfo", "a.5.png.trashinfo"}));
}

TEST_F(XdgTrashTest, anyNameIsTakenAndComesBack) {
  for (const std::string& name : {std::string(255, 'x'), std::string(251, 'y') + ".png", std::string("\xFF\xFE.png"),
                                  std::string("new\nline.png"), std::string(".hidden"), std::string("100%.png"),
                                  std::string("-rf *"), std::string("a.trashinfo"), std::string("[x]=#?.png")}) {
    writeFile(captures / name, name);
    const FileURL place = user.put(captures / name);
    EXPECT_EQ(contents(place), name);
    EXPECT_EQ(wholeTrash(trash).size(), 1U) << name;
    ASSERT_TRUE(user.files.moveItemAtURL(place, captures / name)) << name;
    EXPECT_EQ(contents(captures / name), name);
    EXPECT_TRUE(wholeTrash(trash).empty()) << name;
  }
}

TEST_F(XdgTrashTest, aFileComesBackAsItWas) {
  const FileURL file = captures / "a.png";
  writeFile(file, "picture");
  ASSERT_EQ(::chmod(file.path().c_str(), 0640), 0);
  ASSERT_EQ(::setxattr(file.path().c_str(), "user.note", "kept", 4, 0), 0);
  const std::array times{timespec{.tv_sec = 1000, .tv_nsec = 5}, timespec{.tv_sec = 2000, .tv_nsec = 7}};
  ASSERT_EQ(::utimensat(AT_FDCWD, file.path().c_str(), times.data(), 0), 0);
  const auto created = user.files.attributesOfItemAtPath(file).value().creationDate;
  ASSERT_TRUE(created);

  ASSERT_TRUE(user.files.moveItemAtURL(user.put(file), file));

  struct stat status {};
  ASSERT_EQ(::stat(file.path().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode, static_cast<mode_t>(S_IFREG | 0640));
  EXPECT_EQ(status.st_mtim.tv_sec, 2000);
  EXPECT_EQ(status.st_mtim.tv_nsec, 7);
  std::array<char, 8> value{};
  EXPECT_EQ(::getxattr(file.path().c_str(), "user.note", value.data(), value.size()), 4);
  EXPECT_EQ(user.files.attributesOfItemAtPath(file).value().creationDate, created);
}

TEST_F(XdgTrashTest, aLinkIsTrashedAndNotWhereItLeads) {
  writeFile(captures / "a.png", "picture");
  ASSERT_EQ(::symlink("a.png", (captures / "link").path().c_str()), 0);
  ASSERT_EQ(::symlink("nowhere", (captures / "broken").path().c_str()), 0);
  EXPECT_TRUE(S_ISLNK(modeOf(user.put(captures / "link"))));
  EXPECT_TRUE(S_ISLNK(modeOf(user.put(captures / "broken"))));
  EXPECT_EQ(contents(captures / "a.png"), "picture");
}

TEST_F(XdgTrashTest, theNoteTellsThePathThatTheUserKnows) {
  writeFile(captures / "a.png", "picture");
  ASSERT_EQ(::symlink("Captures", (folder / "link").path().c_str()), 0);
  (void)user.put(folder / "link/a.png");
  EXPECT_EQ(noted(trash, "a.png", "Path"), folder.url().path() + "/link/a.png");
}

TEST_F(XdgTrashTest, whatCannotBeTrashedIsToldAndNothingIsMade) {
  EXPECT_EQ(user.refusal(captures / "none"),
            "The file “none” could not be moved to the trash: No such file or directory.");
  EXPECT_EQ(user.refusal(captures / "none/none"),
            "The file “none” could not be moved to the trash: No such file or directory.");
  for (const FileURL& odd : {captures / "..", captures / ".", FileURL("/"), FileURL("")}) {
    EXPECT_NE(user.refusal(odd), "(it was)") << odd.path();
  }
  EXPECT_FALSE(exists(folder / "home"));
  EXPECT_TRUE(exists(captures));
}

TEST_F(XdgTrashTest, whatLiesInTheTrashIsNotTrashedAgain) {
  writeFile(captures / "a.png", "picture");
  const FileURL place = user.put(captures / "a.png");
  EXPECT_NE(user.refusal(place), "(it was)");
  ASSERT_EQ(::symlink((trash / "files").path().c_str(), (folder / "link").path().c_str()), 0);
  EXPECT_NE(user.refusal(folder / "link/a.png"), "(it was)");
  EXPECT_EQ(wholeTrash(trash), std::vector<std::string>{"a.png"});
}

TEST_F(XdgTrashTest, theTrashItselfAndWhatHoldsItAreNotTrashed) {
  writeFile(captures / "a.png", "picture");
  (void)user.put(captures / "a.png");
  for (const FileURL& odd : {folder / "home", folder / "home/share", trash}) {
    EXPECT_NE(user.refusal(odd), "(it was)") << odd.path();
    EXPECT_EQ(wholeTrash(trash), std::vector<std::string>{"a.png"});
  }
}

TEST_F(XdgTrashTest, aTrashThatIsALinkIsFollowed) {
  std::filesystem::create_directories((folder / "home/share").path());
  std::filesystem::create_directory((folder / "elsewhere").path());
  ASSERT_EQ(::symlink((folder / "elsewhere").path().c_str(), trash.path().c_str()), 0);
  writeFile(captures / "a.png", "picture");
  EXPECT_EQ(user.put(captures / "a.png"), trash / "files/a.png");
  EXPECT_EQ(wholeTrash(folder / "elsewhere"), std::vector<std::string>{"a.png"});
}

TEST_F(XdgTrashTest, aTrashThatCannotBeMadeIsToldAndTheFileStays) {
  writeFile(captures / "a.png", "picture");
  std::filesystem::create_directories((folder / "home/share").path());
  for (const FileURL& inTheWay : {trash / "info", trash / "files", trash}) {
    std::filesystem::create_directories(inTheWay.parent().path());
    writeFile(inTheWay, "in the way");
    EXPECT_NE(user.refusal(captures / "a.png"), "(it was)");
    EXPECT_EQ(contents(captures / "a.png"), "picture");
    EXPECT_EQ(contents(inTheWay), "in the way");
    std::filesystem::remove_all(trash.path());
  }
}

TEST_F(XdgTrashTest, withoutADataFolderThereIsNoTrash) {
  user.directories.applicationSupport.reset();
  writeFile(captures / "a.png", "picture");
  EXPECT_NE(user.refusal(captures / "a.png"), "(it was)");
  EXPECT_EQ(contents(captures / "a.png"), "picture");
}

TEST_F(XdgTrashTest, aFileThatCouldNotBeMovedOutKeepsItsNote) {
  writeFile(captures / "a.png", "picture");
  const FileURL place = user.put(captures / "a.png");
  writeFile(captures / "a.png", "another");
  EXPECT_FALSE(user.files.moveItemAtURL(place, captures / "a.png"));
  EXPECT_FALSE(user.files.moveItemAtURL(place, captures / "none/a.png"));
  EXPECT_EQ(wholeTrash(trash), std::vector<std::string>{"a.png"});
  EXPECT_EQ(contents(captures / "a.png"), "another");
}

TEST_F(XdgTrashTest, aNoteThatIsGoneIsNotMissed) {
  writeFile(captures / "a.png", "picture");
  const FileURL place = user.put(captures / "a.png");
  ASSERT_EQ(::unlink((trash / "info/a.png.trashinfo").path().c_str()), 0);
  EXPECT_TRUE(user.files.moveItemAtURL(place, captures / "a.png"));
}

TEST_F(XdgTrashTest, onlyANoteGoesWithAFileThatIsMoved) {
  for (const std::string other : {"Documents", "Trash"}) {
    std::filesystem::create_directories((folder / other / "files").path());
    std::filesystem::create_directories((folder / other / "info").path());
    writeFile(folder / other / "files/a", "x");
    writeFile(folder / other / "info/a.trashinfo", "x");
  }
  ASSERT_TRUE(user.files.moveItemAtURL(folder / "Documents/files/a", folder / "b"));
  EXPECT_TRUE(exists(folder / "Documents/info/a.trashinfo"));
  ASSERT_EQ(::unlink((folder / "Trash/info/a.trashinfo").path().c_str()), 0);
  std::filesystem::create_directory((folder / "Trash/info/a.trashinfo").path());
  ASSERT_TRUE(user.files.moveItemAtURL(folder / "Trash/files/a", folder / "c"));
  EXPECT_TRUE(exists(folder / "Trash/info/a.trashinfo"));
}

// Several at a time, as from several programs.
TEST_F(XdgTrashTest, whoTrashesAtTheSameMomentLosesNothing) {
  constexpr int workers = 4;
  constexpr int rounds = 40;
  std::atomic<int> ready = 0;
  std::vector<std::thread> threads;
  std::vector<std::vector<FileURL>> places(workers);
  for (int worker = 0; worker < workers; ++worker) {
    threads.emplace_back([&, worker] {
      const FileURL mine = folder / std::to_string(worker);
      std::filesystem::create_directory(mine.path());
      ++ready;
      while (ready < workers) {
        std::this_thread::yield();
      }
      for (int round = 0; round < rounds; ++round) {
        writeFile(mine / "a.png", std::to_string(worker) + ":" + std::to_string(round));
        places[static_cast<std::size_t>(worker)].push_back(user.put(mine / "a.png"));
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(wholeTrash(trash).size(), static_cast<std::size_t>(workers * rounds));
  for (int worker = 0; worker < workers; ++worker) {
    for (int round = 0; round < rounds; ++round) {
      const FileURL& place = places[static_cast<std::size_t>(worker)][static_cast<std::size_t>(round)];
      EXPECT_EQ(contents(place), std::to_string(worker) + ":" + std::to_string(round));
      EXPECT_EQ(noted(trash, place.lastPathComponent(), "Path"), (folder / std::to_string(worker) / "a.png").path());
    }
  }
}

// A program that pays no heed to the notes and puts files where we are about to.
TEST_F(XdgTrashTest, whatAnotherProgramPutsThereMeanwhileIsNotOverwritten) {
  std::filesystem::create_directories((trash / "files").path());
  constexpr int rounds = 300;
  std::atomic<bool> isOver = false;
  std::atomic<int> round = 0;
  int theirs = 0;
  std::thread other([&] {
    while (!isOver) {
      const std::string name = std::to_string(round) + ".png";
      const UniqueFd fd(::open((trash / "files" / name).path().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
      if (fd) {
        theirs += ::write(fd.get(), "theirs", 6) == 6 ? 1 : 0;
      }
    }
  });
  for (; round < rounds; ++round) {
    writeFile(captures / (std::to_string(round) + ".png"), "mine");
    EXPECT_EQ(contents(user.put(captures / (std::to_string(round) + ".png"))), "mine");
  }
  isOver = true;
  other.join();
  std::map<std::string, int> found;
  for (const std::string& name : namesIn(trash / "files")) {
    ++found[contents(trash / "files" / name)];
  }
  EXPECT_EQ(found["mine"], rounds);
  EXPECT_EQ(found["theirs"], theirs);
  EXPECT_EQ(found.size(), 2U);
  EXPECT_EQ(namesIn(trash / "info").size(), static_cast<std::size_t>(rounds));
}

}  // namespace
}  // namespace quenlio
