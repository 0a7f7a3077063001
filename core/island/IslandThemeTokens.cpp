#include "core/island/IslandThemeTokens.h"

namespace quenlio {
namespace {

constexpr auto white = Color::white;
constexpr auto black = Color::black;

IslandThemeTokens dark(bool contrast) {
  const auto pick = [contrast](double normal, double increased) { return contrast ? increased : normal; };
  return {
      .iconPrimary = white(pick(0.92, 0.97)),
      .iconSecondary = white(pick(0.72, 0.82)),
      .textPrimary = white(pick(0.94, 0.98)),
      .textSecondary = white(pick(0.80, 0.88)),
      .iconIdleOpacityFloor = pick(0.86, 0.92),
      .filenameOpacity = pick(0.90, 0.96),
      .timestampOpacity = pick(0.78, 0.86),
      .toolbarInteractionTint = white(1),
      .surfaceBackground = white(pick(0.10, 0.16)),
      .innerStrokeColor = white(pick(0.14, 0.21)),
      .shadowOpacity = pick(0.24, 0.29),
      .previewMaterialOpacity = pick(0.68, 0.74),
      .previewWellFill = white(pick(0.08, 0.14)),
      .previewReadabilityWash = black(pick(0.12, 0.18)),
      .previewWellStroke = white(pick(0.13, 0.19)),
      .previewWellHighlightStroke = white(pick(0.16, 0.22)),
      .edgeStrokeColor = white(pick(0.14, 0.20)),
      .containerTint = white(pick(0.05, 0.10)),
      .containerTopHighlight = white(pick(0.20, 0.26)),
      .containerAmbientShadowOpacity = pick(0.12, 0.17),
      .containerAmbientShadowRadius = 30,
      .containerAmbientShadowY = 16,
      .containerMainShadowOpacity = pick(0.22, 0.27),
      .containerMainShadowRadius = 20,
      .containerMainShadowY = 12,
      .thumbnailDefaultStroke = white(pick(0.17, 0.23)),
      .thumbnailSelectedStroke = white(pick(0.30, 0.38)),
      .thumbnailSelectedShadowOpacity = pick(0.18, 0.23),
      .thumbnailPlateFill = white(pick(0.08, 0.12)),
      .thumbnailPlateSelectedFill = white(pick(0.20, 0.26)),
      .unselectedThumbnailOpacity = pick(0.94, 0.98),
  };
}

IslandThemeTokens light(bool contrast) {
  const auto pick = [contrast](double normal, double increased) { return contrast ? increased : normal; };
  return {
      .iconPrimary = black(pick(0.72, 0.82)),
      .iconSecondary = black(pick(0.52, 0.64)),
      .textPrimary = black(pick(0.78, 0.88)),
      .textSecondary = black(pick(0.58, 0.70)),
      .iconIdleOpacityFloor = pick(0.84, 0.92),
      .filenameOpacity = pick(0.86, 0.94),
      .timestampOpacity = pick(0.74, 0.84),
      .toolbarInteractionTint = black(1),
      .surfaceBackground = white(pick(0.07, 0.12)),
      .innerStrokeColor = black(pick(0.12, 0.18)),
      .shadowOpacity = pick(0.20, 0.26),
      .previewMaterialOpacity = pick(0.64, 0.72),
      .previewWellFill = black(pick(0.08, 0.13)),
      .previewReadabilityWash = black(pick(0.08, 0.13)),
      .previewWellStroke = black(pick(0.10, 0.17)),
      .previewWellHighlightStroke = white(pick(0.14, 0.20)),
      .edgeStrokeColor = black(pick(0.11, 0.17)),
      .containerTint = white(pick(0.06, 0.11)),
      .containerTopHighlight = white(pick(0.22, 0.29)),
      .containerAmbientShadowOpacity = pick(0.10, 0.15),
      .containerAmbientShadowRadius = 36,
      .containerAmbientShadowY = 20,
      .containerMainShadowOpacity = pick(0.16, 0.22),
      .containerMainShadowRadius = 18,
      .containerMainShadowY = 10,
      .thumbnailDefaultStroke = black(pick(0.12, 0.19)),
      .thumbnailSelectedStroke = black(pick(0.26, 0.34)),
      .thumbnailSelectedShadowOpacity = pick(0.12, 0.17),
      .thumbnailPlateFill = black(pick(0.05, 0.09)),
      .thumbnailPlateSelectedFill = black(pick(0.18, 0.25)),
      .unselectedThumbnailOpacity = pick(0.90, 0.96),
  };
}

}  // namespace

IslandThemeTokens IslandThemeTokens::forAppearance(IslandAppearanceStyle style, bool increaseContrast) {
  return style == IslandAppearanceStyle::dark ? dark(increaseContrast) : light(increaseContrast);
}

}  // namespace quenlio
