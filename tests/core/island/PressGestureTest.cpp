#include <gtest/gtest.h>

#include "core/island/PressGesture.h"

namespace quenlio {
namespace {

TEST(PressGesture, isAClickWithoutAMove) {
  PressGesture press;
  EXPECT_FALSE(press.isPressed());
  press.pressed();
  EXPECT_TRUE(press.isPressed());
  EXPECT_TRUE(press.released());
  EXPECT_FALSE(press.isPressed());
}

TEST(PressGesture, staysAClickUpToThreePointsAway) {
  PressGesture press;
  press.pressed();
  EXPECT_FALSE(press.moved({3, 0}));
  EXPECT_FALSE(press.moved({0, -3}));
  EXPECT_FALSE(press.moved({-2, 2}));
  EXPECT_FALSE(press.hasStartedDrag());
  EXPECT_TRUE(press.released());
}

TEST(PressGesture, becomesADragOnceBeyondThreePointsInAnyDirection) {
  for (const Size away : {Size{3.1, 0}, Size{0, -3.1}, Size{-2.2, 2.2}}) {
    PressGesture press;
    press.pressed();
    EXPECT_TRUE(press.moved(away));
    EXPECT_TRUE(press.hasStartedDrag());
    EXPECT_FALSE(press.moved({50, 50}));  // only once
    EXPECT_FALSE(press.released());
    EXPECT_FALSE(press.hasStartedDrag());
  }
}

// Also when the hand comes back to where it pressed.
TEST(PressGesture, aDragDoesNotBecomeAClickAgain) {
  PressGesture press;
  press.pressed();
  EXPECT_TRUE(press.moved({10, 0}));
  EXPECT_FALSE(press.moved({0, 0}));
  EXPECT_FALSE(press.released());
}

TEST(PressGesture, theNextPressBeginsAnew) {
  PressGesture press;
  press.pressed();
  EXPECT_TRUE(press.moved({10, 0}));
  EXPECT_FALSE(press.released());
  press.pressed();
  EXPECT_FALSE(press.hasStartedDrag());
  EXPECT_TRUE(press.moved({10, 0}));
}

TEST(PressGesture, movesAndReleasesWithoutAPressAreNothing) {
  PressGesture press;
  EXPECT_FALSE(press.moved({10, 10}));
  EXPECT_FALSE(press.released());
}

TEST(PressGesture, aCancelledPressIsNeither) {
  PressGesture press;
  press.pressed();
  press.cancelled();
  EXPECT_FALSE(press.moved({10, 0}));
  EXPECT_FALSE(press.released());
}

}  // namespace
}  // namespace quenlio
