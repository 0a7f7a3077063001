#include "desktop/views/common/TooltipBubbleView.h"

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <algorithm>
#include <cmath>

#include "desktop/views/common/Pixels.h"
#include "desktop/views/common/Shapes.h"
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

// The pointer, with a tip a little blunt, like the corners.
QPainterPath triangle(QPointF foot, double height) {
  QPainterPath pointer(foot - QPointF(kPointerHalfWidth, 0));
  const QPointF tip = foot + QPointF(0, height);
  const QPointF slope(kPointerHalfWidth * 0.24, height * 0.24);
  pointer.lineTo(tip - slope);
  pointer.quadTo(tip, tip + QPointF(slope.x(), -slope.y()));
  pointer.lineTo(foot + QPointF(kPointerHalfWidth, 0));
  pointer.closeSubpath();
  return pointer;
}

QPainterPath outlineOf(const QRectF& body, const TooltipPlacement& placement) {
  // From a point inside, so that the two shapes overlap and become one.
  constexpr double inside = 0.5;
  const double x = body.center().x() + placement.pointerOffsetX;
  const bool pointsUp = placement.pointer == TooltipPointerDirection::up;
  return continuousRectanglePath(body, kRadius)
      .united(pointsUp ? triangle({x, body.top() + inside}, -kPointerHeight - inside)
                       : triangle({x, body.bottom() - inside}, kPointerHeight + inside));
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

TooltipBubbleView::TooltipBubbleView(QWidget* root, Scheduler& scheduler, const Clock& clock)
    : QWidget(root), opacity_(scheduler, clock, 0, weak_.bind([](TooltipBubbleView& self) { self.update(); })) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFocusPolicy(Qt::NoFocus);
  setFont(typeOfSize(kTextSize, QFont::Medium));
  hide();
}

TooltipBubbleView::~TooltipBubbleView() {
  weak_.letGo();
}

Size TooltipBubbleView::measure(const QString& text, double widest) {
  text_ = text;
  const double room = std::max(std::min(kWidest, widest) - 2 * kPaddingX, 1.0);
  QTextOption wrapping;
  wrapping.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  lines_ = std::make_unique<QTextLayout>(text, font());
  lines_->setTextOption(wrapping);
  lines_->beginLayout();
  Size words;
  for (QTextLine line = lines_->createLine(); line.isValid(); line = lines_->createLine()) {
    line.setLineWidth(room);
    line.setPosition({0, words.height});
    words.width = std::max(words.width, line.naturalTextWidth());
    words.height += line.height();
  }
  lines_->endLayout();
  size_ = {std::ceil(words.width + 2 * kPaddingX), std::ceil(words.height + 2 * kPaddingY)};
  return size_;
}

void TooltipBubbleView::present(const TooltipPlacement& placement) {
  placement_ = placement;
  const QRectF body(placement.center.x - size_.width / 2, placement.center.y - size_.height / 2, size_.width,
                    size_.height);
  setGeometry(body.toAlignedRect().adjusted(-kShadow, -kShadow, kShadow, kShadow));
  body_ = body.translated(-pos());
  setAccessibleName(text_);
  raise();
  show();
  opacity_.animateTo(1, kAppear);
  update();
}

void TooltipBubbleView::dismiss() {
  hide();
  opacity_.jumpTo(0);
  setAccessibleName({});
}

void TooltipBubbleView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(opacity_.value());
  const QRectF body = snappedToPixels(painter, body_);
  const QPainterPath outline = outlineOf(body, placement_);
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

}  // namespace quenlio
