// The few fields of a camera's metadata that decide how a picture is shown. Any thread.
#pragma once

#include <QImage>
#include <QSize>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace quenlio {

struct ExifFields {
  int orientation = 1;            // 1 to 8; 1 is upright
  std::optional<double> density;  // dots an inch
};

// From the bytes that begin with the byte order ("II" or "MM"). What is missing, damaged or out of range keeps its
// default.
[[nodiscard]] ExifFields parseExif(std::span<const std::uint8_t> data);

// Whether the orientation swaps width and height.
[[nodiscard]] constexpr bool swapsSides(int orientation) {
  return orientation >= 5;
}

// The picture turned and mirrored so that it stands upright.
[[nodiscard]] QImage upright(const QImage& stored, int orientation);

}  // namespace quenlio
