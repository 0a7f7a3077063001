#include "desktop/render/Exif.h"

#include <QTransform>
#include <array>

namespace quenlio {
namespace {

// Reads numbers in the file's own byte order; what lies outside the bytes reads as zero.
class ExifBytes {
 public:
  explicit ExifBytes(std::span<const std::uint8_t> data)
      : data_(data), littleEndian_(!data.empty() && data[0] == 'I') {}

  [[nodiscard]] std::uint32_t number(std::size_t at, std::size_t bytes) const {
    if (at > data_.size() || bytes > data_.size() - at) {
      return 0;
    }
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < bytes; ++i) {
      value = value << 8 | data_[at + (littleEndian_ ? bytes - 1 - i : i)];
    }
    return value;
  }

 private:
  std::span<const std::uint8_t> data_;
  bool littleEndian_;
};

constexpr std::uint32_t kOrientation = 0x0112;
constexpr std::uint32_t kXResolution = 0x011A;
constexpr std::uint32_t kResolutionUnit = 0x0128;
constexpr std::uint32_t kCentimetres = 3;

}  // namespace

ExifFields parseExif(std::span<const std::uint8_t> data) {
  const ExifBytes bytes(data);
  ExifFields fields;
  constexpr std::uint32_t tiffMark = 42;
  if (bytes.number(2, 2) != tiffMark) {
    return fields;
  }
  const std::size_t directory = bytes.number(4, 4);
  const std::size_t count = bytes.number(directory, 2);
  constexpr double centimetresAnInch = 2.54;
  double unit = 1;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t entry = directory + 2 + i * 12;
    const std::uint32_t tag = bytes.number(entry, 2);
    if (tag == kOrientation) {
      const std::uint32_t value = bytes.number(entry + 8, 2);
      fields.orientation = value >= 1 && value <= 8 ? static_cast<int>(value) : 1;
    } else if (tag == kXResolution) {
      const std::size_t rational = bytes.number(entry + 8, 4);
      const std::uint32_t denominator = bytes.number(rational + 4, 4);
      if (denominator != 0) {
        fields.density = static_cast<double>(bytes.number(rational, 4)) / denominator;
      }
    } else if (tag == kResolutionUnit && bytes.number(entry + 8, 2) == kCentimetres) {
      unit = centimetresAnInch;
    }
  }
  if (fields.density) {
    *fields.density *= unit;
  }
  return fields;
}

QImage upright(const QImage& stored, int orientation) {
  const QTransform quarterTurn(0, 1, -1, 0, 0, 0);  // clockwise
  switch (orientation) {
    case 2:
      return stored.mirrored(true, false);
    case 3:
      return stored.mirrored(true, true);
    case 4:
      return stored.mirrored(false, true);
    case 5:
      return stored.transformed(quarterTurn).mirrored(true, false);
    case 6:
      return stored.transformed(quarterTurn);
    case 7:
      return stored.transformed(quarterTurn).mirrored(false, true);
    case 8:
      return stored.transformed(quarterTurn).mirrored(true, true);
    default:
      return stored;
  }
}

}  // namespace quenlio
