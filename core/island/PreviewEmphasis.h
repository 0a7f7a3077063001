// How far the large preview comes forward from the panel while the pointer is on it or holds it. A table, set by hand.
// A plain value; any thread.
#pragma once

#include <variant>

#include "core/island/IslandMotion.h"

namespace quenlio {

// Opacities are 0 to 1, lengths points.
struct PreviewEmphasis {
  double cardShadowOpacity;
  double cardShadowRadius;
  double cardShadowY;
  double imageShadowOpacity;
  double imageShadowRadius;
  double imageShadowY;
  double cardScale;

  [[nodiscard]] static constexpr PreviewEmphasis of(bool isHolding, bool isHovering);
  // The share of the way from one to the other, which a spring takes a little past its end.
  [[nodiscard]] static constexpr PreviewEmphasis between(const PreviewEmphasis& from, const PreviewEmphasis& to,
                                                         double share);
  // What takes it from one to the other: a hand that takes hold or lets go has a curve of its own.
  [[nodiscard]] static constexpr std::variant<TimedCurve, Spring> motion(bool wasHolding, bool isHolding) {
    return wasHolding || isHolding ? std::variant<TimedCurve, Spring>(IslandMotion::kPreviewHolding)
                                   : IslandMotion::kSpring;
  }
  bool operator==(const PreviewEmphasis&) const = default;
};

constexpr PreviewEmphasis PreviewEmphasis::of(bool isHolding, bool isHovering) {
  if (isHolding) {
    return {.cardShadowOpacity = 0.18,
            .cardShadowRadius = 10,
            .cardShadowY = 2,
            .imageShadowOpacity = 0.12,
            .imageShadowRadius = 10,
            .imageShadowY = 2,
            .cardScale = 1.025};
  }
  if (isHovering) {
    return {.cardShadowOpacity = 0.14,
            .cardShadowRadius = 8,
            .cardShadowY = 2,
            .imageShadowOpacity = 0.10,
            .imageShadowRadius = 9,
            .imageShadowY = 1,
            .cardScale = 1.015};
  }
  return {.cardShadowOpacity = 0.10,
          .cardShadowRadius = 6,
          .cardShadowY = 0,
          .imageShadowOpacity = 0.08,
          .imageShadowRadius = 8,
          .imageShadowY = 1,
          .cardScale = 1.0};
}

constexpr PreviewEmphasis PreviewEmphasis::between(const PreviewEmphasis& from, const PreviewEmphasis& to,
                                                   double share) {
  const auto mixed = [&](double PreviewEmphasis::*field) { return from.*field + (to.*field - from.*field) * share; };
  return {.cardShadowOpacity = mixed(&PreviewEmphasis::cardShadowOpacity),
          .cardShadowRadius = mixed(&PreviewEmphasis::cardShadowRadius),
          .cardShadowY = mixed(&PreviewEmphasis::cardShadowY),
          .imageShadowOpacity = mixed(&PreviewEmphasis::imageShadowOpacity),
          .imageShadowRadius = mixed(&PreviewEmphasis::imageShadowRadius),
          .imageShadowY = mixed(&PreviewEmphasis::imageShadowY),
          .cardScale = mixed(&PreviewEmphasis::cardScale)};
}

}  // namespace quenlio
