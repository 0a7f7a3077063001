#include "desktop/views/common/Tooltip.h"

#include <QtCore/QEvent>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <algorithm>
#include <cmath>

#include "desktop/views/common/Pixels.h"
#include "desktop/views/common/Type.h"

namespace quenlio {
namespace {

constexpr int kTextSize = 12;  // points, like all lengths here
constexpr double kPaddingX = 9;
constexpr double kPaddingY = 5;
constexpr double kRadius = 8;
constexpr double kPointerHalfWidth = 6;
constexpr double kPointerHeight = 5.5;
constexpr double kWidest = 280;
constexpr int kShadow = 12;  // how far it reaches
constexpr double kShadowDrop = 2;

constexpr int kBodyAlpha = 224;
constexpr int kStrokeAlpha = 46;
constexpr TimedCurve kAppear{kEaseOut, Seconds(0.12)};
constexpr TimedCurve kDisappear{kEaseOut, Seconds(0.09)};

// The pointer's tip is a little blunt, like the corners.
void addPointer(QPainterPath& outline, QPointF foot, double height) {
  QPainterPath pointer(foot - QPointF(kPointerHalfWidth, 0));
  const QPointF tip = foot + QPointF(0, height);
  const QPointF slope(kPointerHalfWidth * 0.24, height * 0.24);
  pointer.lineTo(tip - slope);
  pointer.quadTo(tip, tip + QPointF(slope.x(), -slope.y()));
  pointer.lineTo(foot + QPointF(kPointerHalfWidth, 0));
  pointer.closeSubpath();
  outline = outline.united(pointer);
}

QPainterPath outlineOf(const QRectF& body, double pointerX, bool pointsUp) {
  QPainterPath outline;
  outline.addRoundedRect(body, kRadius, kRadius);
  // From a point inside, so that the two shapes overlap and become one.
  addPointer(outline, {pointerX, pointsUp ? body.top() + 0.5 : body.bottom() - 0.5},
             pointsUp ? -kPointerHeight - 0.5 : kPointerHeight + 0.5);
  return outline;
}

// Soft, by lines that grow wider and weaker: each adds a little where the next one still reaches.
void castShadow(QPainter& painter, const QPainterPath& outline) {
  constexpr int steps = 12;
  constexpr double reach = kShadow - kShadowDrop;
  constexpr int nearest = 13;  // the opacity of the first line, of 255
  painter.save();
  painter.translate(0, kShadowDrop);
  painter.setBrush(Qt::NoBrush);
  for (int step = 1; step <= steps; ++step) {
    const QColor shade(0, 0, 0, nearest * (steps + 1 - step) / (steps + 1));
    painter.setPen(QPen(shade, 2 * reach * step / steps, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(outline);
  }
  painter.restore();
}

}  // namespace

TooltipHost::TooltipHost(QWidget* root, Scheduler& scheduler, const Clock& clock)
    : QWidget(root),
      scheduler_(scheduler),
      opacity_(scheduler, clock, 0, weak_.bind([](TooltipHost& self) { self.opacityChanged(); })) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFocusPolicy(Qt::NoFocus);
  QWidget::hide();
  root->installEventFilter(this);
}

TooltipHost::~TooltipHost() {
  weak_.letGo();
}

void TooltipHost::opacityChanged() {
  update();
  if (!bubble_ && opacity_.value() == 0) {
    QWidget::hide();
    lines_.reset();
  }
}

void TooltipHost::layOutText(const QString& text) {
  const double widest = std::min(kWidest, parentWidget()->width() - 2 * kTooltipMargin) - 2 * kPaddingX;
  QTextOption wrapping;
  wrapping.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  lines_ = std::make_unique<QTextLayout>(text, typeOfSize(kTextSize, QFont::Medium));
  lines_->setTextOption(wrapping);
  lines_->beginLayout();
  textSize_ = {};
  for (QTextLine line = lines_->createLine(); line.isValid(); line = lines_->createLine()) {
    line.setLineWidth(std::max(widest, 1.0));
    line.setPosition({0, textSize_.height});
    textSize_.width = std::max(textSize_.width, line.naturalTextWidth());
    textSize_.height += line.height();
  }
  lines_->endLayout();
}

void TooltipHost::present(const void* owner, const QString& text, const QRect& anchor) {
  layOutText(text);
  const Size size{std::ceil(textSize_.width + 2 * kPaddingX), std::ceil(textSize_.height + 2 * kPaddingY)};
  const TooltipPlacement placement = tooltipPlacement(
      {{static_cast<double>(anchor.x()), static_cast<double>(anchor.y())},
       {static_cast<double>(anchor.width()), static_cast<double>(anchor.height())}},
      size, {static_cast<double>(parentWidget()->width()), static_cast<double>(parentWidget()->height())});
  const QRectF body(placement.center.x - size.width / 2, placement.center.y - size.height / 2, size.width, size.height);
  owner_ = owner;
  bubble_ = Bubble{.text = text, .body = body, .placement = placement};
  const QRect place = body.toAlignedRect().adjusted(-kShadow, -kShadow, kShadow, kShadow);
  setGeometry(place);
  corner_ = body.topLeft() - place.topLeft();
  pointerX_ = placement.center.x + placement.pointerOffsetX - place.x();
  pointsUp_ = placement.pointer == TooltipPointerDirection::up;
  setAccessibleName(text);
  raise();
  QWidget::show();
  opacity_.animateTo(1, kAppear);
  update();
}

void TooltipHost::dismiss(const void* owner) {
  if (owner_ != owner || owner == nullptr) {
    return;
  }
  owner_ = nullptr;
  bubble_.reset();
  setAccessibleName({});
  if (isVisible() && opacity_.value() > 0) {
    opacity_.animateTo(0, kDisappear);
  } else {
    opacity_.jumpTo(0);
    opacityChanged();
  }
}

// What a bubble points to is somewhere else when its root has another size.
bool TooltipHost::eventFilter(QObject* object, QEvent* event) {
  if (object == parentWidget() && (event->type() == QEvent::Resize || event->type() == QEvent::Hide)) {
    dismiss(owner_);
    opacity_.jumpTo(0);
  }
  return QWidget::eventFilter(object, event);
}

void TooltipHost::paintEvent(QPaintEvent* /*event*/) {
  if (!lines_) {
    return;
  }
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(opacity_.value());
  const QRectF body = snappedToPixels(painter, QRectF(corner_, QSizeF(std::ceil(textSize_.width + 2 * kPaddingX),
                                                                      std::ceil(textSize_.height + 2 * kPaddingY))));
  const QPainterPath outline = outlineOf(body, pointerX_, pointsUp_);
  castShadow(painter, outline);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0, 0, 0, kBodyAlpha));
  painter.drawPath(outline);
  // The half of the line that lies outside is cut off: what remains is a thin edge within.
  painter.setClipPath(outline);
  painter.strokePath(outline, QPen(QColor(255, 255, 255, kStrokeAlpha), 2));
  painter.setClipping(false);
  painter.setPen(Qt::white);
  lines_->draw(&painter, body.topLeft() + QPointF(kPaddingX, kPaddingY));
}

AppTooltip::AppTooltip(TooltipHost& host, QWidget& anchor, const QString& text, Seconds delay)
    : host_(&host), anchor_(anchor), text_(text), delay_(delay) {
  anchor.installEventFilter(this);
}

AppTooltip::~AppTooltip() {
  goAway();
}

void AppTooltip::setText(const QString& text) {
  if (text == text_) {
    return;
  }
  text_ = text;
  if (text_.isEmpty()) {
    goAway();
  } else if (host_ != nullptr && host_->presents(this)) {
    present();
  }
}

bool AppTooltip::eventFilter(QObject* object, QEvent* event) {
  switch (event->type()) {
    case QEvent::Enter:
      hoverIn();
      break;
    case QEvent::Leave:
    case QEvent::Hide:
    case QEvent::MouseButtonPress:
      goAway();
      break;
    case QEvent::Move:
    case QEvent::Resize:
      if (host_ != nullptr && host_->presents(this)) {
        present();
      }
      break;
    default:
      break;
  }
  return QObject::eventFilter(object, event);
}

void AppTooltip::hoverIn() {
  if (host_ != nullptr && !text_.isEmpty()) {
    pendingShow_ = host_->scheduler().after(delay_, weak_.bind([](AppTooltip& self) { self.present(); }));
  }
}

void AppTooltip::goAway() {
  pendingShow_.cancel();
  if (host_ != nullptr) {
    host_->dismiss(this);
  }
}

void AppTooltip::present() {
  if (host_ != nullptr && anchor_.isVisible()) {
    const QPoint corner = anchor_.mapTo(host_->parentWidget(), QPoint());
    host_->present(this, text_, QRect(corner, anchor_.size()));
  }
}

}  // namespace quenlio
