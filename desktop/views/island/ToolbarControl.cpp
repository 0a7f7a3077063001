#include "desktop/views/island/ToolbarControl.h"

#include <QtGui/QPainter>

#include "core/island/IslandMotion.h"

#include "desktop/views/common/Icon.h"
#include "desktop/views/common/LocalWording.h"
#include "desktop/views/common/Pixels.h"
#include "desktop/views/common/QtColor.h"

namespace quenlio {

ToolbarControl::ToolbarControl(QWidget* row, ToolbarControlID id, Scheduler& scheduler, const Clock& clock)
    : PaintedButton(row),
      id_(id),
      tokens_(IslandThemeTokens::forAppearance(IslandAppearanceStyle::light, false)),
      opacity_(scheduler, clock, 1, weak_.bind([](ToolbarControl& self) { self.update(); })),
      scale_(scheduler, clock, 1, weak_.bind([](ToolbarControl& self) { self.update(); })) {
  setAccessibleName(QString::fromUtf8(controlText(id).name));
  setAccessibleDescription(localWording(controlText(id).help));
  const auto changed = weak_.bind([](ToolbarControl& self) { self.pointerChanged(); });
  QObject::connect(this, &QAbstractButton::pressed, this, changed);
  QObject::connect(this, &QAbstractButton::released, this, changed);
}

ToolbarControl::~ToolbarControl() {
  weak_.letGo();
}

void ToolbarControl::apply(const IslandThemeTokens& tokens, const IslandLayoutMetrics& metrics) {
  tokens_ = tokens;
  iconSize_ = metrics.toolbarIconSize;
  turn();
  update();
}

void ToolbarControl::setAvailable(bool available) {
  if (available != isEnabled()) {
    setEnabled(available);
    pointerChanged();
  }
}

ToolbarEmphasis ToolbarControl::emphasis() const {
  return ToolbarEmphasis::of({.isEnabled = isEnabled(), .isHovering = isHovered(), .isPressed = isDown()},
                             tokens_.iconIdleOpacityFloor);
}

// To where the icon belongs as things are: at once when nobody looks.
void ToolbarControl::turn() {
  const ToolbarEmphasis now = emphasis();
  if (isVisible()) {
    opacity_.animateTo(now.opacity, IslandMotion::kEase);
    scale_.animateTo(now.scale, IslandMotion::kSpring);
  } else {
    opacity_.jumpTo(now.opacity);
    scale_.jumpTo(now.scale);
  }
}

void ToolbarControl::pointerChanged() {
  turn();
  if (onPointerChanged_) {
    onPointerChanged_();
  }
}

void ToolbarControl::enterEvent(QEnterEvent* event) {
  PaintedButton::enterEvent(event);
  pointerChanged();
}

void ToolbarControl::leaveEvent(QEvent* event) {
  PaintedButton::leaveEvent(event);
  pointerChanged();
}

void ToolbarControl::hideEvent(QHideEvent* event) {
  PaintedButton::hideEvent(event);
  turn();
}

void ToolbarControl::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  paintBackground(painter);
  const QColor icon = toQColor(tokens_.iconPrimary.opacity(opacity_.value()));
  paintIcon(painter, controlText(id_).symbol, QRectF(rect()).center(),
            {.size = iconSize(), .colour = icon, .scale = scale_.value()});
  if (showsFocus()) {
    const QRectF ring = snappedToPixels(painter, rect());
    strokeInside(painter, ring, ring.height() / 2, toQColor(tokens_.iconPrimary));
  }
}

}  // namespace quenlio
