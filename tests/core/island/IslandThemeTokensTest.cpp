#include <gtest/gtest.h>

#include "core/island/IslandThemeTokens.h"

namespace quenlio {
namespace {

constexpr auto white = Color::white;
constexpr auto black = Color::black;

// One row a token: dark, dark with more contrast, light, light with more contrast.
struct ColorRow {
  const char* name;
  Color IslandThemeTokens::*token;
  Color (*dark)(double);
  double darkOpacity;
  double darkContrastOpacity;
  Color (*light)(double);
  double lightOpacity;
  double lightContrastOpacity;
};
struct NumberRow {
  const char* name;
  double IslandThemeTokens::*token;
  double dark;
  double darkContrast;
  double light;
  double lightContrast;
};

constexpr ColorRow kColors[] = {
    {"iconPrimary", &IslandThemeTokens::iconPrimary, white, 0.92, 0.97, black, 0.72, 0.82},
    {"iconSecondary", &IslandThemeTokens::iconSecondary, white, 0.72, 0.82, black, 0.52, 0.64},
    {"textPrimary", &IslandThemeTokens::textPrimary, white, 0.94, 0.98, black, 0.78, 0.88},
    {"textSecondary", &IslandThemeTokens::textSecondary, white, 0.80, 0.88, black, 0.58, 0.70},
    {"toolbarInteractionTint", &IslandThemeTokens::toolbarInteractionTint, white, 1, 1, black, 1, 1},
    {"surfaceBackground", &IslandThemeTokens::surfaceBackground, white, 0.10, 0.16, white, 0.07, 0.12},
    {"innerStrokeColor", &IslandThemeTokens::innerStrokeColor, white, 0.14, 0.21, black, 0.12, 0.18},
    {"previewWellFill", &IslandThemeTokens::previewWellFill, white, 0.08, 0.14, black, 0.08, 0.13},
    {"previewReadabilityWash", &IslandThemeTokens::previewReadabilityWash, black, 0.12, 0.18, black, 0.08, 0.13},
    {"previewWellStroke", &IslandThemeTokens::previewWellStroke, white, 0.13, 0.19, black, 0.10, 0.17},
    {"previewWellHighlightStroke", &IslandThemeTokens::previewWellHighlightStroke, white, 0.16, 0.22, white, 0.14,
     0.20},
    {"edgeStrokeColor", &IslandThemeTokens::edgeStrokeColor, white, 0.14, 0.20, black, 0.11, 0.17},
    {"containerTint", &IslandThemeTokens::containerTint, white, 0.05, 0.10, white, 0.06, 0.11},
    {"containerTopHighlight", &IslandThemeTokens::containerTopHighlight, white, 0.20, 0.26, white, 0.22, 0.29},
    {"thumbnailDefaultStroke", &IslandThemeTokens::thumbnailDefaultStroke, white, 0.17, 0.23, black, 0.12, 0.19},
    {"thumbnailSelectedStroke", &IslandThemeTokens::thumbnailSelectedStroke, white, 0.30, 0.38, black, 0.26, 0.34},
    {"thumbnailPlateFill", &IslandThemeTokens::thumbnailPlateFill, white, 0.08, 0.12, black, 0.05, 0.09},
    {"thumbnailPlateSelectedFill", &IslandThemeTokens::thumbnailPlateSelectedFill, white, 0.20, 0.26, black, 0.18,
     0.25},
};
constexpr NumberRow kNumbers[] = {
    {"iconIdleOpacityFloor", &IslandThemeTokens::iconIdleOpacityFloor, 0.86, 0.92, 0.84, 0.92},
    {"filenameOpacity", &IslandThemeTokens::filenameOpacity, 0.90, 0.96, 0.86, 0.94},
    {"timestampOpacity", &IslandThemeTokens::timestampOpacity, 0.78, 0.86, 0.74, 0.84},
    {"shadowOpacity", &IslandThemeTokens::shadowOpacity, 0.24, 0.29, 0.20, 0.26},
    {"previewMaterialOpacity", &IslandThemeTokens::previewMaterialOpacity, 0.68, 0.74, 0.64, 0.72},
    {"containerAmbientShadowOpacity", &IslandThemeTokens::containerAmbientShadowOpacity, 0.12, 0.17, 0.10, 0.15},
    {"containerAmbientShadowRadius", &IslandThemeTokens::containerAmbientShadowRadius, 30, 30, 36, 36},
    {"containerAmbientShadowY", &IslandThemeTokens::containerAmbientShadowY, 16, 16, 20, 20},
    {"containerMainShadowOpacity", &IslandThemeTokens::containerMainShadowOpacity, 0.22, 0.27, 0.16, 0.22},
    {"containerMainShadowRadius", &IslandThemeTokens::containerMainShadowRadius, 20, 20, 18, 18},
    {"containerMainShadowY", &IslandThemeTokens::containerMainShadowY, 12, 12, 10, 10},
    {"thumbnailSelectedShadowOpacity", &IslandThemeTokens::thumbnailSelectedShadowOpacity, 0.18, 0.23, 0.12, 0.17},
    {"unselectedThumbnailOpacity", &IslandThemeTokens::unselectedThumbnailOpacity, 0.94, 0.98, 0.90, 0.96},
};
static_assert(sizeof(IslandThemeTokens) == std::size(kColors) * sizeof(Color) + std::size(kNumbers) * sizeof(double),
              "a token without a row");

TEST(IslandThemeTokens, colorsAreThoseOfTheTable) {
  for (const ColorRow& row : kColors) {
    EXPECT_EQ(IslandThemeTokens::forAppearance(IslandAppearanceStyle::dark, false).*row.token,
              row.dark(row.darkOpacity))
        << row.name;
    EXPECT_EQ(IslandThemeTokens::forAppearance(IslandAppearanceStyle::dark, true).*row.token,
              row.dark(row.darkContrastOpacity))
        << row.name;
    EXPECT_EQ(IslandThemeTokens::forAppearance(IslandAppearanceStyle::light, false).*row.token,
              row.light(row.lightOpacity))
        << row.name;
    EXPECT_EQ(IslandThemeTokens::forAppearance(IslandAppearanceStyle::light, true).*row.token,
              row.light(row.lightContrastOpacity))
        << row.name;
  }
}

TEST(IslandThemeTokens, numbersAreThoseOfTheTable) {
  for (const NumberRow& row : kNumbers) {
    EXPECT_EQ(IslandThemeTokens::forAppearance(IslandAppearanceStyle::dark, false).*row.token, row.dark) << row.name;
    EXPECT_EQ(IslandThemeTokens::forAppearance(IslandAppearanceStyle::dark, true).*row.token, row.darkContrast)
        << row.name;
    EXPECT_EQ(IslandThemeTokens::forAppearance(IslandAppearanceStyle::light, false).*row.token, row.light) << row.name;
    EXPECT_EQ(IslandThemeTokens::forAppearance(IslandAppearanceStyle::light, true).*row.token, row.lightContrast)
        << row.name;
  }
}

}  // namespace
}  // namespace quenlio
