// The share menu above a panel, with real keys and the real pointer.
#include <QtCore/QFile>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMessageBox>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/linux/session/MainQueue.h"
#include "desktop/linux/session/QtEventMonitors.h"
#include "desktop/linux/session/QtSharingServicePicker.h"
#include "desktop/linux/system/LinuxClock.h"
#include "desktop/linux/system/LinuxFileManager.h"

#include "tests/desktop/session/Hand.h"
#include "tests/desktop/session/OtherPrograms.h"
#include "tests/desktop/session/QtPanelTest.h"
#include "tests/desktop/system/TemporaryFolder.h"
#include "tests/fakes/FakeDesktop.h"

namespace quenlio {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class QtSharingServicePickerTest : public QtPanelTest {
 protected:
  QtSharingServicePickerTest() {
    directories_.applicationSupport = folder_ / "share";
    process_.variables = {{"PATH", (folder_ / "bin").path()},
                          {"XDG_CONFIG_HOME", (folder_ / "config").path()},
                          {"XDG_DATA_DIRS", (folder_ / "data").path()}};
    for (const char* name : {"bin", "data/applications", "shots", "to"}) {
      std::filesystem::create_directories((folder_ / name).path());
    }
    writeFile(png_, "\x89PNG\r\n\x1a\n the picture");
    writeFile(pdf_, "%PDF-1.7 the document");
    putProgram("viewer", "Viewer & Friends");
    putProgram("reader", "Reader");
    writeFile(folder_ / "data/applications/mimeinfo.cache",
              "[MIME Cache]\nimage/png=viewer.desktop;reader.desktop;\napplication/pdf=reader.desktop;\n");
  }
  void SetUp() override {
    QtPanelTest::SetUp();
    ASSERT_TRUE(show());
  }

  // A program that notes what it is started with, a line each.
  void putTool(const std::string& name) const {
    const FileURL program = folder_ / "bin" / name;
    writeFile(program, "#!/bin/sh\nprintf '%s\\n' \"" + name + "\" \"$@\" >>\"" + log().path() + "\"\n");
    std::filesystem::permissions(program.path(), std::filesystem::perms::owner_all);
  }
  void putProgram(const std::string& name, const std::string& title) const {
    putTool(name);
    writeFile(folder_ / "data/applications" / (name + ".desktop"),
              "[Desktop Entry]\nType=Application\nName=" + title + "\nExec=" + name + " --open %F\n");
  }
  [[nodiscard]] FileURL log() const { return folder_ / "log"; }
  [[nodiscard]] std::string logged() const { return exists(log()) ? contents(log()) : std::string(); }

  void share(const std::vector<FileURL>& items) {
    // The toolkit may hear of the window's place a little later than the display does.
    ASSERT_TRUE(waitUntil([this] {
      const auto windows = windows_.visibleWindows();
      return windows.size() == 1 && windows.front().frame.minX() == corner().minX();
    }));
    const auto windows = windows_.visibleWindows();
    picker_.showRelativeToRect(items, {{100, 50}, {1, 1}}, windows.front().id, RectEdge::minY);
    ASSERT_TRUE(waitUntil([] { return menu() != nullptr && isMapped(static_cast<xcb_window_t>(menu()->winId())); }));
  }
  static QMenu* menu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
  [[nodiscard]] static bool isClosed() {
    return waitUntil([] { return menu() == nullptr; });
  }
  [[nodiscard]] static std::vector<std::string> texts() {
    std::vector<std::string> result;
    for (const QAction* action : menu()->actions()) {
      if (!action->isSeparator()) {
        result.push_back(action->text().toStdString());
      }
    }
    return result;
  }
  static void choose(const char* text) {
    for (const QAction* action : menu()->actions()) {
      if (action->text() == QString::fromUtf8(text)) {
        const QPoint place = menu()->mapToGlobal(menu()->actionGeometry(const_cast<QAction*>(action)).center());
        movePointer(place.x() - 2, place.y());
        movePointer(place.x(), place.y());
        ASSERT_TRUE(outputOf(QStringLiteral("xdotool"), {QStringLiteral("click"), QStringLiteral("1")}));
        return;
      }
    }
    FAIL() << text;
  }
  // The dialog of the kind that is up.
  template <class Dialog>
  static Dialog* shown() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      auto* candidate = qobject_cast<Dialog*>(window);
      if (candidate != nullptr && candidate->isVisible()) {
        return candidate;
      }
    }
    return nullptr;
  }
  template <class Dialog>
  static Dialog* dialog() {
    return waitUntil([] { return shown<Dialog>() != nullptr; }) ? shown<Dialog>() : nullptr;
  }
  static void accept(QDialog& dialog, const FileURL& place) {
    dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
        ->setText(QFile::decodeName(QByteArray::fromStdString(place.path())));
    // accept() is for those who press the button.
    QMetaObject::invokeMethod(&dialog, "accept", Qt::QueuedConnection);
  }

  TemporaryFolder folder_;
  FileURL png_ = folder_ / "shots/one two.png";
  FileURL pdf_ = folder_ / "shots/paper.pdf";
  FakeProcessInfo process_;
  FakeDirectories directories_;
  FakeAppearance appearance_;
  OwnFiles own_;
  LinuxClock clock_;
  LinuxFileManager files_{own_, clock_, directories_};
  MainQueue scheduler_;
  QtEventMonitors monitors_;
  QtWindows windows_;
  ProgramStarter starter_{process_, directories_, windows_};
  QtSharingServicePicker picker_{{.scheduler = scheduler_,
                                  .files = files_,
                                  .windows = windows_,
                                  .appearance = appearance_,
                                  .compositor = compositor_,
                                  .starter = starter_}};
};

TEST_F(QtSharingServicePickerTest, listsThePrograms) {
  share({png_});
  EXPECT_THAT(texts(), ElementsAre("Viewer && Friends", "Reader", "Copy Path", "Save a Copy…"));
}

TEST_F(QtSharingServicePickerTest, listsWhatOpensAllOfSeveralFiles) {
  share({png_, pdf_});
  EXPECT_THAT(texts(), ElementsAre("Reader", "Copy Paths", "Save Copies…"));
}

TEST_F(QtSharingServicePickerTest, startsAProgramWithAllFiles) {
  share({png_, pdf_});
  choose("Reader");
  EXPECT_TRUE(waitUntil([this] { return logged().ends_with(pdf_.path() + "\n"); })) << logged();
  EXPECT_EQ(logged(), "reader\n--open\n" + png_.path() + "\n" + pdf_.path() + "\n");
  EXPECT_TRUE(isClosed());
}

TEST_F(QtSharingServicePickerTest, standsWhereItIsAskedForAndOffTheScreensEdges) {
  share({png_});
  // The point lies 50 above the panel's lower edge, too low for the menu to hang from it.
  const QRect frame = menu()->frameGeometry();
  EXPECT_TRUE(QRect(8, 8, 1264, 784).contains(frame));
  EXPECT_EQ(frame.left(), std::min(kLeft + 100, 1280 - 8 - frame.width()));
}

TEST_F(QtSharingServicePickerTest, listensToKeysWhereverTheKeyboardIs) {
  OtherProgram other;
  ASSERT_TRUE(other.showAndTakeKeyboard({100, 100, 300, 200}));
  std::vector<KeyEvent> heard;
  const Subscription monitor = monitors_.addLocalMonitorForKeyDown([&heard](const KeyEvent& key) {
    heard.push_back(key);
    return true;
  });
  share({png_});
  for (const char* key : {"Down", "Down", "Return"}) {
    ASSERT_TRUE(outputOf(QStringLiteral("xdotool"), {QStringLiteral("key"), QString::fromLatin1(key)}));
  }
  EXPECT_TRUE(waitUntil([this] { return logged() == "reader\n--open\n" + png_.path() + "\n"; })) << logged();
  EXPECT_THAT(heard, IsEmpty()) << "no shortcut of the program's own";
  EXPECT_TRUE(isClosed());
}

TEST_F(QtSharingServicePickerTest, closesOnEscapeAndDoesNothing) {
  share({png_});
  ASSERT_TRUE(outputOf(QStringLiteral("xdotool"), {QStringLiteral("key"), QStringLiteral("Escape")}));
  EXPECT_TRUE(isClosed());
  EXPECT_EQ(logged(), "");
}

TEST_F(QtSharingServicePickerTest, closesOnAPressBesideIt) {
  share({png_});
  movePointer(300, 300);
  ASSERT_TRUE(outputOf(QStringLiteral("xdotool"), {QStringLiteral("click"), QStringLiteral("1")}));
  EXPECT_TRUE(isClosed());
}

TEST_F(QtSharingServicePickerTest, staysAndWorksWhenThePanelHides) {
  share({png_});
  panel_.orderOut();
  ASSERT_TRUE(waitUntil([this] { return !isMapped(id()); }));
  ASSERT_NE(menu(), nullptr);
  choose("Reader");
  EXPECT_TRUE(waitUntil([this] { return !logged().empty(); }));
}

TEST_F(QtSharingServicePickerTest, isNotShownWithoutItsWindow) {
  picker_.showRelativeToRect({png_}, {{0, 0}, {1, 1}}, 12345, RectEdge::minY);
  EXPECT_EQ(menu(), nullptr);
  picker_.showRelativeToRect({}, {{0, 0}, {1, 1}}, windows_.visibleWindows().front().id, RectEdge::minY);
  EXPECT_EQ(menu(), nullptr);
}

TEST_F(QtSharingServicePickerTest, attachesTheFilesToALetter) {
  putTool("xdg-email");
  share({png_, pdf_});
  choose("E-mail…");
  const std::string expected = "xdg-email\n--attach\n" + png_.path() + "\n--attach\n" + pdf_.path() + "\n";
  EXPECT_TRUE(waitUntil([&] { return logged() == expected; })) << logged();
}

TEST_F(QtSharingServicePickerTest, copiesThePaths) {
  share({png_, pdf_});
  choose("Copy Paths");
  ASSERT_TRUE(isClosed());
  EXPECT_EQ(pasted("UTF8_STRING"), QByteArray::fromStdString(png_.path() + "\n" + pdf_.path()));
  QGuiApplication::clipboard()->clear();
}

TEST_F(QtSharingServicePickerTest, savesACopyUnderAName) {
  share({png_});
  choose("Save a Copy…");
  auto* dialog = QtSharingServicePickerTest::dialog<QFileDialog>();
  ASSERT_NE(dialog, nullptr);
  accept(*dialog, folder_ / "to/copy.png");
  EXPECT_TRUE(waitUntil([this] { return exists(folder_ / "to/copy.png"); }));
  EXPECT_EQ(contents(folder_ / "to/copy.png"), contents(png_));
}

TEST_F(QtSharingServicePickerTest, replacesOnlyAfterTheDialogHasAsked) {
  writeFile(folder_ / "to/copy.png", "what was there");
  for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
    share({png_});
    choose("Save a Copy…");
    auto* dialog = QtSharingServicePickerTest::dialog<QFileDialog>();
    ASSERT_NE(dialog, nullptr);
    Hand::perform([&] {
      Hand::has([&] { accept(*dialog, folder_ / "to/copy.png"); });
      EXPECT_TRUE(Hand::waitsFor([] { return shown<QMessageBox>() != nullptr; }));
      EXPECT_EQ(contents(folder_ / "to/copy.png"), "what was there");
      Hand::has(
          [answer] { QMetaObject::invokeMethod(shown<QMessageBox>()->button(answer), "click", Qt::QueuedConnection); });
      EXPECT_TRUE(Hand::waitsFor([] { return shown<QMessageBox>() == nullptr; }));
    });
    if (answer == QMessageBox::No) {
      EXPECT_EQ(contents(folder_ / "to/copy.png"), "what was there");
      dialog->reject();
    }
  }
  EXPECT_TRUE(waitUntil([this] { return contents(folder_ / "to/copy.png") == contents(png_); }));
  EXPECT_EQ(entryCount(folder_ / "to"), 1U);
}

TEST_F(QtSharingServicePickerTest, savesSeveralCopiesUnderFreeNames) {
  writeFile(folder_ / "to/one two.png", "what was there");
  share({png_, pdf_});
  choose("Save Copies…");
  auto* dialog = QtSharingServicePickerTest::dialog<QFileDialog>();
  ASSERT_NE(dialog, nullptr);
  accept(*dialog, folder_ / "to");
  EXPECT_TRUE(waitUntil([this] { return exists(folder_ / "to/paper.pdf"); }));
  EXPECT_EQ(contents(folder_ / "to/one two.png"), "what was there");
  EXPECT_EQ(contents(folder_ / "to/one two 2.png"), contents(png_));
  EXPECT_EQ(contents(folder_ / "to/paper.pdf"), contents(pdf_));
}

TEST_F(QtSharingServicePickerTest, tellsWhenACopyCannotBeMade) {
  share({png_});
  choose("Save a Copy…");
  auto* dialog = QtSharingServicePickerTest::dialog<QFileDialog>();
  ASSERT_NE(dialog, nullptr);
  std::filesystem::remove(png_.path());
  accept(*dialog, folder_ / "to/copy.png");
  auto* message = QtSharingServicePickerTest::dialog<QMessageBox>();
  ASSERT_NE(message, nullptr);
  EXPECT_TRUE(message->text().contains(QStringLiteral("one two.png"))) << message->text().toStdString();
  message->close();
}

}  // namespace
}  // namespace quenlio
