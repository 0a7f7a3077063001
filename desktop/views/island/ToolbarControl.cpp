#include "desktop/views/island/ToolbarControl.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <algorithm>

#include "desktop/views/common/Icon.h"
#include "desktop/views/common/Pixels.h"
#include "desktop/views/common/QtColor.h"

namespace quenlio {
namespace {

constexpr double kBaseOpacity = 0.84;
constexpr double kDisabledOpacity = 0.32;
constexpr double kHoverScale = 1.035;
constexpr double kPressedScale = 0.95;
constexpr TimedCurve kFade{kEaseOut, Seconds(0.16)};
const Spring kSpring = Spring::withResponse(Seconds(0.22), 0.84);

}  // namespace

ToolbarControl::ToolbarControl(QWidget* row, std::string_view symbol, Scheduler& scheduler, const Clock& clock)
    : PaintedButton(row),
      symbol_(symbol),
      tokens_(IslandThemeTokens::forAppearance(IslandAppearanceStyle::light, false)),
      opacity_(scheduler, clock, kBaseOpacity, weak_.bind([](ToolbarControl& self) { self.update(); })),
      scale_(scheduler, clock, 1, weak_.bind([](ToolbarControl& self) { self.update(); })) {
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

// To where the icon belongs as things are: at once when nobody looks.
void ToolbarControl::turn() {
  const double idle = std::max(kBaseOpacity, tokens_.iconIdleOpacityFloor);
  const double opacity = !isEnabled() ? kDisabledOpacity : isActive() || isDown() ? 1 : idle;
  const double scale = isDown() ? kPressedScale : isActive() ? kHoverScale : 1;
  if (isVisible()) {
    opacity_.animateTo(opacity, kFade);
    scale_.animateTo(scale, kSpring);
  } else {
    opacity_.jumpTo(opacity);
    scale_.jumpTo(scale);
  }
}

void ToolbarControl::pointerChanged() {
  turn();
  if (callbacks_.onPointerChanged) {
    callbacks_.onPointerChanged();
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

bool ToolbarControl::usesKey(const QKeyEvent& key) const {
  const bool isArrow = key.key() == Qt::Key_Left || key.key() == Qt::Key_Right;
  return (isArrow && (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier) || PaintedButton::usesKey(key);
}

void ToolbarControl::keyPressEvent(QKeyEvent* event) {
  const bool isArrow = event->key() == Qt::Key_Left || event->key() == Qt::Key_Right;
  if (isArrow && usesKey(*event) && callbacks_.onStep) {
    callbacks_.onStep(event->key() == Qt::Key_Right ? 1 : -1);
  } else {
    PaintedButton::keyPressEvent(event);
  }
}

void ToolbarControl::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  paintBackground(painter);
  const QColor icon = toQColor(tokens_.iconPrimary.opacity(opacity_.value()));
  paintIcon(painter, symbol_, QRectF(rect()).center(), {.size = iconSize(), .colour = icon, .scale = scale_.value()});
  if (showsFocus()) {
    const QRectF ring = snappedToPixels(painter, rect());
    strokeInside(painter, ring, ring.height() / 2, toQColor(tokens_.iconPrimary));
  }
}

}  // namespace quenlio
