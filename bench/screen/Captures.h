// Captures as a tool would take them of a working desktop, already encoded: windows with lines of text over a smooth
// background, and in the middle one even colour by which a picture is told from the one before.
#pragma once

#include <QByteArray>
#include <QSize>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quenlio::bench {

struct Capture {
  std::uint32_t colour = 0;  // 0xRRGGBB, of the middle
  QByteArray png;
};

// As many follow one another in turn, each of another colour.
inline constexpr std::size_t kCaptureColours = 6;
[[nodiscard]] std::uint32_t captureColour(std::size_t number);

// The first so many, each another picture. The same in every run.
[[nodiscard]] std::vector<Capture> makeCaptures(QSize size, std::size_t count = kCaptureColours);

}  // namespace quenlio::bench
