#include "desktop/views/island/IslandTheme.h"

#include <array>
#include <cmath>

namespace quenlio {
namespace {

using T = IslandThemeTokens;

constexpr std::array kColors{&T::iconPrimary,
                             &T::iconSecondary,
                             &T::textPrimary,
                             &T::textSecondary,
                             &T::toolbarInteractionTint,
                             &T::surfaceBackground,
                             &T::innerStrokeColor,
                             &T::previewWellFill,
                             &T::previewReadabilityWash,
                             &T::previewWellStroke,
                             &T::previewWellHighlightStroke,
                             &T::edgeStrokeColor,
                             &T::containerTint,
                             &T::containerTopHighlight,
                             &T::thumbnailDefaultStroke,
                             &T::thumbnailSelectedStroke,
                             &T::thumbnailPlateFill,
                             &T::thumbnailPlateSelectedFill};
constexpr std::array kNumbers{&T::iconIdleOpacityFloor,
                              &T::filenameOpacity,
                              &T::timestampOpacity,
                              &T::shadowOpacity,
                              &T::previewMaterialOpacity,
                              &T::containerAmbientShadowOpacity,
                              &T::containerAmbientShadowRadius,
                              &T::containerAmbientShadowY,
                              &T::containerMainShadowOpacity,
                              &T::containerMainShadowRadius,
                              &T::containerMainShadowY,
                              &T::thumbnailSelectedShadowOpacity,
                              &T::unselectedThumbnailOpacity};
static_assert(sizeof(T) == kColors.size() * sizeof(Color) + kNumbers.size() * sizeof(double),
              "a token would not be blended");

constexpr std::array kMaterialColors{&GlassMaterial::hudWindow, &GlassMaterial::underWindowBackground,
                                     &GlassMaterial::preview, &GlassMaterial::edge};
static_assert(sizeof(GlassMaterial) == kMaterialColors.size() * sizeof(Color), "a tone would not be blended");

constexpr Color rgb(int red, int green, int blue, double alpha = 1) {
  return {red / 255.0, green / 255.0, blue / 255.0, alpha};
}

GlassMaterial material(IslandAppearanceStyle style, bool increaseContrast, GlassBacking backing) {
  const double through = backing == GlassBacking::blurred ? (increaseContrast ? 0.86 : 0.62) : 1;
  if (style == IslandAppearanceStyle::dark) {
    return increaseContrast
               ? GlassMaterial{rgb(13, 14, 16, through), rgb(7, 8, 9), rgb(6, 6, 8), rgb(150, 152, 158)}
               : GlassMaterial{rgb(38, 40, 46, through), rgb(24, 25, 30), rgb(14, 15, 18), rgb(86, 88, 95)};
  }
  return increaseContrast
             ? GlassMaterial{rgb(252, 252, 253, through), rgb(250, 250, 252), rgb(255, 255, 255), rgb(110, 112, 118)}
             : GlassMaterial{rgb(243, 244, 247, through), rgb(236, 238, 242), rgb(250, 250, 252), rgb(174, 177, 184)};
}

}  // namespace

IslandTheme IslandTheme::forAppearance(IslandAppearanceStyle style, bool increaseContrast, GlassBacking backing) {
  return {.tokens = IslandThemeTokens::forAppearance(style, increaseContrast),
          .material = quenlio::material(style, increaseContrast, backing),
          .backing = backing};
}

IslandTheme IslandTheme::between(const IslandTheme& from, const IslandTheme& to, double share) {
  IslandTheme result = to;
  for (const auto color : kColors) {
    result.tokens.*color = Color::between(from.tokens.*color, to.tokens.*color, share);
  }
  for (const auto number : kNumbers) {
    result.tokens.*number = std::lerp(from.tokens.*number, to.tokens.*number, share);
  }
  for (const auto color : kMaterialColors) {
    result.material.*color = Color::between(from.material.*color, to.material.*color, share);
  }
  return share < 1 ? result : to;
}

std::vector<ShadowLayer> panelShadow(const IslandThemeTokens& tokens) {
  constexpr double rimRadius = 3;
  return {{.opacity = tokens.containerAmbientShadowOpacity,
           .radius = tokens.containerAmbientShadowRadius,
           .y = tokens.containerAmbientShadowY},
          {.opacity = tokens.containerMainShadowOpacity,
           .radius = tokens.containerMainShadowRadius,
           .y = tokens.containerMainShadowY},
          {.opacity = tokens.shadowOpacity, .radius = rimRadius, .y = 0}};
}

}  // namespace quenlio
