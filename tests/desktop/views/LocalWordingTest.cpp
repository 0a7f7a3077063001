#include <gtest/gtest.h>

#include "desktop/views/common/LocalWording.h"

namespace quenlio {
namespace {

std::string shown(const char* text) {
  return localWording(text).toStdString();
}

TEST(LocalWording, commandIsControl) {
  EXPECT_EQ(shown("View in Folder (⌘O)"), "View in Folder (Ctrl+O)");
}

TEST(LocalWording, modifiersStandInThisDesktopsOrder) {
  EXPECT_EQ(shown("Share (⇧⌘S)"), "Share (Ctrl+Shift+S)");
  EXPECT_EQ(shown("⌃⌥⇧⌘K"), "Ctrl+Super+Alt+Shift+K");
}

TEST(LocalWording, keysHaveTheirNames) {
  EXPECT_EQ(shown("Save filename (↩)"), "Save filename (Enter)");
  EXPECT_EQ(shown("Move to Trash (⌫)"), "Move to Trash (Backspace)");
  EXPECT_EQ(shown("⌦"), "Delete");
  EXPECT_EQ(shown("⇧⇥"), "Shift+Tab");
  EXPECT_EQ(shown("⌘⌫"), "Ctrl+Backspace");
}

TEST(LocalWording, aModifierAloneIsJustNamed) {
  EXPECT_EQ(shown("Hold ⌘ and ⇧, or (⌥)"), "Hold Ctrl and Shift, or (Alt)");
  EXPECT_EQ(shown("⌘"), "Ctrl");
}

TEST(LocalWording, severalShortcutsInOneTextAreAllNamed) {
  EXPECT_EQ(shown("⌘Z, ⇧⌘Z"), "Ctrl+Z, Ctrl+Shift+Z");
}

TEST(LocalWording, anyOtherTextStays) {
  EXPECT_EQ(shown(""), "");
  EXPECT_EQ(shown("Cancel rename (Esc)"), "Cancel rename (Esc)");
  EXPECT_EQ(shown("Ärger → 🎉.png"), "Ärger → 🎉.png");
}

}  // namespace
}  // namespace quenlio
