#include <gtest/gtest.h>

#include "core/island/ToolbarLayout.h"

namespace quenlio {
namespace {

using Place = Rect<ToolbarSpace>;

TEST(ToolbarLayout, actionsStandLeftAndCloseStandsRight) {
  const auto places = toolbarLayout(IslandLayoutMetrics::forSize(IslandSize::extraSmall), {212, 30});
  const std::array<Place, kToolbarControls> wanted{Place{{0, 3}, {24, 24}},   Place{{33, 3}, {24, 24}},
                                                   Place{{66, 3}, {24, 24}},  Place{{99, 3}, {24, 24}},
                                                   Place{{132, 3}, {24, 24}}, Place{{188, 3}, {24, 24}}};
  EXPECT_EQ(places, wanted);
}

TEST(ToolbarLayout, theInsetIsKeptAtBothEnds) {
  IslandLayoutMetrics metrics = IslandLayoutMetrics::forSize(IslandSize::extraSmall);
  metrics.toolbarContentInset = 7;
  const auto places = toolbarLayout(metrics, {220, 30});
  EXPECT_EQ(places.front(), (Place{{7, 3}, {24, 24}}));
  EXPECT_EQ(places.back(), (Place{{220 - 7 - 24, 3}, {24, 24}}));
}

TEST(ToolbarLayout, aNarrowRowKeepsTheZonesApart) {
  const auto places = toolbarLayout(IslandLayoutMetrics::forSize(IslandSize::xLarge), {100, 34});
  EXPECT_EQ(places.back().minX(), places[4].maxX() + 20);
}

TEST(ToolbarLayout, controlsStandOnWholePoints) {
  const auto places = toolbarLayout(IslandLayoutMetrics::forSize(IslandSize::extraSmall), {212.5, 31});
  EXPECT_EQ(places.front().minY(), 3);
  EXPECT_EQ(places.back().minX(), 188);
}

}  // namespace
}  // namespace quenlio
