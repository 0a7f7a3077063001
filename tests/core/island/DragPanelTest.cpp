// How the user moves the panel.
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tests/core/island/IslandTest.h"

namespace quenlio {
namespace {

class DragPanel : public IslandTest {
 protected:
  [[nodiscard]] std::optional<DisplayPosition> stored(const std::string& display) const {
    const auto found = settings.displayPositions.find(display);
    return found != settings.displayPositions.end() ? std::optional(found->second) : std::nullopt;
  }
  // How often the positions were saved.
  [[nodiscard]] std::ptrdiff_t saves() {
    return platform.defaults.standardUserDefaults().writes().count("settings.displayPositions");
  }
};

TEST_F(DragPanel, aPanelThatIsOutDoesNotMove) {
  openHidden();
  const Rect<Screen> before = panel().frame();
  island->dragPanel({-50, -50}, true);
  EXPECT_EQ(panel().frame(), before);
  EXPECT_EQ(platform.log.calls(), Calls{});
  EXPECT_EQ(stored("1"), std::nullopt);
}

TEST_F(DragPanel, thePanelFollowsThePointerWhoseYGrowsDownward) {
  openShown();
  island->dragPanel({-30, -40}, false);
  EXPECT_EQ(panel().frame(), corner().moved(-30, 40));
}

TEST_F(DragPanel, eachTranslationCountsFromTheStartOfTheGesture) {
  openShown();
  island->dragPanel({-30, 0}, false);
  island->dragPanel({-50, -10}, false);
  EXPECT_EQ(panel().frame(), corner().moved(-50, 10));
  island->dragPanel({-60, -20}, true);
  EXPECT_EQ(panel().frame(), corner().moved(-60, 20));
  // The next gesture starts where this one has ended.
  island->dragPanel({-5, 0}, false);
  EXPECT_EQ(panel().frame(), corner().moved(-65, 20));
}

TEST_F(DragPanel, thePanelMayTouchEachEdgeOfTheVisibleFrameAndGoesNoFurther) {
  openShown();
  const Rect<Screen> visible = platform.screens.list[0].visibleFrame;
  island->dragPanel({5000, 5000}, false);
  EXPECT_EQ(panel().frame().maxX(), visible.maxX());
  EXPECT_EQ(panel().frame().minY(), visible.minY());
  island->dragPanel({-5000, -5000}, false);
  EXPECT_EQ(panel().frame().minX(), visible.minX());
  EXPECT_EQ(panel().frame().maxY(), visible.maxY());
}

TEST_F(DragPanel, inATooSmallVisibleFrameTheRightAndTopEdgesStayInside) {
  openShown();
  platform.screens.list[0].visibleFrame = {{1100, 30}, {100, 90}};
  island->dragPanel({-5000, 5000}, false);
  EXPECT_EQ(panel().frame().maxX(), 1200);
  EXPECT_EQ(panel().frame().maxY(), 120);
}

TEST_F(DragPanel, onNoScreenThePanelMovesFreely) {
  openShown();
  const Rect<Screen> before = panel().frame();
  platform.screens.list.clear();
  island->dragPanel({5000, 5000}, true);
  EXPECT_EQ(panel().frame(), before.moved(5000, -5000));
  EXPECT_TRUE(settings.displayPositions.empty());
  EXPECT_EQ(saves(), 0);
}

TEST_F(DragPanel, theMoveEndsTheCountdownWhichStartsAnewWhenItEnds) {
  openShown();
  platform.time.advanceBy(20s);
  island->dragPanel({-10, 0}, false);
  EXPECT_FALSE(state().showDismissProgress.get());
  EXPECT_EQ(platform.time.pending(), 0U);
  platform.time.advanceBy(100s);
  EXPECT_TRUE(panel().isVisible());
  island->dragPanel({-10, 0}, true);
  EXPECT_TRUE(state().showDismissProgress.get());
  platform.time.advanceBy(Seconds(29.9));
  EXPECT_TRUE(panel().isVisible());
  platform.time.advanceBy(1s);
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(DragPanel, onlyItsEndStoresThePositionUnderTheDisplaysDecimalNumber) {
  openShown();
  island->dragPanel({-36, -58}, false);
  EXPECT_EQ(stored("1"), std::nullopt);
  EXPECT_EQ(saves(), 0);
  island->dragPanel({-36, -58}, true);
  EXPECT_EQ(stored("1"), (DisplayPosition{1000, 100}));
  EXPECT_EQ(saves(), 1);
}

TEST_F(DragPanel, theStoredPositionIsTheOneKeptInsideTheVisibleFrame) {
  openShown();
  island->dragPanel({-5000, 5000}, true);
  EXPECT_EQ(stored("1"), (DisplayPosition{0, 30}));
}

TEST_F(DragPanel, aScreenWithoutANumberStoresNothingAndLeavesTheLastDisplay) {
  openShown();
  platform.screens.list[0].screenNumber.reset();
  island->dragPanel({-10, 0}, true);
  EXPECT_TRUE(settings.displayPositions.empty());
  EXPECT_EQ(saves(), 0);
  EXPECT_EQ(island->lastPresentedDisplayID(), 1U);
}

TEST_F(DragPanel, anEndOnAnotherScreenCountsForThatScreenAndALaterSizeChangeStaysThere) {
  addSecondScreen();
  platform.screens.pointer = {100, 700};
  openShown();
  island->dragPanel({-10, 0}, false);
  panel().screenOverride = platform.screens.list[1];
  island->dragPanel({200, 0}, true);
  EXPECT_EQ(stored("1"), std::nullopt);
  EXPECT_EQ(stored("2"), (DisplayPosition{1280, 42}));
  EXPECT_EQ(island->lastPresentedDisplayID(), 2U);
  settings.islandSize.set(IslandSize::small);
  EXPECT_EQ(panel().frame(), IslandPlacement::desiredFrame(platform.screens.list[1], IslandSize::small));
}

TEST_F(DragPanel, theViewMovesThePanel) {
  openShown();
  view().onWindowDrag({-30, -40}, true);
  EXPECT_EQ(panel().frame(), corner().moved(-30, 40));
  EXPECT_TRUE(stored("1"));
}

RC_GTEST_PROP(DragPanelProperty, keepsThePanelInTheVisibleFrameWheneverItFits, ()) {
  IslandRig rig;
  rig.openShown();
  const double side = rig.panel().frame().size.width;
  // The visible frame may change behind the island's back, and need not be larger than the panel.
  Rect<Screen>& visible = rig.platform.screens.list[0].visibleFrame;
  visible = {{static_cast<double>(*rc::gen::inRange(0, 600)), static_cast<double>(*rc::gen::inRange(0, 500))},
             {static_cast<double>(*rc::gen::inRange(100, 680)), static_cast<double>(*rc::gen::inRange(100, 300))}};
  const int steps = *rc::gen::inRange(1, 8);
  for (int step = 0; step < steps; ++step) {
    const Size translation{static_cast<double>(*rc::gen::inRange(-2000, 2000)),
                           static_cast<double>(*rc::gen::inRange(-2000, 2000))};
    rig.island->dragPanel(translation, *rc::gen::arbitrary<bool>());
    const Rect<Screen> frame = rig.panel().frame();
    RC_ASSERT(frame.maxX() <= visible.maxX());
    RC_ASSERT(frame.maxY() <= visible.maxY());
    RC_ASSERT(frame.minX() >= visible.minX() || visible.size.width < side);
    RC_ASSERT(frame.minY() >= visible.minY() || visible.size.height < side);
  }
}

}  // namespace
}  // namespace quenlio
