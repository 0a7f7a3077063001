// Files shown in a file manager that answers on the session bus, and folders opened where none does.
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusVirtualObject>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/linux/session/QtWorkspace.h"

#include "tests/desktop/WaitUntil.h"
#include "tests/desktop/system/TemporaryFolder.h"
#include "tests/fakes/FakeDesktop.h"

namespace quenlio {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

// A file manager on a connection of its own, which may not know the operation.
class FakeFileManager final : public QDBusVirtualObject {
 public:
  FakeFileManager() {
    bus_.registerVirtualObject(QStringLiteral("/org/freedesktop/FileManager1"), this);
    bus_.registerService(QStringLiteral("org.freedesktop.FileManager1"));
  }
  ~FakeFileManager() override {
    bus_.unregisterService(QStringLiteral("org.freedesktop.FileManager1"));
    bus_.unregisterObject(QStringLiteral("/org/freedesktop/FileManager1"));
  }
  std::vector<QStringList> shown;
  QString startupID;
  bool canShow = true;

 private:
  [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (!canShow || message.member() != QStringLiteral("ShowItems")) {
      return false;
    }
    shown.push_back(message.arguments().value(0).toStringList());
    startupID = message.arguments().value(1).toString();
    connection.send(message.createReply());
    return true;
  }

  QDBusConnection bus_ = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("file manager"));
};

class QtWorkspaceTest : public testing::Test {
 protected:
  QtWorkspaceTest() {
    directories_.applicationSupport = folder_ / "share";
    process_.variables = {{"PATH", (folder_ / "bin").path()},
                          {"XDG_CONFIG_HOME", (folder_ / "config").path()},
                          {"XDG_DATA_DIRS", (folder_ / "data").path()}};
    for (const char* name : {"bin", "config", "data/applications"}) {
      std::filesystem::create_directories((folder_ / name).path());
    }
  }
  // A program that notes what it is started with, a line each.
  void putOpener(const char* name) {
    const FileURL program = folder_ / "bin" / name;
    writeFile(program,
              "#!/bin/sh\nprintf '%s\\n' \"$DESKTOP_STARTUP_ID\" \"$@\" >>\"" + (folder_ / "log").path() + "\"\n");
    std::filesystem::permissions(program.path(), std::filesystem::perms::owner_all);
  }
  // What has been opened by now, without the lines that tell the window manager who asked.
  [[nodiscard]] std::vector<std::string> opened() const {
    std::vector<std::string> lines;
    std::ifstream log((folder_ / "log").path());
    for (std::string line; std::getline(log, line);) {
      if (!line.starts_with("quenlio-")) {
        lines.push_back(line);
      }
    }
    return lines;
  }

  TemporaryFolder folder_;
  FakeProcessInfo process_;
  FakeDirectories directories_;
  QtWindows windows_;
  ProgramStarter starter_{process_, directories_, windows_};
  FakeSystemLog log_;
  QtWorkspace workspace_{starter_, log_};
};

TEST_F(QtWorkspaceTest, asksTheFileManagerOnceForAllFiles) {
  FakeFileManager manager;
  putOpener("xdg-open");
  workspace_.activateFileViewerSelectingURLs({FileURL("/a b/.\n\xff.png"), FileURL("/c/d.png")});
  EXPECT_THAT(manager.shown, IsEmpty());  // nobody is waited for
  ASSERT_TRUE(waitUntil([&manager] { return !manager.shown.empty(); }));
  EXPECT_THAT(manager.shown,
              ElementsAre(QStringList{QStringLiteral("file:///a%20b/.%0A%FF.png"), QStringLiteral("file:///c/d.png")}));
  EXPECT_TRUE(manager.startupID.contains(QStringLiteral("_TIME"))) << manager.startupID.toStdString();
  EXPECT_THAT(opened(), IsEmpty());
}

TEST_F(QtWorkspaceTest, opensEachFolderOnceWithoutAFileManagerOnTheBus) {
  putOpener("xdg-open");
  workspace_.activateFileViewerSelectingURLs({FileURL("/a b/1.png"), FileURL("/a b/2.png"), FileURL("/c/d.png")});
  EXPECT_TRUE(waitUntil([this] { return opened().size() == 2; }));
  EXPECT_THAT(opened(), UnorderedElementsAre("/a b", "/c"));
}

TEST_F(QtWorkspaceTest, opensTheFolderWhenTheFileManagerCannotShowIt) {
  FakeFileManager manager;
  manager.canShow = false;
  putOpener("xdg-open");
  workspace_.activateFileViewerSelectingURLs({FileURL("/a/1.png")});
  EXPECT_TRUE(waitUntil([this] { return !opened().empty(); }));
  EXPECT_THAT(opened(), ElementsAre("/a"));
}

TEST_F(QtWorkspaceTest, opensTheFolderWithTheProgramForFolders) {
  putOpener("files");
  writeFile(folder_ / "data/applications/files.desktop",
            "[Desktop Entry]\nType=Application\nName=Files\nExec=files --folder %u\n");
  writeFile(folder_ / "data/applications/mimeinfo.cache", "[MIME Cache]\ninode/directory=files.desktop;\n");
  workspace_.activateFileViewerSelectingURLs({FileURL("/a b/1.png")});
  EXPECT_TRUE(waitUntil([this] { return opened().size() == 2; }));
  EXPECT_THAT(opened(), ElementsAre("--folder", "file:///a%20b"));
}

TEST_F(QtWorkspaceTest, opensTheFolderWithTheProgramForFoldersWhenTheOpenerDoesNotStart) {
  writeFile(folder_ / "bin/xdg-open", "#!/nowhere/at/all\n");
  std::filesystem::permissions((folder_ / "bin/xdg-open").path(), std::filesystem::perms::owner_all);
  putOpener("files");
  writeFile(folder_ / "data/applications/files.desktop",
            "[Desktop Entry]\nType=Application\nName=Files\nExec=files %f\n");
  writeFile(folder_ / "data/applications/mimeinfo.cache", "[MIME Cache]\ninode/directory=files.desktop;\n");
  workspace_.activateFileViewerSelectingURLs({FileURL("/a/1.png")});
  EXPECT_TRUE(waitUntil([this] { return !opened().empty(); }));
  EXPECT_THAT(opened(), ElementsAre("/a"));
  EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(QtWorkspaceTest, logsWhatItCannotOpen) {
  workspace_.activateFileViewerSelectingURLs({});
  workspace_.activateFileViewerSelectingURLs({FileURL("/a b/1.png"), FileURL("/a b/2.png")});
  EXPECT_TRUE(waitUntil([this] { return !log_.lines.empty(); }));
  EXPECT_THAT(log_.lines, ElementsAre("Failed to show files: no program opens the folder “a b”."));
  EXPECT_THAT(opened(), IsEmpty());
}

}  // namespace
}  // namespace quenlio
