// How the island follows settings, the desktop's appearance and the screenshot folder.
#include "tests/core/island/IslandTest.h"

namespace quenlio {
namespace {

class SettingsReaction : public IslandTest {};

TEST_F(SettingsReaction, switchingTheIslandOffSlidesThePanelOut) {
  openShown();
  settings.islandEnabled.set(false);
  EXPECT_EQ(platform.log.calls(), Calls{"runAnimationGroup to 1036 34 232 232"});
  EXPECT_EQ(panel().lastAnimation()->duration, 120ms);
  platform.time.advanceBy(120ms);
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(SettingsReaction, switchingTheIslandOnShowsItAtOnceOnTheScreenUnderThePointer) {
  settings.islandEnabled.set(false);
  openHidden();
  addSecondScreen();
  settings.islandEnabled.set(true);
  EXPECT_TRUE(panel().isVisible());
  EXPECT_EQ(island->lastPresentedDisplayID(), 2U);
}

TEST_F(SettingsReaction, switchingTheIslandOnWithoutAScreenShowsNothing) {
  settings.islandEnabled.set(false);
  openHidden();
  platform.screens.list.clear();
  settings.islandEnabled.set(true);
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(SettingsReaction, aNewSizeLaysAVisiblePanelAnewInItsCornerWithoutAnimation) {
  openShown();
  island->dragPanel({-300, -100}, true);
  platform.log.clear();
  for (const IslandSize size :
       {IslandSize::small, IslandSize::medium, IslandSize::large, IslandSize::xLarge, IslandSize::extraSmall}) {
    settings.islandSize.set(size);
    const Rect<Screen> frame = IslandPlacement::desiredFrame(platform.screens.list[0], size);
    EXPECT_EQ(panel().frame(), frame);
    EXPECT_EQ(frame.size.width, IslandLayoutMetrics::panelSide(size));
  }
  EXPECT_EQ(platform.log.calls().size(), 5U);  // one setFrame a size and nothing else
}

TEST_F(SettingsReaction, aNewSizeIsAlreadyTakenWhileTheSettingIsBeingAnnounced) {
  openShown();
  // The views hear of a size after the island has, and the frame must be the new one by then.
  std::optional<double> sideAtAnnouncement;
  bool isFirst = true;
  const Subscription views = settings.islandSize.subscribe([&](IslandSize) {
    if (!std::exchange(isFirst, false)) {
      sideAtAnnouncement = panel().frame().size.width;
    }
  });
  settings.islandSize.set(IslandSize::large);
  EXPECT_EQ(sideAtAnnouncement, 420.0);
}

TEST_F(SettingsReaction, aNewSizeLeavesAHiddenPanelAloneAndHoldsAtTheNextShow) {
  openHidden();
  settings.islandSize.set(IslandSize::medium);
  EXPECT_EQ(platform.log.calls(), Calls{});
  island->show(1);
  platform.time.advanceBy(200ms);
  EXPECT_EQ(panel().frame(), IslandPlacement::desiredFrame(platform.screens.list[0], IslandSize::medium));
}

TEST_F(SettingsReaction, aNewSizeDoesNotTouchTheCountdown) {
  openShown();
  platform.time.advanceBy(15s);
  const double progress = state().dismissProgress.get();
  settings.islandSize.set(IslandSize::medium);
  EXPECT_EQ(state().dismissProgress.get(), progress);
}

TEST_F(SettingsReaction, aChangeToNeverHideDisarms) {
  openShown();
  settings.islandDurationMode.set(IslandDurationMode::neverHide);
  EXPECT_FALSE(state().showDismissProgress.get());
  EXPECT_EQ(platform.time.pending(), 0U);
}

TEST_F(SettingsReaction, aChangeToTimedArmsFromTheFullDelay) {
  settings.islandDurationMode.set(IslandDurationMode::neverHide);
  openShown();
  platform.time.advanceBy(100s);
  settings.islandDurationMode.set(IslandDurationMode::timed);
  EXPECT_TRUE(state().showDismissProgress.get());
  platform.time.advanceBy(Seconds(29.9));
  EXPECT_TRUE(panel().isVisible());
  platform.time.advanceBy(1s);
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(SettingsReaction, aNewDurationCountsAtOnceAndFromItsStart) {
  openShown();
  platform.time.advanceBy(20s);
  settings.islandDurationSeconds.set(5);
  EXPECT_EQ(state().dismissProgress.get(), 1.0);
  platform.time.advanceBy(Seconds(4.9));
  EXPECT_TRUE(panel().isVisible());
  platform.time.advanceBy(300ms);
  EXPECT_FALSE(panel().isVisible());
}

class IslandAppearance : public IslandTest {
 protected:
  // Every announcement of the two values from now on.
  void watch() {
    style_ = view().presentationState.appearanceStyle.subscribe([this](IslandAppearanceStyle style) {
      announced.push_back("style " + std::string(rawValue(style)));
      transition = state().appearanceTransition;
    });
    contrast_ = view().presentationState.increaseContrast.subscribe(
        [this](bool increase) { announced.emplace_back(increase ? "contrast on" : "contrast off"); });
    announced.clear();
  }
  Calls announced;
  Seconds transition{-1};

 private:
  Subscription style_;
  Subscription contrast_;
};

TEST_F(IslandAppearance, isTakenOverAtOnceWhenTheIslandIsMade) {
  settings.islandEnabled.set(false);
  platform.appearance.isDark = true;
  platform.appearance.increasesContrast = true;
  open();
  EXPECT_EQ(state().appearanceStyle.get(), IslandAppearanceStyle::dark);
  EXPECT_TRUE(state().increaseContrast.get());
  EXPECT_EQ(state().appearanceTransition, 0s);
}

TEST_F(IslandAppearance, followsTheDesktopIn160MillisecondsStyleFirst) {
  openShown();
  watch();
  platform.appearance.isDark = true;
  platform.appearance.increasesContrast = true;
  platform.appearance.appearanceObservers.call();
  EXPECT_EQ(announced, (Calls{"style dark", "contrast on"}));
  EXPECT_EQ(transition, 160ms);
}

TEST_F(IslandAppearance, followsTheWishForContrast) {
  openShown();
  watch();
  platform.appearance.increasesContrast = true;
  platform.appearance.contrastObservers.call();
  EXPECT_EQ(announced, (Calls{"style light", "contrast on"}));
  EXPECT_EQ(transition, 160ms);
}

TEST_F(IslandAppearance, thatHasNotChangedIsNotPublished) {
  openShown();
  watch();
  platform.appearance.appearanceObservers.call();
  platform.appearance.contrastObservers.call();
  island->show(1);
  EXPECT_EQ(announced, Calls{});
}

TEST_F(IslandAppearance, isTakenOverAtOnceWhenThePanelIsShownOrChangesItsSize) {
  openShown();
  watch();
  platform.appearance.isDark = true;
  island->show(1);
  EXPECT_EQ(announced, (Calls{"style dark", "contrast off"}));
  EXPECT_EQ(transition, 0s);
  transition = Seconds(-1);
  platform.appearance.isDark = false;
  settings.islandSize.set(IslandSize::large);
  EXPECT_EQ(state().appearanceStyle.get(), IslandAppearanceStyle::light);
  EXPECT_EQ(transition, 0s);
}

class FolderAccess : public IslandTest {
 protected:
  bool isReadableNow() {
    island->show(1);
    return state().screenshotFolderReadable.get();
  }
};

TEST_F(FolderAccess, isLookedAtOnEachShow) {
  openHidden();
  EXPECT_TRUE(isReadableNow());
  EXPECT_EQ(state().screenshotFolderPath.get(), "/home/user/Desktop");
  platform.files.makeFolder("/elsewhere");
  platform.preferences.setLocation(std::string("/elsewhere"));
  EXPECT_TRUE(isReadableNow());
  EXPECT_EQ(state().screenshotFolderPath.get(), "/elsewhere");
}

TEST_F(FolderAccess, needsAFolderThatIsThere) {
  openHidden();
  platform.files.remove("/home/user/Desktop");
  EXPECT_FALSE(isReadableNow());
  EXPECT_EQ(state().screenshotFolderPath.get(), "/home/user/Desktop");
  platform.files.write("/home/user/Desktop", "a file in its place");
  EXPECT_FALSE(isReadableNow());
}

TEST_F(FolderAccess, needsTheRightToReadTheFolder) {
  openHidden();
  platform.files.setUnreadable("/home/user/Desktop", true);
  EXPECT_FALSE(isReadableNow());
  platform.files.setUnreadable("/home/user/Desktop", false);
  EXPECT_TRUE(isReadableNow());
}

TEST_F(FolderAccess, needsAListingThatWorks) {
  openHidden();
  platform.files.setUnlistable("/home/user/Desktop", true);
  EXPECT_FALSE(isReadableNow());
}

TEST_F(FolderAccess, isLookedAtAgainAfterTheUserWasAskedForIt) {
  platform.files.setUnreadable("/home/user/Desktop", true);
  openShown();
  ASSERT_FALSE(state().screenshotFolderReadable.get());
  duringFolderRequest = [this] { platform.files.setUnreadable("/home/user/Desktop", false); };
  view().onRequestFolderAccess();
  EXPECT_EQ(platform.log.count("requestFolderAccess"), 1);
  EXPECT_TRUE(state().screenshotFolderReadable.get());
  EXPECT_TRUE(panel().isVisible());
}

}  // namespace
}  // namespace quenlio
