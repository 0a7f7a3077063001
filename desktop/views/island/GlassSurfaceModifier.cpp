#include "desktop/views/island/GlassSurfaceModifier.h"

#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <algorithm>
#include <cmath>
#include <iterator>

#include "core/geometry/ContinuousCorner.h"

#include "desktop/views/common/Pixels.h"
#include "desktop/views/common/QtColor.h"
#include "desktop/views/common/Shapes.h"

namespace quenlio {
namespace {

struct Body;

constexpr double kUnderWindowBackgroundOpacity = 0.56;
constexpr double kTopStrokeOpacity = 0.78;
constexpr double kBottomStrokeOpacity = 0.75;
// What is sharp behind the glass would show up between letters and in the picture: most of what the content lets
// through is held back. Always as much of it, so that the panel fades by what its content fades by.
constexpr double kHeldBack = 0.09;

}  // namespace

GlassSurfaceModifier::GlassSurfaceModifier(QWidget* content) : QWidget(content) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFocusPolicy(Qt::NoFocus);
}

void GlassSurfaceModifier::apply(const IslandTheme& theme, double cornerRadius) {
  theme_ = theme;
  cornerRadius_ = cornerRadius;
  update();
}

void GlassSurfaceModifier::setContainerOpacity(double opacity) {
  if (opacity != containerOpacity_) {
    containerOpacity_ = opacity;
    update();
  }
}

void GlassSurfaceModifier::paintBody(QPainter& painter) const {
  painter.fillRect(rect(), toQColor(theme_.material.hudWindow));
  painter.fillRect(rect(), toQColor(theme_.material.underWindowBackground.opacity(kUnderWindowBackgroundOpacity)));
  painter.fillRect(rect(), toQColor(theme_.tokens.containerTint));
  QLinearGradient light(0, 0, 0, height());
  light.setColorAt(0, toQColor(theme_.tokens.containerTopHighlight));
  light.setColorAt(0.5, toQColor(Color::white(0.03)));
  light.setColorAt(1, toQColor(Color::black(0.02)));
  painter.fillRect(rect(), light);
}

void GlassSurfaceModifier::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  const bool isAtEdge = !isWellInside(event->rect());
  if (isAtEdge) {
    strokeEdge(painter);
  }
  if (theme_.backing != GlassBacking::opaque && containerOpacity_ < 1) {
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(event->rect(), QColor::fromRgbF(0, 0, 0, static_cast<float>(containerOpacity_)));
  }
  if (theme_.backing == GlassBacking::composited && containerOpacity_ < 1) {
    const double behind = std::min(kHeldBack / (1 - containerOpacity_), 1.0);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
    painter.fillRect(event->rect(), toQColor(theme_.material.hudWindow.opacity(behind)));
  }
  if (isAtEdge) {
    takeCornersAway(painter);
  }
}

void GlassSurfaceModifier::strokeEdge(QPainter& painter) const {
  QLinearGradient stroke(0, 0, 0, height());
  stroke.setColorAt(0, toQColor(theme_.tokens.containerTopHighlight.opacity(kTopStrokeOpacity)));
  stroke.setColorAt(1, toQColor(theme_.tokens.edgeStrokeColor.opacity(kBottomStrokeOpacity)));
  QRectF body = rect();
  double radius = cornerRadius_;
  if (theme_.backing == GlassBacking::opaque) {
    const double line = std::max(1.0, std::floor(pixelsAPoint(painter))) / pixelsAPoint(painter);
    // The line that tells the body from what is around it, and inside of it the light on its edge. As much of it again
    // would lie outside, so that the outermost pixels are wholly of its tone, however much of them the body covers.
    painter.setRenderHint(QPainter::Antialiasing);
    painter.strokePath(continuousRectanglePath(body, radius), QPen(toQColor(theme_.material.edge), 2 * line));
    body.adjust(line, line, -line, -line);
    radius -= line;
  }
  strokeInside(painter, body, radius, stroke);
}

// A window without a compositor has no smooth edge: of its corners whole pixels are seen or not. Those that the body
// covers in part are brought near the edge's tone, between those of the body and of most that is around it.
void GlassSurfaceModifier::takeCornersAway(QPainter& painter) const {
  const bool isOpaque = theme_.backing == GlassBacking::opaque;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(isOpaque ? toQColor(theme_.material.edge) : QColor(Qt::black));
  painter.setCompositionMode(isOpaque ? QPainter::CompositionMode_SourceOver
                                      : QPainter::CompositionMode_DestinationOut);
  const double side = width();
  const double below = height();
  const auto outline = continuousRectangle<Body>({{0, 0}, {side, below}}, cornerRadius_);
  // A quarter of the outline's points belongs to each corner, in this order; what is outside lies between them and the
  // corner itself.
  const std::size_t quarter = outline.size() / 4;
  const QPointF corners[] = {{0, 0}, {side, 0}, {side, below}, {0, below}};
  for (std::size_t corner = 0; corner < std::size(corners); ++corner) {
    QPolygonF outside{corners[corner]};
    for (std::size_t at = corner * quarter; at < (corner + 1) * quarter; ++at) {
      outside.append({outline[at].x, outline[at].y});
    }
    painter.drawPolygon(outside);
  }
}

bool GlassSurfaceModifier::isWellInside(const QRect& part) const {
  const int line = theme_.backing == GlassBacking::opaque ? 2 : 1;
  const int corner = static_cast<int>(std::ceil(continuousCornerReach(cornerRadius_)));
  return rect().adjusted(line, corner, -line, -corner).contains(part) ||
         rect().adjusted(corner, line, -corner, -line).contains(part);
}

}  // namespace quenlio
