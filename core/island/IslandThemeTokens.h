// The colours and opacities of the island, light or dark, with more contrast or without. A table, set by hand. A plain
// value; any thread.
#pragma once

#include "core/geometry/Color.h"
#include "core/island/IslandAppearanceStyle.h"

namespace quenlio {

// Colours are white or black at an opacity, also where that is white in the light style: that is the glass. Opacities
// are 0 to 1, lengths points. No view of the island draws with surfaceBackground or timestampOpacity: the table is
// whole for the windows that are to look like it.
struct IslandThemeTokens {
  Color iconPrimary;
  Color iconSecondary;
  Color textPrimary;
  Color textSecondary;
  double iconIdleOpacityFloor;
  double filenameOpacity;
  double timestampOpacity;
  Color toolbarInteractionTint;
  Color surfaceBackground;
  Color innerStrokeColor;
  double shadowOpacity;
  double previewMaterialOpacity;
  Color previewWellFill;
  Color previewReadabilityWash;
  Color previewWellStroke;
  Color previewWellHighlightStroke;
  Color edgeStrokeColor;
  Color containerTint;
  Color containerTopHighlight;
  double containerAmbientShadowOpacity;
  double containerAmbientShadowRadius;
  double containerAmbientShadowY;
  double containerMainShadowOpacity;
  double containerMainShadowRadius;
  double containerMainShadowY;
  Color thumbnailDefaultStroke;
  Color thumbnailSelectedStroke;
  double thumbnailSelectedShadowOpacity;
  Color thumbnailPlateFill;
  Color thumbnailPlateSelectedFill;
  double unselectedThumbnailOpacity;

  // Of what is to be read, but for titles: quieter than the first of the two text colours, and unlike the second one
  // readable through the glass too.
  [[nodiscard]] Color bodyText() const { return textPrimary.opacity(filenameOpacity); }

  [[nodiscard]] static IslandThemeTokens forAppearance(IslandAppearanceStyle style, bool increaseContrast);
  bool operator==(const IslandThemeTokens&) const = default;
};

}  // namespace quenlio
