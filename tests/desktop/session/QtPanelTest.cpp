// Where the panel stands, and how it stands with the window manager.
#include "tests/desktop/session/QtPanelTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/linux/session/QtScreens.h"
#include "desktop/linux/session/X11.h"

namespace quenlio {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Not;

TEST_F(QtPanelTest, startsOrderedOut) {
  EXPECT_FALSE(panel_.isVisible());
  EXPECT_FALSE(isMapped(id()));
}

TEST_F(QtPanelTest, standsExactlyWhereItWasPut) {
  ASSERT_TRUE(show());
  EXPECT_EQ(panel_.frame(), corner());
  EXPECT_TRUE(panel_.isVisible());
}

TEST_F(QtPanelTest, movesWhileItIsShown) {
  ASSERT_TRUE(show());
  panel_.setFrameOrigin({100, 200});
  EXPECT_TRUE(waitUntil([this] { return geometryOnScreen(id()) == QRect(100, 800 - 200 - 232, 232, 232); }));
  panel_.setFrame({{50, 60}, {340, 340}});
  EXPECT_TRUE(waitUntil([this] { return geometryOnScreen(id()) == QRect(50, 800 - 60 - 340, 340, 340); }));
}

TEST_F(QtPanelTest, standsThereAgainAtTheNextShowing) {
  ASSERT_TRUE(show());
  panel_.orderOut();
  EXPECT_FALSE(panel_.isVisible());
  ASSERT_TRUE(waitUntil([this] { return !isMapped(id()); }));
  EXPECT_TRUE(show());
}

TEST_F(QtPanelTest, isOnAllDesktopsAboveOthersAndInNoListEachTimeItIsShown) {
  // Not _NET_WM_STATE_STICKY: this window manager knows only the desktop's number for that.
  const auto states = AllOf(Contains("_NET_WM_STATE_ABOVE"), Contains("_NET_WM_STATE_SKIP_TASKBAR"),
                            Contains("_NET_WM_STATE_SKIP_PAGER"));
  for (int showing = 0; showing < 10; ++showing) {
    ASSERT_TRUE(show());
    EXPECT_TRUE(waitUntil([this] { return numbersOf(id(), "_NET_WM_DESKTOP") == std::vector{x11::kAllDesktops}; }));
    EXPECT_TRUE(waitUntil([&] { return testing::Matches(states)(atomsOf(id(), "_NET_WM_STATE")); }));
    panel_.orderOut();
  }
}

// As on a press of the window manager's key for closing.
TEST_F(QtPanelTest, aCloseFromWithoutIsToldAndLeavesThePanelAsItIs) {
  int closes = 0;
  panel_.setOnClose([&closes] { ++closes; });
  ASSERT_TRUE(show());
  OtherProgram other;
  other.askToClose(id());
  ASSERT_TRUE(waitUntil([&closes] { return closes == 1; }));
  EXPECT_TRUE(isMapped(id()));
  EXPECT_TRUE(panel_.isVisible());
  panel_.orderOut();
  ASSERT_TRUE(waitUntil([this] { return !isMapped(id()); }));
  EXPECT_TRUE(show());
}

TEST_F(QtPanelTest, bearsItsClassEachTimeItIsShown) {
  for (int showing = 0; showing < 2; ++showing) {
    xcb_delete_property(x11::connection(), id(), XCB_ATOM_WM_CLASS);
    ASSERT_TRUE(show());
    const auto cookie = xcb_get_property(x11::connection(), 0, id(), XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 64);
    const x11::Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(x11::connection(), cookie, nullptr));
    ASSERT_TRUE(reply);
    EXPECT_EQ(std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
                          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))),
              std::string("quenlio\0Quenlio\0", 16));
    panel_.orderOut();
  }
}

TEST_F(QtPanelTest, standsAboveAWindowThatFillsTheScreen) {
  OtherProgram film;
  ASSERT_TRUE(film.showFullScreen());
  ASSERT_TRUE(show());
  panel_.makeKeyAndOrderFront();
  EXPECT_TRUE(waitForPixel(kLeft + 100, kTop + 100, isRed));
  EXPECT_EQ(focusedWindow(), film.window());
}

TEST_F(QtPanelTest, comesAboveAFullScreenWindowThatCameWhileItWasShown) {
  ASSERT_TRUE(show());
  ASSERT_TRUE(waitForPixel(kLeft + 100, kTop + 100, isRed));
  OtherProgram film;
  ASSERT_TRUE(film.showFullScreen());
  ASSERT_TRUE(waitForPixel(kLeft + 100, kTop + 100, [](const QColor& color) { return color == QColor(Qt::white); }));
  panel_.makeKeyAndOrderFront();
  EXPECT_TRUE(waitForPixel(kLeft + 100, kTop + 100, isRed));
  EXPECT_TRUE(panel_.isVisible());
}

TEST_F(QtPanelTest, isTheWindowManagersAgainOnceNoWindowFillsTheScreen) {
  {
    OtherProgram film;
    ASSERT_TRUE(film.showFullScreen());
    ASSERT_TRUE(show());
    panel_.orderOut();
  }
  ASSERT_TRUE(waitUntil([] { return numbersOf(x11::rootWindow(), "_NET_CLIENT_LIST").empty(); }));
  ASSERT_TRUE(show());
  EXPECT_TRUE(waitUntil([this] { return numbersOf(x11::rootWindow(), "_NET_CLIENT_LIST") == std::vector{id()}; }));
}

// As a window manager does on its key for that, or on the user's.
TEST_F(QtPanelTest, comesBackWhenTheWindowManagerHasPutItAway) {
  OtherProgram other;
  ASSERT_TRUE(other.showAndTakeKeyboard({100, 100, 300, 200}));
  for (int time = 0; time < 3; ++time) {
    ASSERT_TRUE(show());
    ASSERT_TRUE(waitUntil([this] { return numbersOf(x11::rootWindow(), "_NET_CLIENT_LIST").size() == 2; }));
    ASSERT_TRUE(run(QStringLiteral("xdotool"), {QStringLiteral("windowminimize"), QString::number(id())}));
    ASSERT_TRUE(waitUntil([this] { return !isMapped(id()) && panel_.window().isMinimized(); }));
    panel_.orderFrontRegardless();
    panel_.makeKeyAndOrderFront();  // the second in a row finds it on its way
    EXPECT_TRUE(waitForPixel(kLeft + 100, kTop + 100, isRed));
    EXPECT_FALSE(panel_.window().isMinimized());
    EXPECT_EQ(geometryOnScreen(id()), QRect(kLeft, kTop, 232, 232));
    EXPECT_EQ(focusedWindow(), other.window());
  }
}

TEST_F(QtPanelTest, comesBackWhileTheDesktopIsShownInPlaceOfTheWindows) {
  OtherProgram other;
  ASSERT_TRUE(other.showAndTakeKeyboard({100, 100, 300, 200}));
  ASSERT_TRUE(show());
  ASSERT_TRUE(waitForPixel(kLeft + 100, kTop + 100, isRed));
  {
    const ShownDesktop desktop;
    ASSERT_TRUE(waitUntil([this] { return !isMapped(id()); }));
    panel_.makeKeyAndOrderFront();
    EXPECT_TRUE(waitForPixel(kLeft + 100, kTop + 100, isRed));
    EXPECT_FALSE(isMapped(other.window()));  // which the user has just put away
    panel_.orderOut();
    ASSERT_TRUE(show());  // nor is a new showing kept away
  }
  panel_.orderOut();
  EXPECT_TRUE(show());
}

TEST_F(QtPanelTest, theUserCannotMoveItByTheWindowManager) {
  ASSERT_TRUE(show());
  ASSERT_TRUE(waitUntil([this] { return !atomsOf(id(), "_NET_WM_ALLOWED_ACTIONS").empty(); }));
  EXPECT_THAT(atomsOf(id(), "_NET_WM_ALLOWED_ACTIONS"),
              AllOf(Not(Contains("_NET_WM_ACTION_MOVE")), Contains("_NET_WM_ACTION_CLOSE")));
}

TEST_F(QtPanelTest, knowsItsPlaceAlsoAfterTheScreensHaveChanged) {
  ASSERT_TRUE(show());
  ASSERT_TRUE(setScreenSize(QStringLiteral("1280x720")));
  EXPECT_TRUE(waitUntil([this] { return panel_.frame() == Rect<Screen>{{kLeft, 12 - 80}, {kSide, kSide}}; }));
  ASSERT_TRUE(setScreenSize(QStringLiteral("1280x800")));
  EXPECT_TRUE(waitUntil([this] { return panel_.frame() == corner(); }));
}

TEST_F(QtPanelTest, tellsTheScreenThatHoldsIt) {
  panel_.setFrame(corner());
  const auto screen = panel_.screen();
  ASSERT_TRUE(screen);
  EXPECT_EQ(screen->frame, (Rect<Screen>{{0, 0}, {1280, 800}}));
  panel_.setFrame({{5000, 5000}, {kSide, kSide}});
  EXPECT_FALSE(panel_.screen());
}

TEST_F(QtPanelTest, ofTwoScreensItTellsTheOneThatHoldsMostOfIt) {
  const TwoMonitors monitors;
  const auto screenAt = [this](double x) {
    panel_.setFrame({{x, 300}, {kSide, kSide}});
    return panel_.screen().value_or(ScreenInfo{}).frame;
  };
  const Rect<Screen> left{{0, 0}, {640, 800}};
  const Rect<Screen> right{{640, 0}, {640, 800}};
  EXPECT_EQ(screenAt(12), left);
  EXPECT_EQ(screenAt(1036), right);
  EXPECT_EQ(screenAt(640 - kSide / 2 - 1), left);  // across the border, with two points more on this side of it
  EXPECT_EQ(screenAt(640 - kSide / 2 + 1), right);
}

}  // namespace
}  // namespace quenlio
