// How the panel appears and leaves.
#include "tests/core/island/IslandTest.h"

namespace quenlio {
namespace {

class Show : public IslandTest {};

TEST_F(Show, aHiddenPanelRisesSixPointsWhileItFadesIn) {
  openHidden();
  island->show(1);
  EXPECT_EQ(platform.log.calls(),
            (Calls{"setCollectionBehavior 257", "setLevel 25", "setIgnoresMouseEvents off", "setFrame 1036 36 232 232",
                   "setAlphaValue 0", "orderFrontRegardless", "runAnimationGroup to 1036 42 232 232",
                   "makeKeyAndOrderFront", "invalidateShadow", "makeFirstResponder"}));
  ASSERT_TRUE(panel().lastAnimation());
  EXPECT_EQ(panel().lastAnimation()->duration, 120ms);
  EXPECT_EQ(panel().lastAnimation()->curve, (TimingCurve{{0.22, 1.0, 0.36, 1.0}}));
  EXPECT_EQ(panel().lastAnimation()->alpha, 1.0);
  EXPECT_EQ(panel().alpha(), 0.0);
  platform.time.advanceBy(120ms);
  EXPECT_EQ(panel().frame(), corner());
  EXPECT_EQ(panel().alpha(), 1.0);
  EXPECT_FALSE(panel().ignoresMouseEvents());
}

TEST_F(Show, aVisiblePanelGoesStraightToItsCorner) {
  openShown();
  island->show(1);
  EXPECT_EQ(platform.log.calls(),
            (Calls{"setCollectionBehavior 257", "setLevel 25", "setIgnoresMouseEvents off", "setFrame 1036 42 232 232",
                   "makeKeyAndOrderFront", "invalidateShadow", "makeFirstResponder"}));
}

TEST_F(Show, aPanelThatWasDraggedAwaySnapsBackToItsCornerWithoutAnimation) {
  openShown();
  island->dragPanel({-300, -200}, true);
  ASSERT_NE(panel().frame(), corner());
  platform.log.clear();
  island->show(1);
  EXPECT_EQ(panel().frame(), corner());
  EXPECT_EQ(platform.log.indexOf("runAnimationGroup to 1036 42 232 232"), -1);
}

TEST_F(Show, aDisabledIslandDoesNothingAtAll) {
  openShown();
  settings.islandEnabled.set(false);
  platform.time.advanceBy(200ms);
  addSecondScreen();
  platform.preferences.setLocation(std::string("/home/user"));
  const std::string folder = state().screenshotFolderPath.get();
  platform.log.clear();
  island->show(2);
  EXPECT_EQ(platform.log.calls(), Calls{});
  EXPECT_FALSE(panel().isVisible());
  EXPECT_EQ(state().screenshotFolderPath.get(), folder);
  EXPECT_EQ(island->lastPresentedDisplayID(), 1U);
}

TEST_F(Show, withoutAScreenOnlyTheFolderIsLookedAt) {
  openHidden();
  platform.screens.list.clear();
  platform.preferences.setLocation(std::string("/home/user"));
  island->show(1);
  EXPECT_EQ(platform.log.calls(), Calls{});
  EXPECT_FALSE(panel().isVisible());
  EXPECT_EQ(state().screenshotFolderPath.get(), "/home/user");
  EXPECT_EQ(island->lastPresentedDisplayID(), 1U);
}

TEST_F(Show, aPanelUnderTheRestingPointerCountsAsHovered) {
  openHidden();
  putPointerOnPanel();
  island->show(1);
  EXPECT_FALSE(state().showDismissProgress.get());
  platform.time.advanceBy(60s);
  EXPECT_TRUE(panel().isVisible());
}

TEST_F(Show, thePointerIsLookedForAgainOnceTheEntryIsOver) {
  openHidden();
  island->show(1);
  EXPECT_TRUE(state().showDismissProgress.get());
  putPointerOnPanel();
  platform.time.advanceBy(139ms);
  EXPECT_TRUE(state().showDismissProgress.get());
  platform.log.clear();
  platform.time.advanceBy(1ms);
  EXPECT_FALSE(state().showDismissProgress.get());
  EXPECT_EQ(platform.log.calls(), (Calls{"makeKeyWindow", "makeFirstResponder"}));
}

TEST_F(Show, aPanelThatWasUpLooksForThePointerOnlyOnce) {
  openShown();
  island->show(1);
  putPointerOnPanel();
  platform.time.advanceBy(1s);
  EXPECT_TRUE(state().showDismissProgress.get());
}

TEST_F(Show, eachShowStartsTheCountdownAnew) {
  openShown();
  for (int i = 0; i < 3; ++i) {
    platform.time.advanceBy(29s);
    EXPECT_TRUE(panel().isVisible());
    island->show(1);
  }
  platform.time.advanceBy(31s);
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(Show, aPanelThatIsShownWhileItLeavesStillGoesWhenTheExitEnds) {
  openShown();
  island->hide({.animated = true});
  platform.time.advanceBy(60ms);
  platform.log.clear();
  island->show(1);
  EXPECT_EQ(platform.log.indexOf("orderFrontRegardless"), -1);
  EXPECT_TRUE(panel().isVisible());
  platform.time.advanceBy(60ms);
  EXPECT_FALSE(panel().isVisible());
  EXPECT_TRUE(panel().ignoresMouseEvents());
}

TEST_F(Show, aSizeThatIsChosenDuringTheEntryIsTheOneThatThePanelEndsWith) {
  openHidden();
  island->show(1);
  platform.time.advanceBy(50ms);
  settings.islandSize.set(IslandSize::large);
  EXPECT_EQ(panel().frame(), corner());
  platform.time.advanceBy(200ms);
  EXPECT_EQ(panel().frame(), corner());
  EXPECT_EQ(panel().frame().size, (Size{420, 420}));
  EXPECT_EQ(panel().alpha(), 1.0);
}

class Hide : public IslandTest {};

TEST_F(Hide, aPanelThatIsHiddenDuringItsEntryIsGoneWhenTheExitEndsAndStaysSo) {
  openHidden();
  island->show(1);
  platform.time.advanceBy(50ms);
  island->hide({.animated = true});
  platform.time.advanceBy(119ms);
  EXPECT_TRUE(panel().isVisible());
  platform.time.advanceBy(1ms);
  EXPECT_FALSE(panel().isVisible());
  EXPECT_TRUE(panel().ignoresMouseEvents());
  EXPECT_EQ(panel().alpha(), 1.0);  // for the next showing
  platform.time.advanceBy(1s);
  EXPECT_FALSE(panel().isVisible());
  EXPECT_FALSE(state().showDismissProgress.get());
  EXPECT_EQ(platform.time.pending(), 0U);
}

TEST_F(Hide, aPanelThatGoesAtOnceDuringItsEntryDoesNotComeBackWithTheEntrysEnd) {
  openHidden();
  putPointerOnPanel();
  island->show(1);
  platform.time.advanceBy(50ms);
  island->hide({});
  platform.log.clear();
  platform.time.advanceBy(1s);
  EXPECT_FALSE(panel().isVisible());
  EXPECT_EQ(platform.log.calls(), Calls{});
  EXPECT_FALSE(state().showDismissProgress.get());
  EXPECT_EQ(platform.time.pending(), 0U);
}

TEST_F(Hide, anAnimatedExitFadesOutEightPointsDownward) {
  openShown();
  island->hide({.animated = true, .duration = 120ms, .shouldSlide = true});
  EXPECT_EQ(platform.log.calls(), Calls{"runAnimationGroup to 1036 34 232 232"});
  EXPECT_EQ(panel().lastAnimation()->duration, 120ms);
  EXPECT_EQ(panel().lastAnimation()->curve, (TimingCurve{{0.42, 0.0, 1.0, 1.0}}));
  EXPECT_EQ(panel().lastAnimation()->alpha, 0.0);
  EXPECT_TRUE(panel().isVisible());
  platform.log.clear();
  platform.time.advanceBy(120ms);
  EXPECT_EQ(platform.log.calls(), (Calls{"orderOut", "setIgnoresMouseEvents on", "setAlphaValue 1"}));
}

TEST_F(Hide, withoutTheSlideThePanelFadesWhereItIs) {
  openShown();
  island->hide({.animated = true, .duration = 500ms, .shouldSlide = false});
  EXPECT_EQ(platform.log.calls(), Calls{"runAnimationGroup to 1036 42 232 232"});
  platform.time.advanceBy(499ms);
  EXPECT_TRUE(panel().isVisible());
  platform.time.advanceBy(1ms);
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(Hide, itSlidesFromWhereThePanelWasDragged) {
  openShown();
  island->dragPanel({-36, -58}, true);
  platform.log.clear();
  island->hide({.animated = true});
  EXPECT_EQ(platform.log.calls(), Calls{"runAnimationGroup to 1000 92 232 232"});
}

TEST_F(Hide, withoutAnimationThePanelGoesAtOnce) {
  openShown();
  island->hide({.animated = false});
  EXPECT_EQ(platform.log.calls(), (Calls{"orderOut", "setIgnoresMouseEvents on"}));
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(Hide, aPanelThatIsOutIsNotAnimated) {
  openHidden();
  island->hide({.animated = true});
  EXPECT_EQ(platform.log.calls(), (Calls{"orderOut", "setIgnoresMouseEvents on"}));
}

TEST_F(Hide, thePendingHideAndTheRingEndAtOnce) {
  openShown();
  ASSERT_TRUE(state().showDismissProgress.get());
  platform.time.advanceBy(15s);
  island->hide({.animated = true, .duration = 60s});
  EXPECT_FALSE(state().showDismissProgress.get());
  EXPECT_EQ(state().dismissProgress.get(), 1.0);
  EXPECT_EQ(platform.time.pending(), 1U);  // the animation alone
}

class CloseButton : public IslandTest {};

TEST_F(CloseButton, thePanelSlidesOutIn120Milliseconds) {
  openShown();
  view().onClose();
  EXPECT_EQ(platform.log.calls(), Calls{"runAnimationGroup to 1036 34 232 232"});
  EXPECT_EQ(panel().lastAnimation()->duration, 120ms);
  platform.time.advanceBy(120ms);
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(CloseButton, itEndsHoverAndDragsSoThatTheNextCountdownRuns) {
  openShown();
  hover(true);
  view().onItemDragStateChanged(true);
  view().onWindowDrag({-20, 0}, false);
  view().onClose();
  platform.time.advanceBy(1s);
  // Nothing of what was under way keeps the panel up now.
  island->show(1);
  EXPECT_TRUE(state().showDismissProgress.get());
}

TEST_F(CloseButton, theNextMoveOfThePanelStartsFromWhereItIsThen) {
  openShown();
  view().onWindowDrag({-50, 0}, true);
  view().onWindowDrag({-100, 0}, false);
  view().onClose();
  platform.time.advanceBy(1s);
  island->show(1);
  platform.time.advanceBy(1s);
  view().onWindowDrag({-10, 0}, false);
  EXPECT_EQ(panel().frame(), corner().moved(-10, 0));
}

TEST_F(Hide, aWishForANewScreenshotIsPassedOnBeforeThePanelSlidesOut) {
  openShown();
  view().onRequestNewScreenshot();
  EXPECT_EQ(platform.log.calls(), (Calls{"requestNewScreenshot", "runAnimationGroup to 1036 34 232 232"}));
  EXPECT_EQ(panel().lastAnimation()->duration, 120ms);
}

}  // namespace
}  // namespace quenlio
