#include <QtGui/QPainter>
#include <QtWidgets/QLabel>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xcb/shape.h>

#include "desktop/linux/session/QtPanel.h"
#include "desktop/linux/session/QtScreens.h"
#include "desktop/linux/session/X11.h"

#include "tests/desktop/session/Desk.h"

namespace quenlio {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

// Wholly red.
class RedView final : public QWidget {
 public:
  RedView() { setFocusPolicy(Qt::StrongFocus); }
  int painted = 0;

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    ++painted;
    QPainter(this).fillRect(rect(), Qt::red);
  }
};

class QtPanelTest : public testing::Test {
 protected:
  static constexpr double kSide = 232;

  void SetUp() override {
    movePointer(5, 5);
    auto view = std::make_unique<RedView>();
    view_ = view.get();
    panel_.setContentView(std::move(view));
  }

  // Bottom right with the island's margin, on a screen of 1280 by 800.
  [[nodiscard]] static Rect<Screen> corner() { return {{1280 - kSide - 12, 12}, {kSide, kSide}}; }
  static constexpr int kLeft = 1036;
  static constexpr int kTop = 556;

  [[nodiscard]] xcb_window_t id() const { return static_cast<xcb_window_t>(panel_.window().winId()); }

  [[nodiscard]] bool show() {
    panel_.setFrame(corner());
    panel_.orderFrontRegardless();
    return waitUntil([this] { return isMapped(id()) && geometryOnScreen(id()) == QRect(kLeft, kTop, 232, 232); });
  }

  [[nodiscard]] static bool waitForPixel(int x, int y, const std::function<bool(const QColor&)>& is) {
    return waitUntil([&] { return is(screenPixel(x, y)); });
  }
  static bool isRed(const QColor& color) { return color.red() > 250 && color.green() < 5 && color.blue() < 5; }

  // Whether the screen's top window that takes the mouse at this point is the panel's.
  [[nodiscard]] int inputRectangles() const {
    const auto cookie = xcb_shape_get_rectangles(x11::connection(), id(), XCB_SHAPE_SK_INPUT);
    const x11::Reply<xcb_shape_get_rectangles_reply_t> reply(
        xcb_shape_get_rectangles_reply(x11::connection(), cookie, nullptr));
    return reply ? xcb_shape_get_rectangles_rectangles_length(reply.get()) : -1;
  }

  UserIntent intent_;
  CompositorWatch compositor_;
  QtPanel panel_{{{0, 0}, {kSide, kSide}}, intent_, compositor_};
  RedView* view_ = nullptr;
};

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
    EXPECT_TRUE(waitUntil([this] { return numbersOf(id(), "_NET_WM_DESKTOP") == std::vector{0xffffffffU}; }));
    EXPECT_TRUE(waitUntil([&] { return testing::Matches(states)(atomsOf(id(), "_NET_WM_STATE")); }));
    panel_.orderOut();
  }
}

TEST_F(QtPanelTest, isBesideAnotherWindowThatKeepsTheKeyboard) {
  OtherProgram other;
  ASSERT_TRUE(other.showAndTakeKeyboard({100, 100, 300, 200}));
  ASSERT_TRUE(show());
  panel_.makeKeyAndOrderFront();
  panel_.makeContentViewFirstResponder();
  ASSERT_TRUE(waitForPixel(kLeft + 100, kTop + 100, isRed));
  // The key goes to whoever has the keyboard; the other program hears it.
  pressKeys(QStringLiteral("a"));
  ASSERT_TRUE(waitUntil([&other] {
    const x11::Reply<xcb_generic_event_t> event(xcb_poll_for_event(other.connection()));
    return event && (event->response_type & 0x7f) == XCB_KEY_PRESS;
  }));
  EXPECT_EQ(focusedWindow(), other.window());
  EXPECT_FALSE(panel_.isKeyWindow());
}

TEST_F(QtPanelTest, takesTheKeyboardWithThePointerInsideAndGivesItBackWhenItHides) {
  OtherProgram other;
  ASSERT_TRUE(other.showAndTakeKeyboard({100, 100, 300, 200}));
  movePointer(kLeft + 50, kTop + 50);
  ASSERT_TRUE(show());
  panel_.makeKeyAndOrderFront();
  EXPECT_TRUE(waitUntil([this] { return panel_.isKeyWindow() && focusedWindow() == id(); }));
  panel_.orderOut();
  EXPECT_TRUE(waitUntil([&other] { return focusedWindow() == other.window(); }));
}

TEST_F(QtPanelTest, takesTheKeyboardWhenTheUserHasJustAsked) {
  OtherProgram other;
  ASSERT_TRUE(other.showAndTakeKeyboard({100, 100, 300, 200}));
  intent_.note();
  ASSERT_TRUE(show());
  panel_.makeKeyAndOrderFront();
  EXPECT_TRUE(waitUntil([this] { return panel_.isKeyWindow() && focusedWindow() == id(); }));
}

TEST_F(QtPanelTest, takesTheKeyboardAgainRightAfterItWasHidden) {
  OtherProgram other;
  ASSERT_TRUE(other.showAndTakeKeyboard({100, 100, 300, 200}));
  for (int showing = 0; showing < 10; ++showing) {
    intent_.note();
    panel_.setFrame(corner());
    panel_.makeKeyAndOrderFront();
    ASSERT_TRUE(waitUntil([this] { return panel_.isKeyWindow() && focusedWindow() == id(); })) << showing;
    panel_.orderOut();
  }
}

TEST_F(QtPanelTest, handsKeysToItsCallback) {
  std::vector<KeyEvent> keys;
  panel_.setOnKeyDown([&keys](const KeyEvent& key) {
    keys.push_back(key);
    return true;
  });
  intent_.note();
  ASSERT_TRUE(show());
  panel_.makeKeyAndOrderFront();
  panel_.makeContentViewFirstResponder();
  ASSERT_TRUE(waitUntil([this] { return panel_.isKeyWindow() && focusedWindow() == id(); }));
  pressKeys(QStringLiteral("ctrl+c"));
  // Control itself comes first.
  ASSERT_TRUE(waitUntil([&keys] { return !keys.empty() && keys.back().keyCode == 8; }));
  EXPECT_EQ(keys.back().modifierFlags, kModifierCommand);
  EXPECT_EQ(keys.back().charactersIgnoringModifiers, "c");
}

TEST_F(QtPanelTest, takesNoMouseWhileItIgnoresMouseEvents) {
  panel_.setIgnoresMouseEvents(true);
  ASSERT_TRUE(show());
  EXPECT_EQ(inputRectangles(), 0);
  panel_.setIgnoresMouseEvents(false);
  EXPECT_EQ(inputRectangles(), 1);
}

TEST_F(QtPanelTest, firstPressOnTheInactivePanelReachesItsView) {
  struct PressedView final : QWidget {
    bool pressed = false;
    void mousePressEvent(QMouseEvent* /*event*/) override { pressed = true; }
  };
  auto view = std::make_unique<PressedView>();
  const PressedView* seen = view.get();
  panel_.setContentView(std::move(view));
  OtherProgram other;
  ASSERT_TRUE(other.showAndTakeKeyboard({100, 100, 300, 200}));
  ASSERT_TRUE(show());
  movePointer(kLeft + 50, kTop + 50);
  ASSERT_TRUE(run(QStringLiteral("xdotool"), {QStringLiteral("click"), QStringLiteral("1")}));
  EXPECT_TRUE(waitUntil([seen] { return seen->pressed; }));
}

TEST_F(QtPanelTest, alphaIsBlendedByACompositor) {
  const Compositor compositor;
  ASSERT_TRUE(waitUntil([this] { return compositor_.isThere().get(); }));
  OtherProgram below;  // white
  ASSERT_TRUE(below.showAndTakeKeyboard({kLeft - 20, kTop - 20, 260, 260}));
  panel_.setAlphaValue(0.5);
  ASSERT_TRUE(show());
  EXPECT_TRUE(waitForPixel(kLeft + 100, kTop + 100, [](const QColor& color) {
    return color.red() > 250 && std::abs(color.green() - 128) < 4 && std::abs(color.blue() - 128) < 4;
  }));
  panel_.setAlphaValue(1);
  EXPECT_TRUE(waitForPixel(kLeft + 100, kTop + 100, isRed));
  panel_.setAlphaValue(0);
  EXPECT_TRUE(waitForPixel(kLeft + 100, kTop + 100, [](const QColor& color) { return color == QColor(Qt::white); }));
}

TEST_F(QtPanelTest, standsOpaqueAndRoundedWithoutACompositor) {
  ASSERT_TRUE(waitUntil([this] { return !compositor_.isThere().get(); }));
  OtherProgram below;
  ASSERT_TRUE(below.showAndTakeKeyboard({kLeft - 20, kTop - 20, 260, 260}));
  panel_.setSurface({.cornerRadius = 24, .tone = Qt::green});
  panel_.setAlphaValue(0.5);
  ASSERT_TRUE(show());
  EXPECT_TRUE(waitForPixel(kLeft + 100, kTop + 100, isRed));
  EXPECT_EQ(screenPixel(kLeft + 1, kTop + 1), QColor(Qt::white));
  EXPECT_EQ(screenPixel(kLeft + 230, kTop + 230), QColor(Qt::white));
}

TEST_F(QtPanelTest, followsACompositorThatComesAndGoes) {
  ASSERT_TRUE(waitUntil([this] { return !compositor_.isThere().get(); }));
  {
    const Compositor compositor;
    EXPECT_TRUE(waitUntil([this] { return compositor_.isThere().get(); }));
  }
  EXPECT_TRUE(waitUntil([this] { return !compositor_.isThere().get(); }));
}

TEST_F(QtPanelTest, animationEndsExactlyWhereItWasTold) {
  panel_.setFrame(corner().moved(0, -6));
  panel_.setAlphaValue(0);
  panel_.orderFrontRegardless();
  int completions = 0;
  panel_.runAnimationGroup({.duration = Seconds(0.12), .curve = {{0.22, 1, 0.36, 1}}, .alpha = 1, .frame = corner()},
                           [&completions] { ++completions; });
  EXPECT_EQ(completions, 0);
  ASSERT_TRUE(waitUntil([&completions] { return completions > 0; }));
  EXPECT_EQ(panel_.frame(), corner());
  EXPECT_TRUE(waitUntil([this] { return geometryOnScreen(id()) == QRect(kLeft, kTop, 232, 232); }));
  EXPECT_EQ(completions, 1);
}

TEST_F(QtPanelTest, completionRunsOnceAlsoWhenThePanelWasMovedMeanwhile) {
  ASSERT_TRUE(show());
  int completions = 0;
  panel_.runAnimationGroup({.duration = Seconds(0.12), .curve = kEaseIn, .alpha = 0, .frame = corner().moved(0, -8)},
                           [&completions] { ++completions; });
  const Rect<Screen> elsewhere{{300, 300}, {kSide, kSide}};
  panel_.setFrame(elsewhere);
  ASSERT_TRUE(waitUntil([&completions] { return completions > 0; }));
  EXPECT_EQ(panel_.frame(), elsewhere);
  EXPECT_EQ(completions, 1);
}

TEST_F(QtPanelTest, anAnimationReplacesARunningOneAndBothCompletionsRun) {
  ASSERT_TRUE(show());
  std::vector<int> completions;
  panel_.runAnimationGroup({.duration = Seconds(0.12), .curve = kEaseIn, .alpha = 0, .frame = corner().moved(0, -8)},
                           [&completions] { completions.push_back(1); });
  panel_.runAnimationGroup({.duration = Seconds(0.16), .curve = kEaseIn, .alpha = 1, .frame = corner()},
                           [&completions] { completions.push_back(2); });
  ASSERT_TRUE(waitUntil([&completions] { return completions.size() == 2; }));
  EXPECT_THAT(completions, ElementsAre(1, 2));
  EXPECT_EQ(panel_.frame(), corner());
}

TEST_F(QtPanelTest, firstFrameOfARisingPanelIsAlreadySeen) {
  const Compositor compositor;
  ASSERT_TRUE(waitUntil([this] { return compositor_.isThere().get(); }));
  panel_.setFrame(corner().moved(0, -6));
  panel_.setAlphaValue(0);
  panel_.orderFrontRegardless();
  panel_.runAnimationGroup({.duration = Seconds(0.12), .curve = {{0.22, 1, 0.36, 1}}, .alpha = 1, .frame = corner()},
                           [] {});
  // Without a compositor's help: what the view painted first, with the alpha of that moment.
  ASSERT_TRUE(waitUntil([this] { return view_->painted > 0; }));
  const QImage first = const_cast<QWidget&>(panel_.window()).grab().toImage();
  EXPECT_GT(first.pixelColor(100, 100).alphaF(), 0.2);
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

TEST_F(QtPanelTest, aPressAboveAFullScreenWindowTakesTheKeyboardAndHidingGivesItBack) {
  std::vector<KeyEvent> keys;
  panel_.setOnKeyDown([&keys](const KeyEvent& key) {
    keys.push_back(key);
    return true;
  });
  OtherProgram film;
  ASSERT_TRUE(film.showFullScreen());
  ASSERT_TRUE(show());
  movePointer(kLeft + 50, kTop + 50);
  ASSERT_TRUE(run(QStringLiteral("xdotool"), {QStringLiteral("click"), QStringLiteral("1")}));
  ASSERT_TRUE(waitUntil([this] { return panel_.isKeyWindow() && focusedWindow() == id(); }));
  pressKeys(QStringLiteral("c"));
  EXPECT_TRUE(waitUntil([&keys] { return !keys.empty() && keys.back().keyCode == 8; }));
  panel_.orderOut();
  EXPECT_TRUE(waitUntil([&film] { return focusedWindow() == film.window(); }));
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

TEST_F(QtPanelTest, makingItKeyRaisesItAlsoWhereItMayNotTakeTheKeyboard) {
  OtherProgram other;
  ASSERT_TRUE(other.showAndTakeKeyboard({100, 100, 300, 200}));
  ASSERT_TRUE(show());
  QtPanel second{corner(), intent_, compositor_};
  auto blue = std::make_unique<QLabel>();
  blue->setStyleSheet(QStringLiteral("background: blue"));
  second.setContentView(std::move(blue));
  second.orderFrontRegardless();
  ASSERT_TRUE(waitForPixel(kLeft + 100, kTop + 100, [](const QColor& color) { return color == QColor(Qt::blue); }));
  panel_.makeKeyWindow();
  EXPECT_TRUE(waitForPixel(kLeft + 100, kTop + 100, isRed));
  EXPECT_EQ(focusedWindow(), other.window());
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

}  // namespace
}  // namespace quenlio
