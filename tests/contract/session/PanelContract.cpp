// What every panel does: place, visibility, keyboard, screen. Its animations are a contract of their own.
#include "tests/contract/session/PanelContract.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

namespace quenlio {
namespace {

using testing::ElementsAre;

const PressedKey kC{"c", {.modifierFlags = 0, .keyCode = 8, .charactersIgnoringModifiers = "c"}};
const PressedKey kBackspace{"BackSpace", {.modifierFlags = 0, .keyCode = 51, .charactersIgnoringModifiers = "\x7f"}};

template <class Kind>
class PanelContract : public testing::Test {
 protected:
  // Shows the panel and gives it the keyboard, as the user has just asked for it.
  [[nodiscard]] bool makeKey() {
    kind.userAsks();
    panel->makeKeyAndOrderFront();
    panel->makeContentViewFirstResponder();
    return kind.waitFor([this] { return panel->isKeyWindow(); });
  }
  // Hands the key codes of what reaches the panel to a list.
  void listen(std::vector<std::uint16_t>& codes) {
    panel->setOnKeyDown([&codes](const KeyEvent& key) {
      codes.push_back(key.keyCode);
      return true;
    });
  }
  [[nodiscard]] std::optional<ScreenInfo> screenFrom(double minX) {
    const auto all = kind.screens().screens();
    const auto found = std::ranges::find(all, minX, [](const ScreenInfo& screen) { return screen.frame.minX(); });
    return found != all.end() ? std::optional(*found) : std::nullopt;
  }

  static constexpr Rect<Screen> kFrame{{700, 300}, {232, 232}};
  Kind kind;
  std::unique_ptr<Panel> panel = kind.make(kFrame);
};

using Kinds = testing::Types<FakePanels, RealPanels>;
TYPED_TEST_SUITE(PanelContract, Kinds);

TYPED_TEST(PanelContract, startsOrderedOutWhereItWasMade) {
  EXPECT_FALSE(this->panel->isVisible());
  EXPECT_FALSE(this->panel->isKeyWindow());
  EXPECT_EQ(this->panel->frame(), this->kFrame);
}

TYPED_TEST(PanelContract, isVisibleFromOrderingFrontToOrderingOut) {
  this->panel->orderFrontRegardless();
  EXPECT_TRUE(this->panel->isVisible());
  this->panel->orderFrontRegardless();
  EXPECT_TRUE(this->panel->isVisible());
  this->panel->orderOut();
  EXPECT_FALSE(this->panel->isVisible());
  this->panel->orderOut();
  EXPECT_FALSE(this->panel->isVisible());
  this->panel->makeKeyAndOrderFront();
  EXPECT_TRUE(this->panel->isVisible());
}

TYPED_TEST(PanelContract, givesTheFrameBackAsItWasSetShownOrNot) {
  const Rect<Screen> between{{100.25, 200.5}, {340.75, 300.5}};
  this->panel->setFrame(between);
  EXPECT_EQ(this->panel->frame(), between);
  this->panel->orderFrontRegardless();
  EXPECT_EQ(this->panel->frame(), between);
  this->panel->setFrame(this->kFrame);
  EXPECT_EQ(this->panel->frame(), this->kFrame);
  this->panel->orderOut();
  EXPECT_EQ(this->panel->frame(), this->kFrame);
}

TYPED_TEST(PanelContract, settingTheOriginKeepsTheSize) {
  this->panel->orderFrontRegardless();
  this->panel->setFrameOrigin({50, 60});
  EXPECT_EQ(this->panel->frame(), (Rect<Screen>{{50, 60}, this->kFrame.size}));
}

TYPED_TEST(PanelContract, showsTheAlphaThatWasSet) {
  ASSERT_TRUE(this->kind.blend());
  this->panel->orderFrontRegardless();
  for (const double alpha : {0.5, 0.0, 1.0}) {
    this->panel->setAlphaValue(alpha);
    EXPECT_NEAR(this->kind.alpha(), alpha, 0.01);
  }
  this->panel->setAlphaValue(0);
  this->panel->orderOut();
  this->panel->orderFrontRegardless();
  EXPECT_NEAR(this->kind.alpha(), 0, 0.01) << "a panel that comes back has the alpha that it went with";
}

TYPED_TEST(PanelContract, takesTheKeyboardWhenTheUserAskedForItAndHasNoneOnceItIsOut) {
  ASSERT_TRUE(this->makeKey());
  this->panel->orderOut();
  EXPECT_TRUE(this->kind.waitFor([this] { return !this->panel->isKeyWindow(); }));
}

TYPED_TEST(PanelContract, doesNotTakeTheKeyboardByBeingShown) {
  ASSERT_TRUE(this->kind.anotherProgramTakesKeyboard());
  this->kind.userAsks();
  this->panel->orderFrontRegardless();
  ASSERT_TRUE(this->kind.press(kC));
  EXPECT_FALSE(this->panel->isKeyWindow());
}

TYPED_TEST(PanelContract, isNotMadeKeyWhileItIsOut) {
  ASSERT_TRUE(this->kind.anotherProgramTakesKeyboard());
  this->kind.userAsks();
  this->panel->makeKeyWindow();
  EXPECT_FALSE(this->panel->isVisible());
  EXPECT_FALSE(this->panel->isKeyWindow());
  this->panel->orderFrontRegardless();
  ASSERT_TRUE(this->kind.press(kC));
  EXPECT_FALSE(this->panel->isKeyWindow()) << "nor when it is shown afterwards";
}

TYPED_TEST(PanelContract, isMadeKeyWhileItIsShown) {
  this->panel->orderFrontRegardless();
  this->kind.userAsks();
  this->panel->makeKeyWindow();
  EXPECT_TRUE(this->kind.waitFor([this] { return this->panel->isKeyWindow(); }));
}

TYPED_TEST(PanelContract, itsKeysAreTheContentsUnlessATextFieldHasBeenEntered) {
  ASSERT_TRUE(this->makeKey());
  EXPECT_EQ(this->panel->firstResponder(), FirstResponder::contentView);
  this->kind.enterTextField();
  EXPECT_EQ(this->panel->firstResponder(), FirstResponder::textField);
  this->panel->makeKeyWindow();
  EXPECT_EQ(this->panel->firstResponder(), FirstResponder::textField) << "the keyboard alone changes nothing inside";
  this->panel->makeContentViewFirstResponder();
  EXPECT_EQ(this->panel->firstResponder(), FirstResponder::contentView);
}

TYPED_TEST(PanelContract, tellsOfKeysWhileItHasTheKeyboard) {
  std::vector<KeyEvent> keys;
  this->panel->setOnKeyDown([&keys](const KeyEvent& key) {
    keys.push_back(key);
    return true;
  });
  ASSERT_TRUE(this->makeKey());
  for (const PressedKey& key : {kC, kBackspace}) {
    keys.clear();
    ASSERT_TRUE(this->kind.press(key));
    ASSERT_TRUE(this->kind.waitFor([&keys] { return !keys.empty(); })) << key.name;
    EXPECT_EQ(keys.front().keyCode, key.event.keyCode);
    EXPECT_EQ(keys.front().modifierFlags, key.event.modifierFlags);
    EXPECT_EQ(keys.front().charactersIgnoringModifiers, key.event.charactersIgnoringModifiers);
    EXPECT_EQ(keys.size(), 1U);
  }
}

TYPED_TEST(PanelContract, tellsOfNoKeysWhileAnotherHasTheKeyboard) {
  std::vector<std::uint16_t> codes;
  this->listen(codes);
  ASSERT_TRUE(this->kind.anotherProgramTakesKeyboard());
  this->panel->orderFrontRegardless();
  ASSERT_TRUE(this->kind.press(kC));
  EXPECT_TRUE(codes.empty());
}

TYPED_TEST(PanelContract, theLastCallbackForKeysIsTheOneThatIsTold) {
  std::vector<std::uint16_t> before;
  std::vector<std::uint16_t> after;
  ASSERT_TRUE(this->makeKey());
  this->panel->setOnKeyDown(nullptr);
  ASSERT_TRUE(this->kind.press(kC));
  this->listen(before);
  this->listen(after);
  ASSERT_TRUE(this->kind.press(kBackspace));
  ASSERT_TRUE(this->kind.waitFor([&after] { return !after.empty() && after.back() == 51; }));
  EXPECT_TRUE(before.empty());
}

TYPED_TEST(PanelContract, isOnTheScreenThatHoldsMostOfIt) {
  this->kind.splitScreen();
  const auto left = this->screenFrom(0);
  const auto right = this->screenFrom(640);
  ASSERT_TRUE(left && right);
  this->panel->setFrame({{600, 300}, {100, 100}});
  EXPECT_EQ(this->panel->screen(), right);
  this->panel->setFrame({{580, 300}, {100, 100}});
  EXPECT_EQ(this->panel->screen(), left);
}

TYPED_TEST(PanelContract, isOnNoScreenOutsideOfAll) {
  this->panel->setFrame(this->kFrame);
  EXPECT_EQ(this->panel->screen(), this->kind.screens().mainScreen());
  for (const Point<Screen> outside : {Point<Screen>{5000, 300}, {700, -232}, {1280, 300}, {700, 800}}) {
    this->panel->setFrameOrigin(outside);
    EXPECT_FALSE(this->panel->screen()) << outside.x << ' ' << outside.y;
  }
}

}  // namespace
}  // namespace quenlio
