#include "desktop/views/island/CloseToolbarButton.h"

#include <QtGui/QPainter>
#include <cmath>
#include <numbers>

#include "core/island/IslandMotion.h"

#include "desktop/views/common/QtColor.h"

namespace quenlio {
namespace {

constexpr double kRingWidth = 1.75;  // that of the icons' lines at their own size
constexpr double kRingOpacity = 0.8;
constexpr double kTrackOpacity = 0.16;
constexpr double kLeastStep = 0.2;       // pixels that the ring's end has to move before it is worth drawing
constexpr double kWholeTurn = 360 * 16;  // as the painter counts angles
constexpr int kTop = 90 * 16;

}  // namespace

CloseToolbarButton::CloseToolbarButton(QWidget* row, Scheduler& scheduler, const Clock& clock)
    : ToolbarControl(row, ToolbarControlID::close, scheduler, clock),
      ringOpacity_(scheduler, clock, 0, weak_.bind([](CloseToolbarButton& self) { self.update(); })) {}

CloseToolbarButton::~CloseToolbarButton() {
  weak_.letGo();
}

void CloseToolbarButton::showDismissProgress(std::optional<double> progress) {
  isCounting_ = progress.has_value();
  const double opacity = isCounting_ ? 1 : 0;
  if (isVisible()) {
    ringOpacity_.animateTo(opacity, IslandMotion::kEase);
  } else {
    ringOpacity_.jumpTo(opacity);
  }
  const double circumference = 2 * std::numbers::pi * ringRadius() * devicePixelRatioF();
  if (progress && (std::abs(*progress - progress_) * circumference >= kLeastStep || *progress == 0)) {
    progress_ = *progress;
    update();
  }
}

void CloseToolbarButton::hideEvent(QHideEvent* event) {
  ToolbarControl::hideEvent(event);
  ringOpacity_.jumpTo(isCounting_ ? 1 : 0);
}

// From the top clockwise; its end comes back towards the top.
void CloseToolbarButton::paintBackground(QPainter& painter) {
  if (ringOpacity_.value() == 0) {
    return;
  }
  const double radius = ringRadius();
  const QPointF centre = QRectF(rect()).center();
  const QRectF circle(centre - QPointF(radius, radius), centre + QPointF(radius, radius));
  const auto pen = [this](double opacity) {
    return QPen(toQColor(tokens().iconPrimary.opacity(opacity * ringOpacity_.value())), kRingWidth, Qt::SolidLine,
                Qt::RoundCap);
  };
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(pen(kTrackOpacity));
  painter.drawEllipse(circle);
  if (progress_ > 0) {
    painter.setPen(pen(kRingOpacity));
    painter.drawArc(circle, kTop, -static_cast<int>(std::lround(progress_ * kWholeTurn)));
  }
}

}  // namespace quenlio
