#include "desktop/views/island/HandleRow.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <cmath>
#include <utility>

#include "desktop/views/common/Pixels.h"

namespace quenlio {
namespace {

constexpr double kMinimumDistance = 1;  // points
constexpr double kGripWidth = 36;
constexpr double kGripHeight = 4;

}  // namespace

HandleRow::HandleRow(QWidget* parent, Callbacks callbacks) : QWidget(parent), callbacks_(std::move(callbacks)) {
  QObject::connect(&close_, &QAbstractButton::clicked, this, weak_.bind([](HandleRow& self, bool) {
    if (self.callbacks_.onClose) {
      self.callbacks_.onClose();
    }
  }));
}

void HandleRow::apply(const IslandPalette& palette, const IslandLayoutMetrics& metrics) {
  palette_ = palette;
  controlSize_ = metrics.toolbarControlSize;
  contentInset_ = metrics.toolbarContentInset;
  close_.apply(palette, metrics.toolbarIconSize);
  layOut();
  update();
}

void HandleRow::layOut() {
  const int side = static_cast<int>(controlSize_);
  close_.setGeometry(width() - static_cast<int>(contentInset_) - side, (height() - side) / 2, side, side);
}

void HandleRow::resizeEvent(QResizeEvent* /*event*/) {
  layOut();
}

void HandleRow::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  QColor colour = palette_.grip;
  if (underMouse()) {
    colour.setAlphaF(std::min(1.0F, colour.alphaF() * 1.6F));
  }
  const QRectF grip((width() - kGripWidth) / 2, (height() - kGripHeight) / 2, kGripWidth, kGripHeight);
  fillRounded(painter, snappedToPixels(painter, grip), kGripHeight / 2, colour);
}

void HandleRow::enterEvent(QEnterEvent* /*event*/) {
  update();
}
void HandleRow::leaveEvent(QEvent* /*event*/) {
  update();
}

void HandleRow::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    drag_ = Drag{.pressedAt = event->globalPosition(), .translation = {}};
  }
}

void HandleRow::mouseMoveEvent(QMouseEvent* event) {
  if (!drag_) {
    return;
  }
  const QPointF moved = event->globalPosition() - drag_->pressedAt;
  drag_->hasStarted = drag_->hasStarted || std::hypot(moved.x(), moved.y()) >= kMinimumDistance;
  if (drag_->hasStarted) {
    drag_->translation = {moved.x(), moved.y()};
    callbacks_.onWindowDrag(drag_->translation, false);
  }
}

void HandleRow::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    endDrag();
  }
}

// A row that goes away under the pointer hears no release.
void HandleRow::hideEvent(QHideEvent* /*event*/) {
  endDrag();
}

void HandleRow::endDrag() {
  const auto drag = std::exchange(drag_, std::nullopt);
  if (drag && drag->hasStarted) {
    callbacks_.onWindowDrag(drag->translation, true);
  }
}

}  // namespace quenlio
