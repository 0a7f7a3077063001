#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

#include "core/geometry/ContinuousCorner.h"

namespace quenlio {
namespace {

struct Plane;
using Outline = std::vector<Point<Plane>>;

// The outline's crossing of the diagonal out of the corner at minX and minY of a rectangle at the origin.
double depthOnTheDiagonal(const Outline& outline) {
  for (std::size_t index = 1; index < outline.size(); ++index) {
    const Point<Plane>& a = outline[index - 1];
    const Point<Plane>& b = outline[index];
    const double before = a.y - a.x;
    const double after = b.y - b.x;
    if (before >= 0 && after <= 0 && before != after) {
      return a.x + (b.x - a.x) * before / (before - after);
    }
  }
  return -1;
}

TEST(ContinuousRectangle, isAsDeepAsTheCircleOnTheDiagonal) {
  for (const double radius : {9.0, 18.0, 24.0}) {
    const Outline outline = continuousRectangle<Plane>({{0, 0}, {200, 300}}, radius);
    EXPECT_NEAR(depthOnTheDiagonal(outline), radius * (1 - std::numbers::sqrt2 / 2), 0.05) << radius;
  }
}

TEST(ContinuousRectangle, beginsToTurnBeforeTheCircleDoes) {
  const Outline outline = continuousRectangle<Plane>({{0, 0}, {200, 200}}, 20);
  EXPECT_EQ(outline.front(), (Point<Plane>{0, continuousCornerReach(20)}));
  // Gently: where the circle begins, it has hardly left the side.
  for (const Point<Plane>& at : outline) {
    if (at.y >= 20 && at.y <= 100 && at.x < 100) {
      EXPECT_LT(at.x, 1) << at.y;
    }
  }
}

TEST(ContinuousRectangle, isTheSameInAllFourCorners) {
  const Outline outline = continuousRectangle<Plane>({{10, 20}, {100, 60}}, 12);
  ASSERT_EQ(outline.size() % 4, 0U);
  const auto has = [&outline](double x, double y) {
    return std::ranges::any_of(outline, [&](const Point<Plane>& at) { return std::hypot(at.x - x, at.y - y) < 1e-9; });
  };
  for (const Point<Plane>& at : outline) {
    EXPECT_TRUE(has(120 - at.x, at.y));
    EXPECT_TRUE(has(at.x, 100 - at.y));
  }
}

TEST(ContinuousRectangle, staysInsideItsRectangle) {
  for (const double radius : {0.0, 5.0, 15.0, 25.0, 1000.0}) {
    for (const Point<Plane>& at : continuousRectangle<Plane>({{0, 0}, {80, 50}}, radius)) {
      EXPECT_GE(at.x, 0);
      EXPECT_GE(at.y, 0);
      EXPECT_LE(at.x, 80);
      EXPECT_LE(at.y, 50);
    }
  }
}

TEST(ContinuousRectangle, isAPillsCircleWhereThereIsNoMoreRoom) {
  for (const Point<Plane>& at : continuousRectangle<Plane>({{0, 0}, {80, 40}}, 20)) {
    const double middle = at.x < 40 ? 20 : 60;
    EXPECT_NEAR(std::hypot(at.x - middle, at.y - 20), 20, 1e-6);
  }
}

TEST(ContinuousRectangle, hasPlainCornersWithoutARadius) {
  const Outline outline = continuousRectangle<Plane>({{1, 2}, {3, 4}}, 0);
  EXPECT_EQ(outline, (Outline{{1, 2}, {4, 2}, {4, 6}, {1, 6}}));
}

}  // namespace
}  // namespace quenlio
