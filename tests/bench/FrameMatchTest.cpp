// What the benchmark of arrivals takes for the capture's name or picture on the screen, and what not.
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

#include "bench/arrival/FrameMatch.h"

namespace quenlio::bench {
namespace {

constexpr std::uint32_t kDesktop = 0x5a6b7c;
constexpr int kWidth = 20;
constexpr int kHeight = 16;
constexpr int kRise = 4;
constexpr Look kLook{
    .frameWidth = kWidth, .part = {.x = 2, .y = 3, .width = 14, .height = 6}, .desktop = kDesktop, .mostRise = kRise};

Frame filled(std::uint32_t pixel) {
  return {.seen = {}, .pixels = std::vector<std::uint32_t>(static_cast<std::size_t>(kWidth) * kHeight, pixel)};
}

// A panel with a word of upright strokes, which stand so many pixels apart.
Frame panel(std::size_t apart) {
  Frame frame = filled(0xf0f0f0);
  for (std::size_t at = 0; at < frame.pixels.size(); ++at) {
    if (at % kWidth % apart == 0) {
      frame.pixels[at] = 0x202020;
    }
  }
  return frame;
}

// So far on the way from the one to the other.
Frame between(const Frame& from, const Frame& to, double share) {
  Frame frame = from;
  for (std::size_t at = 0; at < frame.pixels.size(); ++at) {
    std::uint32_t mixed = 0;
    for (const unsigned shift : {16U, 8U, 0U}) {
      const double one = from.pixels[at] >> shift & 0xff;
      const double other = to.pixels[at] >> shift & 0xff;
      mixed |= static_cast<std::uint32_t>(std::lround(one + share * (other - one))) << shift;
    }
    frame.pixels[at] = mixed;
  }
  return frame;
}

Frame lowered(const Frame& frame, int rows) {
  Frame lower = filled(kDesktop);
  const auto by = static_cast<std::size_t>(rows) * kWidth;
  std::copy(frame.pixels.begin(), frame.pixels.end() - static_cast<std::ptrdiff_t>(by),
            lower.pixels.begin() + static_cast<std::ptrdiff_t>(by));
  return lower;
}

class FrameMatch : public testing::Test {
 protected:
  [[nodiscard]] bool isShownIn(const Frame& frame) const { return shows(kLook, frame, last, earlier); }

  Frame bare = filled(kDesktop);
  Frame earlier = panel(5);
  Frame last = panel(3);
};

TEST_F(FrameMatch, theLastFrameShowsItAndThoseBeforeItDoNot) {
  EXPECT_TRUE(isShownIn(last));
  EXPECT_FALSE(isShownIn(earlier));
  EXPECT_FALSE(isShownIn(bare));
}

TEST_F(FrameMatch, fadingInItIsShownFromTheFirstVisibleFrameOn) {
  for (const double share : {0.05, 0.3, 0.9}) {
    EXPECT_TRUE(isShownIn(between(bare, last, share))) << share;
    EXPECT_FALSE(isShownIn(between(bare, earlier, share))) << share;
  }
  EXPECT_FALSE(isShownIn(between(bare, last, 0.01)));
}

TEST_F(FrameMatch, risingItIsShownWhereItHasComeTo) {
  Frame uneven = last;
  for (int row = 0; row < kHeight; row += 5) {
    for (int column = 0; column < kWidth; ++column) {
      uneven.pixels[static_cast<std::size_t>(row * kWidth + column)] = 0x202020;
    }
  }
  for (int rows = 0; rows <= kRise; ++rows) {
    EXPECT_TRUE(shows(kLook, between(bare, lowered(uneven, rows), 0.4), uneven, earlier)) << rows;
  }
  EXPECT_FALSE(shows(kLook, lowered(uneven, kRise + 2), uneven, earlier));
}

TEST_F(FrameMatch, aFrameBetweenTheOneBeforeAndTheLastShowsItOnceItIsNearerByFar) {
  EXPECT_FALSE(isShownIn(between(earlier, last, 0.5)));
  EXPECT_TRUE(isShownIn(between(earlier, last, 0.9)));
}

TEST_F(FrameMatch, whatWasThereAlreadyIsNotShownAnew) {
  EXPECT_FALSE(shows(kLook, last, last, last));
  EXPECT_EQ(changedPixels(kLook, last, last), 0);
}

TEST_F(FrameMatch, whatChangedIsCountedInThePartAlone) {
  Frame other = last;
  other.pixels[0] ^= 0xffffff;                // outside
  other.pixels[3 * kWidth + 2] ^= 0xffffff;   // its first
  other.pixels[8 * kWidth + 15] ^= 0xffffff;  // its last
  other.pixels[5 * kWidth + 7] ^= 0x010101;   // nobody sees that
  EXPECT_EQ(changedPixels(kLook, last, other), 2);
}

}  // namespace
}  // namespace quenlio::bench
