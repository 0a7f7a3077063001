#include "desktop/views/island/RowButton.h"

#include <QtGui/QPainter>
#include <cmath>

#include "core/island/IslandMotion.h"

#include "desktop/views/common/Icon.h"
#include "desktop/views/common/Pixels.h"
#include "desktop/views/common/QtColor.h"

namespace quenlio {
namespace {

constexpr double kSymbol = 0.62;  // of the button's side

}  // namespace

RowButton::RowButton(QWidget* row, std::string_view symbol, std::string_view name, Scheduler& scheduler,
                     const Clock& clock)
    : PaintedButton(row),
      symbol_(symbol),
      tokens_(IslandThemeTokens::forAppearance(IslandAppearanceStyle::light, false)),
      presence_(scheduler, clock, 1, weak_.bind([](RowButton& self) { self.presenceChanged(); })) {
  setAccessibleName(QString::fromUtf8(name));
}

RowButton::~RowButton() {
  weak_.letGo();
}

void RowButton::apply(const IslandThemeTokens& tokens) {
  tokens_ = tokens;
  update();
}

void RowButton::setRevealed(bool isRevealed) {
  isRevealed_ = isRevealed;
  turn();
}

RowButtonEmphasis RowButton::emphasis() const {
  return RowButtonEmphasis::of(
      {.isRevealed = isRevealed_, .isHovering = isHovered(), .isPressed = isDown(), .isFocused = showsFocus()});
}

bool RowButton::isSeen() const {
  return isVisible() && (presence_.value() > 0 || presence_.target() > 0);
}

void RowButton::turn() {
  const double presence = emphasis().presence;
  if (isVisible()) {
    presence_.animateTo(presence, IslandMotion::kEase);
  } else {
    presence_.jumpTo(presence);
  }
  presenceChanged();
}

void RowButton::presenceChanged() {
  update();
  if (onPresenceChanged_) {
    onPresenceChanged_();
  }
}

void RowButton::focusInEvent(QFocusEvent* event) {
  PaintedButton::focusInEvent(event);
  turn();
}

void RowButton::focusOutEvent(QFocusEvent* event) {
  PaintedButton::focusOutEvent(event);
  turn();
}

void RowButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setOpacity(presence_.value());
  const QRectF disc = snappedToPixels(painter, rect());
  const RowButtonEmphasis now = emphasis();
  if (now.tint > 0) {
    fillRounded(painter, disc, disc.height() / 2, toQColor(tokens_.toolbarInteractionTint.opacity(now.tint)));
  }
  paintIcon(painter, symbol_, QRectF(rect()).center(),
            {.size = std::round(height() * kSymbol),
             .colour = toQColor(now.isStrong ? tokens_.iconPrimary : tokens_.iconSecondary)});
  if (showsFocus()) {
    strokeInside(painter, disc, disc.height() / 2, toQColor(tokens_.iconPrimary));
  }
}

}  // namespace quenlio
