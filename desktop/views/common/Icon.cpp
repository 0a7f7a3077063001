#include "desktop/views/common/Icon.h"

#include <QtCore/QFile>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>
#include <algorithm>
#include <cassert>
#include <cmath>
#include <deque>
#include <map>
#include <memory>
#include <string>

#include "desktop/views/common/Pixels.h"

// Resources of a static library are dropped unless somebody asks for them. The macro declares a function, which must
// not end up in a namespace.
static void useIconResources() {
  Q_INIT_RESOURCE(icons);
}

namespace quenlio {
namespace {

constexpr double kGrid = 24;  // the side of every drawing, in its own units
constexpr double kStroke = 1.75;
constexpr int kRoom = 2;  // pixels around the square, for what grows beyond it
constexpr double kScaleSteps = 8;
constexpr std::size_t kKept = 48;  // a few kilobytes

// A line that is an odd number of pixels wide lies in the middle of one, any other on the boundary between two.
double onGrid(double position, double linePixels) {
  const double phase = std::lround(linePixels) % 2 == 1 ? 0.5 : 0;
  return std::round(position - phase) + phase;
}

// The straight way that takes the drawing's coordinates along one axis to pixels.
struct Fit {
  double scale;
  double offset;
};

// The two outer lines of the frame are taken to whole pixels, by less than one pixel each, and what is between them
// goes along. With a line in the middle the two are an even number of pixels apart, so that it can be sharp too.
Fit fitted(double low, double high, bool hasMiddle, double pixelsAUnit, double offset) {
  const double line = kStroke * pixelsAUnit;
  const double step = hasMiddle ? 2 : 1;
  const double length = std::max(step, std::round((high - low) * pixelsAUnit / step) * step);
  const double middle = (low + high) / 2 * pixelsAUnit + offset;
  const double first = onGrid(middle - length / 2, line);
  const double scale = length / (high - low);
  return {scale, first - low * scale};
}

QSvgRenderer& drawing(const std::string& symbol) {
  static std::map<std::string, std::unique_ptr<QSvgRenderer>> drawings;
  std::unique_ptr<QSvgRenderer>& renderer = drawings[symbol];
  if (!renderer) {
    useIconResources();
    renderer = std::make_unique<QSvgRenderer>(QStringLiteral(":/icons/%1.svg").arg(QString::fromStdString(symbol)));
    assert(renderer->isValid() && "no such symbol");
  }
  return *renderer;
}

// What is rendered: the symbol's square has this many pixels a side, and grows or shrinks within the picture.
struct MaskKey {
  std::string symbol;
  double side;
  double grownSide;
  bool operator==(const MaskKey&) const = default;
};

QImage rendered(const MaskKey& key) {
  QSvgRenderer& renderer = drawing(key.symbol);
  const int whole = static_cast<int>(std::ceil(key.side)) + 2 * kRoom;
  QImage image(whole, whole, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  const double unit = key.side / kGrid;
  const double offset = (whole - key.side) / 2;
  Fit across{unit, offset};
  Fit down{unit, offset};
  if (renderer.elementExists(QStringLiteral("frame"))) {
    const QRectF frame = renderer.boundsOnElement(QStringLiteral("frame"));
    across = fitted(frame.left(), frame.right(), renderer.elementExists(QStringLiteral("column")), unit, offset);
    down = fitted(frame.top(), frame.bottom(), renderer.elementExists(QStringLiteral("row")), unit, offset);
  }
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  const double growth = key.grownSide / key.side;
  painter.translate(whole / 2.0, whole / 2.0);
  painter.scale(growth, growth);
  painter.translate(-whole / 2.0, -whole / 2.0);
  renderer.render(&painter, QRectF(across.offset, down.offset, kGrid * across.scale, kGrid * down.scale));
  painter.end();
  return image.convertToFormat(QImage::Format_Alpha8);
}

const QImage& mask(const MaskKey& key) {
  static std::deque<std::pair<MaskKey, QImage>> kept;  // the newest last
  const auto found = std::ranges::find(kept, key, [](const auto& entry) { return entry.first; });
  if (found != kept.end()) {
    return found->second;
  }
  if (kept.size() == kKept) {
    kept.pop_front();
  }
  return kept.emplace_back(key, rendered(key)).second;
}

}  // namespace

void paintIcon(QPainter& painter, std::string_view symbol, QPointF centre, const IconLook& look) {
  const double density = pixelsAPoint(painter);
  const double side = look.size * density;
  // In steps that nobody sees, so that one animation is rendered once and not at each of its frames.
  const double grown = std::round(side * look.scale * kScaleSteps) / kScaleSteps;
  const QImage& shape = mask({std::string(symbol), side, look.scale == 1 ? side : grown});

  QImage tinted(shape.size(), QImage::Format_ARGB32_Premultiplied);
  tinted.fill(look.colour);
  QPainter tint(&tinted);
  tint.setCompositionMode(QPainter::CompositionMode_DestinationIn);
  tint.drawImage(0, 0, shape);
  tint.end();

  const QTransform& toDevice = painter.deviceTransform();
  const QPointF middle = toDevice.map(centre);
  const QPointF corner(std::round(middle.x() - shape.width() / 2.0), std::round(middle.y() - shape.height() / 2.0));
  tinted.setDevicePixelRatio(density);
  painter.drawImage(toDevice.inverted().map(corner), tinted);
}

}  // namespace quenlio
