#include <gtest/gtest.h>
#include <utility>

#include "core/island/IslandLayoutMetrics.h"

namespace quenlio {
namespace {

// The rows stand here in full, one a size and in the order of the fields, so that the table of the program, which is
// turned the other way round, cannot be checked against itself.
TEST(IslandLayoutMetrics, extraSmall) {
  const IslandLayoutMetrics expected{10, 3, 0, 2, 4, 2, 22, 17, 30, 128, 0, 24, 9, 8, 0, 26, 24, 16, 24, 7, 9, 0, 5};
  EXPECT_EQ(IslandLayoutMetrics::forSize(IslandSize::extraSmall), expected);
}

TEST(IslandLayoutMetrics, small) {
  const IslandLayoutMetrics expected{12, 4,  1, 2,  4,  2,  24, 18, 34, 147, 0, 30,
                                     10, 10, 0, 30, 28, 18, 28, 12, 14, 0,   6};
  EXPECT_EQ(IslandLayoutMetrics::forSize(IslandSize::small), expected);
}

TEST(IslandLayoutMetrics, medium) {
  const IslandLayoutMetrics expected{12, 5,  2, 3,  5,  3,  24, 18, 34, 209, 0, 34,
                                     10, 12, 1, 34, 30, 18, 30, 14, 14, 0,   6};
  EXPECT_EQ(IslandLayoutMetrics::forSize(IslandSize::medium), expected);
}

TEST(IslandLayoutMetrics, large) {
  const IslandLayoutMetrics expected{12, 7,  3, 4,  5,  4,  24, 18, 34, 277, 0, 38,
                                     10, 12, 2, 40, 32, 18, 32, 18, 14, 0,   6};
  EXPECT_EQ(IslandLayoutMetrics::forSize(IslandSize::large), expected);
}

TEST(IslandLayoutMetrics, xLarge) {
  const IslandLayoutMetrics expected{12, 9,  4, 5,  6,  4,  24, 18, 34, 345, 0, 42,
                                     10, 12, 2, 45, 34, 18, 32, 20, 14, 0,   6};
  EXPECT_EQ(IslandLayoutMetrics::forSize(IslandSize::xLarge), expected);
}

TEST(IslandLayoutMetrics, panelSide) {
  EXPECT_EQ(IslandLayoutMetrics::panelSide(IslandSize::extraSmall), 232);
  EXPECT_EQ(IslandLayoutMetrics::panelSide(IslandSize::small), 266);
  EXPECT_EQ(IslandLayoutMetrics::panelSide(IslandSize::medium), 340);
  EXPECT_EQ(IslandLayoutMetrics::panelSide(IslandSize::large), 420);
  EXPECT_EQ(IslandLayoutMetrics::panelSide(IslandSize::xLarge), 500);
}

// The stack is aligned to the top of the panel; what its heights leave free lies below the strip.
TEST(IslandLayoutMetrics, stackFitsIntoThePanel) {
  const std::pair<IslandSize, double> stacks[] = {{IslandSize::extraSmall, 219},
                                                  {IslandSize::small, 252},
                                                  {IslandSize::medium, 325},
                                                  {IslandSize::large, 406},
                                                  {IslandSize::xLarge, 486}};
  for (const auto& [size, height] : stacks) {
    const IslandLayoutMetrics& m = IslandLayoutMetrics::forSize(size);
    EXPECT_EQ(m.topPadding + m.toolbarHeight + m.toolbarToPreviewSpacing + m.previewHeight + m.previewToMetaSpacing +
                  m.metadataHeight + m.metaToTraySpacing + m.trayHeight + m.bottomPadding,
              height);
    EXPECT_LT(height, IslandLayoutMetrics::panelSide(size));
  }
}

}  // namespace
}  // namespace quenlio
