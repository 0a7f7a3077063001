#include "core/island/IslandLayout.h"

namespace quenlio {

IslandLayout islandLayout(const IslandLayoutMetrics& metrics, double side) {
  const double left = metrics.horizontalPadding + metrics.previewHorizontalInset;
  const auto row = [left, width = side - 2 * left](double top, double height) {
    return Rect<IslandContent>{{left, top}, {width, height}};
  };
  IslandLayout layout;
  layout.toolbar = row(metrics.topPadding, metrics.toolbarHeight);
  layout.preview = row(layout.toolbar.maxY() + metrics.toolbarToPreviewSpacing, metrics.previewHeight);
  layout.nameRow = row(layout.preview.maxY() + metrics.previewToMetaSpacing, metrics.metadataHeight);
  layout.tray = row(layout.nameRow.maxY() + metrics.metaToTraySpacing, metrics.trayHeight);
  layout.emptyState = row(layout.nameRow.minY(), layout.tray.maxY() - layout.nameRow.minY());
  return layout;
}

}  // namespace quenlio
