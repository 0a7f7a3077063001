// A colour in sRGB. A plain value; any thread.
#pragma once

#include <cmath>

namespace quenlio {

// Each from 0 to 1; the colour is not multiplied by its opacity.
struct Color {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 1;

  [[nodiscard]] static constexpr Color white(double alpha) { return {1, 1, 1, alpha}; }
  [[nodiscard]] static constexpr Color black(double alpha) { return {0, 0, 0, alpha}; }
  // Less opaque by this factor.
  [[nodiscard]] constexpr Color opacity(double factor) const { return {red, green, blue, alpha * factor}; }
  // The share of the way from one to the other.
  [[nodiscard]] static constexpr Color between(const Color& from, const Color& to, double share) {
    return {std::lerp(from.red, to.red, share), std::lerp(from.green, to.green, share),
            std::lerp(from.blue, to.blue, share), std::lerp(from.alpha, to.alpha, share)};
  }
  bool operator==(const Color&) const = default;
};

}  // namespace quenlio
