// What is seen under the pointer while files are dragged: their pictures as small cards, fanned as their frames say,
// the first on top, with their number when there are several. Main thread.
#pragma once

#include <QtCore/QPoint>
#include <QtGui/QPixmap>
#include <vector>

#include "core/platform/Dragging.h"

namespace quenlio {

struct DragPicture {
  QPixmap pixmap;  // dense enough for the screen
  QPoint hotSpot;  // where in it the pointer is, points
};

struct DragPictureStyle {
  double scale = 1;       // device pixels a point
  bool hasShadow = true;  // else every pixel is there or not
};

// There is at least one item. The pointer is in the same window as the frames.
[[nodiscard]] DragPicture dragPicture(const std::vector<DraggingItem>& items, Point<WindowContent> pointer,
                                      const DragPictureStyle& style);

}  // namespace quenlio
