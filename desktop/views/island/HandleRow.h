// The island's top row: a handle to move the panel by, and the close button. Owned by the root view. Main thread.
#pragma once

#include <QtWidgets/QWidget>
#include <functional>
#include <optional>

#include "core/base/WeakOwner.h"
#include "core/geometry/Geometry.h"
#include "core/island/IslandLayoutMetrics.h"

#include "desktop/views/island/CloseButton.h"

namespace quenlio {

class HandleRow final : public QWidget {
 public:
  struct Callbacks {
    // Points moved since the press, y growing downward. Only once the pointer has moved by a point.
    std::function<void(Size translation, bool ended)> onWindowDrag;
    std::function<void()> onClose;
  };
  HandleRow(QWidget* parent, Callbacks callbacks);

  void apply(const IslandPalette& palette, const IslandLayoutMetrics& metrics);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  struct Drag {
    QPointF pressedAt;  // on the screen: the row moves along with the pointer
    Size translation;
    bool hasStarted = false;
  };
  void layOut();
  void endDrag();

  Callbacks callbacks_;
  CloseButton close_{this};
  IslandPalette palette_;
  double controlSize_ = 24;
  double contentInset_ = 0;  // on both sides
  std::optional<Drag> drag_;
  WeakOwner<HandleRow> weak_{this};
};

}  // namespace quenlio
