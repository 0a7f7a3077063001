// What the desktop's bars leave of a screen. Pure; any thread.
#pragma once

#include <QtCore/QRect>
#include <QtCore/QSize>
#include <cstdint>
#include <vector>

namespace quenlio {

// What one bar keeps for itself of one edge of the desktop, which is all screens together.
struct Strut {
  enum class Edge { left, right, top, bottom };
  Edge edge;
  int thickness;  // from that edge of the desktop inward, also where a screen's own edge lies further in
  int begin;      // the first and the last pixel along the edge
  int end;
};

// The screen without them. A strut that reaches across the whole screen belongs to a bar on the next one, at an edge
// between the two, and takes nothing from this one.
[[nodiscard]] QRect workArea(const QRect& screen, const QSize& desktop, const std::vector<Strut>& struts);

}  // namespace quenlio
