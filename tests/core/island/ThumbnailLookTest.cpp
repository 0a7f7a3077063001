#include <gtest/gtest.h>

#include "core/island/IslandThemeTokens.h"
#include "core/island/ThumbnailLook.h"

namespace quenlio {
namespace {

class ThumbnailLookTest : public testing::TestWithParam<std::tuple<IslandAppearanceStyle, bool>> {
 protected:
  [[nodiscard]] ThumbnailLook look(const ThumbnailState& state, double presence = 1) const {
    return ThumbnailLook::of(state, tokens, presence, 24);
  }
  const IslandThemeTokens tokens = IslandThemeTokens::forAppearance(std::get<0>(GetParam()), std::get<1>(GetParam()));
};

TEST_P(ThumbnailLookTest, isPalerUntilItIsSelected) {
  const ThumbnailLook plain = look({});
  EXPECT_EQ(plain.opacity, tokens.unselectedThumbnailOpacity);
  EXPECT_EQ(plain.fill, tokens.thumbnailPlateFill);
  EXPECT_EQ(plain.stroke, tokens.thumbnailDefaultStroke);
  EXPECT_EQ(plain.shadow, 0);
  EXPECT_EQ(plain.frame, 0);
  EXPECT_EQ(plain.ring, 0);
  EXPECT_EQ(plain.scale, 1);
  const ThumbnailLook selected = look({.selected = 1});
  EXPECT_EQ(selected.opacity, 1);
  EXPECT_EQ(selected.fill, tokens.thumbnailPlateSelectedFill);
  EXPECT_EQ(selected.stroke, tokens.thumbnailSelectedStroke);
  EXPECT_EQ(selected.shadow, 1);
  EXPECT_EQ(selected.frame, 3);  // of 24
  EXPECT_EQ(selected.ring, 0);
  EXPECT_EQ(look({.selected = 1, .primary = 1}).ring, 2);
}

TEST_P(ThumbnailLookTest, thePointerLiftsItAndLeavesItsColours) {
  const ThumbnailLook plain = look({});
  const ThumbnailLook hovered = look({.hovered = 1});
  EXPECT_GT(hovered.scale, 1);
  EXPECT_EQ(hovered.opacity, plain.opacity);
  EXPECT_EQ(hovered.fill, plain.fill);
  EXPECT_EQ(hovered.stroke, plain.stroke);
  EXPECT_EQ(hovered.shadow, 0);
  EXPECT_EQ(look({.selected = 1, .hovered = 1}).scale, 1);
  EXPECT_LT(look({.hovered = 1, .pressed = 1}).scale, 1);
}

TEST_P(ThumbnailLookTest, comesUpFromNothing) {
  EXPECT_EQ(look({.selected = 1}, 0).opacity, 0);
  EXPECT_EQ(look({.selected = 1}, 0).shadow, 0);
  EXPECT_EQ(look({}, 0.5).opacity, 0.5 * tokens.unselectedThumbnailOpacity);
  EXPECT_LT(look({}, 0).scale, look({}, 0.5).scale);
}

TEST_P(ThumbnailLookTest, aSpringThatGoesTooFarTakesNoColourAlong) {
  const ThumbnailState beyond = ThumbnailState::between({}, {.selected = 1, .primary = 1}, 1.02);
  EXPECT_GT(beyond.selected, 1);
  EXPECT_EQ(look(beyond).fill, tokens.thumbnailPlateSelectedFill);
  EXPECT_EQ(look(beyond).stroke, tokens.thumbnailSelectedStroke);
  EXPECT_EQ(look(beyond).opacity, 1);
  EXPECT_EQ(look(beyond).ring, 2);
}

TEST(ThumbnailState, goesFromOneToTheOtherInEachShare) {
  const ThumbnailState to{.selected = 1, .primary = 0.8, .hovered = 0.6, .pressed = 0.4};
  EXPECT_EQ(ThumbnailState::between({}, to, 0), ThumbnailState{});
  EXPECT_EQ(ThumbnailState::between({}, to, 0.5), (ThumbnailState{0.5, 0.4, 0.3, 0.2}));
  EXPECT_EQ(ThumbnailState::between({}, to, 1), to);
}

INSTANTIATE_TEST_SUITE_P(Appearances, ThumbnailLookTest,
                         testing::Combine(testing::Values(IslandAppearanceStyle::light, IslandAppearanceStyle::dark),
                                          testing::Bool()));

}  // namespace
}  // namespace quenlio
