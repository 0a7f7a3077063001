#include "desktop/views/island/PreviewWell.h"

#include <QtGui/QPainter>

#include "desktop/views/common/Pixels.h"
#include "desktop/views/common/QtColor.h"

namespace quenlio {

void paintPreviewWell(QPainter& painter, const QRectF& well, double radius, const IslandTheme& theme,
                      WellContent content) {
  const IslandThemeTokens& tokens = theme.tokens;
  fillRounded(painter, well, radius, toQColor(theme.material.preview.opacity(tokens.previewMaterialOpacity)));
  if (content == WellContent::picture) {
    fillRounded(painter, well, radius, toQColor(tokens.previewReadabilityWash));
  }
  fillRounded(painter, well, radius, toQColor(tokens.previewWellFill));
  // Light falls from above: of the well's inner edge, the lower part catches it.
  QLinearGradient highlight(well.topLeft(), well.bottomLeft());
  highlight.setColorAt(0.4, toQColor(tokens.previewWellHighlightStroke.opacity(0.25)));
  highlight.setColorAt(1, toQColor(tokens.previewWellHighlightStroke));
  strokeInside(painter, well.adjusted(1, 1, -1, -1), radius - 1, highlight);
}

void strokePreviewWell(QPainter& painter, const QRectF& well, double radius, const IslandTheme& theme) {
  strokeInside(painter, well, radius, toQColor(theme.tokens.previewWellStroke));
}

}  // namespace quenlio
