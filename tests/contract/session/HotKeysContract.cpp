// What every keeper of hot keys does.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <vector>

#include "desktop/linux/session/KeyTranslation.h"
#include "desktop/linux/session/X11.h"
#include "desktop/linux/session/X11HotKeys.h"

#include "tests/desktop/session/Desk.h"
#include "tests/fakes/FakeDesktop.h"

namespace quenlio {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Key {
  HotKeyCombination combination;
  const char* name;  // for the X server
};
constexpr Key kIsland{{.virtualKeyCode = 19, .modifiers = 256 + 512}, "super+shift+2"};
constexpr Key kOther{{.virtualKeyCode = 19, .modifiers = 256}, "super+2"};
constexpr HotKeyID kID{.signature = 0x49534C44, .id = 1};
constexpr OSStatus kTaken = -9878;

struct FakeKind {
  CallLog log;
  FakeHotKeys fake{log};
  HotKeys& keys() { return fake; }
  void press(const Key& key) const { fake.press(key.combination); }
  [[nodiscard]] bool takeElsewhere(const Key& key) { return fake.takeElsewhere(key.combination); }
};

class RealKind {
 public:
  RealKind() {
    EventHandlerRef handler = 0;
    EventHotKeyRef key = 0;
    const auto heard = [this] {
      ++markers_;
      return noErr;
    };
    if (marker_.InstallEventHandler(heard, handler) != noErr ||
        marker_.RegisterEventHotKey({.virtualKeyCode = 96, .modifiers = 0}, kID, key) != noErr) {
      throw std::runtime_error("F5 cannot be had.");
    }
  }
  HotKeys& keys() { return real_; }
  // Returns when the press has gone by: a later key has been heard.
  void press(const Key& key) {
    const int before = markers_;
    pressKeys(QString::fromLatin1(key.name));
    pressKeys(QStringLiteral("F5"));
    if (!waitUntil([&] { return markers_ > before; })) {
      throw std::runtime_error("F5 was not heard.");
    }
  }
  [[nodiscard]] bool takeElsewhere(const Key& key) {
    const auto keyCode =
        static_cast<xcb_keycode_t>(*evdevCodeFromVirtualKeyCode(key.combination.virtualKeyCode) + kX11KeyCodeOffset);
    const bool hasShift = (key.combination.modifiers & 512) != 0;
    const auto modifiers = static_cast<std::uint16_t>(XCB_MOD_MASK_4 | (hasShift ? XCB_MOD_MASK_SHIFT : 0));
    const auto cookie = xcb_grab_key_checked(other_.connection(), 0, x11::rootWindow(), modifiers, keyCode,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const x11::Reply<xcb_generic_error_t> error(xcb_request_check(other_.connection(), cookie));
    return error == nullptr;
  }

 private:
  UserIntent intent_;
  OtherProgram other_;
  X11HotKeys marker_{intent_};
  X11HotKeys real_{intent_};
  int markers_ = 0;
};

template <class Kind>
class HotKeysContract : public testing::Test {
 protected:
  HotKeys& keys() { return kind.keys(); }
  EventHandlerRef install(int who) {
    EventHandlerRef reference = 0;
    const auto handler = [this, who] {
      told.push_back(who);
      return noErr;
    };
    EXPECT_EQ(keys().InstallEventHandler(handler, reference), noErr);
    EXPECT_NE(reference, 0U);
    return reference;
  }
  EventHotKeyRef enter(const Key& key) {
    EventHotKeyRef reference = 0;
    EXPECT_EQ(keys().RegisterEventHotKey(key.combination, kID, reference), noErr);
    EXPECT_NE(reference, 0U);
    return reference;
  }

  std::vector<int> told;
  Kind kind;
};

using Kinds = testing::Types<FakeKind, RealKind>;
TYPED_TEST_SUITE(HotKeysContract, Kinds);

TYPED_TEST(HotKeysContract, eachPressOfARegisteredKeyReachesTheHandler) {
  this->install(1);
  this->enter(kIsland);
  this->kind.press(kIsland);
  EXPECT_THAT(this->told, ElementsAre(1));
  this->kind.press(kIsland);
  EXPECT_THAT(this->told, ElementsAre(1, 1));
}

TYPED_TEST(HotKeysContract, itReachesEveryHandlerThatIsInstalled) {
  this->install(1);
  const EventHandlerRef second = this->install(2);
  this->enter(kIsland);
  this->kind.press(kIsland);
  EXPECT_THAT(this->told, testing::UnorderedElementsAre(1, 2));
  this->keys().RemoveEventHandler(second);
  this->told.clear();
  this->kind.press(kIsland);
  EXPECT_THAT(this->told, ElementsAre(1));
}

TYPED_TEST(HotKeysContract, aKeyThatIsNotRegisteredReachesNobody) {
  this->install(1);
  this->enter(kIsland);
  this->kind.press(kOther);
  EXPECT_THAT(this->told, IsEmpty());
}

TYPED_TEST(HotKeysContract, aRegisteredKeyWithoutAHandlerIsNoError) {
  this->enter(kIsland);
  this->kind.press(kIsland);
  this->install(1);
  this->kind.press(kIsland);
  EXPECT_THAT(this->told, ElementsAre(1));
}

TYPED_TEST(HotKeysContract, aHandlerThatIsRemovedByAnotherIsNotCalledAnyMore) {
  EventHandlerRef first = 0;
  EventHandlerRef second = 0;
  const auto ending = [this, &first, &second] {
    this->told.push_back(1);
    this->keys().RemoveEventHandler(first);
    this->keys().RemoveEventHandler(second);
    return noErr;
  };
  // Whichever of the two is called first ends both.
  ASSERT_EQ(this->keys().InstallEventHandler(ending, first), noErr);
  ASSERT_EQ(this->keys().InstallEventHandler(ending, second), noErr);
  this->enter(kIsland);
  this->kind.press(kIsland);
  EXPECT_THAT(this->told, ElementsAre(1));
}

TYPED_TEST(HotKeysContract, aKeyThatAnotherProgramHasGivesItsError) {
  this->install(1);
  ASSERT_TRUE(this->kind.takeElsewhere(kIsland));
  EventHotKeyRef reference = 0;
  EXPECT_EQ(this->keys().RegisterEventHotKey(kIsland.combination, kID, reference), kTaken);
  EXPECT_EQ(reference, 0U);
  this->kind.press(kIsland);
  EXPECT_THAT(this->told, IsEmpty());
  this->enter(kOther);
  this->kind.press(kOther);
  EXPECT_THAT(this->told, ElementsAre(1));
}

TYPED_TEST(HotKeysContract, aKeyOfOnesOwnIsTakenTooAndGoesOnWorking) {
  this->install(1);
  this->enter(kIsland);
  EventHotKeyRef again = 0;
  EXPECT_EQ(this->keys().RegisterEventHotKey(kIsland.combination, kID, again), kTaken);
  EXPECT_EQ(again, 0U);
  this->kind.press(kIsland);
  EXPECT_THAT(this->told, ElementsAre(1));
}

TYPED_TEST(HotKeysContract, whatIsUnregisteredIsNotHeardAndFreeAgain) {
  this->install(1);
  const EventHotKeyRef reference = this->enter(kIsland);
  const EventHotKeyRef other = this->enter(kOther);
  EXPECT_NE(reference, other);
  EXPECT_FALSE(this->kind.takeElsewhere(kIsland));
  this->keys().UnregisterEventHotKey(reference);
  this->keys().UnregisterEventHotKey(reference);
  this->kind.press(kIsland);
  EXPECT_THAT(this->told, IsEmpty());
  this->kind.press(kOther);
  EXPECT_THAT(this->told, ElementsAre(1));
  this->keys().UnregisterEventHotKey(this->enter(kIsland));
  EXPECT_TRUE(this->kind.takeElsewhere(kIsland));
}

}  // namespace
}  // namespace quenlio
