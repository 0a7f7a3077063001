#include <gtest/gtest.h>

#include "core/island/IslandTexts.h"
#include "core/island/ToolbarControlID.h"

namespace quenlio {
namespace {

TEST(IslandTexts, eachToolbarControlHasItsSymbolItsNameAndItsHelp) {
  using enum ToolbarControlID;
  EXPECT_EQ(controlText(copy), (ControlText{"doc.on.doc", "Copy", "Copy (⌘C)"}));
  EXPECT_EQ(controlText(annotate), (ControlText{"highlighter", "Edit", "Edit (⌘E)"}));
  EXPECT_EQ(controlText(share), (ControlText{"square.and.arrow.up", "Share", "Share (⇧⌘S)"}));
  EXPECT_EQ(controlText(folder), (ControlText{"folder", "View in Folder", "View in Folder (⌘O)"}));
  EXPECT_EQ(controlText(trash), (ControlText{"trash", "Move to Trash", "Move to Trash (⌫)"}));
  EXPECT_EQ(controlText(close), (ControlText{"xmark", "Close", "Close"}));
}

TEST(IslandTexts, thePreviewIsNamedByItsFile) {
  EXPECT_EQ(IslandTexts::previewName("a.png"), "a.png preview");
  EXPECT_EQ(IslandTexts::previewName(std::nullopt), "No preview");
  EXPECT_EQ(IslandTexts::kEmptyPreviewSymbol, "photo");
}

TEST(IslandTexts, anEmptyLibraryTellsWhatItIsFor) {
  EXPECT_EQ(IslandTexts::kEmptyLibrary,
            "Take a screenshot to see it here, then rename, edit, copy, save, or share it.");
}

TEST(IslandTexts, renamingHasAFieldAndTwoButtonsBesideIt) {
  EXPECT_EQ(IslandTexts::kRename, (ControlText{"pencil", "Rename", "Rename (↩)"}));
  EXPECT_EQ(IslandTexts::kFilename, "Filename");
  EXPECT_EQ(IslandTexts::kSaveFilename, (ControlText{"checkmark", "Save filename", "Save filename (↩)"}));
  EXPECT_EQ(IslandTexts::kCancelRename, (ControlText{"xmark", "Cancel rename", "Cancel rename (Esc)"}));
}

TEST(IslandTexts, aFolderThatCannotBeReadOffersTheWayOut) {
  EXPECT_EQ(IslandTexts::kFolderAccessSymbol, "lock.shield");
  EXPECT_EQ(IslandTexts::kFolderAccessTitle, "Folder Access Needed");
  EXPECT_EQ(IslandTexts::kFolderAccessText,
            "Allow access to your screenshot folder so the island can display captures.");
  EXPECT_EQ(IslandTexts::kAllowAccess,
            (ControlText{"arrow.up.right.square", "Allow Access", "Open Privacy settings and re-check folder access"}));
}

}  // namespace
}  // namespace quenlio
