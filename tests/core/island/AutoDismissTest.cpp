// When the island leaves by itself, and how it shows the time that is left.
#include "tests/core/island/IslandTest.h"

namespace quenlio {
namespace {

class AutoDismiss : public IslandTest {
 protected:
  // Whether the panel starts to leave just this long from now, and not 10 milliseconds earlier.
  void expectLeavesAfter(Seconds delay) {
    const auto leaving = [this] { return panel().lastAnimation()->alpha == 0.0; };
    platform.time.advanceBy(delay - 10ms);
    EXPECT_FALSE(leaving());
    platform.time.advanceBy(10ms);
    EXPECT_TRUE(leaving());
    platform.time.advanceBy(120ms);
    EXPECT_FALSE(panel().isVisible());
  }
  // Nothing waits, and a long time changes nothing.
  void expectStays() {
    EXPECT_FALSE(state().showDismissProgress.get());
    EXPECT_EQ(platform.time.pending(), 0U);
    platform.time.advanceBy(3600s);
    EXPECT_TRUE(panel().isVisible());
  }
  void show() {
    island->show(1);
    platform.time.advanceBy(150ms);  // past the second look at the pointer, which starts the countdown anew
  }
};

TEST_F(AutoDismiss, aTimedIslandLeavesWhenItsSecondsAreOver) {
  settings.islandDurationSeconds.set(7);
  openHidden();
  island->show(1);
  platform.time.advanceBy(140ms);  // the second look at the pointer starts the countdown
  expectLeavesAfter(7s);
}

TEST_F(AutoDismiss, lessThanASecondActsAsASecondForThePanelAndForTheRing) {
  for (const double seconds : {0.5, 0.0, -3.0}) {
    settings.islandDurationSeconds.set(seconds);
    openHidden();
    island->show(1);
    platform.time.advanceBy(140ms);
    platform.time.advanceBy(Seconds(0.033 * 15));
    EXPECT_NEAR(state().dismissProgress.get(), 1 - 0.033 * 15, 1e-9);
    expectLeavesAfter(1s - Seconds(0.033 * 15));
  }
}

TEST_F(AutoDismiss, hideWhenInactiveLeavesAfter800MillisecondsWithoutARing) {
  settings.islandDurationMode.set(IslandDurationMode::hideWhenInactive);
  openHidden();
  island->show(1);
  EXPECT_FALSE(state().showDismissProgress.get());
  platform.time.advanceBy(140ms);
  expectLeavesAfter(800ms);
}

TEST_F(AutoDismiss, hideWhenInactiveLeaves800MillisecondsAfterThePointerHasLeft) {
  settings.islandDurationMode.set(IslandDurationMode::hideWhenInactive);
  openHidden();
  show();
  hover(true);
  expectStays();
  hover(false);
  EXPECT_FALSE(state().showDismissProgress.get());
  expectLeavesAfter(800ms);
}

TEST_F(AutoDismiss, neverHideHasNoRingAndNoHide) {
  settings.islandDurationMode.set(IslandDurationMode::neverHide);
  openHidden();
  show();
  expectStays();
  hover(true);
  hover(false);
  expectStays();
}

TEST_F(AutoDismiss, evenNeverHideGoesByTheCloseButtonByTheSettingAndByACaptureRequest) {
  settings.islandDurationMode.set(IslandDurationMode::neverHide);
  openHidden();
  const std::vector<std::function<void()>> ways{[this] { view().onClose(); },
                                                [this] { view().onRequestNewScreenshot(); },
                                                [this] { settings.islandEnabled.set(false); }};
  for (const auto& leave : ways) {
    show();
    ASSERT_TRUE(panel().isVisible());
    leave();
    platform.time.advanceBy(120ms);
    EXPECT_FALSE(panel().isVisible());
  }
}

TEST_F(AutoDismiss, hoverDisarmsAndItsEndArmsFromTheFullDelay) {
  openHidden();
  show();
  platform.time.advanceBy(20s);
  hover(true);
  expectStays();
  hover(false);
  EXPECT_TRUE(state().showDismissProgress.get());
  EXPECT_EQ(state().dismissProgress.get(), 1.0);
  expectLeavesAfter(30s);
}

TEST_F(AutoDismiss, hoverTakesTheKeyboardAndItsEndDoesNot) {
  openHidden();
  show();
  panel().resignKey();
  platform.log.clear();
  hover(true);
  EXPECT_EQ(platform.log.calls(), (Calls{"makeKeyWindow", "makeFirstResponder"}));
  panel().resignKey();
  hover(false);
  EXPECT_FALSE(panel().isKeyWindow());
}

TEST_F(AutoDismiss, aPointerThatRestsOnTheAppearingPanelHoldsItUntilItLeaves) {
  openHidden();
  putPointerOnPanel();
  show();
  EXPECT_TRUE(panel().isKeyWindow());
  expectStays();
  hover(false);
  expectLeavesAfter(30s);
}

TEST_F(AutoDismiss, aPointerThatHasGoneWithoutAWordNoLongerHoldsThePanelAtTheNextShow) {
  openHidden();
  putPointerOnPanel();
  show();
  platform.screens.pointer = {100, 700};
  island->show(1);
  EXPECT_TRUE(state().showDismissProgress.get());
}

TEST_F(AutoDismiss, aHiddenPanelArmsNothing) {
  openHidden();
  hover(true);
  hover(false);
  settings.islandDurationSeconds.set(3);
  EXPECT_EQ(platform.time.pending(), 0U);
  EXPECT_FALSE(state().showDismissProgress.get());
}

TEST_F(AutoDismiss, draggingAScreenshotOutBringsTheApplicationForwardAndDisarms) {
  openHidden();
  show();
  platform.log.clear();
  view().onItemDragStateChanged(true);
  EXPECT_EQ(platform.log.calls(),
            (Calls{"activateIgnoringOtherApps", "makeKeyAndOrderFront", "invalidateShadow", "makeFirstResponder"}));
  expectStays();
  view().onItemDragStateChanged(false);
  EXPECT_TRUE(state().showDismissProgress.get());
  expectLeavesAfter(30s);
}

TEST_F(AutoDismiss, thePanelStaysWhileAnItemIsDraggedWhateverElseHappens) {
  openHidden();
  show();
  view().onItemDragStateChanged(true);
  hover(true);
  hover(false);
  settings.islandDurationSeconds.set(2);
  expectStays();
}

TEST_F(AutoDismiss, thePanelStaysWhileItIsMovedWhateverElseHappens) {
  openHidden();
  show();
  view().onWindowDrag({-10, 0}, false);
  hover(true);
  hover(false);
  settings.islandDurationSeconds.set(2);
  expectStays();
}

TEST_F(AutoDismiss, anyPinnedItemHoldsThePanelInEveryModeSelectedOrNot) {
  addItem("pinned.png", true);
  addItem("selected.png");
  ASSERT_FALSE(store.selectedItem()->isPinned);
  for (const IslandDurationMode mode :
       {IslandDurationMode::timed, IslandDurationMode::hideWhenInactive, IslandDurationMode::neverHide}) {
    settings.islandDurationMode.set(mode);
    openHidden();
    show();
    expectStays();
  }
}

TEST_F(AutoDismiss, aPinnedSelectionThatDoesNotHoldThePanelHidesOnTheSameDelayWithoutARing) {
  settings.pinnedKeepsVisible.set(false);
  addItem("a.png", true);
  openHidden();
  island->show(1);
  platform.time.advanceBy(140ms);
  EXPECT_FALSE(state().showDismissProgress.get());
  expectLeavesAfter(30s);
}

TEST_F(AutoDismiss, anUnselectedPinThatDoesNotHoldThePanelLeavesTheRing) {
  settings.pinnedKeepsVisible.set(false);
  addItem("pinned.png", true);
  addItem("selected.png");
  openHidden();
  show();
  EXPECT_TRUE(state().showDismissProgress.get());
}

TEST_F(AutoDismiss, withoutAnyScreenshotThereIsARing) {
  openHidden();
  show();
  EXPECT_TRUE(state().showDismissProgress.get());
}

TEST_F(AutoDismiss, unpinningTheLastPinArmsNothingUntilTheNextEvent) {
  addItem("a.png", true);
  openHidden();
  show();
  store.items.mutate([](auto& items) { items.front().isPinned = false; });
  expectStays();
  hover(true);
  hover(false);
  expectLeavesAfter(30s);
}

TEST_F(AutoDismiss, theRuleIsAskedAgainWhenTheDelayHasRunOut) {
  addItem("a.png");
  openHidden();
  show();
  platform.time.advanceBy(20s);
  store.items.mutate([](auto& items) { items.front().isPinned = true; });  // nobody tells the island
  platform.time.advanceBy(100s);
  EXPECT_TRUE(panel().isVisible());
}

TEST_F(AutoDismiss, aHideThatComesDueWhileAScreenshotIsDraggedOutDoesNothing) {
  openHidden();
  show();
  const IslandSettings announced{true, IslandSize::extraSmall, IslandDurationMode::timed, 30};
  IslandOverlayPresentationState state;
  int hides = 0;
  IslandAutoDismiss autoDismiss({.announced = announced,
                                 .settings = settings,
                                 .store = store,
                                 .presentationState = state,
                                 .panel = panel(),
                                 .scheduler = platform.time,
                                 .clock = platform.time,
                                 .hide = [&] { ++hides; }});
  autoDismiss.scheduleHideIfNeeded();
  autoDismiss.isItemDragging = true;  // nobody has told it to disarm
  platform.time.advanceBy(30s);
  EXPECT_EQ(hides, 0);

  autoDismiss.isItemDragging = false;
  autoDismiss.scheduleHideIfNeeded();
  platform.time.advanceBy(30s);
  EXPECT_EQ(hides, 1);
}

class DismissRing : public AutoDismiss {};

TEST_F(DismissRing, fallsFromOneToZeroOverTheDelayWithOneValueEvery33Milliseconds) {
  settings.islandDurationSeconds.set(2);
  openHidden();
  island->show(1);
  platform.time.advanceBy(140ms);
  EXPECT_EQ(state().dismissProgress.get(), 1.0);
  std::vector<double> values;
  const Subscription watch =
      view().presentationState.dismissProgress.subscribe([&](double value) { values.push_back(value); });
  values.clear();
  platform.time.advanceBy(32ms);
  EXPECT_TRUE(values.empty());
  platform.time.advanceBy(Seconds(1.95));
  ASSERT_EQ(values.size(), 60U);
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_NEAR(values[i], 1 - 0.033 * static_cast<double>(i + 1) / 2, 1e-6);
  }
}

TEST_F(DismissRing, isFullAndOffOnceThePanelLeaves) {
  settings.islandDurationSeconds.set(2);
  openHidden();
  show();
  platform.time.advanceBy(2s);
  EXPECT_EQ(state().dismissProgress.get(), 1.0);
  EXPECT_FALSE(state().showDismissProgress.get());
}

TEST_F(DismissRing, thatRunsOutWhileThePanelStaysPublishesZeroAndStopsButStaysOn) {
  settings.islandDurationSeconds.set(1);
  addItem("a.png");
  openHidden();
  show();
  store.items.mutate([](auto& items) { items.front().isPinned = true; });
  platform.time.advanceBy(Seconds(1.05));
  EXPECT_EQ(state().dismissProgress.get(), 0.0);
  EXPECT_TRUE(state().showDismissProgress.get());
  EXPECT_TRUE(panel().isVisible());
  EXPECT_EQ(platform.time.pending(), 0U);
}

TEST_F(DismissRing, startsFullAgainWithEachCountdown) {
  openHidden();
  show();
  platform.time.advanceBy(10s);
  EXPECT_LT(state().dismissProgress.get(), 0.7);
  hover(true);
  EXPECT_EQ(state().dismissProgress.get(), 1.0);
  EXPECT_FALSE(state().showDismissProgress.get());
  hover(false);
  EXPECT_TRUE(state().showDismissProgress.get());
  platform.time.advanceBy(33ms);
  EXPECT_NEAR(state().dismissProgress.get(), 1 - 0.033 / 30, 1e-9);
}

TEST_F(DismissRing, onlyOneTimerAndOneHideWaitHoweverOftenTheCountdownStarts) {
  openHidden();
  show();
  for (int i = 0; i < 5; ++i) {
    hover(true);
    hover(false);
    island->show(1);
  }
  EXPECT_EQ(platform.time.pending(), 2U);
}

}  // namespace
}  // namespace quenlio
