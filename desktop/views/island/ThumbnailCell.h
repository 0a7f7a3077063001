// One screenshot in the strip: a small square that selects it. Owned by the strip. Main thread.
//
// It knows a plain click only: no double click, no dragging out and no menu yet.
#pragma once

#include <QtGui/QImage>

#include "core/island/IslandLayoutMetrics.h"
#include "core/library/ScreenshotItem.h"

#include "desktop/views/common/PaintedButton.h"
#include "desktop/views/island/IslandPalette.h"

namespace quenlio {

class ThumbnailCell final : public PaintedButton {
 public:
  explicit ThumbnailCell(QWidget* parent);

  void apply(const IslandPalette& palette, const IslandLayoutMetrics& metrics);
  void show(const ScreenshotItem& item, bool isSelected);
  // Less than 1 where the cell is leaving the strip at its edge.
  void setEdgeOpacity(double opacity);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] const QImage& pictureAt(const QSize& pixels, double radius);

  IslandPalette palette_;
  double radius_ = 9;
  double edgeOpacity_ = 1;
  bool isSelected_ = false;
  ImageRef thumbnail_;
  QImage picture_;  // the thumbnail's middle in this cell's pixels, made when it is first painted
};

}  // namespace quenlio
