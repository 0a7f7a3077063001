#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "core/tooltip/TooltipPlacement.h"

namespace quenlio {
namespace {

using Anchor = Rect<TooltipHostSpace>;

constexpr Size kContainer{400, 300};
constexpr Size kBubble{100, 24};

TEST(TooltipPlacement, standsAboveTheMiddleOfTheControl) {
  const TooltipPlacement placement = TooltipPlacement::placement({{190, 150}, {30, 30}}, kBubble, kContainer);
  // Seven points between the bubble's lower edge and the control's upper one.
  EXPECT_EQ(placement, (TooltipPlacement{{205, 131}, 0, TooltipPointerDirection::down}));
}

TEST(TooltipPlacement, aControlAtTheTopHasItBelow) {
  const TooltipPlacement placement = TooltipPlacement::placement({{190, 4}, {30, 30}}, kBubble, kContainer);
  EXPECT_EQ(placement, (TooltipPlacement{{205, 53}, 0, TooltipPointerDirection::up}));
}

TEST(TooltipPlacement, goesBelowAsSoonAsTheMarginAboveWouldBeCut) {
  // The bubble's top would be at 24 and at 23.5.
  EXPECT_EQ(TooltipPlacement::placement({{190, 55}, {30, 30}}, kBubble, kContainer).pointer,
            TooltipPointerDirection::down);
  EXPECT_EQ(TooltipPlacement::placement({{190, 54.5}, {30, 30}}, kBubble, kContainer).pointer,
            TooltipPointerDirection::up);
}

TEST(TooltipPlacement, staysAboveWhereItDoesNotFitBelow) {
  // There is no room above; below, the bubble's bottom would be at 76.5, 24.5 above the host's bottom, and then at it.
  const Anchor anchor{{190, 15.5}, {30, 30}};
  EXPECT_EQ(TooltipPlacement::placement(anchor, kBubble, {400, 100.5}).pointer, TooltipPointerDirection::up);
  const TooltipPlacement placement = TooltipPlacement::placement(anchor, kBubble, {400, 100});
  EXPECT_EQ(placement.pointer, TooltipPointerDirection::down);
  EXPECT_EQ(placement.center.y, 36);  // not cut off by the top
}

TEST(TooltipPlacement, atTheLeftEdgeTheBubbleKeepsItsMarginAndThePointerMoves) {
  const TooltipPlacement placement = TooltipPlacement::placement({{44, 150}, {24, 24}}, kBubble, kContainer);
  EXPECT_EQ(placement.center.x, 24 + 50);
  EXPECT_EQ(placement.pointerOffsetX, 56 - 74);
}

TEST(TooltipPlacement, thePointerKeepsClearOfTheRoundCorners) {
  EXPECT_EQ(TooltipPlacement::placement({{0, 150}, {24, 24}}, kBubble, kContainer).pointerOffsetX, -(50 - 16));
  EXPECT_EQ(TooltipPlacement::placement({{376, 150}, {24, 24}}, kBubble, kContainer).pointerOffsetX, 50 - 16);
}

TEST(TooltipPlacement, atTheRightEdgeTheBubbleKeepsItsMargin) {
  const TooltipPlacement placement = TooltipPlacement::placement({{340, 150}, {24, 24}}, kBubble, kContainer);
  EXPECT_EQ(placement.center.x, 400 - 24 - 50);
  EXPECT_EQ(placement.pointerOffsetX, 352 - 326);
}

TEST(TooltipPlacement, aBubbleThatIsTooWideBeginsAtTheLeftMargin) {
  const Anchor anchor{{300, 150}, {24, 24}};
  EXPECT_EQ(TooltipPlacement::placement(anchor, {352, 24}, kContainer).center.x, 200);  // just fits
  EXPECT_EQ(TooltipPlacement::placement(anchor, {353, 24}, kContainer).center.x, 24 + 176.5);
  EXPECT_EQ(TooltipPlacement::placement(anchor, {600, 24}, kContainer).center.x, 24 + 300);
}

TEST(TooltipPlacement, aBubbleTooNarrowForItsCornersHasThePointerInItsMiddle) {
  EXPECT_EQ(TooltipPlacement::placement({{0, 150}, {24, 24}}, {30, 24}, kContainer).pointerOffsetX, 0);
}

TEST(TooltipPlacement, itsBottomKeepsTheMarginToo) {
  const TooltipPlacement placement = TooltipPlacement::placement({{190, 290}, {30, 30}}, kBubble, kContainer);
  EXPECT_EQ(placement.center.y, 300 - 24 - 12);
}

struct Scene {
  Anchor anchor;
  Size bubble;
  Size container;
};

// Lengths in halves of a point, so that sums are exact.
double half(int lower, int upper) {
  return *rc::gen::inRange(2 * lower, 2 * upper) / 2.0;
}

Scene anyScene() {
  const Size container{half(60, 700), half(60, 700)};
  return {.anchor = {{half(-50, 750), half(-50, 750)}, {half(1, 80), half(1, 80)}},
          .bubble = {half(10, 500), half(10, 90)},
          .container = container};
}

RC_GTEST_PROP(TooltipPlacementProperty, aBubbleThatFitsKeepsTheMarginOnAllSides, ()) {
  const Scene scene = anyScene();
  const auto [anchor, bubble, container] = scene;
  const TooltipPlacement placement = TooltipPlacement::placement(anchor, bubble, container);
  if (bubble.width <= container.width - 48) {
    RC_ASSERT(placement.center.x - bubble.width / 2 >= 24);
    RC_ASSERT(placement.center.x + bubble.width / 2 <= container.width - 24);
  } else {
    RC_ASSERT(placement.center.x - bubble.width / 2 == 24);
  }
  // The lower limit holds also where the bubble is too high for both.
  RC_ASSERT(placement.center.y + bubble.height / 2 <= container.height - 24);
  if (bubble.height <= container.height - 48) {
    RC_ASSERT(placement.center.y - bubble.height / 2 >= 24);
  }
}

RC_GTEST_PROP(TooltipPlacementProperty, thePointerIsInTheBubbleAndAsNearToTheControlAsItMay, ()) {
  const Scene scene = anyScene();
  const TooltipPlacement placement = TooltipPlacement::placement(scene.anchor, scene.bubble, scene.container);
  const double limit = std::max(scene.bubble.width / 2 - 16, 0.0);
  RC_ASSERT(std::abs(placement.pointerOffsetX) <= limit);
  const double wanted = scene.anchor.minX() + scene.anchor.size.width / 2 - placement.center.x;
  if (std::abs(wanted) <= limit) {
    RC_ASSERT(placement.pointerOffsetX == wanted);
  } else {
    RC_ASSERT(placement.pointerOffsetX == (wanted < 0 ? -limit : limit));
  }
}

RC_GTEST_PROP(TooltipPlacementProperty, itCoversItsControlOnlyWhereNeitherSideHasRoom, ()) {
  const Scene scene = anyScene();
  const auto [anchor, bubble, container] = scene;
  const TooltipPlacement placement = TooltipPlacement::placement(anchor, bubble, container);
  const bool fitsAbove = anchor.minY() - 7 - bubble.height >= 24 && anchor.minY() - 7 <= container.height - 24;
  const bool fitsBelow = anchor.maxY() + 7 + bubble.height <= container.height - 24 && anchor.maxY() + 7 >= 24;
  if (fitsAbove) {
    RC_ASSERT(placement.pointer == TooltipPointerDirection::down);
    RC_ASSERT(placement.center.y + bubble.height / 2 == anchor.minY() - 7);
  } else if (fitsBelow && anchor.minY() - 7 - bubble.height < 24) {
    RC_ASSERT(placement.pointer == TooltipPointerDirection::up);
    RC_ASSERT(placement.center.y - bubble.height / 2 == anchor.maxY() + 7);
  }
}

}  // namespace
}  // namespace quenlio
