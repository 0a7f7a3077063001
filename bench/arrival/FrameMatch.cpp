#include "bench/arrival/FrameMatch.h"

#include <array>
#include <cmath>
#include <limits>

namespace quenlio::bench {
namespace {

using Channels = std::array<double, 3>;

Channels channels(std::uint32_t pixel) {
  return {static_cast<double>(pixel >> 16 & 0xff), static_cast<double>(pixel >> 8 & 0xff),
          static_cast<double>(pixel & 0xff)};
}

double distance(const Channels& a, const Channels& b) {
  return std::abs(a[0] - b[0]) + std::abs(a[1] - b[1]) + std::abs(a[2] - b[2]);
}

// Two pixels that differ by more are different to the eye as well.
constexpr double kClearlyDifferent = 60;
// Less is no more than rounding makes of the bare desktop.
constexpr double kLeastOpacity = 0.02;
// Of the difference between what is looked for and what was there before: nearer to the one than to the other by far.
constexpr double kMostError = 0.25;

template <class Visit>
void forEachPixel(const Look& look, Visit visit) {
  for (int y = look.part.y; y < look.part.y + look.part.height; ++y) {
    for (int x = look.part.x; x < look.part.x + look.part.width; ++x) {
      visit(static_cast<std::size_t>(y * look.frameWidth + x));
    }
  }
}

// The share of the way from the desktop to the final look that fits the frame best.
double opacity(const Look& look, const Frame& frame, const Frame& final, std::size_t shift) {
  const Channels desktop = channels(look.desktop);
  double along = 0;
  double whole = 0;
  forEachPixel(look, [&](std::size_t at) {
    const Channels target = channels(final.pixels[at]);
    const Channels now = channels(frame.pixels[at + shift]);
    for (std::size_t c = 0; c < 3; ++c) {
      const double way = target[c] - desktop[c];
      along += way * (now[c] - desktop[c]);
      whole += way * way;
    }
  });
  return whole > 0 ? along / whole : 0;
}

// How far the frame is from the final look at this opacity, where that look and the earlier one differ: a share of
// what they differ by. Infinite where nothing can be seen.
double error(const Look& look, const Frame& frame, const Frame& final, const Frame& earlier, std::size_t shift) {
  const double share = opacity(look, frame, final, shift);
  if (share < kLeastOpacity) {
    return std::numeric_limits<double>::infinity();
  }
  const Channels desktop = channels(look.desktop);
  double wrong = 0;
  double difference = 0;
  forEachPixel(look, [&](std::size_t at) {
    const Channels target = channels(final.pixels[at]);
    const double apart = distance(target, channels(earlier.pixels[at]));
    if (apart < kClearlyDifferent) {
      return;
    }
    Channels expected{};
    for (std::size_t c = 0; c < 3; ++c) {
      expected[c] = desktop[c] + share * (target[c] - desktop[c]);
    }
    wrong += distance(channels(frame.pixels[at + shift]), expected);
    difference += share * apart;
  });
  return difference > 0 ? wrong / difference : std::numeric_limits<double>::infinity();
}

}  // namespace

int changedPixels(const Look& look, const Frame& a, const Frame& b) {
  int changed = 0;
  forEachPixel(look, [&](std::size_t at) {
    changed += distance(channels(a.pixels[at]), channels(b.pixels[at])) >= kClearlyDifferent ? 1 : 0;
  });
  return changed;
}

bool shows(const Look& look, const Frame& frame, const Frame& final, const Frame& earlier) {
  for (int down = 0; down <= look.mostRise; ++down) {
    if (error(look, frame, final, earlier, static_cast<std::size_t>(down * look.frameWidth)) < kMostError) {
      return true;
    }
  }
  return false;
}

}  // namespace quenlio::bench
