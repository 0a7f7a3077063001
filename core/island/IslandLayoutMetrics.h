// Every length in the island, chosen by the setting islandSize. A table and not a formula: each size is set by hand.
// A plain value; any thread.
#pragma once

#include "core/settings/AppSettings.h"

namespace quenlio {

// All in points.
struct IslandLayoutMetrics {
  double horizontalPadding;
  double topPadding;
  double bottomPadding;
  double toolbarToPreviewSpacing;
  double previewToMetaSpacing;
  double metaToTraySpacing;
  double cornerRadius;
  double previewCornerRadius;
  double toolbarHeight;
  double previewHeight;
  double previewHorizontalInset;
  double thumbSize;
  double thumbRadius;
  double thumbSpacing;
  double trayVerticalInset;
  double trayHeight;
  double metadataHeight;
  double toolbarIconSize;
  double toolbarControlSize;
  double toolbarZoneSpacing;
  double toolbarIconSpacing;
  double toolbarContentInset;
  double previewContentInset;

  [[nodiscard]] static const IslandLayoutMetrics& forSize(IslandSize size);

  // The side of the panel, which is a square. The heights of a size leave some points of it free below the strip.
  [[nodiscard]] static double panelSide(IslandSize size);

  bool operator==(const IslandLayoutMetrics&) const = default;
};

}  // namespace quenlio
