#include <gtest/gtest.h>

#include "desktop/linux/session/KeyTranslation.h"
#include "desktop/linux/session/X11.h"
#include "desktop/linux/session/X11HotKeys.h"

#include "tests/desktop/session/Desk.h"

namespace quenlio {
namespace {

constexpr HotKeyCombination kIslandKey{.virtualKeyCode = 19, .modifiers = 256 + 512};  // Command, Shift and 2
constexpr HotKeyID kID{.signature = 0x49534C44, .id = 1};
const QString kIslandKeys = QStringLiteral("super+shift+2");

class X11HotKeysTest : public testing::Test {
 protected:
  // Counts presses from here on.
  void install() {
    EventHandlerRef handler = 0;
    ASSERT_EQ(keys_.InstallEventHandler(
                  [this] {
                    ++presses_;
                    return noErr;
                  },
                  handler),
              noErr);
  }
  // Whether the press of a key of which nobody is told has gone by: a later key of this program's has been heard.
  void pressMarker() {
    EventHotKeyRef marker = 0;
    ASSERT_EQ(keys_.RegisterEventHotKey({.virtualKeyCode = 96, .modifiers = 0}, kID, marker), noErr);  // F5
    const int before = presses_;
    pressKeys(QStringLiteral("F5"));
    ASSERT_TRUE(waitUntil([this, before] { return presses_ > before; }));
    keys_.UnregisterEventHotKey(marker);
    --presses_;
  }

  UserIntent intent_;
  X11HotKeys keys_{intent_};
  int presses_ = 0;
};

TEST_F(X11HotKeysTest, isHeardWhereverTheKeyboardIs) {
  install();
  EventHotKeyRef reference = 0;
  ASSERT_EQ(keys_.RegisterEventHotKey(kIslandKey, kID, reference), noErr);
  EXPECT_NE(reference, 0U);
  OtherProgram other;
  ASSERT_TRUE(other.showAndTakeKeyboard({100, 100, 200, 100}));
  pressKeys(kIslandKeys);
  EXPECT_TRUE(waitUntil([this] { return presses_ == 1; }));
  EXPECT_TRUE(intent_.recent());
  pressKeys(kIslandKeys);
  EXPECT_TRUE(waitUntil([this] { return presses_ == 2; }));
}

TEST_F(X11HotKeysTest, isHeardWithTheLocksOn) {
  install();
  EventHotKeyRef reference = 0;
  ASSERT_EQ(keys_.RegisterEventHotKey(kIslandKey, kID, reference), noErr);
  int expected = 0;
  // Each lock on, then the other too, then one off again, and both off.
  for (const char* lock : {"Num_Lock", "Caps_Lock", "Num_Lock", "Caps_Lock"}) {
    ASSERT_TRUE(run(QStringLiteral("xdotool"), {QStringLiteral("key"), QString::fromLatin1(lock)}));
    ASSERT_TRUE(run(QStringLiteral("xdotool"), {QStringLiteral("key"), kIslandKeys}));
    ++expected;
    EXPECT_TRUE(waitUntil([this, expected] { return presses_ == expected; })) << lock;
  }
}

TEST_F(X11HotKeysTest, countsAHeldKeyOnce) {
  install();
  EventHotKeyRef reference = 0;
  ASSERT_EQ(keys_.RegisterEventHotKey(kIslandKey, kID, reference), noErr);
  const auto xdotool = [](const char* act, const char* key) {
    return run(QStringLiteral("xdotool"), {QString::fromLatin1(act), QString::fromLatin1(key)});
  };
  ASSERT_TRUE(xdotool("keydown", "super") && xdotool("keydown", "shift"));
  // The server's own way to tell of a key that is held: press after press.
  ASSERT_TRUE(xdotool("keydown", "2") && xdotool("keydown", "2") && xdotool("keydown", "2"));
  ASSERT_TRUE(xdotool("keyup", "2") && xdotool("keyup", "shift") && xdotool("keyup", "super"));
  ASSERT_NO_FATAL_FAILURE(pressMarker());
  EXPECT_EQ(presses_, 1);
}

TEST_F(X11HotKeysTest, registeringATakenKeyGivesItsError) {
  OtherProgram other;
  const auto keyCode = static_cast<xcb_keycode_t>(*evdevCodeFromVirtualKeyCode(19) + kX11KeyCodeOffset);
  const xcb_void_cookie_t cookie =
      xcb_grab_key_checked(other.connection(), 0, x11::rootWindow(), XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT, keyCode,
                           XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  ASSERT_EQ(xcb_request_check(other.connection(), cookie), nullptr);
  EventHotKeyRef reference = 0;
  EXPECT_EQ(keys_.RegisterEventHotKey(kIslandKey, kID, reference), -9878);
  EXPECT_EQ(reference, 0U);
}

// Nothing stays behind of a registration that failed half-way.
TEST_F(X11HotKeysTest, aFailedRegistrationLeavesTheKeyToOthers) {
  const auto keyCode = static_cast<xcb_keycode_t>(*evdevCodeFromVirtualKeyCode(19) + kX11KeyCodeOffset);
  const auto grab = [keyCode](const OtherProgram& program, unsigned modifiers) {
    const xcb_void_cookie_t cookie =
        xcb_grab_key_checked(program.connection(), 0, x11::rootWindow(), static_cast<std::uint16_t>(modifiers), keyCode,
                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const x11::Reply<xcb_generic_error_t> error(xcb_request_check(program.connection(), cookie));
    return error == nullptr;
  };
  constexpr unsigned kModifiers = XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT;
  OtherProgram other;
  ASSERT_TRUE(grab(other, kModifiers | XCB_MOD_MASK_LOCK));
  EventHotKeyRef reference = 0;
  ASSERT_EQ(keys_.RegisterEventHotKey(kIslandKey, kID, reference), -9878);
  EXPECT_TRUE(grab(other, kModifiers));
}

TEST_F(X11HotKeysTest, registeringTwiceGivesAnErrorToo) {
  EventHotKeyRef first = 0;
  EventHotKeyRef second = 0;
  ASSERT_EQ(keys_.RegisterEventHotKey(kIslandKey, kID, first), noErr);
  EXPECT_EQ(keys_.RegisterEventHotKey(kIslandKey, kID, second), -9878);
}

TEST_F(X11HotKeysTest, isNotHeardOnceItIsUnregistered) {
  install();
  EventHotKeyRef reference = 0;
  ASSERT_EQ(keys_.RegisterEventHotKey(kIslandKey, kID, reference), noErr);
  keys_.UnregisterEventHotKey(reference);
  pressKeys(kIslandKeys);
  ASSERT_NO_FATAL_FAILURE(pressMarker());
  EXPECT_EQ(presses_, 0);
  EXPECT_EQ(keys_.RegisterEventHotKey(kIslandKey, kID, reference), noErr);
}

// Which modifier Num Lock is may change while the key is grabbed, as with another keyboard.
TEST_F(X11HotKeysTest, letsGoOfExactlyWhatItGrabbed) {
  const auto move = [](const char* from, const char* to) {
    return run(QStringLiteral("xmodmap"), {QStringLiteral("-e"), QStringLiteral("remove %1 = Num_Lock").arg(from),
                                           QStringLiteral("-e"), QStringLiteral("add %1 = Num_Lock").arg(to)});
  };
  EventHotKeyRef reference = 0;
  ASSERT_EQ(keys_.RegisterEventHotKey(kIslandKey, kID, reference), noErr);
  ASSERT_TRUE(move("mod2", "mod3"));
  keys_.UnregisterEventHotKey(reference);
  const auto keyCode = static_cast<xcb_keycode_t>(*evdevCodeFromVirtualKeyCode(19) + kX11KeyCodeOffset);
  OtherProgram other;
  for (const unsigned locks : {0U, 2U, 16U, 18U}) {  // Caps Lock and what Num Lock was
    const auto cookie = xcb_grab_key_checked(other.connection(), 0, x11::rootWindow(),
                                             static_cast<std::uint16_t>(XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT | locks),
                                             keyCode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const x11::Reply<xcb_generic_error_t> error(xcb_request_check(other.connection(), cookie));
    EXPECT_EQ(error, nullptr) << locks;
  }
  EXPECT_TRUE(move("mod3", "mod2"));
}

TEST_F(X11HotKeysTest, aKeyThatNoKeyboardHasIsRefused) {
  EventHotKeyRef reference = 0;
  EXPECT_EQ(keys_.RegisterEventHotKey({.virtualKeyCode = 4711, .modifiers = 256}, kID, reference), paramErr);
}

}  // namespace
}  // namespace quenlio
