// The application's windows and the pointer's events, as the real display has them.
#include <QtWidgets/QMenu>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/linux/session/QtWindows.h"

#include "tests/desktop/session/OtherPrograms.h"
#include "tests/desktop/session/QtPanelTest.h"

namespace quenlio {
namespace {

using testing::ElementsAre;

// Keeps what is told of the event that it is just handling.
class AskingView final : public QWidget {
 public:
  explicit AskingView(const Windows& windows) : windows_(windows) {}
  std::vector<PointerEvent> told;

 private:
  void note() {
    if (const auto event = windows_.currentEvent()) {
      told.push_back(*event);
    }
  }
  void mousePressEvent(QMouseEvent* /*event*/) override { note(); }
  void mouseMoveEvent(QMouseEvent* /*event*/) override { note(); }

  const Windows& windows_;
};

class QtWindowsTest : public QtPanelTest {
 protected:
  [[nodiscard]] std::optional<WindowInfo> infoOf(const QWidget& widget) const {
    for (const WindowInfo& info : windows_.visibleWindows()) {
      if (info.id == widget.winId()) {
        return info;
      }
    }
    return std::nullopt;
  }
  static bool isShown(const QWidget& widget) { return isMapped(static_cast<xcb_window_t>(widget.winId())); }
  static void xdotool(const QStringList& arguments) { ASSERT_TRUE(outputOf(QStringLiteral("xdotool"), arguments)); }

  QtWindows windows_;
};

TEST_F(QtWindowsTest, areThoseThatAreShownInTheOrderInWhichTheyCameToBe) {
  EXPECT_TRUE(windows_.visibleWindows().empty());
  QWidget first;
  QWidget second;
  second.resize(200, 100);
  first.resize(200, 100);
  first.winId();
  second.winId();
  second.show();
  first.show();
  ASSERT_TRUE(waitUntil([&] { return isShown(first) && isShown(second); }));
  ASSERT_TRUE(show());
  std::vector<WindowID> ids;
  for (const WindowInfo& info : windows_.visibleWindows()) {
    ids.push_back(info.id);
  }
  EXPECT_THAT(ids, ElementsAre(panel_.window().winId(), first.winId(), second.winId()));
  first.hide();
  EXPECT_EQ(windows_.visibleWindows().size(), 2U);
}

TEST_F(QtWindowsTest, aPanelStandsWhereItsFrameIsAtTheStatusBarsLevel) {
  panel_.setSurface({.cornerRadius = 20, .tone = Qt::white, .shadow = {{.opacity = 0.3, .radius = 20, .y = 8}}});
  panel_.setFrame(corner());
  panel_.orderFrontRegardless();
  ASSERT_TRUE(waitUntil([this] {
    const auto shown = infoOf(panel_.window());
    return isMapped(id()) && shown && shown->frame == corner();
  }));
  const auto info = infoOf(panel_.window());
  ASSERT_TRUE(info);
  EXPECT_EQ(info->level, kStatusWindowLevel);
  EXPECT_TRUE(info->hasContentView);
}

TEST_F(QtWindowsTest, aPanelAmongOtherWindowsIsAtTheirLevel) {
  QtPanel preview({{100, 100}, {300, 200}}, intent_, compositor_, PanelLayer::amongOthers);
  preview.orderFrontRegardless();
  ASSERT_TRUE(waitUntil([&] { return isShown(preview.window()); }));
  ASSERT_TRUE(infoOf(preview.window()));
  EXPECT_EQ(infoOf(preview.window())->level, 0);
  EXPECT_FALSE(infoOf(preview.window())->isMainWindow);
}

TEST_F(QtWindowsTest, onlyAPlainWindowIsTheMainOne) {
  QWidget window;
  window.setGeometry(200, 200, 200, 100);
  window.show();
  window.activateWindow();
  ASSERT_TRUE(waitUntil([&] { return infoOf(window) && infoOf(window)->isKeyWindow; }));
  EXPECT_TRUE(infoOf(window)->isMainWindow);
  ASSERT_TRUE(show());
  intent_.note();
  panel_.makeKeyAndOrderFront();
  ASSERT_TRUE(waitUntil([&] { return infoOf(panel_.window())->isKeyWindow; }));
  EXPECT_FALSE(infoOf(panel_.window())->isMainWindow);
  EXPECT_FALSE(infoOf(window)->isKeyWindow);
  EXPECT_TRUE(infoOf(window)->isMainWindow) << "which it stays while a panel has the keyboard";
}

TEST_F(QtWindowsTest, aMenuIsNone) {
  QMenu menu;
  menu.addAction(QStringLiteral("Item"));
  menu.popup({100, 100});
  ASSERT_TRUE(waitUntil([&] { return isShown(menu); }));
  EXPECT_TRUE(windows_.visibleWindows().empty());
}

TEST_F(QtWindowsTest, thePressOfTheLeftButtonIsTheCurrentEventWhileItIsDown) {
  auto view = std::make_unique<AskingView>(windows_);
  const AskingView* asking = view.get();
  panel_.setContentView(std::move(view));
  ASSERT_TRUE(show());
  EXPECT_EQ(windows_.currentEvent(), std::nullopt);
  movePointer(kLeft + 40, kTop + 30);
  EXPECT_EQ(windows_.currentEvent(), std::nullopt);
  const Seconds before = windows_.systemUptime();
  xdotool({QStringLiteral("keydown"), QStringLiteral("shift")});
  xdotool({QStringLiteral("mousedown"), QStringLiteral("1")});
  ASSERT_TRUE(waitUntil([&] { return !asking->told.empty(); }));
  const PointerEvent press = asking->told.front();
  EXPECT_EQ(press.type, PointerEventType::leftMouseDown);
  EXPECT_EQ(press.window, panel_.window().winId());
  EXPECT_EQ(press.locationInWindow, (Point<WindowContent>{40.5, 232 - 30.5}));
  EXPECT_EQ(press.modifierFlags, kModifierShift);
  EXPECT_EQ(windows_.modifierFlags(), kModifierShift);
  EXPECT_GE(press.timestamp, before);
  EXPECT_LE(press.timestamp, windows_.systemUptime());
  xdotool({QStringLiteral("keyup"), QStringLiteral("shift")});
  EXPECT_EQ(windows_.modifierFlags(), 0U);
  movePointer(kLeft + 60, kTop + 30);
  ASSERT_TRUE(waitUntil([&] { return asking->told.back().type == PointerEventType::leftMouseDragged; }));
  EXPECT_EQ(asking->told.back().locationInWindow, (Point<WindowContent>{60.5, 232 - 30.5}));
  xdotool({QStringLiteral("mouseup"), QStringLiteral("1")});
  EXPECT_TRUE(waitUntil([&] { return !windows_.currentEvent(); }));
}

TEST_F(QtWindowsTest, theOtherButtonsAreNoCurrentEvent) {
  auto view = std::make_unique<AskingView>(windows_);
  const AskingView* asking = view.get();
  panel_.setContentView(std::move(view));
  ASSERT_TRUE(show());
  movePointer(kLeft + 40, kTop + 30);
  xdotool({QStringLiteral("click"), QStringLiteral("3")});
  xdotool({QStringLiteral("click"), QStringLiteral("1")});
  ASSERT_TRUE(waitUntil([&] { return !asking->told.empty(); }));
  EXPECT_EQ(asking->told.size(), 1U);
}

TEST_F(QtWindowsTest, theStartOfAProgramTellsWhenTheUserLastDidSomething) {
  ASSERT_TRUE(show());
  const std::string first = windows_.makeStartupID();
  movePointer(kLeft + 40, kTop + 30);
  xdotool({QStringLiteral("click"), QStringLiteral("1")});
  const auto time = [](const std::string& identifier) {
    return std::stoull(identifier.substr(identifier.find("_TIME") + 5));
  };
  EXPECT_TRUE(waitUntil([&] { return time(windows_.makeStartupID()) > 0; }));
  EXPECT_NE(windows_.makeStartupID(), windows_.makeStartupID());
  EXPECT_GE(time(windows_.makeStartupID()), time(first));
}

}  // namespace
}  // namespace quenlio
