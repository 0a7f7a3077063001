// All that the island's views are coloured by: the tokens, and the glass that they lie on. A plain value; main thread.
#pragma once

#include <vector>

#include "core/geometry/Color.h"
#include "core/island/IslandThemeTokens.h"

#include "desktop/render/SoftShadow.h"

namespace quenlio {

// What is behind the panel. Without a compositor nothing shines through; with one, what is behind it does, blurred
// where the compositor does that.
enum class GlassBacking { opaque, composited, blurred };

// The tones of the glass. Only over a blurred background do they let it through; there is nothing to be read in front
// of a sharp one.
struct GlassMaterial {
  Color hudWindow;              // the layer at the back
  Color underWindowBackground;  // the one before it, still to be drawn at its own opacity
  Color preview;                // behind the picture
  Color edge;                   // around a panel that stands opaque, without a shadow, on whatever there is
  bool operator==(const GlassMaterial&) const = default;
};

struct IslandTheme {
  IslandThemeTokens tokens;
  GlassMaterial material;
  GlassBacking backing = GlassBacking::composited;

  [[nodiscard]] static IslandTheme forAppearance(IslandAppearanceStyle style, bool increaseContrast,
                                                 GlassBacking backing);
  // Each colour and each number the share of the way from one to the other, 0 to 1.
  [[nodiscard]] static IslandTheme between(const IslandTheme& from, const IslandTheme& to, double share);
  bool operator==(const IslandTheme&) const = default;
};

// What the panel throws on what is behind it. The two wide layers fall below it; a narrow one, all around, keeps its
// upper edge from being lost in front of its own tone.
[[nodiscard]] std::vector<ShadowLayer> panelShadow(const IslandThemeTokens& tokens);

}  // namespace quenlio
