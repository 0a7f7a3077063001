// The keyboard and the mouse: when the panel takes them, when it leaves them, and what it hands on.
#include <QtGui/QWindow>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLabel>
#include <gtest/gtest.h>
#include <vector>
#include <xcb/shape.h>

#include "desktop/linux/session/QtEventMonitors.h"
#include "desktop/linux/session/X11.h"

#include "tests/desktop/session/QtPanelTest.h"

namespace quenlio {
namespace {

class QtPanelInput : public QtPanelTest {
 protected:
  [[nodiscard]] int inputRectangles() const {
    const auto cookie = xcb_shape_get_rectangles(x11::connection(), id(), XCB_SHAPE_SK_INPUT);
    const x11::Reply<xcb_shape_get_rectangles_reply_t> reply(
        xcb_shape_get_rectangles_reply(x11::connection(), cookie, nullptr));
    return reply ? xcb_shape_get_rectangles_rectangles_length(reply.get()) : -1;
  }
};

TEST_F(QtPanelInput, isBesideAnotherWindowThatKeepsTheKeyboard) {
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
    return event && (event->response_type & x11::kEventNumber) == XCB_KEY_PRESS;
  }));
  EXPECT_EQ(focusedWindow(), other.window());
  EXPECT_FALSE(panel_.isKeyWindow());
}

TEST_F(QtPanelInput, takesTheKeyboardWithThePointerInsideAndGivesItBackWhenItHides) {
  OtherProgram other;
  ASSERT_TRUE(other.showAndTakeKeyboard({100, 100, 300, 200}));
  movePointer(kLeft + 50, kTop + 50);
  ASSERT_TRUE(show());
  panel_.makeKeyAndOrderFront();
  EXPECT_TRUE(waitUntil([this] { return panel_.isKeyWindow() && focusedWindow() == id(); }));
  panel_.orderOut();
  EXPECT_TRUE(waitUntil([&other] { return focusedWindow() == other.window(); }));
}

TEST_F(QtPanelInput, takesTheKeyboardWhenTheUserHasJustAsked) {
  OtherProgram other;
  ASSERT_TRUE(other.showAndTakeKeyboard({100, 100, 300, 200}));
  intent_.note();
  ASSERT_TRUE(show());
  panel_.makeKeyAndOrderFront();
  EXPECT_TRUE(waitUntil([this] { return panel_.isKeyWindow() && focusedWindow() == id(); }));
}

TEST_F(QtPanelInput, takesTheKeyboardAgainRightAfterItWasHidden) {
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

TEST_F(QtPanelInput, handsKeysToItsCallback) {
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

TEST_F(QtPanelInput, takesNoMouseWhileItIgnoresMouseEvents) {
  panel_.setIgnoresMouseEvents(true);
  ASSERT_TRUE(show());
  EXPECT_EQ(inputRectangles(), 0);
  panel_.setIgnoresMouseEvents(false);
  EXPECT_EQ(inputRectangles(), 1);
}

TEST_F(QtPanelInput, firstPressOnTheInactivePanelReachesItsView) {
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

TEST_F(QtPanelInput, aPressAboveAFullScreenWindowTakesTheKeyboardAndHidingGivesItBack) {
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

// The keyboard in the panel, which it has only because the pointer is there.
class QtPanelUnderThePointer : public QtPanelInput {
 protected:
  void SetUp() override {
    QtPanelInput::SetUp();
    ASSERT_TRUE(other_.showAndTakeKeyboard({100, 100, 300, 200}));
    ASSERT_TRUE(show());
    movePointer(kLeft + 50, kTop + 50);
  }
  [[nodiscard]] bool hasKeyboard() const {
    return waitUntil([this] { return panel_.isKeyWindow() && focusedWindow() == id(); });
  }
  // The pointer goes.
  void leave() {
    movePointer(5, 5);
    panel_.returnUnusedKeyboard();
  }
  [[nodiscard]] bool otherHasKeyboard() const {
    return waitUntil([this] { return !panel_.isKeyWindow() && focusedWindow() == other_.window(); });
  }

  OtherProgram other_;
};

TEST_F(QtPanelUnderThePointer, givesAnUnusedKeyboardBackWhenThePointerGoes) {
  for (int passing = 0; passing < 3; ++passing) {
    movePointer(kLeft + 50, kTop + 50);
    panel_.makeKeyWindow();
    ASSERT_TRUE(hasKeyboard());
    leave();
    EXPECT_TRUE(otherHasKeyboard());
  }
  EXPECT_TRUE(
      waitUntil([this] { return numbersOf(x11::rootWindow(), "_NET_ACTIVE_WINDOW") == std::vector{other_.window()}; }));
}

// A pointer that passes quickly is gone before the window manager has answered.
TEST_F(QtPanelUnderThePointer, givesAlsoAKeyboardBackThatIsStillOnItsWay) {
  int comings = 0;
  QObject::connect(panel_.window().windowHandle(), &QWindow::activeChanged, panel_.window().windowHandle(),
                   [&comings, window = panel_.window().windowHandle()] { comings += window->isActive() ? 1 : 0; });
  panel_.makeKeyWindow();
  panel_.returnUnusedKeyboard();
  ASSERT_TRUE(waitUntil([&comings] { return comings == 1; }));
  EXPECT_TRUE(otherHasKeyboard());
}

TEST_F(QtPanelUnderThePointer, keepsAKeyboardThatHasBeenUsed) {
  std::vector<KeyEvent> keys;
  panel_.setOnKeyDown([&keys](const KeyEvent& key) {
    keys.push_back(key);
    return true;
  });
  panel_.makeKeyWindow();
  ASSERT_TRUE(hasKeyboard());
  pressKeys(QStringLiteral("c"));
  ASSERT_TRUE(waitUntil([&keys] { return !keys.empty(); }));
  leave();
  pressKeys(QStringLiteral("c"));
  EXPECT_TRUE(waitUntil([&keys] { return keys.size() == 2; }));
}

// Also by a key that somebody takes on its way to the panel.
TEST_F(QtPanelUnderThePointer, aKeyThatAMonitorTakesIsAUseToo) {
  QtEventMonitors monitors;
  int heard = 0;
  const Subscription monitor = monitors.addLocalMonitorForKeyDown([&heard](const KeyEvent& /*key*/) {
    ++heard;
    return true;
  });
  panel_.makeKeyWindow();
  ASSERT_TRUE(hasKeyboard());
  pressKeys(QStringLiteral("c"));
  ASSERT_TRUE(waitUntil([&heard] { return heard == 1; }));
  leave();
  pressKeys(QStringLiteral("c"));
  EXPECT_TRUE(waitUntil([&heard] { return heard == 2; }));
}

TEST_F(QtPanelUnderThePointer, leavesTheKeyboardToAnOpenDialogOfThisProgram) {
  QDialog dialog;
  dialog.setGeometry(500, 100, 200, 100);
  dialog.show();
  dialog.activateWindow();
  ASSERT_TRUE(waitUntil([&dialog] { return dialog.isActiveWindow() && focusedWindow() == dialog.winId(); }));
  panel_.makeKeyWindow();
  pressKeys(QStringLiteral("Escape"));
  ASSERT_TRUE(waitUntil([&dialog] { return !dialog.isVisible(); }));
  panel_.makeKeyWindow();
  EXPECT_TRUE(hasKeyboard());
}

TEST_F(QtPanelUnderThePointer, keepsTheKeyboardAfterAPressAndWhenTheUserHasAskedForIt) {
  panel_.makeKeyWindow();
  ASSERT_TRUE(hasKeyboard());
  bool isPressed = false;
  struct PressFilter final : QObject {
    explicit PressFilter(bool& pressed) : isPressed(pressed) {}
    bool eventFilter(QObject* /*object*/, QEvent* event) override {
      isPressed = isPressed || event->type() == QEvent::MouseButtonRelease;
      return false;
    }
    bool& isPressed;
  } filter(isPressed);
  view_->installEventFilter(&filter);
  ASSERT_TRUE(run(QStringLiteral("xdotool"), {QStringLiteral("click"), QStringLiteral("1")}));
  ASSERT_TRUE(waitUntil([&isPressed] { return isPressed; }));
  leave();
  EXPECT_EQ(focusedWindow(), id());

  OtherProgram another;
  ASSERT_TRUE(another.showAndTakeKeyboard({100, 100, 300, 200}));
  movePointer(kLeft + 50, kTop + 50);
  intent_.note();
  panel_.makeKeyWindow();
  ASSERT_TRUE(hasKeyboard());
  leave();
  EXPECT_EQ(focusedWindow(), id());
}

TEST_F(QtPanelInput, makingItKeyRaisesItAlsoWhereItMayNotTakeTheKeyboard) {
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

}  // namespace
}  // namespace quenlio
