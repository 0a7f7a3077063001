#include <gtest/gtest.h>

#include "core/island/DeferredClick.h"

#include "tests/harness/VirtualTime.h"

namespace quenlio {
namespace {

class DeferredClickTest : public testing::Test {
 protected:
  static constexpr Seconds kDoubleClickTime{0.4};

  void click(bool isSecond = false) {
    click_.pressed(isSecond);
    click_.clicked(kDoubleClickTime);
  }

  VirtualTime time_;
  int begun_ = 0;    // since something may become a click
  int dropped_ = 0;  // again
  int clicks_ = 0;
  int doubleClicks_ = 0;
  DeferredClick click_{time_,
                       time_,
                       {.onMayBecomeClick = [this] { ++begun_; },
                        .onClick = [this] { ++clicks_; },
                        .onNoClick = [this] { ++dropped_; },
                        .onDoubleClick = [this] { ++doubleClicks_; }}};
};

TEST_F(DeferredClickTest, countsOnceTheTimeForASecondHasPassed) {
  click();
  time_.advanceBy(Seconds(0.39));
  EXPECT_EQ(clicks_, 0);
  EXPECT_TRUE(click_.isWaiting());
  time_.advanceBy(Seconds(0.02));
  EXPECT_EQ(clicks_, 1);
  EXPECT_FALSE(click_.isWaiting());
  time_.advanceBy(Seconds(5));
  EXPECT_EQ(clicks_, 1);
}

TEST_F(DeferredClickTest, whatItLeadsToIsBegunAtTheReleaseAndNotAgain) {
  click_.pressed(false);
  EXPECT_EQ(begun_, 0);
  click_.clicked(kDoubleClickTime);
  EXPECT_EQ(begun_, 1);
  time_.advanceBy(Seconds(5));
  EXPECT_EQ(begun_, 1);
  EXPECT_EQ(clicks_, 1);
  EXPECT_EQ(dropped_, 0);
}

TEST_F(DeferredClickTest, whatWasBegunIsDroppedByWhateverElseComesOfIt) {
  click();
  click_.pressed(true);
  EXPECT_EQ(dropped_, 1);
  click_.clicked(kDoubleClickTime);
  EXPECT_EQ(doubleClicks_, 1);
  EXPECT_EQ(begun_, 1);
  click();
  click_.pressed(false);
  EXPECT_EQ(dropped_, 2);
  click_.clicked(kDoubleClickTime);
  click_.cancel();
  EXPECT_EQ(dropped_, 3);
  click_.cancel();
  EXPECT_EQ(dropped_, 3) << "there is nothing to be dropped any more";
}

// The desktop counts that time from press to press.
TEST_F(DeferredClickTest, theTimeRunsFromThePress) {
  click_.pressed(false);
  time_.advanceBy(Seconds(0.3));
  click_.clicked(kDoubleClickTime);
  time_.advanceBy(Seconds(0.11));
  EXPECT_EQ(clicks_, 1);
  click_.pressed(false);
  time_.advanceBy(Seconds(2));
  click_.clicked(kDoubleClickTime);
  time_.runReady();
  EXPECT_EQ(clicks_, 2);
}

TEST_F(DeferredClickTest, aSecondInTimeIsADoubleClickAndNothingElse) {
  click();
  time_.advanceBy(Seconds(0.2));
  click(true);
  EXPECT_EQ(doubleClicks_, 1);
  time_.advanceBy(Seconds(5));
  EXPECT_EQ(clicks_, 0);
  EXPECT_EQ(doubleClicks_, 1);
}

TEST_F(DeferredClickTest, aSecondPressThatBecomesADragTakesTheFirstClickAlong) {
  click();
  click_.pressed(true);
  time_.advanceBy(Seconds(5));
  EXPECT_EQ(clicks_, 0);
  EXPECT_EQ(doubleClicks_, 0);
}

// Such as in another place.
TEST_F(DeferredClickTest, aPressThatIsNoSecondBeginsAnew) {
  click();
  time_.advanceBy(Seconds(0.2));
  click();
  time_.advanceBy(Seconds(5));
  EXPECT_EQ(clicks_, 1);
  EXPECT_EQ(doubleClicks_, 0);
}

TEST_F(DeferredClickTest, cancellingLeavesNothingToWaitFor) {
  click();
  click_.cancel();
  time_.advanceBy(Seconds(5));
  EXPECT_EQ(clicks_, 0);
  EXPECT_EQ(time_.pending(), 0U);
  click_.pressed(true);
  click_.cancel();
  click_.clicked(kDoubleClickTime);
  EXPECT_EQ(doubleClicks_, 0);
}

}  // namespace
}  // namespace quenlio
