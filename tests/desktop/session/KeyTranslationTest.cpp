#include <QtGui/QKeyEvent>
#include <gtest/gtest.h>

#include "desktop/linux/session/KeyTranslation.h"
#include "desktop/linux/session/QtEventMonitors.h"
#include "desktop/linux/session/QtPanel.h"

#include "tests/desktop/session/Desk.h"

namespace quenlio {
namespace {

TEST(KeyTranslation, everyKeyHasOneCodeInEachDirection) {
  int known = 0;
  for (std::uint32_t evdev = 0; evdev < 0x100; ++evdev) {
    const std::uint16_t key = virtualKeyCodeFromEvdev(evdev);
    if (key != kUnknownKeyCode) {
      ++known;
      EXPECT_EQ(evdevCodeFromVirtualKeyCode(key), evdev) << key;
    }
  }
  EXPECT_GT(known, 100);
  EXPECT_EQ(evdevCodeFromVirtualKeyCode(19), 3U);  // the key 2
}

TEST(KeyTranslation, tellsAPressFromARepeat) {
  EXPECT_FALSE(keyEventFrom(QKeyEvent(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"))).isARepeat);
  EXPECT_TRUE(
      keyEventFrom(QKeyEvent(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"), true)).isARepeat);
}

// Keys that are really pressed, on their way to a window that has the keyboard.
class PressedKeys : public testing::Test {
 protected:
  void SetUp() override {
    movePointer(5, 5);
    panel_.setContentView(std::make_unique<QWidget>());
    panel_.setFrame({{100, 100}, {200, 200}});
    intent_.note();
    panel_.makeKeyAndOrderFront();
    ASSERT_TRUE(waitUntil([this] { return panel_.isKeyWindow() && focusedWindow() == panel_.window().winId(); }));
    monitor_ = monitors_.addLocalMonitorForKeyDown([this](const KeyEvent& key) {
      heard_.push_back(key);
      return swallows_;
    });
    panel_.setOnKeyDown([this](const KeyEvent& key) {
      reached_.push_back(key);
      return true;
    });
  }

  // The last key of the combination; its modifiers come before it.
  [[nodiscard]] std::optional<KeyEvent> press(const char* combination, std::uint16_t expected) {
    heard_.clear();
    pressKeys(QString::fromLatin1(combination));
    const bool arrived = waitUntil([&] { return !heard_.empty() && heard_.back().keyCode == expected; });
    return arrived ? std::optional(heard_.back()) : std::nullopt;
  }

  UserIntent intent_;
  CompositorWatch compositor_;
  QtPanel panel_{{{0, 0}, {200, 200}}, intent_, compositor_};
  QtEventMonitors monitors_;
  Subscription monitor_;
  std::vector<KeyEvent> heard_;
  std::vector<KeyEvent> reached_;
  bool swallows_ = true;
};

TEST_F(PressedKeys, giveTheCodeOfThePhysicalKey) {
  const std::pair<const char*, std::uint16_t> keys[] = {
      {"Return", 36}, {"KP_Enter", 76}, {"space", 49},  {"BackSpace", 51}, {"Delete", 117},
      {"Escape", 53}, {"Left", 123},    {"Right", 124}, {"Up", 126},       {"Down", 125},
      {"Tab", 48},    {"a", 0},         {"z", 6},       {"2", 19}};
  for (const auto& [name, code] : keys) {
    const auto key = press(name, code);
    ASSERT_TRUE(key) << name;
    EXPECT_EQ(key->modifierFlags, 0U) << name;
  }
}

TEST_F(PressedKeys, giveTheDesktopsModifiersTheirMeaning) {
  const std::pair<const char*, ModifierFlags> combinations[] = {
      {"ctrl+s", kModifierCommand},  {"ctrl+shift+s", kModifierCommand | kModifierShift},
      {"super+s", kModifierControl}, {"alt+s", kModifierOption},
      {"shift+s", kModifierShift},
  };
  for (const auto& [combination, flags] : combinations) {
    const auto key = press(combination, 1);
    ASSERT_TRUE(key) << combination;
    EXPECT_EQ(key->modifierFlags, flags) << combination;
    const bool isShifted = (flags & kModifierShift) != 0;
    EXPECT_EQ(key->charactersIgnoringModifiers, isShifted ? "S" : "s") << combination;
  }
}

TEST_F(PressedKeys, giveTheirCharactersWithoutModifiers) {
  const std::pair<const char*, std::pair<std::uint16_t, std::string>> keys[] = {
      {"Return", {36, "\r"}},          {"BackSpace", {51, "\x7f"}}, {"space", {49, " "}},
      {"Left", {123, "\xef\x9c\x82"}}, {"ctrl+z", {6, "z"}},
  };
  for (const auto& [name, expected] : keys) {
    const auto key = press(name, expected.first);
    ASSERT_TRUE(key) << name;
    EXPECT_EQ(key->charactersIgnoringModifiers, expected.second) << name;
  }
}

TEST_F(PressedKeys, reachTheWindowOnlyWhenNoMonitorSwallowsThem) {
  ASSERT_TRUE(press("a", 0));
  EXPECT_TRUE(reached_.empty());
  swallows_ = false;
  ASSERT_TRUE(press("b", 11));
  ASSERT_TRUE(waitUntil([this] { return !reached_.empty(); }));
  EXPECT_EQ(reached_.size(), 1U);
  EXPECT_EQ(reached_.back().keyCode, 11);
  EXPECT_EQ(heard_.size(), 1U);
}

TEST_F(PressedKeys, areNotHeardOnceTheMonitorHasEnded) {
  monitor_.cancel();
  pressKeys(QStringLiteral("a"));
  ASSERT_TRUE(waitUntil([this] { return !reached_.empty(); }));
  EXPECT_TRUE(heard_.empty());
}

}  // namespace
}  // namespace quenlio
