#include "bench/screen/Captures.h"

#include <QBuffer>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <array>
#include <random>
#include <stdexcept>

namespace quenlio::bench {
namespace {

constexpr std::array<std::uint32_t, kCaptureColours> kColours{0xdc1e1e, 0x1eb41e, 0x1e3cdc,
                                                              0xe6dc1e, 0xdc28d2, 0x1ec8dc};

class Desktop {
 public:
  Desktop(QSize size, unsigned seed) : image_(size, QImage::Format_RGB32), random_(seed), painter_(&image_) {}

  QImage drawn(std::uint32_t middle) {
    QLinearGradient sky(0, 0, image_.width(), image_.height());
    sky.setColorAt(0, QColor(24, 60, 110));
    sky.setColorAt(1, QColor(190, 120, 90));
    painter_.fillRect(image_.rect(), sky);
    for (int index = 0; index < 5; ++index) {
      window({number(0, image_.width() / 2), number(0, image_.height() / 2), image_.width() / 2, image_.height() / 2});
    }
    QRect centre(0, 0, image_.width() / 2, image_.height() / 2);
    centre.moveCenter(image_.rect().center());
    painter_.fillRect(centre, QColor(QRgb(middle)));
    painter_.end();
    return image_;
  }

 private:
  int number(int from, int to) { return std::uniform_int_distribution(from, to)(random_); }

  // Words stand for themselves as strokes of a few pixels: as sharp and as hard to compress as letters are.
  void window(const QRect& place) {
    painter_.fillRect(place, QColor(246, 246, 244));
    painter_.fillRect(QRect(place.topLeft(), QSize(place.width(), 36)), QColor(60, 62, 70));
    for (int y = place.top() + 52; y < place.bottom() - 16; y += 18) {
      const int end = place.left() + number(place.width() / 3, place.width() - 40);
      for (int x = place.left() + 20 + 8 * number(0, 6); x < end; x += number(3, 6)) {
        const int shade = number(20, 120);
        painter_.fillRect(x, y + number(0, 4), number(1, 3), number(3, 10), QColor(shade, shade, shade + 20));
      }
    }
  }

  QImage image_;
  std::mt19937 random_;
  QPainter painter_;
};

}  // namespace

std::uint32_t captureColour(std::size_t number) {
  return kColours.at(number % kColours.size());
}

std::vector<Capture> makeCaptures(QSize size, std::size_t count) {
  std::vector<Capture> captures;
  for (std::size_t number = 0; number < count; ++number) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    const auto seed = static_cast<unsigned>(number) + 1;
    if (!Desktop(size, seed).drawn(captureColour(number)).save(&buffer, "PNG")) {
      throw std::runtime_error("a capture cannot be encoded");
    }
    captures.push_back({captureColour(number), buffer.data()});
  }
  return captures;
}

}  // namespace quenlio::bench
