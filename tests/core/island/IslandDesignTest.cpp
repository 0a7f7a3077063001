// The tables of type sizes and lengths that change with the island, and how its small buttons stand out.
#include <gtest/gtest.h>

#include "core/island/FolderAccessRecoveryDesign.h"
#include "core/island/IslandLayoutMetrics.h"
#include "core/island/IslandTypeSizes.h"
#include "core/island/RowButtonEmphasis.h"

namespace quenlio {
namespace {

constexpr IslandSize kSizes[] = {IslandSize::extraSmall, IslandSize::small, IslandSize::medium, IslandSize::large,
                                 IslandSize::xLarge};

TEST(IslandTypeSizes, theEmptyLibrarysWordsGrowWithEachSize) {
  int last = 0;
  for (const IslandSize size : kSizes) {
    EXPECT_GT(IslandTypeSizes::forSize(size).emptyLibrary, last);
    last = IslandTypeSizes::forSize(size).emptyLibrary;
  }
}

TEST(IslandTypeSizes, theNameFitsIntoItsRowAndIsNeverSmallerInALargerIsland) {
  int last = 0;
  for (const IslandSize size : kSizes) {
    const int nameRow = IslandTypeSizes::forSize(size).nameRow;
    EXPECT_GE(nameRow, last);
    EXPECT_LT(1.5 * nameRow, IslandLayoutMetrics::forSize(size).metadataHeight);
    last = nameRow;
  }
}

// The symbol above the title needs the height of the three larger ones.
TEST(FolderAccessRecoveryDesign, hasRoomFromTheMiddleSizeOnAndGrows) {
  FolderAccessRecoveryDesign last{};
  for (const IslandSize size : kSizes) {
    const auto design = FolderAccessRecoveryDesign::forSize(size);
    EXPECT_EQ(design.isRoomy, size >= IslandSize::medium);
    EXPECT_GT(design.symbol, last.symbol);
    EXPECT_GT(design.title, last.title);
    EXPECT_GE(design.text, last.text);
    EXPECT_GT(design.button, last.button);
    last = design;
  }
}

TEST(FolderAccessRecoveryDesign, theButtonAnswersToThePointerAndToThePress) {
  EXPECT_EQ(FolderAccessRecoveryDesign::pillOpacity(false, false), 0.86);
  EXPECT_EQ(FolderAccessRecoveryDesign::pillOpacity(true, false), 0.96);
  EXPECT_EQ(FolderAccessRecoveryDesign::pillOpacity(true, true), 0.72);
  EXPECT_EQ(FolderAccessRecoveryDesign::pillOpacity(false, true), 0.72);
}

TEST(RowButtonEmphasis, aButtonThatWaitsIsRevealedByTheKeyboardToo) {
  EXPECT_EQ(RowButtonEmphasis::of({.isRevealed = false}).presence, 0);
  EXPECT_EQ(RowButtonEmphasis::of({.isRevealed = true}).presence, 1);
  EXPECT_EQ(RowButtonEmphasis::of({.isRevealed = false, .isFocused = true}).presence, 1);
}

TEST(RowButtonEmphasis, standsOutUnderThePointerAndMoreWhenItIsPressed) {
  const RowButtonEmphasis rest = RowButtonEmphasis::of({});
  EXPECT_EQ(rest, (RowButtonEmphasis{.presence = 1, .tint = 0, .isStrong = false}));
  EXPECT_EQ(RowButtonEmphasis::of({.isHovering = true}), (RowButtonEmphasis{1, 0.10, true}));
  EXPECT_EQ(RowButtonEmphasis::of({.isHovering = true, .isPressed = true}), (RowButtonEmphasis{1, 0.18, true}));
  EXPECT_EQ(RowButtonEmphasis::of({.isFocused = true}), (RowButtonEmphasis{1, 0, true}));
}

}  // namespace
}  // namespace quenlio
