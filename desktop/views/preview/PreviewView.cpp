#include "desktop/views/preview/PreviewView.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <algorithm>
#include <array>
#include <utility>

#include "desktop/views/common/Icon.h"
#include "desktop/views/common/Pixels.h"
#include "desktop/views/common/Type.h"
#include "desktop/views/preview/PreviewLayout.h"

namespace quenlio {
namespace {

constexpr int kLeading = 16;     // before the name
constexpr int kGap = 12;         // between the texts
constexpr int kTrailing = 8;     // behind the button
constexpr int kButtonSide = 28;  // of its place, which the pointer may hit anywhere

constexpr int kMessageHeight = 24;
constexpr double kGlyphSize = 40;  // above the message
constexpr float kGlyphStrength = 0.7F;

struct MoveKey {
  int key;
  PreviewMove move;
};
constexpr std::array kMoveKeys{
    MoveKey{Qt::Key_Left, PreviewMove::toPrevious},   MoveKey{Qt::Key_Up, PreviewMove::toPrevious},
    MoveKey{Qt::Key_PageUp, PreviewMove::toPrevious}, MoveKey{Qt::Key_Right, PreviewMove::toNext},
    MoveKey{Qt::Key_Down, PreviewMove::toNext},       MoveKey{Qt::Key_PageDown, PreviewMove::toNext},
    MoveKey{Qt::Key_Home, PreviewMove::toFirst},      MoveKey{Qt::Key_End, PreviewMove::toLast},
};

QLinearGradient downward(const QRectF& rect, const QColor& top, const QColor& bottom) {
  QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
  gradient.setColorAt(0, top);
  gradient.setColorAt(1, bottom);
  return gradient;
}

bool closes(const QKeyEvent& event, bool isPlain) {
  const bool isSpaceOrEscape = event.key() == Qt::Key_Space || event.key() == Qt::Key_Escape;
  return (isPlain && isSpaceOrEscape) || event.matches(QKeySequence::Close);
}

}  // namespace

PreviewView::PreviewView(Actions actions)
    : actions_(std::move(actions)),
      name_(new PreviewText(this, typeOfSize(13, QFont::DemiBold), Qt::AlignLeft | Qt::AlignVCenter)),
      position_(new PreviewText(this, typeOfSize(12), Qt::AlignRight | Qt::AlignVCenter)),
      message_(new PreviewText(this, typeOfSize(13), Qt::AlignCenter)),
      close_(new PreviewCloseButton(this)) {
  setFocusPolicy(Qt::StrongFocus);
  QObject::connect(close_, &QAbstractButton::clicked, close_, actions_.onClose);
}

void PreviewView::apply(const PreviewPalette& palette) {
  palette_ = palette;
  name_->setColour(palette.name);
  position_->setColour(palette.detail);
  message_->setColour(palette.detail);
  close_->apply(palette);
  update();
}

void PreviewView::show(const PreviewContent& content) {
  setAccessibleName(content.name);
  setAccessibleDescription(content.position);
  name_->setText(content.name);
  position_->setText(content.position);
  message_->setText(content.message);
  message_->setVisible(!content.message.isEmpty());
  picture_ = content.picture;
  isClearInPlaces_ = content.isClearInPlaces;
  arrange();
  update();
}

void PreviewView::resizeEvent(QResizeEvent* /*event*/) {
  arrange();
}

void PreviewView::arrange() {
  using preview::kCaptionHeight;
  close_->setGeometry(width() - kTrailing - kButtonSide, (kCaptionHeight - kButtonSide) / 2, kButtonSide, kButtonSide);
  const int positionWidth = position_->textWidth();
  const int positionLeft = close_->x() - kGap / 2 - positionWidth;
  position_->setGeometry(positionLeft, 0, positionWidth, kCaptionHeight);
  name_->setGeometry(kLeading, 0, std::max(0, positionLeft - kGap - kLeading), kCaptionHeight);
  const QPoint middle = preview::pictureArea(size()).toRect().center();
  message_->setGeometry(kLeading, middle.y() + kMessageHeight / 2, width() - 2 * kLeading, kMessageHeight);
}

void PreviewView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QRectF body = rect();
  fillRounded(painter, body, preview::kCornerRadius, downward(body, palette_.bodyTop, palette_.bodyBottom));
  strokeInside(painter, body, preview::kCornerRadius, downward(body, palette_.edgeTop, palette_.edgeBottom));
  const QRectF area = snappedToPixels(painter, preview::pictureArea(size()));
  fillRounded(painter, area, preview::kPictureRadius, palette_.well);
  if (!picture_.isNull()) {
    paintPicture(painter);
  } else if (!message_->isHidden()) {
    QColor colour = palette_.detail;
    colour.setAlphaF(colour.alphaF() * kGlyphStrength);
    paintIcon(painter, "photo", QPointF(area.center().x(), message_->geometry().top() - kGlyphSize * 0.5),
              {.size = kGlyphSize, .colour = colour});
  }
}

void PreviewView::paintPicture(QPainter& painter) const {
  const double scale = pixelsAPoint(painter);
  QRectF place(QPointF(), QSizeF(picture_.size()) / scale);
  place.moveCenter(preview::pictureArea(size()).center());
  // On whole device pixels, or the picture would be drawn between them.
  place.moveTopLeft(snappedToPixels(painter, place).topLeft());
  const double radius = preview::pictureRadius(place.size(), preview::kPictureRadius);
  if (isClearInPlaces_) {
    QBrush checker = palette_.checker.brush(scale);
    checker.setTransform(QTransform::fromTranslate(place.x(), place.y()).scale(1 / scale, 1 / scale));
    fillRounded(painter, place, radius, checker);
  }
  painter.drawImage(place, picture_);
  // Just outside, so that it takes nothing of the picture, and the smallest one is seen.
  const double line = std::max(1.0, std::floor(scale)) / scale;
  strokeInside(painter, place.adjusted(-line, -line, line, line), radius > 0 ? radius + line : 0, palette_.outline);
}

void PreviewView::keyPressEvent(QKeyEvent* event) {
  const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  const auto move = std::ranges::find(kMoveKeys, event->key(), &MoveKey::key);
  if (closes(*event, isPlain)) {
    // Who holds the key that has opened the window does not want it closed by that.
    if (!event->isAutoRepeat()) {
      actions_.onClose();
    }
  } else if (isPlain && move != kMoveKeys.end()) {
    actions_.onMove(move->move, event->isAutoRepeat());
  } else {
    event->ignore();
  }
}

void PreviewView::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    dragged_ = event->globalPosition().toPoint();
  }
}

void PreviewView::mouseMoveEvent(QMouseEvent* event) {
  if (dragged_) {
    const QPoint now = event->globalPosition().toPoint();
    actions_.onDrag(now - std::exchange(*dragged_, now));
  }
}

void PreviewView::mouseReleaseEvent(QMouseEvent* /*event*/) {
  dragged_.reset();
}

// Not to be handed on, wherever it would end.
void PreviewView::wheelEvent(QWheelEvent* event) {
  event->accept();
}

}  // namespace quenlio
