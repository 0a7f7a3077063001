// What opening a picture gives.
#pragma once

#include <QImage>
#include <QSizeF>
#include <optional>
#include <stop_token>

namespace quenlio {

struct DecodedImage {
  QImage image;      // ARGB32_Premultiplied, sRGB, upright, as large as was asked for
  QSizeF pointSize;  // of the picture in the file, whatever was asked for
};

// Some pictures cannot be read row by row, as their rows come several times over (interlaced and progressive ones).
// This program itself holds none of those that is large: such a one is left to the child, which has limits of its own.
inline constexpr double kMostPixelsHeldHere = 16e6;

struct ReadLimits {
  double mostPixelsHeld = kMostPixelsHeldHere;
  std::stop_token stop = {};  // once asked for, the reading ends soon and gives nothing
};

struct ReadResult {
  std::optional<DecodedImage> decoded;
  bool tooLargeToHold = false;  // a reader with higher limits may succeed
};

// What came of decoding in this program.
struct DecodedHere {
  std::optional<DecodedImage> decoded;
  bool isLeftToChild = false;  // only a child process decodes this file
};

}  // namespace quenlio
