// Points, sizes and rectangles, kept apart by the space they are measured in.
#pragma once

#include <algorithm>

namespace quenlio {

// The desktop's global coordinates in points, y growing upward; the origin is the bottom left of the main screen.
struct Screen;

template <class Space>
struct Point {
  double x = 0;
  double y = 0;
  bool operator==(const Point&) const = default;
};

// Width and height in points, or a distance travelled.
struct Size {
  double width = 0;
  double height = 0;
  bool operator==(const Size&) const = default;
};

template <class Space>
struct Rect {
  Point<Space> origin;  // the corner with the smallest x and y
  Size size;

  [[nodiscard]] double minX() const { return origin.x; }
  [[nodiscard]] double minY() const { return origin.y; }
  [[nodiscard]] double maxX() const { return origin.x + size.width; }
  [[nodiscard]] double maxY() const { return origin.y + size.height; }

  // Inside, with the edges at minX and minY and without those at maxX and maxY.
  [[nodiscard]] bool contains(Point<Space> point) const {
    return point.x >= minX() && point.x < maxX() && point.y >= minY() && point.y < maxY();
  }

  [[nodiscard]] Rect moved(double dx, double dy) const { return {{origin.x + dx, origin.y + dy}, size}; }

  bool operator==(const Rect&) const = default;
};

// An origin for something of this size that lies inside bounds. Where it is larger than bounds, the far edges (maxX,
// maxY) win over the near ones.
template <class Space>
[[nodiscard]] Point<Space> clampedOrigin(Point<Space> origin, Size size, const Rect<Space>& bounds) {
  return {std::min(std::max(origin.x, bounds.minX()), bounds.maxX() - size.width),
          std::min(std::max(origin.y, bounds.minY()), bounds.maxY() - size.height)};
}

}  // namespace quenlio
