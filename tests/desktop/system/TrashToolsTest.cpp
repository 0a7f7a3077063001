// What the desktop's other programs see of the trash: trash-list and trash-restore of trash-cli, and gio with the trash
// of gvfs, as an ordinary user with a home of its own.
#include <chrono>

#include "desktop/linux/system/ChildProcess.h"

#include "tests/desktop/system/PrivateMounts.h"
#include "tests/desktop/system/TrashTest.h"

namespace quenlio {
namespace {

constexpr std::chrono::seconds kToolDeadline{30};

class TrashToolsTest : public testing::Test {
 protected:
  TrashToolsTest() {
    check(::chmod(folder.url().path().c_str(), 0755) == 0, folder.url().path());
    for (const FileURL& made : {home, home / ".local", home / ".local/share", captures}) {
      makeOrdinaryFolder(made);
    }
    makeOrdinaryFolder(runtime, 0700);
  }

  void atHome(const std::function<void(TrashUser&)>& body) {
    withPrivateMounts([] {}, [&] { asUser(body); });
  }
  void withDisk(const std::function<void(TrashUser&)>& body) {
    withPrivateMounts([&] { mountMemory(disk); }, [&] { asUser(body); });
  }
  void asUser(const std::function<void(TrashUser&)>& body) {
    TrashUser user(data);
    body(user);
  }
  // What the tool prints when it is run in this user's home and told this.
  std::string run(std::vector<std::string> tool, const std::string& told = "") {
    std::vector<std::string> command{"env",
                                     "-i",
                                     "--chdir=" + captures.path(),
                                     "PATH=/usr/bin:/bin",
                                     "LANG=C.UTF-8",
                                     "HOME=" + home.path(),
                                     "XDG_RUNTIME_DIR=" + runtime.path()};
    command.insert(command.end(), tool.begin(), tool.end());
    writeFile(runtime / "told", told);
    const UniqueFd input(::open((runtime / "told").path().c_str(), O_RDONLY | O_CLOEXEC));
    auto process = ChildProcess::start(std::move(command), input.get());
    const auto deadline = std::chrono::steady_clock::now() + kToolDeadline;
    const auto printed = process ? process->readToEnd(1 << 20, deadline) : std::nullopt;
    EXPECT_TRUE(printed) << tool.front();
    return printed.value_or("");
  }
  std::string trashList() { return run({"trash-list"}); }
  std::string gioList() { return run({"dbus-run-session", "--", "gio", "trash", "--list"}); }

  TemporaryFolder folder;
  FileURL home = folder / "home";
  FileURL captures = home / "Captures";
  FileURL runtime = folder / "runtime";
  FileURL data = home / ".local/share";
  FileURL disk = folder / "disk";
};

bool hasLine(const std::string& text, const std::string& end) {
  return (text + "\n").find(end + "\n") != std::string::npos;
}

TEST_F(TrashToolsTest, aFileIsListedWithTheDateAndThePlaceWhereItWas) {
  atHome([&](TrashUser& user) {
    EXPECT_EQ(trashList(), "");
    writeFile(captures / "a ä 100%.png", "picture");
    (void)user.put(captures / "a ä 100%.png");
    const std::string date = noted(user.trash(), "a ä 100%.png", "DeletionDate");
    const std::string listed = trashList();
    EXPECT_EQ(listed, date.substr(0, 10) + " " + date.substr(11) + " " + (captures / "a ä 100%.png").path() + "\n");
    // gio writes escapes for what is not plain.
    const std::string told = gioList();
    EXPECT_TRUE(hasLine(told, "\t" + (captures / "a \\xc3\\xa4 100%.png").path())) << told;
  });
}

TEST_F(TrashToolsTest, anotherProgramBringsAFileBack) {
  atHome([&](TrashUser& user) {
    for (const std::string& name : {std::string("a.png"), std::string(251, 'y') + ".png", std::string("[x] #?.png"),
                                    std::string("new\nline.png")}) {
      writeFile(captures / name, name);
      (void)user.put(captures / name);
      ASSERT_FALSE(exists(captures / name));
      (void)run({"trash-restore"}, "0\n");
      ASSERT_TRUE(exists(captures / name)) << name;
      EXPECT_EQ(contents(captures / name), name);
      EXPECT_TRUE(wholeTrash(user.trash()).empty());
    }
  });
}

TEST_F(TrashToolsTest, theDesktopBringsAFileBack) {
  atHome([&](TrashUser& user) {
    for (const std::string& name :
         {std::string("a.png"), std::string("a b 100%.png"), std::string(251, 'y') + ".png"}) {
      writeFile(captures / name, name);
      const FileURL place = user.put(captures / name);
      // By the way that the desktop's file manager takes.
      const std::string listed = gioList();
      const std::string uri = listed.substr(0, listed.find('\t'));
      ASSERT_TRUE(uri.starts_with("trash:///")) << listed;
      (void)run({"dbus-run-session", "--", "gio", "trash", "--restore", uri});
      ASSERT_TRUE(exists(captures / name)) << uri;
      EXPECT_EQ(contents(captures / name), name);
      EXPECT_FALSE(exists(place));
      EXPECT_TRUE(wholeTrash(user.trash()).empty());
    }
  });
}

TEST_F(TrashToolsTest, nobodyListsAFileThatWeHaveBroughtBack) {
  atHome([&](TrashUser& user) {
    writeFile(captures / "a.png", "a");
    writeFile(captures / "b.png", "b");
    const FileURL a = user.put(captures / "a.png");
    (void)user.put(captures / "b.png");
    ASSERT_TRUE(user.files.moveItemAtURL(a, captures / "a.png"));
    EXPECT_FALSE(hasLine(trashList(), (captures / "a.png").path()));
    EXPECT_TRUE(hasLine(trashList(), (captures / "b.png").path()));
    const std::string told = gioList();
    EXPECT_FALSE(hasLine(told, "\t" + (captures / "a.png").path())) << told;
    EXPECT_TRUE(hasLine(told, "\t" + (captures / "b.png").path())) << told;
  });
}

// Both tools and we put files of one name there.
TEST_F(TrashToolsTest, filesOfOneNameAreKeptApartWhoeverPutsThemThere) {
  atHome([&](TrashUser& user) {
    for (int round = 0; round < 2; ++round) {
      writeFile(captures / "a.png", "trash-put " + std::to_string(round));
      (void)run({"trash-put", "a.png"});
      writeFile(captures / "a.png", "gio " + std::to_string(round));
      (void)run({"gio", "trash", "a.png"});
      writeFile(captures / "a.png", "we " + std::to_string(round));
      EXPECT_EQ(contents(user.put(captures / "a.png")), "we " + std::to_string(round));
    }
    std::vector<std::string> found;
    for (const std::string& name : wholeTrash(user.trash())) {
      found.push_back(contents(user.trash() / "files" / name));
    }
    std::ranges::sort(found);
    EXPECT_EQ(found, (std::vector<std::string>{"gio 0", "gio 1", "trash-put 0", "trash-put 1", "we 0", "we 1"}));
  });
}

TEST_F(TrashToolsTest, aFileOnAnotherFileSystemIsListedAndBroughtBack) {
  for (const bool isForAll : {true, false}) {
    withDisk([&](TrashUser& user) {
      if (isForAll) {
        makeOrdinaryFolder(disk / ".Trash");
        check(::chmod((disk / ".Trash").path().c_str(), 01777) == 0, "sticky");
      }
      const FileURL file = disk / "in/a b.png";
      std::filesystem::create_directory(file.parent().path());
      writeFile(file, "picture");
      (void)user.put(file);
      const std::string listed = trashList();
      EXPECT_TRUE(listed.ends_with(" " + file.path() + "\n")) << listed;
      (void)run({"trash-restore", disk.path()}, "0\n");
      ASSERT_TRUE(exists(file));
      EXPECT_EQ(contents(file), "picture");
      EXPECT_EQ(trashList(), "");

      const FileURL place = user.put(file);
      ASSERT_TRUE(user.files.moveItemAtURL(place, file));
      EXPECT_EQ(trashList(), "");
      EXPECT_TRUE(wholeTrash(place.parent().parent()).empty());
    });
  }
}

TEST_F(TrashToolsTest, aFileThatWasCopiedHomeIsListedAndBroughtBack) {
  withPrivateMounts(
      [&] {
        mountMemory(disk);
        makeOrdinaryFolder(disk / "in");
        check(::chmod(disk.path().c_str(), 0555) == 0, "a top that is not written to");
      },
      [&] {
        TrashUser user(data);
        writeFile(disk / "in/a.png", "picture");
        EXPECT_EQ(user.put(disk / "in/a.png"), user.trash() / "files/a.png");
        const std::string told = gioList();
        EXPECT_TRUE(hasLine(told, "\t" + (disk / "in/a.png").path())) << told;
        (void)run({"trash-restore", disk.path()}, "0\n");
        ASSERT_TRUE(exists(disk / "in/a.png"));
        EXPECT_EQ(contents(disk / "in/a.png"), "picture");
        EXPECT_TRUE(wholeTrash(user.trash()).empty());
      });
}

}  // namespace
}  // namespace quenlio
