#include "core/island/ThumbnailLook.h"

#include <algorithm>
#include <cmath>

#include "core/island/IslandThemeTokens.h"

namespace quenlio {
namespace {

constexpr double kArrivalScale = 0.72;
constexpr double kHoverScale = 1.035;
constexpr double kPressedScale = 0.95;
constexpr double kFrame = 0.11;  // of the side
constexpr double kRing = 2;      // points

}  // namespace

ThumbnailState ThumbnailState::between(const ThumbnailState& from, const ThumbnailState& to, double share) {
  return {.selected = std::lerp(from.selected, to.selected, share),
          .primary = std::lerp(from.primary, to.primary, share),
          .hovered = std::lerp(from.hovered, to.hovered, share),
          .pressed = std::lerp(from.pressed, to.pressed, share)};
}

ThumbnailLook ThumbnailLook::of(const ThumbnailState& state, const IslandThemeTokens& tokens, double presence,
                                double side) {
  const double selected = std::clamp(state.selected, 0.0, 1.0);
  return {.scale = std::lerp(kArrivalScale, 1.0, presence) *
                   std::lerp(1.0, kHoverScale, state.hovered * (1 - state.selected)) *
                   std::lerp(1.0, kPressedScale, state.pressed),
          .opacity = presence * std::lerp(tokens.unselectedThumbnailOpacity, 1.0, selected),
          .shadow = presence * selected,
          .frame = std::round(kFrame * side) * state.selected,
          .ring = kRing * std::clamp(state.primary, 0.0, 1.0),
          .fill = Color::between(tokens.thumbnailPlateFill, tokens.thumbnailPlateSelectedFill, selected),
          .stroke = Color::between(tokens.thumbnailDefaultStroke, tokens.thumbnailSelectedStroke, selected)};
}

}  // namespace quenlio
