// What the application's windows are like on either side, as those who look for a host window count on.
#include <QtWidgets/QWidget>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

#include "desktop/linux/session/QtPanel.h"
#include "desktop/linux/session/QtWindows.h"

#include "tests/desktop/session/Desk.h"
#include "tests/fakes/FakeHandOut.h"

namespace quenlio {
namespace {

const Rect<Screen> kFrame{{200, 150}, {300, 200}};

struct FakeKind {
  FakeWindows fake;
  Windows& windows() { return fake; }
  [[nodiscard]] bool showWindow() {
    fake.list.push_back({.id = fake.list.size() + 1, .frame = kFrame});
    return true;
  }
  [[nodiscard]] bool showPanel() {
    fake.list.push_back({.id = fake.list.size() + 1, .frame = kFrame, .level = kStatusWindowLevel});
    return true;
  }
};

class RealKind {
 public:
  RealKind() { movePointer(5, 5); }
  Windows& windows() { return real_; }
  [[nodiscard]] bool showWindow() {
    const std::size_t before = real_.visibleWindows().size();
    window_.setWindowFlag(Qt::FramelessWindowHint);
    window_.setGeometry(200, 800 - 350, 300, 200);
    window_.show();
    return waitUntil([&] {
      return real_.visibleWindows().size() == before + 1 &&
             geometryOnScreen(static_cast<xcb_window_t>(window_.winId())) == QRect(200, 450, 300, 200);
    });
  }
  [[nodiscard]] bool showPanel() {
    panel_.setContentView(std::make_unique<QWidget>());
    panel_.setFrame(kFrame);
    panel_.orderFrontRegardless();
    // Once the window manager has it, and the toolkit has heard of all that came of that.
    return waitUntil([this] {
      const auto windows = real_.visibleWindows();
      return isMapped(static_cast<xcb_window_t>(panel_.window().winId())) && !windows.empty() &&
             windows.front().frame == kFrame;
    });
  }

 private:
  QtWindows real_;
  UserIntent intent_;
  CompositorWatch compositor_;
  QWidget window_;
  QtPanel panel_{{{0, 0}, {100, 100}}, intent_, compositor_};
};

template <class Kind>
class WindowsContract : public testing::Test {
 protected:
  Kind kind;
};

using Kinds = testing::Types<FakeKind, RealKind>;
TYPED_TEST_SUITE(WindowsContract, Kinds);

TYPED_TEST(WindowsContract, showNothingAndHandleNothingAtFirst) {
  EXPECT_TRUE(this->kind.windows().visibleWindows().empty());
  EXPECT_EQ(this->kind.windows().currentEvent(), std::nullopt);
  EXPECT_EQ(this->kind.windows().modifierFlags(), 0U);
}

TYPED_TEST(WindowsContract, aWindowThatIsShownHasItsFrameAndAContentView) {
  ASSERT_TRUE(this->kind.showWindow());
  const auto windows = this->kind.windows().visibleWindows();
  ASSERT_EQ(windows.size(), 1U);
  EXPECT_NE(windows.front().id, 0U);
  EXPECT_EQ(windows.front().frame, kFrame);
  EXPECT_LT(windows.front().level, kStatusWindowLevel);
  EXPECT_TRUE(windows.front().hasContentView);
  EXPECT_EQ(toWindowContent(windows.front(), {210, 160}), (Point<WindowContent>{10, 10}));
}

TYPED_TEST(WindowsContract, aPanelIsAtTheStatusBarsLevelAndNeverMain) {
  ASSERT_TRUE(this->kind.showPanel());
  const auto windows = this->kind.windows().visibleWindows();
  ASSERT_EQ(windows.size(), 1U);
  EXPECT_EQ(windows.front().frame, kFrame);
  EXPECT_EQ(windows.front().level, kStatusWindowLevel);
  EXPECT_FALSE(windows.front().isMainWindow);
}

TYPED_TEST(WindowsContract, theUptimeNeverGoesBack) {
  const Seconds first = this->kind.windows().systemUptime();
  EXPECT_GT(first, Seconds{0});
  EXPECT_GE(this->kind.windows().systemUptime(), first);
}

}  // namespace
}  // namespace quenlio
