// The island's body: glass with continuous corners that its content lies on and is clipped to, and the line around it.
// Owned by the root view. Main thread.
//
// The body is painted by the root view, below its children; this widget lies above all of them, where it draws the line
// around the body, makes everything as opaque as the island is, and takes away what is outside of the corners.
// So each edge is smoothed once, and nothing needs to be kept but what the window keeps anyway.
#pragma once

#include <QtWidgets/QWidget>

#include "desktop/views/island/IslandTheme.h"

namespace quenlio {

class GlassSurfaceModifier final : public QWidget {
 public:
  explicit GlassSurfaceModifier(QWidget* content);

  void apply(const IslandTheme& theme, double cornerRadius);
  // Of the content as a whole, 0 to 1. Where nothing shines through it acts as 1.
  void setContainerOpacity(double opacity);

  // The four layers, on all of the content's rectangle.
  void paintBody(QPainter& painter) const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void strokeEdge(QPainter& painter) const;
  void takeCornersAway(QPainter& painter) const;
  [[nodiscard]] bool isWellInside(const QRect& part) const;

  IslandTheme theme_{};
  double cornerRadius_ = 0;
  double containerOpacity_ = 1;
};

}  // namespace quenlio
