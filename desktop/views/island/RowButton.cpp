#include "desktop/views/island/RowButton.h"

#include <QtGui/QPainter>
#include <cmath>

#include "desktop/views/common/Icon.h"
#include "desktop/views/common/Pixels.h"
#include "desktop/views/common/QtColor.h"

namespace quenlio {
namespace {

constexpr double kSymbol = 0.62;  // of the button's side
constexpr double kHoverTint = 0.10;
constexpr double kPressedTint = 0.18;
constexpr TimedCurve kFade{kEaseOut, Seconds(0.16)};

}  // namespace

RowButton::RowButton(QWidget* row, std::string_view symbol, const char* name, Scheduler& scheduler, const Clock& clock)
    : PaintedButton(row),
      symbol_(symbol),
      tokens_(IslandThemeTokens::forAppearance(IslandAppearanceStyle::light, false)),
      presence_(scheduler, clock, 1, weak_.bind([](RowButton& self) { self.update(); })) {
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

void RowButton::turn() {
  const double presence = isRevealed_ || showsFocus() ? 1 : 0;
  if (isVisible()) {
    presence_.animateTo(presence, kFade);
  } else {
    presence_.jumpTo(presence);
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
  if (isDown() || isHovered()) {
    fillRounded(painter, disc, disc.height() / 2,
                toQColor(tokens_.toolbarInteractionTint.opacity(isDown() ? kPressedTint : kHoverTint)));
  }
  const bool isStrong = isDown() || isHovered() || showsFocus();
  paintIcon(painter, symbol_, QRectF(rect()).center(),
            {.size = std::round(height() * kSymbol),
             .colour = toQColor(isStrong ? tokens_.iconPrimary : tokens_.iconSecondary)});
  if (showsFocus()) {
    strokeInside(painter, disc, disc.height() / 2, toQColor(tokens_.iconPrimary));
  }
}

}  // namespace quenlio
