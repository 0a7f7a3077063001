// Captures as a tool would take them of a working desktop, already encoded: windows with lines of text over a smooth
// background, and in the middle one even colour by which the island's small picture is told from the one before.
#pragma once

#include <QByteArray>
#include <QSize>
#include <cstdint>
#include <vector>

namespace quenlio::bench {

struct Capture {
  std::uint32_t colour = 0;  // 0xRRGGBB, of the middle
  QByteArray png;
};

// A few that follow one another in turn, each of another colour. The same pictures in every run.
[[nodiscard]] std::vector<Capture> makeCaptures(QSize size);

}  // namespace quenlio::bench
