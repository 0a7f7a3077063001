// What every preview window does for who opens it on a list, and for the person in front of it.
#include <QtGui/QPalette>
#include <QtWidgets/QApplication>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <vector>

#include "desktop/linux/session/MainQueue.h"
#include "desktop/linux/session/QtAppearance.h"
#include "desktop/linux/session/QtPanel.h"
#include "desktop/linux/session/QtWindows.h"
#include "desktop/views/preview/QtPreviewPanel.h"

#include "tests/desktop/session/Desk.h"
#include "tests/fakes/FakeHandOut.h"

namespace quenlio {
namespace {

struct FakePreviews {
  CallLog log;
  FakePreviewPanel panel{log};
  [[nodiscard]] std::optional<FileURL> shown() const { return panel.shownFile(); }
  static bool waitFor(const std::function<bool()>& condition) { return condition(); }
};

// Opens nothing: every file is a small picture.
struct RealPreviews {
  RealPreviews() { movePointer(5, 5); }

  // The file that the user reads the name of.
  [[nodiscard]] std::optional<FileURL> shown() const {
    for (const QWidget* window : QApplication::topLevelWidgets()) {
      if (window->objectName() == QLatin1String(PreviewWindow::kObjectName) && window->isVisible()) {
        return FileURL("/home/user/Desktop").appending(window->windowTitle().toStdString());
      }
    }
    return std::nullopt;
  }
  static bool waitFor(const std::function<bool()>& condition) { return waitUntil(condition); }

  UserIntent intent;
  CompositorWatch compositor;
  QtAppearance appearance;
  QtWindows windows;
  MainQueue queue;
  QtPreviewPanel panel{
      {.scheduler = queue,
       .compositor = compositor,
       .appearance = appearance,
       .windows = windows,
       .pictures = {.pointSize = [](const FileURL&) { return std::optional(QSizeF(400, 300)); },
                    .decode = [](const FileURL&, QSize, bool, const std::stop_token&) -> std::optional<DecodedImage> {
                      QImage image(400, 300, QImage::Format_ARGB32_Premultiplied);
                      image.fill(Qt::blue);
                      return DecodedImage{image, QSizeF(400, 300)};
                    }}}};
};

template <class Kind>
class PreviewPanelContract : public testing::Test, private PreviewPanelDataSource {
 protected:
  PreviewPanelContract() {
    for (const char* name : {"a.png", "b.png", "c.png"}) {
      files.push_back(FileURL("/home/user/Desktop").appending(name));
    }
  }
  PreviewPanel& panel() { return kind.panel; }
  void open(std::size_t index) {
    ASSERT_TRUE(panel().sharedPreviewPanel());
    panel().setDataSource(*this);
    panel().makeKeyAndOrderFront();
    panel().setCurrentPreviewItemIndex(index);
    panel().reloadData();
  }
  void sync(std::size_t index) {
    panel().setDataSource(*this);
    panel().reloadData();
    panel().setCurrentPreviewItemIndex(index);
  }
  [[nodiscard]] bool comesToShow(const std::optional<FileURL>& file) {
    return kind.waitFor([&] { return kind.shown() == file; });
  }

  std::vector<FileURL> files;
  Kind kind;

 private:
  [[nodiscard]] std::size_t numberOfPreviewItems() const override { return files.size(); }
  [[nodiscard]] FileURL previewItemAtIndex(std::size_t index) const override { return files.at(index); }
};

using Kinds = testing::Types<FakePreviews, RealPreviews>;
TYPED_TEST_SUITE(PreviewPanelContract, Kinds);

TYPED_TEST(PreviewPanelContract, existsOnceItHasBeenAskedFor) {
  EXPECT_FALSE(this->panel().sharedPreviewPanelExists());
  EXPECT_FALSE(this->panel().isVisible());
  EXPECT_TRUE(this->panel().sharedPreviewPanel());
  EXPECT_TRUE(this->panel().sharedPreviewPanelExists());
  EXPECT_FALSE(this->panel().isVisible());
}

TYPED_TEST(PreviewPanelContract, isVisibleFromOrderingFrontToOrderingOut) {
  this->open(0);
  EXPECT_TRUE(this->panel().isVisible());
  this->panel().orderOut();
  EXPECT_FALSE(this->panel().isVisible());
  this->panel().orderOut();
  EXPECT_FALSE(this->panel().isVisible());
  EXPECT_TRUE(this->panel().sharedPreviewPanelExists());
  EXPECT_TRUE(this->comesToShow(std::nullopt));
}

TYPED_TEST(PreviewPanelContract, showsTheItemOfTheList) {
  this->open(1);
  EXPECT_TRUE(this->comesToShow(this->files[1]));
}

TYPED_TEST(PreviewPanelContract, followsWhatIsChosenFromAnotherList) {
  this->open(1);
  ASSERT_TRUE(this->comesToShow(this->files[1]));
  this->sync(2);
  EXPECT_TRUE(this->comesToShow(this->files[2]));
  this->files.erase(this->files.begin());
  this->sync(0);
  EXPECT_TRUE(this->comesToShow(this->files[0]));
}

TYPED_TEST(PreviewPanelContract, whatIsChosenWhileItIsNotShownOpensNothing) {
  ASSERT_TRUE(this->panel().sharedPreviewPanel());
  this->sync(1);
  EXPECT_FALSE(this->panel().isVisible());
  this->open(0);
  EXPECT_TRUE(this->comesToShow(this->files[0]));
}

TYPED_TEST(PreviewPanelContract, opensAgainAfterItWasClosed) {
  this->open(1);
  ASSERT_TRUE(this->comesToShow(this->files[1]));
  this->panel().orderOut();
  this->open(2);
  EXPECT_TRUE(this->panel().isVisible());
  EXPECT_TRUE(this->comesToShow(this->files[2]));
}

TYPED_TEST(PreviewPanelContract, whatIsPreparedIsNotSeenUntilItIsOpened) {
  ASSERT_TRUE(this->panel().sharedPreviewPanel());
  this->panel().prepareItem(this->files[1]);
  EXPECT_FALSE(this->panel().isVisible());
  EXPECT_TRUE(this->comesToShow(std::nullopt));
  this->open(1);
  EXPECT_TRUE(this->panel().isVisible());
  EXPECT_TRUE(this->comesToShow(this->files[1]));
}

TYPED_TEST(PreviewPanelContract, whatWasDroppedOrIsNotWhatIsOpenedDoesNoHarm) {
  ASSERT_TRUE(this->panel().sharedPreviewPanel());
  this->panel().dropPreparedItem();
  this->panel().prepareItem(this->files[1]);
  this->panel().dropPreparedItem();
  EXPECT_FALSE(this->panel().isVisible());
  this->panel().prepareItem(this->files[1]);
  this->open(2);
  EXPECT_TRUE(this->comesToShow(this->files[2]));
}

TYPED_TEST(PreviewPanelContract, preparingChangesNothingWhileItIsShown) {
  this->open(0);
  ASSERT_TRUE(this->comesToShow(this->files[0]));
  this->panel().prepareItem(this->files[2]);
  this->panel().dropPreparedItem();
  EXPECT_TRUE(this->panel().isVisible());
  EXPECT_TRUE(this->comesToShow(this->files[0]));
}

// With the keyboard, a pointer and a window manager.
class PreviewOnTheDesktop : public PreviewPanelContract<RealPreviews> {
 protected:
  [[nodiscard]] bool openAndTakeKeyboard(std::size_t index) {
    open(index);
    return comesToShow(files[index]) && waitUntil([] {
             const QWidget* active = QApplication::activeWindow();
             return active != nullptr && active->objectName() == QLatin1String(PreviewWindow::kObjectName);
           });
  }
};

TEST_F(PreviewOnTheDesktop, takesTheKeyboardFromAnotherProgramAndStepsWithIt) {
  OtherProgram other;
  ASSERT_TRUE(other.showAndTakeKeyboard({100, 100, 300, 200}));
  ASSERT_TRUE(openAndTakeKeyboard(0));
  pressKeys(QStringLiteral("Right"));
  EXPECT_TRUE(comesToShow(files[1]));
  pressKeys(QStringLiteral("End"));
  EXPECT_TRUE(comesToShow(files[2]));
  pressKeys(QStringLiteral("space"));
  EXPECT_TRUE(comesToShow(std::nullopt));
  EXPECT_FALSE(panel().isVisible());
  EXPECT_TRUE(waitUntil([&other] { return focusedWindow() == other.window(); })) << "the keyboard goes back";
}

TEST_F(PreviewOnTheDesktop, standsInTheMiddleOfTheScreenOfThePointer) {
  const TwoMonitors monitors;
  movePointer(700, 400);
  ASSERT_TRUE(openAndTakeKeyboard(0));
  const QWidget* window = QApplication::activeWindow();
  EXPECT_TRUE(waitUntil([window] { return window->geometry().center().x() > 640; }));
  EXPECT_LE(std::abs(window->geometry().center().x() - 960), 2);
}

TEST_F(PreviewOnTheDesktop, comesAboveAnotherProgramAndStaysBelowTheIsland) {
  OtherProgram other;
  ASSERT_TRUE(other.showAndTakeKeyboard({100, 100, 1000, 600}));
  QtPanel island({{20, 20}, {80, 80}}, kind.intent, kind.compositor);
  auto content = std::make_unique<QWidget>();
  content->setPalette(QPalette(Qt::red));
  content->setAutoFillBackground(true);
  island.setContentView(std::move(content));
  island.orderFrontRegardless();
  const auto isRedAt = [](int x, int y) { return screenPixel(x, y) == QColor(Qt::red); };
  ASSERT_TRUE(waitUntil([&] { return isRedAt(60, 800 - 60); }));
  ASSERT_TRUE(openAndTakeKeyboard(0));
  EXPECT_TRUE(waitUntil([] { return screenPixel(560, 400) == QColor(Qt::blue); }));
  // Its own way is out from under the island, but the island can be moved.
  island.setFrameOrigin({700, 300});
  EXPECT_TRUE(waitUntil([&] { return isRedAt(740, 800 - 340); }));
  EXPECT_EQ(screenPixel(560, 400), QColor(Qt::blue));
}

TEST_F(PreviewOnTheDesktop, givesTheKeyboardBackToTheIsland) {
  QtPanel island({{20, 20}, {80, 80}}, kind.intent, kind.compositor);
  island.setContentView(std::make_unique<QWidget>());
  kind.intent.note();
  island.makeKeyAndOrderFront();
  const auto islandHasKeyboard = [&island] {
    return focusedWindow() == static_cast<xcb_window_t>(island.window().winId());
  };
  ASSERT_TRUE(waitUntil(islandHasKeyboard));
  ASSERT_TRUE(openAndTakeKeyboard(0));
  pressKeys(QStringLiteral("Escape"));
  EXPECT_TRUE(comesToShow(std::nullopt));
  EXPECT_TRUE(waitUntil(islandHasKeyboard));
}

TEST_F(PreviewOnTheDesktop, whoClosesItFromWithoutHasOrderedItOut) {
  OtherProgram other;
  ASSERT_TRUE(openAndTakeKeyboard(0));
  other.askToClose(static_cast<xcb_window_t>(QApplication::activeWindow()->winId()));
  EXPECT_TRUE(waitUntil([this] { return !panel().isVisible(); }));
  EXPECT_TRUE(comesToShow(std::nullopt));
}

}  // namespace
}  // namespace quenlio
