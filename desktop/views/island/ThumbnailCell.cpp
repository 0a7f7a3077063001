#include "desktop/views/island/ThumbnailCell.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "desktop/linux/session/KeyTranslation.h"
#include "desktop/render/SoftShadow.h"
#include "desktop/views/common/Icon.h"
#include "desktop/views/common/Picture.h"
#include "desktop/views/common/Pixels.h"
#include "desktop/views/common/QtColor.h"
#include "desktop/views/common/Shapes.h"
#include "desktop/views/island/ThumbnailAccessible.h"

namespace quenlio {
namespace {

constexpr double kFrame = 0.11;     // of the side, between a selected cell's edge and its picture
constexpr double kPrimaryRing = 2;  // points, around the one that the preview shows
constexpr double kFocusRing = 1.5;  // points, around that, beyond the square
constexpr double kFocusGap = 1.5;   // points, between the two
constexpr double kHoverScale = 1.035;
constexpr double kPressedScale = 0.95;
constexpr double kArrivalScale = 0.72;
constexpr double kSymbol = 0.52;  // of the square's side
// A thumbnail that takes longer than this has a symbol in its place.
constexpr Seconds kPatience{0.6};
constexpr TimedCurve kFade{kEaseOut, Seconds(0.16)};
const Spring kSpring = Spring::withResponse(Seconds(0.22), 0.84);

double mixed(double from, double to, double share) {
  return from + (to - from) * share;
}

// The share may overshoot.
QColor mixed(const Color& from, const Color& to, double share) {
  const double part = std::clamp(share, 0.0, 1.0);
  return toQColor({mixed(from.red, to.red, part), mixed(from.green, to.green, part), mixed(from.blue, to.blue, part),
                   mixed(from.alpha, to.alpha, part)});
}

QRectF scaledBy(const QRectF& rect, double scale) {
  const QSizeF size = rect.size() * scale;
  return {rect.center() - QPointF(size.width() / 2, size.height() / 2), size};
}

// A line of this width whose outer edge is the rectangle's.
void ring(QPainter& painter, const QRectF& rect, double radius, double width, const QColor& colour) {
  if (width <= 0) {
    return;
  }
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  QPainterPath band = continuousRectanglePath(rect, radius);
  band.addPath(continuousRectanglePath(rect.adjusted(width, width, -width, -width), std::max(0.0, radius - width)));
  band.setFillRule(Qt::OddEvenFill);
  painter.drawPath(band);
}

}  // namespace

ThumbnailCell::ThumbnailCell(QWidget* strip, Scheduler& scheduler, const Clock& clock, Callbacks callbacks)
    : QAbstractButton(strip),
      callbacks_(std::move(callbacks)),
      scheduler_(scheduler),
      stateShare_(scheduler, clock, 1, weak_.bind([](ThumbnailCell& self) { self.callbacks_.onLookChanged(self); })),
      presence_(scheduler, clock, 1, weak_.bind([](ThumbnailCell& self) { self.callbacks_.onLookChanged(self); })),
      picture_(scheduler, clock, 1, weak_.bind([](ThumbnailCell& self) { self.callbacks_.onLookChanged(self); })),
      symbol_(scheduler, clock, 0, weak_.bind([](ThumbnailCell& self) { self.callbacks_.onLookChanged(self); })) {
  setFocusPolicy(Qt::NoFocus);  // the strip has it
  setCursor(Qt::PointingHandCursor);
  QObject::connect(this, &QAbstractButton::clicked, this,
                   weak_.bind([](ThumbnailCell& self, bool) { self.callbacks_.onSelect(self.item_, 0); }));
}

ThumbnailCell::~ThumbnailCell() {
  weak_.letGo();
}

void ThumbnailCell::show(const ScreenshotItem& item, bool isSelected, bool isPrimarySelected) {
  const bool isNew = accessibleName().isEmpty();
  const QString name = QString::fromStdString(item.fileURL.lastPathComponent());
  if (name != accessibleName()) {
    setAccessibleName(name);
  }
  const ImageRef before = std::exchange(item_, item).thumbnail;
  if (isNew || before != item.thumbnail) {
    showThumbnail(before);
  }
  State next = to_;
  next.selected = isSelected ? 1 : 0;
  next.primary = isSelected && isPrimarySelected ? 1 : 0;
  const bool hasTurned = next.selected != to_.selected;
  turnTo(next);
  if (hasTurned) {
    tellSelectionOf(*this);
  }
}

void ThumbnailCell::showThumbnail(const ImageRef& before) {
  cropped_ = {};
  if (item_.thumbnail == nullptr) {
    waitForThumbnail();
    return;
  }
  symbolsTurn_.cancel();
  symbol_.jumpTo(0);
  if (before == nullptr && isSeen()) {
    picture_.jumpTo(0);
    picture_.animateTo(1, kFade);
  } else {
    picture_.jumpTo(1);
    callbacks_.onLookChanged(*this);
  }
}

void ThumbnailCell::waitForThumbnail() {
  symbolsTurn_ = scheduler_.after(kPatience, weak_.bind([](ThumbnailCell& self) {
    if (self.isSeen()) {
      self.symbol_.animateTo(1, kFade);
    } else {
      self.symbol_.jumpTo(1);
    }
  }));
}

void ThumbnailCell::arrive() {
  presence_.jumpTo(0);
  presence_.animateTo(1, kFade);
}

void ThumbnailCell::setSquare(const QRectF& square, bool isInSight) {
  square_ = square;
  isInSight_ = isInSight;
  if (!isInSight) {
    cropped_ = {};
  }
}

ThumbnailCell::State ThumbnailCell::state() const {
  const double share = stateShare_.value();
  return {.selected = mixed(from_.selected, to_.selected, share),
          .primary = mixed(from_.primary, to_.primary, share),
          .hovered = mixed(from_.hovered, to_.hovered, share),
          .pressed = mixed(from_.pressed, to_.pressed, share)};
}

void ThumbnailCell::turnTo(const State& state) {
  if (state == to_) {
    return;
  }
  from_ = this->state();
  to_ = state;
  if (isSeen()) {
    stateShare_.jumpTo(0);
    stateShare_.animateTo(1, kSpring);
  } else {
    stateShare_.jumpTo(1);
    callbacks_.onLookChanged(*this);
  }
}

void ThumbnailCell::enterEvent(QEnterEvent* event) {
  QAbstractButton::enterEvent(event);
  setHovered(true);
}

void ThumbnailCell::leaveEvent(QEvent* event) {
  QAbstractButton::leaveEvent(event);
  setHovered(false);
}

// What goes away under the pointer may not be told that the pointer left.
void ThumbnailCell::hideEvent(QHideEvent* event) {
  QAbstractButton::hideEvent(event);
  press_.cancelled();
  State next = to_;
  next.hovered = 0;
  next.pressed = 0;
  turnTo(next);
}

void ThumbnailCell::setHovered(bool isHovered) {
  State next = to_;
  next.hovered = isHovered ? 1 : 0;
  turnTo(next);
}

void ThumbnailCell::setPressed(bool isPressed) {
  State next = to_;
  next.pressed = isPressed ? 1 : 0;
  turnTo(next);
}

void ThumbnailCell::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  pressedAt_ = event->globalPosition();
  press_.pressed();
  setPressed(true);
}

void ThumbnailCell::mouseMoveEvent(QMouseEvent* event) {
  const QPointF moved = event->globalPosition() - pressedAt_;
  if (press_.moved({moved.x(), moved.y()})) {
    setPressed(false);
    const ScreenshotItem item = item_;  // the drag may bring another one
    callbacks_.onStartItemDrag(item);
  }
}

void ThumbnailCell::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !press_.isPressed()) {
    return;
  }
  setPressed(false);
  if (press_.released()) {
    const ScreenshotItem item = item_;
    callbacks_.onSelect(item, modifierFlagsFrom(event->modifiers()));
  }
}

void ThumbnailCell::letGo() {
  press_.cancelled();
  setPressed(false);
}

// The canvas is what is painted on.
void ThumbnailCell::paintEvent(QPaintEvent* /*event*/) {}

bool ThumbnailCell::isMoving() const {
  return stateShare_.isRunning() || presence_.isRunning();
}

void ThumbnailCell::paint(QPainter& painter, const Look& look) {
  const State now = state();
  const double presence = presence_.value();
  const double size = mixed(kArrivalScale, 1, presence) * mixed(1, kHoverScale, now.hovered * (1 - now.selected)) *
                      mixed(1, kPressedScale, now.pressed);
  const QRectF standing = scaledBy(square_, size);
  const QRectF body = isMoving() ? standing : snappedToPixels(painter, standing);
  const double radius = look.radius * body.width() / square_.width();
  const double chosen = std::clamp(now.selected, 0.0, 1.0);
  const double bright = std::clamp(now.selected + now.hovered, 0.0, 1.0);
  const double opacity = presence * mixed(look.tokens.unselectedThumbnailOpacity, 1, bright);

  if (chosen > 0) {
    painter.setOpacity(presence * chosen);
    look.shadow.paint(painter, body);
  }
  painter.setOpacity(opacity);
  fillRounded(painter, body, radius,
              mixed(look.tokens.thumbnailPlateFill, look.tokens.thumbnailPlateSelectedFill, bright));
  const double frame = std::round(kFrame * square_.width()) * now.selected;
  const QRectF framed = body.adjusted(frame, frame, -frame, -frame);
  paintPicture(painter, isMoving() ? framed : snappedToPixels(painter, framed), std::max(2.0, radius - frame), opacity);
  paintSymbol(painter, body, look.tokens.iconSecondary);
  painter.setOpacity(opacity);
  strokeInside(painter, body, radius,
               mixed(look.tokens.thumbnailDefaultStroke, look.tokens.thumbnailSelectedStroke, bright));
  const double ringWidth = std::round(kPrimaryRing * pixelsAPoint(painter)) / pixelsAPoint(painter);
  ring(painter, body, radius, ringWidth * std::clamp(now.primary, 0.0, 1.0), toQColor(look.tokens.iconPrimary));
  if (look.hasFocusRing) {
    const double reach = kFocusGap + kFocusRing;
    ring(painter, body.adjusted(-reach, -reach, reach, reach), radius + reach, kFocusRing,
         toQColor(look.tokens.iconPrimary));
  }
  painter.setOpacity(1);
}

const QImage& ThumbnailCell::pictureAt(const QSize& pixels, double radius) {
  const bool isGoodEnough = cropped_.size() == pixels || (isMoving() && !cropped_.isNull());
  if (const QImage canvas = pixelsOf(item_.thumbnail); !isGoodEnough && !canvas.isNull()) {
    cropped_ = roundedPicture(canvas, croppedTo(pictureOnCanvas(item_.thumbnail), pixels), pixels, radius);
  }
  return cropped_;
}

void ThumbnailCell::paintPicture(QPainter& painter, const QRectF& place, double radius, double opacity) {
  const double scale = pixelsAPoint(painter);
  const QSize pixels = (place.size() * scale).toSize().expandedTo(QSize(1, 1));
  if (const QImage& picture = pictureAt(pixels, radius * scale); !picture.isNull()) {
    painter.setOpacity(opacity * picture_.value());
    painter.setRenderHint(QPainter::SmoothPixmapTransform, picture.size() != pixels);
    painter.drawImage(place, picture);
    painter.setOpacity(opacity);
  }
}

void ThumbnailCell::paintSymbol(QPainter& painter, const QRectF& place, const Color& tint) const {
  if (symbol_.value() > 0) {
    paintIcon(painter, "photo", place.center(),
              {.size = place.width() * kSymbol, .colour = toQColor(tint.opacity(symbol_.value()))});
  }
}

}  // namespace quenlio
