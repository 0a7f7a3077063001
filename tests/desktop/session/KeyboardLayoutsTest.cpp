// Letters for shortcuts under other layouts.
#include <QtCore/QScopeGuard>
#include <gtest/gtest.h>
#include <string_view>
#include <vector>

#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
#include <xcb/xtest.h>

#include "desktop/linux/session/KeyboardLayouts.h"
#include "desktop/linux/session/QtEventMonitors.h"
#include "desktop/linux/session/X11.h"

#include "tests/desktop/session/OtherPrograms.h"
#include "tests/desktop/session/QtPanelTest.h"

namespace quenlio {
namespace {

// The keys by where they are: that of C on most keyboards, and so on.
constexpr std::uint8_t kC = 54;
constexpr std::uint8_t kQ = 24;
constexpr std::uint8_t kZ = 52;  // Y on a German keyboard
constexpr std::uint8_t kSlash = 61;
constexpr std::uint8_t kBracket = 34;
constexpr std::uint8_t kControl = 37;
constexpr std::uint8_t kShift = 50;

// A layout with these symbols from the key of Q on, a row after the other.
void add(KeyboardLayouts& layouts, std::size_t layout, std::string_view letters) {
  const std::uint8_t rows[] = {24, 38, 52};
  const std::size_t lengths[] = {10, 9, 7};
  for (std::size_t row = 0, done = 0; row < 3; done += lengths[row++]) {
    for (std::size_t key = 0; key < lengths[row] && done + key < letters.size(); ++key) {
      const auto letter = static_cast<std::uint32_t>(letters[done + key]);
      layouts.set(layout, static_cast<std::uint8_t>(rows[row] + key), {letter, letter - 'a' + 'A'});
    }
  }
}

KeyboardLayouts greekBesideFrench() {
  KeyboardLayouts layouts;
  for (std::uint8_t key = 24; key < 60; ++key) {
    layouts.set(0, key, {0x7e1U, 0x7c1U});
  }
  layouts.set(0, kQ, {';', ':'});
  layouts.set(0, kSlash, {'/', '?'});
  layouts.set(0, kBracket, {'[', '{'});
  add(layouts, 1, "azertyuiopqsdfghjklwxcvbn,");
  layouts.set(1, kSlash, {'!', 0xa7});
  layouts.set(1, kBracket, {0xfe52, 0xfe57});
  return layouts;
}

TEST(KeyboardLayouts, takeLettersFromTheFirstLatinLayoutUnderAnother) {
  const KeyboardLayouts layouts = greekBesideFrench();
  EXPECT_EQ(layouts.latinCharacter(0, kC, false), 'c');
  EXPECT_EQ(layouts.latinCharacter(0, kC, true), 'C');
  EXPECT_EQ(layouts.latinCharacter(0, kQ, false), 'a') << "also where the other layout has a sign";
}

TEST(KeyboardLayouts, leaveSignsToTheActiveLayout) {
  const KeyboardLayouts layouts = greekBesideFrench();
  EXPECT_EQ(layouts.latinCharacter(0, kSlash, false), std::nullopt);
  EXPECT_EQ(layouts.latinCharacter(0, kBracket, false), std::nullopt);
}

TEST(KeyboardLayouts, leaveALatinLayoutAlone) {
  const KeyboardLayouts layouts = greekBesideFrench();
  EXPECT_EQ(layouts.latinCharacter(1, kQ, false), std::nullopt);
  EXPECT_EQ(layouts.latinCharacter(7, kQ, false), std::nullopt) << "there is no such layout";
}

TEST(KeyboardLayouts, knowWhereTheLettersAreWithoutALatinLayout) {
  KeyboardLayouts layouts;
  layouts.set(0, kC, {0x6d3, 0x6f3});
  EXPECT_EQ(layouts.latinCharacter(0, kC, false), 'c');
  EXPECT_EQ(layouts.latinCharacter(0, kC, true), 'C');
  EXPECT_EQ(layouts.latinCharacter(0, kSlash, false), std::nullopt);
}

// On the real keyboard.
class LayoutKeys : public QtPanelTest {
 protected:
  void SetUp() override {
    QtPanelTest::SetUp();
    ASSERT_TRUE(show());
    intent_.note();
    panel_.makeKeyAndOrderFront();
    ASSERT_TRUE(waitUntil([this] { return panel_.isKeyWindow() && focusedWindow() == id(); }));
    monitor_ = monitors_.addLocalMonitorForKeyDown([this](const KeyEvent& key) {
      heard_.push_back(key);
      return true;
    });
  }
  void TearDown() override { useLayouts("us", 0); }

  // Has the keyboard write in the one of these layouts that stands there.
  static void useLayouts(const char* layouts, std::uint8_t active) {
    ASSERT_TRUE(outputOf(QStringLiteral("setxkbmap"), {QStringLiteral("-layout"), QString::fromLatin1(layouts)}));
    const auto cookie =
        xcb_xkb_latch_lock_state_checked(x11::connection(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, active, 0, 0, 0);
    const x11::Reply<xcb_generic_error_t> error(xcb_request_check(x11::connection(), cookie));
    ASSERT_EQ(error, nullptr);
    ASSERT_TRUE(waitUntil([active] { return activeLayout() == active; }));
  }
  static int activeLayout() {
    const auto cookie = xcb_xkb_get_state(x11::connection(), XCB_XKB_ID_USE_CORE_KBD);
    const x11::Reply<xcb_xkb_get_state_reply_t> reply(xcb_xkb_get_state_reply(x11::connection(), cookie, nullptr));
    return reply ? reply->group : -1;
  }
  // The physical key itself, whatever the layout makes of it.
  static void strike(std::uint8_t keyCode, bool isDown) {
    xcb_test_fake_input(x11::connection(), isDown ? XCB_KEY_PRESS : XCB_KEY_RELEASE, keyCode, XCB_CURRENT_TIME,
                        XCB_NONE, 0, 0, 0);
    xcb_flush(x11::connection());
  }
  // What the physical key gives, pressed with these others.
  [[nodiscard]] std::optional<std::string> characters(std::uint8_t keyCode,
                                                      const std::vector<std::uint8_t>& held = {}) {
    heard_.clear();
    for (const std::uint8_t key : held) {
      strike(key, true);
    }
    strike(keyCode, true);
    strike(keyCode, false);
    for (const std::uint8_t key : held) {
      strike(key, false);
    }
    return waitUntil([&] { return heard_.size() > held.size(); }) ? heard_[held.size()].charactersIgnoringModifiers
                                                                  : std::nullopt;
  }

  QtEventMonitors monitors_;
  Subscription monitor_;
  std::vector<KeyEvent> heard_;
};

TEST_F(LayoutKeys, giveLatinLettersUnderOtherLayouts) {
  for (const char* layouts : {"us,ru", "us,gr", "us,ara", "us,il"}) {
    useLayouts(layouts, 1);
    EXPECT_EQ(characters(kC, {kControl}), "c") << layouts;
    EXPECT_EQ(characters(kC, {kControl, kShift}), "C") << layouts;
    EXPECT_EQ(characters(kQ, {kControl}), "q") << layouts;
    EXPECT_EQ(characters(kC), "c") << layouts;
  }
}

TEST_F(LayoutKeys, comeFromTheFirstLatinLayoutWhereverItStands) {
  useLayouts("ru,de,us", 0);
  EXPECT_EQ(characters(kZ, {kControl}), "y");
  useLayouts("ru", 0);
  EXPECT_EQ(characters(kZ, {kControl}), "z");
}

TEST_F(LayoutKeys, areTheActiveLayoutsOwnWhereItIsLatin) {
  useLayouts("us,de", 1);
  EXPECT_EQ(characters(kZ, {kControl}), "y");
  useLayouts("us,fr", 1);
  EXPECT_EQ(characters(kQ, {kControl}), "a");
  useLayouts("us,ru", 0);
  EXPECT_EQ(characters(kC, {kControl}), "c");
}

}  // namespace
}  // namespace quenlio
