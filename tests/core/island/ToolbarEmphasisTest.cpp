#include <gtest/gtest.h>

#include "core/island/IslandThemeTokens.h"
#include "core/island/ToolbarEmphasis.h"

namespace quenlio {
namespace {

TEST(ToolbarEmphasis, isThatOfTheTable) {
  EXPECT_EQ(ToolbarEmphasis::of({}, 0), (ToolbarEmphasis{0.84, 1, 0}));
  EXPECT_EQ(ToolbarEmphasis::of({.isHovering = true}, 0), (ToolbarEmphasis{1, 1.035, 0.10}));
  EXPECT_EQ(ToolbarEmphasis::of({.isHovering = true, .isPressed = true}, 0), (ToolbarEmphasis{1, 0.95, 0.18}));
  // By the keyboard.
  EXPECT_EQ(ToolbarEmphasis::of({.isPressed = true}, 0), (ToolbarEmphasis{1, 0.95, 0.18}));
}

TEST(ToolbarEmphasis, whatIsOfNoUseStaysBackWhateverThePointerDoes) {
  const ToolbarEmphasis back{0.32, 1, 0};
  EXPECT_EQ(ToolbarEmphasis::of({.isEnabled = false}, 0.84), back);
  EXPECT_EQ(ToolbarEmphasis::of({.isEnabled = false, .isHovering = true, .isPressed = true}, 0.84), back);
}

TEST(ToolbarEmphasis, whatIsOfNoUseIsStillSeenWithMoreContrast) {
  EXPECT_NEAR(ToolbarEmphasis::of({.isEnabled = false}, 0.86).opacity, 0.365, 1e-9);
  EXPECT_NEAR(ToolbarEmphasis::of({.isEnabled = false}, 0.92).opacity, 0.50, 1e-9);
}

TEST(ToolbarEmphasis, restsAtTheThemesFloorWhereThatIsHigher) {
  const auto atRest = [](IslandAppearanceStyle style, bool increaseContrast) {
    return ToolbarEmphasis::of({}, IslandThemeTokens::forAppearance(style, increaseContrast).iconIdleOpacityFloor)
        .opacity;
  };
  EXPECT_EQ(atRest(IslandAppearanceStyle::light, false), 0.84);
  EXPECT_EQ(atRest(IslandAppearanceStyle::dark, false), 0.86);
  EXPECT_EQ(atRest(IslandAppearanceStyle::light, true), 0.92);
  EXPECT_EQ(atRest(IslandAppearanceStyle::dark, true), 0.92);
}

}  // namespace
}  // namespace quenlio
