// What a key that is held down does again and again, and what it does once.
#include "tests/core/island/KeysTest.h"

namespace quenlio {
namespace {

TEST_F(Keys, aHeldArrowGoesOnAlongTheStrip) {
  openWith({"a.png", "b.png", "c.png"});
  EXPECT_TRUE(key(kRight));
  EXPECT_TRUE(heldKey(kRight));
  EXPECT_EQ(selectedName(), "a.png");
  EXPECT_FALSE(heldKey(kRight));
}

TEST_F(Keys, aHeldBackspaceTrashesOneScreenshot) {
  openWith({"a.png", "b.png", "c.png"});
  EXPECT_TRUE(key(kBackspace));
  store.select(store.items.get().front().id);
  EXPECT_TRUE(heldKey(kBackspace));
  EXPECT_TRUE(heldKey(kForwardDelete));
  EXPECT_EQ(store.items.get().size(), 2U);
}

TEST_F(Keys, heldKeysDoNotToggle) {
  openWith({"a.png"});
  EXPECT_TRUE(key(kSpace));
  EXPECT_TRUE(heldKey(kSpace));
  EXPECT_TRUE(platform.previewPanel.isVisible());
  EXPECT_TRUE(key(kReturn));
  EXPECT_TRUE(heldKey(kReturn));
  EXPECT_TRUE(heldKey(kEnter));
  EXPECT_EQ(state().renameRequestToken.get(), 1);
}

TEST_F(Keys, heldLettersActOnce) {
  openWith({"a.png"});
  const auto held = [this](const std::string& letter, ModifierFlags flags) {
    return panel().handKeyDown({flags, 200, letter, true});
  };
  EXPECT_TRUE(held("e", kModifierCommand));
  EXPECT_TRUE(held("o", kModifierCommand));
  EXPECT_TRUE(held("c", kModifierCommand));
  EXPECT_TRUE(held("s", kModifierCommand | kModifierShift));
  EXPECT_TRUE(platform.editors.opened.empty());
  EXPECT_TRUE(platform.workspace.revealed.empty());
  EXPECT_FALSE(platform.pasteboard.contents);
  key(kBackspace);
  EXPECT_TRUE(held("z", kModifierCommand));
  EXPECT_TRUE(store.items.get().empty());
}

TEST_F(Keys, aHeldKeyWithoutARowIsPassedOn) {
  openWith({"a.png"});
  EXPECT_FALSE(heldKey(kEscape));
  EXPECT_FALSE(heldKey(kBackspace, kModifierCommand));
  panel().focus(FirstResponder::textField);
  EXPECT_FALSE(heldKey(kBackspace));
}

}  // namespace
}  // namespace quenlio
