// The pointer on the island, and what comes and goes with it.
#include "core/island/IslandHover.h"

#include "tests/core/island/IslandTest.h"

namespace quenlio {
namespace {

class Hover : public IslandTest {
 protected:
  static constexpr KeyEvent kEscape{0, 53, std::nullopt};
};

TEST_F(Hover, aPointerThatOnlyPassesTakesTheKeyboardAwayAgain) {
  openShown();
  panel().resignKey();
  hover(true);
  EXPECT_TRUE(panel().isKeyWindow());
  hover(false);
  EXPECT_FALSE(panel().isKeyWindow());
}

TEST_F(Hover, aKeyThatIsPressedMeanwhileLeavesTheKeyboardWithTheIsland) {
  openShown();
  panel().resignKey();
  hover(true);
  EXPECT_FALSE(panel().pressKey(kEscape));
  hover(false);
  EXPECT_TRUE(panel().isKeyWindow());
}

TEST_F(Hover, aKeyboardThatTheIslandHadBeforeStaysWithIt) {
  openShown();
  ASSERT_TRUE(panel().isKeyWindow());
  hover(true);
  hover(false);
  EXPECT_TRUE(panel().isKeyWindow());
}

TEST_F(Hover, aKeyboardThatTheUserAskedForIsNotTheOneThatCameWithThePointerBefore) {
  openShown();
  panel().resignKey();
  hover(true);
  island->hide({});
  island->show(1);
  ASSERT_TRUE(panel().isKeyWindow());
  hover(true);
  hover(false);
  EXPECT_TRUE(panel().isKeyWindow());
}

TEST_F(Hover, onceAMenuOrADragIsOverThePointerIsLookedForWhereItIs) {
  openShown();
  putPointerOnPanel();
  hover(true);
  view().onPointerFreed();
  EXPECT_FALSE(state().showDismissProgress.get());
  platform.screens.pointer = {10, 10};
  view().onPointerFreed();
  EXPECT_TRUE(state().showDismissProgress.get());
}

TEST_F(Hover, eachOfTwoEntriesInARowHasALookOfItsOwn) {
  openHidden();
  island->show(1);
  platform.time.advanceBy(50ms);
  island->hide({});
  island->show(1);
  putPointerOnPanel();
  platform.time.advanceBy(89ms);
  EXPECT_TRUE(state().showDismissProgress.get());
  platform.time.advanceBy(1ms);
  EXPECT_FALSE(state().showDismissProgress.get());
  platform.screens.pointer = {10, 10};
  platform.time.advanceBy(49ms);
  EXPECT_FALSE(state().showDismissProgress.get());
  platform.time.advanceBy(1ms);
  EXPECT_TRUE(state().showDismissProgress.get());
}

TEST_F(Hover, aPanelThatGoesFromUnderThePointerLeavesNothingRunning) {
  openShown();
  hover(true);
  panel().duringOrderOut = [this] { hover(false); };
  island->hide({});
  EXPECT_FALSE(state().showDismissProgress.get());
  EXPECT_EQ(platform.time.pending(), 0U);
}

TEST_F(Hover, afterTheEndOfDelayedWorkNoneIsBegun) {
  openShown();
  island->endDelayedWork();
  hover(true);
  hover(false);
  settings.islandDurationSeconds.set(3);
  EXPECT_FALSE(state().showDismissProgress.get());
  island->hide({});
  island->show(1);
  platform.time.advanceBy(120ms);  // the entry itself
  EXPECT_FALSE(state().showDismissProgress.get());
  EXPECT_EQ(platform.time.pending(), 0U);
}

}  // namespace
}  // namespace quenlio
