#include <gtest/gtest.h>
#include <utility>

#include "core/island/StripLayout.h"

namespace quenlio {
namespace {

// The smallest island's: cells of 24 with 8 between them, 212 points seen, 18 of which fade.
StripLayout strip(std::size_t count) {
  return {.metrics = IslandLayoutMetrics::forSize(IslandSize::extraSmall), .count = count, .width = 212};
}

TEST(StripLayout, cellsStandASpacingApart) {
  EXPECT_EQ(strip(3).leftOf(0), 0);
  EXPECT_EQ(strip(3).leftOf(1), 32);
  EXPECT_EQ(strip(3).leftOf(2), 64);
}

TEST(StripLayout, cellsAreInsetOrInTheMiddleOfATrayThatIsTooLowForThat) {
  for (const auto& [size, top] : {std::pair{IslandSize::extraSmall, 0.0},
                                  {IslandSize::small, 0.0},
                                  {IslandSize::medium, 0.0},
                                  {IslandSize::large, 1.0},
                                  {IslandSize::xLarge, 1.5}}) {
    EXPECT_EQ((StripLayout{IslandLayoutMetrics::forSize(size), 1, 200}.top()), top) << static_cast<int>(size);
  }
  IslandLayoutMetrics high = IslandLayoutMetrics::forSize(IslandSize::xLarge);
  high.trayHeight = 46;
  EXPECT_EQ((StripLayout{high, 1, 200}.top()), 2);
  high.trayHeight = 40;
  EXPECT_EQ((StripLayout{high, 1, 200}.top()), 0) << "and what is cut off is cut off below";
}

TEST(StripLayout, scrollsAsFarAsTheLastCellAndNotAtAllWhenAllIsSeen) {
  EXPECT_EQ(strip(0).furthest(), 0);
  EXPECT_EQ(strip(6).furthest(), 0);
  EXPECT_EQ(strip(7).furthest(), 7 * 32 - 8 - 212);
  EXPECT_EQ(strip(10).furthest(), 100);
  EXPECT_EQ(strip(10).within(-5), 0);
  EXPECT_EQ(strip(10).within(40), 40);
  EXPECT_EQ(strip(10).within(101), 100);
}

TEST(StripLayout, whatIsInSightMovesNothing) {
  EXPECT_EQ(strip(10).offsetShowing(3, 0), 0);
  EXPECT_EQ(strip(10).offsetShowing(4, 40), 40);
}

TEST(StripLayout, whatIsBeyondAnEndComesClearOfItsFadeWithAGlimpseOfTheNext) {
  // The cell from 192 to 216, then 18 that fade and the spacing.
  EXPECT_EQ(strip(10).offsetShowing(6, 0), 216 + 18 + 8 - 212);
  // The cell from 64 on.
  EXPECT_EQ(strip(10).offsetShowing(2, 100), 64 - 18 - 8);
}

TEST(StripLayout, theFirstAndTheLastAreShownAtTheirEnds) {
  EXPECT_EQ(strip(10).offsetShowing(0, 77), 0);
  EXPECT_EQ(strip(10).offsetShowing(9, 0), 100);
  EXPECT_EQ(strip(3).offsetShowing(2, 0), 0);
}

}  // namespace
}  // namespace quenlio
