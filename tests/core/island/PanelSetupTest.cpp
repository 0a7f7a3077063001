// How the island comes into being, and what is left of it when it goes.
#include "tests/core/island/IslandTest.h"

namespace quenlio {
namespace {

class PanelSetup : public IslandTest {};

TEST_F(PanelSetup, thePanelIsArrangedInOrderAndStartsOutIgnoringTheMouse) {
  settings.islandEnabled.set(false);
  open();
  EXPECT_EQ(
      platform.log.calls(),
      (Calls{"createDirectory /home/user/support/Quenlio", "makePanel 0 0 232 232", "setFloatingPanel on",
             "setLevel 25", "setClearBackgroundWithShadow", "setCollectionBehavior 257", "setHidesOnDeactivate off",
             "setIgnoresMouseEvents on", "setContentView", "orderOut", "setIgnoresMouseEvents on",
             // The setting says off at once, and that hides once more.
             "orderOut", "setIgnoresMouseEvents on"}));
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(PanelSetup, thePanelIsMadeAsLargeAsTheSizeSettingSays) {
  for (const IslandSize size :
       {IslandSize::extraSmall, IslandSize::small, IslandSize::medium, IslandSize::large, IslandSize::xLarge}) {
    settings.islandEnabled.set(false);
    settings.islandSize.set(size);
    open();
    const double side = IslandLayoutMetrics::panelSide(size);
    EXPECT_EQ(panel().frame(), (Rect<Screen>{{0, 0}, {side, side}}));
  }
}

TEST_F(PanelSetup, anEnabledIslandComesUpAsItIsMadeOnTheScreenUnderThePointer) {
  addSecondScreen();
  open();
  EXPECT_TRUE(panel().isVisible());
  EXPECT_EQ(island->lastPresentedDisplayID(), 2U);
}

TEST_F(PanelSetup, withoutAScreenAnEnabledIslandStaysOut) {
  platform.screens.list.clear();
  open();
  EXPECT_FALSE(panel().isVisible());
  EXPECT_EQ(island->lastPresentedDisplayID(), std::nullopt);
}

TEST_F(PanelSetup, theViewsBeginWithAFullRingThatIsOffAndAReadableFolder) {
  settings.islandEnabled.set(false);
  open();
  EXPECT_EQ(state().dismissProgress.get(), 1.0);
  EXPECT_FALSE(state().showDismissProgress.get());
  EXPECT_EQ(state().appearanceStyle.get(), IslandAppearanceStyle::light);
  EXPECT_FALSE(state().increaseContrast.get());
  EXPECT_EQ(state().renameRequestToken.get(), 0);
  EXPECT_TRUE(state().screenshotFolderReadable.get());
  EXPECT_EQ(state().screenshotFolderPath.get(), "");
}

TEST_F(PanelSetup, theViewIsGivenTheLibraryTheSettingsAndTheStateOfTheIsland) {
  open();
  EXPECT_EQ(&view().store, &store);
  EXPECT_EQ(&view().settings, &settings);
  EXPECT_EQ(&view().presentationState, &state());
}

TEST_F(PanelSetup, oneMonitorListensForKeysAsLongAsTheIslandLives) {
  open();
  EXPECT_EQ(platform.eventMonitors.monitors.size(), 1U);
  island.reset();
  EXPECT_EQ(platform.eventMonitors.monitors.size(), 0U);
}

TEST_F(PanelSetup, nothingListensOrWaitsOnceTheIslandIsGone) {
  open();
  ASSERT_GT(platform.time.pending(), 0U);
  island.reset();
  EXPECT_EQ(platform.time.pending(), 0U);
  EXPECT_EQ(platform.appearance.appearanceObservers.size(), 0U);
  EXPECT_EQ(platform.appearance.contrastObservers.size(), 0U);
  platform.log.clear();
  settings.islandEnabled.set(false);
  settings.islandEnabled.set(true);
  settings.islandSize.set(IslandSize::large);
  settings.islandDurationMode.set(IslandDurationMode::hideWhenInactive);
  settings.islandDurationSeconds.set(5);
  EXPECT_EQ(platform.log.calls(), Calls{});
}

TEST_F(PanelSetup, aViewThatOutlivesTheIslandReachesNobody) {
  openShown();
  addItem("a.png");
  const ScreenshotItem item = store.items.get().front();
  island.reset();
  platform.log.clear();
  view().onHoverChanged(true);
  view().onClose();
  view().onOpenQuickLook(item);
  view().onOpenEditor(item);
  view().onWindowDrag({10, 10}, true);
  view().onItemDragStateChanged(true);
  view().onRequestNewScreenshot();
  view().onRequestFolderAccess();
  EXPECT_EQ(platform.log.calls(), Calls{});
  EXPECT_EQ(platform.time.pending(), 0U);
}

}  // namespace
}  // namespace quenlio
