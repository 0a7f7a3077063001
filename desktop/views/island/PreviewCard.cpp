#include "desktop/views/island/PreviewCard.h"

#include <QtGui/QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "core/island/IslandTexts.h"

#include "desktop/views/common/Icon.h"
#include "desktop/views/common/Pixels.h"
#include "desktop/views/common/QtColor.h"
#include "desktop/views/common/Shapes.h"
#include "desktop/views/common/Type.h"
#include "desktop/views/island/PreviewWell.h"

namespace quenlio {
namespace {

// Of the symbol in the middle, by the height of its place.
double symbolSize(double height) {
  return std::clamp(height * 0.27, 34.0, 64.0);
}

}  // namespace

PreviewCard::PreviewCard(QWidget* parent, Scheduler& scheduler, const Clock& clock, SharpRendition sharpRendition)
    : QWidget(parent),
      metrics_(IslandLayoutMetrics::forSize(IslandSize::extraSmall)),
      emphasisShare_(scheduler, clock, 1, weak_.bind([](PreviewCard& self) { self.update(); })),
      revealOpacity_(scheduler, clock, 1, weak_.bind([](PreviewCard& self) { self.update(); })),
      revealOffsetY_(scheduler, clock, 0, weak_.bind([](PreviewCard& self) { self.update(); })),
      picture_(scheduler, std::move(sharpRendition), weak_.bind([](PreviewCard& self) { self.update(); })) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFocusPolicy(Qt::NoFocus);
}

void PreviewCard::apply(const IslandTheme& theme, const IslandLayoutMetrics& metrics) {
  theme_ = theme;
  metrics_ = metrics;
  useRoom(devicePixelRatioF());
  update();
}

PreviewCard::~PreviewCard() {
  weak_.letGo();
}

bool PreviewCard::show(const ScreenshotItem* item) {
  extension_ = item != nullptr ? QString::fromStdString(item->fileURL.pathExtension()).toUpper() : QString();
  if (!picture_.show(item)) {
    return false;
  }
  revealCurrentImage();
  return true;
}

void PreviewCard::revealCurrentImage() {
  if (!reveal_.revealsNext()) {
    endReveal();
    return;
  }
  revealOpacity_.jumpTo(PreviewReveal::kHiddenOpacity);
  revealOffsetY_.jumpTo(PreviewReveal::kHiddenOffsetY);
  revealOpacity_.animateTo(1, PreviewReveal::kOpacity);
  revealOffsetY_.animateTo(0, PreviewReveal::kOffsetY);
}

void PreviewCard::endReveal() {
  revealOpacity_.jumpTo(1);
  revealOffsetY_.jumpTo(0);
}

void PreviewCard::setTouch(const Touch& touch) {
  if (touch == touch_) {
    return;
  }
  const bool wasHolding = touch_.isHolding;
  touch_ = touch;
  const PreviewEmphasis next = PreviewEmphasis::of(touch.isHolding, touch.isHovering);
  if (next != to_) {
    from_ = emphasis();
    to_ = next;
    emphasisShare_.jumpTo(0);
    if (isVisible()) {
      emphasisShare_.animateTo(1, PreviewEmphasis::motion(wasHolding, touch.isHolding));
    } else {
      emphasisShare_.jumpTo(1);
    }
  }
  update();
}

PreviewEmphasis PreviewCard::emphasis() const {
  return PreviewEmphasis::between(from_, to_, emphasisShare_.value());
}

void PreviewCard::useRoom(double pixelsAPoint) {
  const double inset = metrics_.previewContentInset;
  const bool isDark = theme_.tokens.textPrimary.red > 0.5;
  picture_.setRoom({.size = QSizeF(width() - 2 * (kBleed + inset), height() - 2 * (kBleed + inset)),
                    .pixelsAPoint = pixelsAPoint,
                    .largestRadius = metrics_.previewCornerRadius - inset,
                    .checker = Checker::forAppearance(isDark)});
}

void PreviewCard::resizeEvent(QResizeEvent* /*event*/) {
  useRoom(devicePixelRatioF());
}

void PreviewCard::showEvent(QShowEvent* /*event*/) {
  picture_.setIsOnScreen(true);
}

void PreviewCard::hideEvent(QHideEvent* /*event*/) {
  reveal_.hidden();
  endReveal();
  emphasisShare_.jumpTo(1);
  picture_.setIsOnScreen(false);
}

// Whole device pixels, but for while it moves: stepping from pixel to pixel would make it tremble.
QRectF PreviewCard::card(const QPainter& painter) const {
  const QRectF place = QRectF(rect()).adjusted(kBleed, kBleed, -kBleed, -kBleed);
  const double scale = emphasis().cardScale;
  QRectF card(QPointF(), place.size() * scale);
  card.moveCenter(place.center());
  return emphasisShare_.isRunning() ? card : snappedToPixels(painter, card);
}

void PreviewCard::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  reveal_.painted();
  // A window that goes to a denser screen keeps its size in points: nothing but the painting tells.
  useRoom(pixelsAPoint(painter));
  const QRectF well = card(painter);
  paintWell(painter, well);
  switch (picture_.state()) {
    case SelectedPicture::State::ready:
      paintPicture(painter, well);
      break;
    case SelectedPicture::State::broken:
      paintBroken(painter);
      break;
    case SelectedPicture::State::none:
      paintPlaceholder(painter);
      break;
    case SelectedPicture::State::loading:  // hardly ever long enough to be seen, and then a well that waits
      break;
  }
  const double radius = metrics_.previewCornerRadius * emphasis().cardScale;
  strokePreviewWell(painter, well, radius, theme_);
  if (touch_.isFocused) {
    strokeInside(painter, well.adjusted(1, 1, -1, -1), radius - 1, toQColor(theme_.tokens.iconPrimary));
  }
}

void PreviewCard::paintWell(QPainter& painter, const QRectF& well) {
  const PreviewEmphasis now = emphasis();
  const double radius = metrics_.previewCornerRadius * now.cardScale;
  cardShadow_.setLook(
      {.cornerRadius = radius,
       .layers = {{.opacity = now.cardShadowOpacity, .radius = now.cardShadowRadius, .y = now.cardShadowY}}});
  cardShadow_.paint(painter, snappedToPixels(painter, well));
  paintPreviewWell(painter, well, radius, theme_, WellContent::picture);
}

void PreviewCard::paintPicture(QPainter& painter, const QRectF& well) {
  const PreviewEmphasis now = emphasis();
  const QImage& picture = picture_.prepared();
  QRectF place(QPointF(), QSizeF(picture.size()) / pixelsAPoint(painter) * now.cardScale);
  place.moveCenter(well.center());
  const bool isStill = !emphasisShare_.isRunning() && !revealOffsetY_.isRunning();
  if (isStill) {
    // Whole device pixels, or the picture would be drawn between them.
    place.moveTopLeft(snappedToPixels(painter, place).topLeft());
  }
  place.translate(0, revealOffsetY_.value());
  const double radius = picture_.cornerRadius() * now.cardScale;
  painter.save();
  painter.setOpacity(revealOpacity_.value());
  painter.setClipPath(continuousRectanglePath(well, metrics_.previewCornerRadius * now.cardScale));
  imageShadow_.setLook(
      {.cornerRadius = radius,
       .layers = {{.opacity = now.imageShadowOpacity, .radius = now.imageShadowRadius, .y = now.imageShadowY}}});
  imageShadow_.paint(painter, snappedToPixels(painter, place));
  painter.setRenderHint(QPainter::SmoothPixmapTransform, !isStill || now.cardScale != 1);
  painter.drawImage(place, picture);
  strokeInside(painter, place, radius, toQColor(theme_.tokens.previewWellStroke));
  painter.restore();
}

void PreviewCard::paintPlaceholder(QPainter& painter) {
  const double size = symbolSize(metrics_.previewHeight);
  paintIcon(painter, IslandTexts::kEmptyPreviewSymbol, QRectF(rect()).center(),
            {.size = size, .colour = toQColor(theme_.tokens.iconSecondary.opacity(0.6))});
}

// The same symbol, struck through, and what kind of file it is that shows nothing.
void PreviewCard::paintBroken(QPainter& painter) {
  const double size = symbolSize(metrics_.previewHeight);
  const QPointF middle = QRectF(rect()).center() - QPointF(0, extension_.isEmpty() ? 0 : 9);
  QColor color = toQColor(theme_.tokens.iconSecondary);
  paintIcon(painter, IslandTexts::kEmptyPreviewSymbol, middle,
            {.size = size, .colour = toQColor(theme_.tokens.iconSecondary.opacity(0.45))});
  const double arm = size * 0.46;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(color, size / 14, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(middle + QPointF(-arm, arm), middle + QPointF(arm, -arm));
  if (!extension_.isEmpty()) {
    painter.setFont(typeOfSize(11, QFont::DemiBold));
    painter.setPen(toQColor(theme_.tokens.textSecondary));
    painter.drawText(QRectF(rect().left(), middle.y() + size / 2 + 3, width(), 16), Qt::AlignCenter, extension_);
  }
}

}  // namespace quenlio
