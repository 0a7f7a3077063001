#include "tests/desktop/views/SymbolIn.h"

#include <QtGui/QPainter>
#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

#include "desktop/views/common/Icon.h"

namespace quenlio {
namespace {

constexpr const char* kSymbols[] = {
    "doc.on.doc",  "highlighter", "square.and.arrow.up",   "folder", "trash", "xmark", "photo",
    "lock.shield", "checkmark",   "arrow.up.right.square", "pencil"};
constexpr int kSide = 48;      // what is compared has this size
constexpr int kFaintest = 12;  // of 255, of what counts as drawn at all

// How far each pixel is from the ground, which most of them are, cut to what is drawn and brought to one size.
QImage inkOf(const QImage& picture) {
  std::map<int, int> counts;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      ++counts[picture.pixelColor(x, y).lightness()];
    }
  }
  const int ground = std::ranges::max_element(counts, {}, [](const auto& entry) { return entry.second; })->first;
  const int most = std::max(std::abs(counts.begin()->first - ground), std::abs(counts.rbegin()->first - ground));
  if (most < kFaintest) {
    return {};
  }
  QImage ink(picture.size(), QImage::Format_Grayscale8);
  QRect drawn;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const int strength = std::abs(picture.pixelColor(x, y).lightness() - ground) * 255 / most;
      ink.setPixelColor(x, y, QColor(strength, strength, strength));
      drawn |= strength > 127 ? QRect(x, y, 1, 1) : QRect();
    }
  }
  return ink.copy(drawn).scaled(kSide, kSide, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage drawingOf(const char* symbol) {
  QImage drawing(160, 160, QImage::Format_RGB32);
  drawing.fill(Qt::white);
  QPainter painter(&drawing);
  paintIcon(painter, symbol, {80, 80}, {.size = 120, .colour = Qt::black});
  painter.end();
  return inkOf(drawing);
}

double distance(const QImage& a, const QImage& b) {
  double sum = 0;
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x) {
      sum += std::abs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y)));
    }
  }
  return sum / (kSide * kSide);
}

}  // namespace

std::string symbolIn(const QImage& picture, const QRect& part) {
  const QImage seen = inkOf(picture.copy(part));
  std::string nearest;
  double least = std::numeric_limits<double>::max();
  for (const char* symbol : kSymbols) {
    const double here = seen.isNull() ? least : distance(seen, drawingOf(symbol));
    if (here < least) {
      least = here;
      nearest = symbol;
    }
  }
  return nearest;
}

}  // namespace quenlio
