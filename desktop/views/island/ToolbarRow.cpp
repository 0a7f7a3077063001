#include "desktop/views/island/ToolbarRow.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "core/island/IslandMotion.h"
#include "core/island/ToolbarLayout.h"

#include "desktop/views/common/Pixels.h"
#include "desktop/views/common/QtColor.h"

namespace quenlio {
namespace {

constexpr double kMinimumDistance = 1;  // points

}  // namespace

ToolbarRow::ToolbarRow(QWidget* parent, AppTooltipHostModifier& tooltips, const Clock& clock, Callbacks callbacks)
    : QWidget(parent),
      callbacks_(std::move(callbacks)),
      copy_(this, ToolbarControlID::copy, tooltips.scheduler(), clock),
      annotate_(this, ToolbarControlID::annotate, tooltips.scheduler(), clock),
      share_(this, ToolbarControlID::share, tooltips.scheduler(), clock),
      folder_(this, ToolbarControlID::folder, tooltips.scheduler(), clock),
      trash_(this, ToolbarControlID::trash, tooltips.scheduler(), clock),
      close_(this, tooltips.scheduler(), clock),
      tokens_(IslandThemeTokens::forAppearance(IslandAppearanceStyle::light, false)),
      metrics_(IslandLayoutMetrics::forSize(IslandSize::extraSmall)),
      pillX_(tooltips.scheduler(), clock, 0, weak_.bind([](ToolbarRow& self) { self.updatePill(); })),
      pillStrength_(tooltips.scheduler(), clock, 0, weak_.bind([](ToolbarRow& self) { self.updatePill(); })) {
  setCursor(Qt::OpenHandCursor);
  for (std::size_t index = 0; index < kToolbarControls; ++index) {
    tooltips_.at(index).emplace(tooltips, *controls_.at(index), controls_.at(index)->accessibleDescription());
  }
  connectControls();
  setHasSelectedItem(false);
}

ToolbarRow::~ToolbarRow() {
  weak_.letGo();
}

void ToolbarRow::connectControls() {
  for (std::size_t index = 0; index < kToolbarControls; ++index) {
    const auto id = static_cast<ToolbarControlID>(index);
    ToolbarControl& control = *controls_.at(index);
    QObject::connect(&control, &QAbstractButton::clicked, this,
                     weak_.bind([id](ToolbarRow& self, bool) { self.perform(id); }));
    control.setOnPointerChanged(weak_.bind([](ToolbarRow& self) { self.movePill(); }));
  }
}

void ToolbarRow::perform(ToolbarControlID control) {
  const std::array<const std::function<void()>*, kToolbarControls> actions{
      &callbacks_.onCopy,         &callbacks_.onEdit,  &callbacks_.onShare,
      &callbacks_.onViewInFolder, &callbacks_.onTrash, &callbacks_.onClose};
  const auto& action = *actions.at(static_cast<std::size_t>(control));
  if (action) {
    action();
  }
}

void ToolbarRow::apply(const IslandThemeTokens& tokens, const IslandLayoutMetrics& metrics) {
  tokens_ = tokens;
  metrics_ = metrics;
  for (ToolbarControl* control : controls_) {
    control->apply(tokens, metrics);
  }
  layOut();
  update();
}

void ToolbarRow::setHasSelectedItem(bool hasSelectedItem) {
  for (ToolbarControl* control : controls_) {
    control->setAvailable(hasSelectedItem || control == &close_);
  }
}

void ToolbarRow::layOut() {
  const auto places = toolbarLayout(metrics_, {static_cast<double>(width()), static_cast<double>(height())});
  for (std::size_t index = 0; index < kToolbarControls; ++index) {
    const auto& [corner, size] = places.at(index);
    controls_.at(index)->setGeometry(QRectF(corner.x, corner.y, size.width, size.height).toRect());
  }
  movePill();
}

void ToolbarRow::resizeEvent(QResizeEvent* /*event*/) {
  layOut();
}

// Under the control that the pointer is on. It slides there from where it is; when there is none to slide, it comes up
// in its place.
void ToolbarRow::movePill() {
  const auto active = std::ranges::find_if(
      controls_, [](const ToolbarControl* control) { return control->isActive() || control->isDown(); });
  const ToolbarControl* control = active != controls_.end() ? *active : nullptr;
  const double strength = control != nullptr ? control->emphasis().tint : 0;
  if (!isVisible()) {
    pillStrength_.jumpTo(strength);
  } else if (control != nullptr && pillStrength_.value() > 0) {
    pillX_.animateTo(control->x(), IslandMotion::kSpring);
  } else if (control != nullptr) {
    pillX_.jumpTo(control->x());
  }
  pillStrength_.animateTo(strength, IslandMotion::kEase);
}

QRectF ToolbarRow::pill() const {
  return {pillX_.value(), static_cast<double>(close_.y()), static_cast<double>(close_.width()),
          static_cast<double>(close_.height())};
}

void ToolbarRow::updatePill() {
  const QRect now = pill().toAlignedRect();
  update(now);
  update(pillDrawn_);
  pillDrawn_ = now;
}

void ToolbarRow::paintEvent(QPaintEvent* /*event*/) {
  if (pillStrength_.value() <= 0) {
    return;
  }
  QPainter painter(this);
  const QRectF body = pillX_.isRunning() ? pill() : snappedToPixels(painter, pill());
  fillRounded(painter, body, body.height() / 2,
              toQColor(tokens_.toolbarInteractionTint.opacity(pillStrength_.value())));
}

void ToolbarRow::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    drag_ = Drag{.pressedAt = event->globalPosition(), .translation = {}};
    setCursor(Qt::ClosedHandCursor);
  }
}

void ToolbarRow::mouseMoveEvent(QMouseEvent* event) {
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

void ToolbarRow::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    endDrag();
  }
}

// A row that goes away under the pointer hears no release.
void ToolbarRow::hideEvent(QHideEvent* /*event*/) {
  endDrag();
  pillStrength_.jumpTo(0);
}

void ToolbarRow::endDrag() {
  setCursor(Qt::OpenHandCursor);
  const auto drag = std::exchange(drag_, std::nullopt);
  if (drag && drag->hasStarted) {
    callbacks_.onWindowDrag(drag->translation, true);
  }
}

}  // namespace quenlio
