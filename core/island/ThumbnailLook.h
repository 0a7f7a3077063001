// How a cell of the strip looks: selected or not, the one that the preview shows, under the pointer, pressed. A plain
// value; any thread.
#pragma once

#include "core/geometry/Color.h"

namespace quenlio {

struct IslandThemeTokens;

// Each a share, 0 to 1; on its way from one to the other a spring may take it a little past its end.
struct ThumbnailState {
  double selected = 0;
  double primary = 0;  // what the preview shows
  double hovered = 0;
  double pressed = 0;

  [[nodiscard]] static ThumbnailState between(const ThumbnailState& from, const ThumbnailState& to, double share);
  bool operator==(const ThumbnailState&) const = default;
};

struct ThumbnailLook {
  double scale;    // of the whole cell
  double opacity;  // of all but the shadow
  double shadow;   // the share of a selected cell's shadow
  double frame;    // points, between the edge and the picture
  double ring;     // points, the width of the line around what the preview shows
  Color fill;      // of the plate
  Color stroke;

  // Fill, stroke, shadow and opacity tell what is selected and nothing else: the pointer lifts a cell, without making
  // it look chosen. presence is less than 1 while a cell comes up; the side is in points.
  [[nodiscard]] static ThumbnailLook of(const ThumbnailState& state, const IslandThemeTokens& tokens, double presence,
                                        double side);
};

}  // namespace quenlio
