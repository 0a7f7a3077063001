#include "desktop/render/SoftShadow.h"

#include <QtGui/QPainter>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "core/geometry/ContinuousCorner.h"

namespace quenlio {
namespace {

struct Patch;

// One opacity a pixel, 0 to 1.
struct Field {
  int width;
  int height;
  std::vector<float> values;
  float& at(int x, int y) {
    return values[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
  }
};

// What the body covers of each pixel.
Field coverage(const QSize& size, const QRectF& body, double radius) {
  QImage mask(size, QImage::Format_Grayscale8);
  mask.fill(Qt::black);
  QPolygonF outline;
  for (const auto& at : continuousRectangle<Patch>({{body.x(), body.y()}, {body.width(), body.height()}}, radius)) {
    outline.append({at.x, at.y});
  }
  QPainter painter(&mask);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Qt::white);
  painter.drawPolygon(outline);
  painter.end();
  Field field{size.width(), size.height(), {}};
  field.values.reserve(static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height()));
  for (int y = 0; y < size.height(); ++y) {
    const uchar* line = mask.constScanLine(y);
    std::transform(line, line + size.width(), std::back_inserter(field.values),
                   [](uchar value) { return static_cast<float>(value) / 255; });
  }
  return field;
}

// The mean over so many pixels around each, along one line; the outermost count by what of them is inside.
class Box {
 public:
  explicit Box(double width)
      : width_(static_cast<float>(width)),
        reach_(static_cast<int>((width - 1) / 2)),
        edge_(static_cast<float>((width - (2 * reach_ + 1)) / 2)) {}

  void blur(const float* from, float* to, int count, int stride) const {
    const auto value = [&](int index) { return index >= 0 && index < count ? from[index * stride] : 0.0F; };
    float sum = 0;
    for (int index = -reach_; index <= reach_; ++index) {
      sum += value(index);
    }
    for (int index = 0; index < count; ++index) {
      to[index * stride] = (sum + edge_ * (value(index - reach_ - 1) + value(index + reach_ + 1))) / width_;
      sum += value(index + reach_ + 1) - value(index - reach_);
    }
  }

 private:
  float width_;
  int reach_;
  float edge_;
};

// Three means after one another are as good as the bell curve whose width is half of the radius.
void blur(Field& field, double radius) {
  const double deviation = radius / 2;
  const Box box(std::sqrt(4 * deviation * deviation + 1));
  Field other = field;
  for (int pass = 0; pass < 3; ++pass) {
    for (int y = 0; y < field.height; ++y) {
      box.blur(&field.at(0, y), &other.at(0, y), field.width, 1);
    }
    for (int x = 0; x < field.width; ++x) {
      box.blur(&other.at(x, 0), &field.at(x, 0), field.height, field.width);
    }
  }
}

}  // namespace

void SoftShadow::setLook(Look look) {
  if (look != look_) {
    look_ = std::move(look);
    patch_ = {};
  }
}

QMargins SoftShadow::margins() const {
  double side = 0;
  double top = 0;
  double bottom = 0;
  for (const ShadowLayer& layer : look_.layers) {
    side = std::max(side, layer.radius);
    top = std::max(top, layer.radius - layer.y);
    bottom = std::max(bottom, layer.radius + layer.y);
  }
  const auto whole = [](double length) { return static_cast<int>(std::ceil(length)); };
  return {whole(side), whole(top), whole(side), whole(bottom)};
}

namespace {

// Of the patch, in pixels. A body that is larger than its corners is rendered with a single pixel between them.
struct Geometry {
  QMargins around;
  QSize body;
  [[nodiscard]] QSize size() const { return body.grownBy(around); }
};

Geometry geometryOf(const SoftShadow::Look& look, const QMargins& margins, const QSizeF& body, double scale) {
  const auto pixels = [scale](double points) { return static_cast<int>(std::ceil(points * scale)); };
  double reach = 0;
  for (const ShadowLayer& layer : look.layers) {
    reach = std::max(reach, layer.radius + std::abs(layer.y));
  }
  const int corners = 2 * pixels(continuousCornerReach(look.cornerRadius) + reach) + 1;
  const auto side = [&](double points) { return std::min(static_cast<int>(std::lround(points * scale)), corners); };
  return {.around = {pixels(margins.left()), pixels(margins.top()), pixels(margins.right()), pixels(margins.bottom())},
          .body = {side(body.width()), side(body.height())}};
}

// Around the body only: of the pixels at its edge, all of those that it covers in part.
QImage render(const SoftShadow::Look& look, const Geometry& geometry, double scale) {
  const QSize size = geometry.size();
  const QRectF body(geometry.around.left(), geometry.around.top(), geometry.body.width(), geometry.body.height());
  std::vector<float> clear(static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height()), 1);
  for (const ShadowLayer& layer : look.layers) {
    Field field = coverage(size, body.translated(0, layer.y * scale), look.cornerRadius * scale);
    blur(field, layer.radius * scale);
    for (std::size_t index = 0; index < clear.size(); ++index) {
      clear[index] *= 1 - static_cast<float>(layer.opacity) * field.values[index];
    }
  }
  constexpr double inset = 0.5;
  const Field under = coverage(size, body.adjusted(inset, inset, -inset, -inset), look.cornerRadius * scale - inset);
  QImage image(size, QImage::Format_ARGB32_Premultiplied);
  for (int y = 0; y < size.height(); ++y) {
    auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < size.width(); ++x) {
      const std::size_t index =
          static_cast<std::size_t>(y) * static_cast<std::size_t>(size.width()) + static_cast<std::size_t>(x);
      line[x] = qRgba(0, 0, 0, static_cast<int>(std::lround(255 * (1 - clear[index]) * (1 - under.values[index]))));
    }
  }
  return image;
}

}  // namespace

// Three columns and three rows, the middle ones stretched. What is in the middle of both lies under the body.
void SoftShadow::paint(QPainter& painter, const QRectF& body) {
  const double scale = painter.deviceTransform().m11();
  const Geometry geometry = geometryOf(look_, margins(), body.size(), scale);
  if (patch_.size() != geometry.size() || scale_ != scale) {
    scale_ = scale;
    patch_ = render(look_, geometry, scale);
  }
  const QMargins& around = geometry.around;
  const int halfWidth = geometry.body.width() / 2;
  const int halfHeight = geometry.body.height() / 2;
  const double x[] = {body.left() - around.left() / scale, body.left() + halfWidth / scale,
                      body.right() - halfWidth / scale, body.right() + around.right() / scale};
  const double y[] = {body.top() - around.top() / scale, body.top() + halfHeight / scale,
                      body.bottom() - halfHeight / scale, body.bottom() + around.bottom() / scale};
  const int fromX[] = {0, around.left() + halfWidth, around.left() + geometry.body.width() - halfWidth, patch_.width()};
  const int fromY[] = {0, around.top() + halfHeight, around.top() + geometry.body.height() - halfHeight,
                       patch_.height()};
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      const QRectF from(QPointF(fromX[column], fromY[row]), QPointF(fromX[column + 1], fromY[row + 1]));
      if ((row != 1 || column != 1) && !from.isEmpty()) {
        painter.drawImage(QRectF(QPointF(x[column], y[row]), QPointF(x[column + 1], y[row + 1])), patch_, from);
      }
    }
  }
}

}  // namespace quenlio
