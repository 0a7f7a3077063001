#include <gtest/gtest.h>

#include "core/island/IslandLayout.h"

namespace quenlio {
namespace {

// Lengths that no size has and of which no two are alike, so that none can stand in for another or be left out.
constexpr IslandLayoutMetrics kMetrics{.horizontalPadding = 11,
                                       .topPadding = 5,
                                       .bottomPadding = 17,
                                       .toolbarToPreviewSpacing = 3,
                                       .previewToMetaSpacing = 9,
                                       .metaToTraySpacing = 2,
                                       .cornerRadius = 1000,
                                       .previewCornerRadius = 1000,
                                       .toolbarHeight = 31,
                                       .previewHeight = 120,
                                       .previewHorizontalInset = 7,
                                       .thumbSize = 1000,
                                       .thumbRadius = 1000,
                                       .thumbSpacing = 1000,
                                       .trayVerticalInset = 1000,
                                       .trayHeight = 40,
                                       .metadataHeight = 23,
                                       .toolbarIconSize = 1000,
                                       .toolbarControlSize = 1000,
                                       .toolbarZoneSpacing = 1000,
                                       .toolbarIconSpacing = 1000,
                                       .toolbarContentInset = 1000,
                                       .previewContentInset = 1000};

TEST(IslandLayout, stacksItsPartsFromTheTopEachInsetOnBothSides) {
  const IslandLayout layout = islandLayout(kMetrics, 300);
  EXPECT_EQ(layout.toolbar, (Rect<IslandContent>{{18, 5}, {264, 31}}));
  EXPECT_EQ(layout.preview, (Rect<IslandContent>{{18, 39}, {264, 120}}));
  EXPECT_EQ(layout.nameRow, (Rect<IslandContent>{{18, 168}, {264, 23}}));
  EXPECT_EQ(layout.tray, (Rect<IslandContent>{{18, 193}, {264, 40}}));
}

TEST(IslandLayout, anEmptyLibraryHasTheRoomOfTheNameAndTheTray) {
  EXPECT_EQ(islandLayout(kMetrics, 300).emptyState, (Rect<IslandContent>{{18, 168}, {264, 65}}));
}

TEST(IslandLayout, extraSmall) {
  const IslandLayoutMetrics& metrics = IslandLayoutMetrics::forSize(IslandSize::extraSmall);
  const IslandLayout layout = islandLayout(metrics, IslandLayoutMetrics::panelSide(IslandSize::extraSmall));
  EXPECT_EQ(layout.toolbar, (Rect<IslandContent>{{10, 3}, {212, 30}}));
  EXPECT_EQ(layout.preview, (Rect<IslandContent>{{10, 35}, {212, 128}}));
  EXPECT_EQ(layout.nameRow, (Rect<IslandContent>{{10, 167}, {212, 24}}));
  EXPECT_EQ(layout.tray, (Rect<IslandContent>{{10, 193}, {212, 26}}));
}

TEST(IslandLayout, everySizesPartsLieInsideThePanel) {
  for (const IslandSize size :
       {IslandSize::extraSmall, IslandSize::small, IslandSize::medium, IslandSize::large, IslandSize::xLarge}) {
    const double side = IslandLayoutMetrics::panelSide(size);
    const IslandLayoutMetrics& metrics = IslandLayoutMetrics::forSize(size);
    const IslandLayout layout = islandLayout(metrics, side);
    EXPECT_EQ(layout.toolbar.maxX(), side - metrics.horizontalPadding);
    EXPECT_LE(layout.tray.maxY() + metrics.bottomPadding, side);
  }
}

}  // namespace
}  // namespace quenlio
