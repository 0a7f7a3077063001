#include "desktop/views/island/ThumbnailCell.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "core/island/IslandMotion.h"
#include "core/island/IslandTexts.h"

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

constexpr double kFocusRing = 1.5;  // points, beyond the square
constexpr double kFocusGap = 1.5;   // points, between the two
constexpr double kSymbol = 0.52;    // of the square's side
// A thumbnail that takes longer than this has a symbol in its place.
constexpr Seconds kPatience{0.6};

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
  ThumbnailState next = to_;
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
    picture_.animateTo(1, IslandMotion::kEase);
  } else {
    picture_.jumpTo(1);
    callbacks_.onLookChanged(*this);
  }
}

void ThumbnailCell::waitForThumbnail() {
  symbolsTurn_ = scheduler_.after(kPatience, weak_.bind([](ThumbnailCell& self) {
    if (self.isSeen()) {
      self.symbol_.animateTo(1, IslandMotion::kEase);
    } else {
      self.symbol_.jumpTo(1);
    }
  }));
}

void ThumbnailCell::arrive() {
  presence_.jumpTo(0);
  presence_.animateTo(1, IslandMotion::kEase);
}

void ThumbnailCell::setSquare(const QRectF& square, bool isInSight) {
  square_ = square;
  isInSight_ = isInSight;
  if (!isInSight) {
    cropped_ = {};
  }
}

ThumbnailState ThumbnailCell::state() const {
  return ThumbnailState::between(from_, to_, stateShare_.value());
}

void ThumbnailCell::turnTo(const ThumbnailState& state) {
  if (state == to_) {
    return;
  }
  from_ = this->state();
  to_ = state;
  if (isSeen()) {
    stateShare_.jumpTo(0);
    stateShare_.animateTo(1, IslandMotion::kSpring);
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
  ThumbnailState next = to_;
  next.hovered = 0;
  next.pressed = 0;
  turnTo(next);
}

void ThumbnailCell::setHovered(bool isHovered) {
  ThumbnailState next = to_;
  next.hovered = isHovered ? 1 : 0;
  turnTo(next);
}

void ThumbnailCell::setPressed(bool isPressed) {
  ThumbnailState next = to_;
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

void ThumbnailCell::paint(QPainter& painter, const Setting& setting) {
  const ThumbnailLook look = ThumbnailLook::of(state(), setting.tokens, presence_.value(), square_.width());
  const QRectF standing = scaledBy(square_, look.scale);
  const QRectF body = isMoving() ? standing : snappedToPixels(painter, standing);
  const double radius = setting.radius * body.width() / square_.width();

  if (look.shadow > 0) {
    painter.setOpacity(look.shadow);
    setting.shadow.paint(painter, body);
  }
  painter.setOpacity(look.opacity);
  fillRounded(painter, body, radius, toQColor(look.fill));
  const QRectF framed = body.adjusted(look.frame, look.frame, -look.frame, -look.frame);
  paintPicture(painter, isMoving() ? framed : snappedToPixels(painter, framed), std::max(2.0, radius - look.frame),
               look.opacity);
  paintSymbol(painter, body, setting.tokens.iconSecondary);
  painter.setOpacity(look.opacity);
  strokeInside(painter, body, radius, toQColor(look.stroke));
  const QColor lines = toQColor(setting.tokens.iconPrimary);
  const double pixels = pixelsAPoint(painter);
  ring(painter, body, radius, isMoving() ? look.ring : std::round(look.ring * pixels) / pixels, lines);
  if (setting.hasFocusRing) {
    const double reach = kFocusGap + kFocusRing;
    ring(painter, body.adjusted(-reach, -reach, reach, reach), radius + reach, kFocusRing, lines);
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
    paintIcon(painter, IslandTexts::kEmptyPreviewSymbol, place.center(),
              {.size = place.width() * kSymbol, .colour = toQColor(tint.opacity(symbol_.value()))});
  }
}

}  // namespace quenlio
