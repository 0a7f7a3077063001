#include "desktop/views/preview/PreviewControls.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>

#include "desktop/views/common/Icon.h"
#include "desktop/views/common/Pixels.h"

namespace quenlio {
namespace {

constexpr double kIconSize = 16;

}  // namespace

PreviewText::PreviewText(QWidget* parent, const QFont& font, Qt::Alignment alignment) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setFont(font);
  setAlignment(alignment);
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void PreviewText::setColour(const QColor& colour) {
  colour_ = colour;
  update();
}

int PreviewText::textWidth() const {
  return fontMetrics().horizontalAdvance(text()) + 1;
}

void PreviewText::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(colour_);
  painter.drawText(rect(), static_cast<int>(alignment()) | Qt::TextSingleLine,
                   fontMetrics().elidedText(text(), Qt::ElideMiddle, width()));
}

PreviewCloseButton::PreviewCloseButton(QWidget* parent) : PaintedButton(parent) {
  setAccessibleName(QStringLiteral("Close"));
}

void PreviewCloseButton::apply(const PreviewPalette& palette) {
  palette_ = palette;
  update();
}

void PreviewCloseButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF disc = QRectF(rect()).adjusted(1, 1, -1, -1);
  if (isHovered() || isDown()) {
    fillRounded(painter, disc, disc.height() / 2, palette_.controlFill);
  }
  if (showsFocus()) {
    strokeInside(painter, disc, disc.height() / 2, palette_.focus);
  }
  QColor glyph = palette_.glyph;
  if (isDown()) {
    glyph.setAlphaF(glyph.alphaF() * 0.7F);
  }
  paintIcon(painter, "xmark", QRectF(rect()).center(), {.size = kIconSize, .colour = glyph});
}

void PreviewCloseButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    PaintedButton::keyPressEvent(event);
  } else {
    event->ignore();
  }
}

}  // namespace quenlio
