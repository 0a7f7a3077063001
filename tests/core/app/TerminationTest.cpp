// The end: what is stopped, in which order, and that nothing of the application is left behind.
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tests/core/app/AppTest.h"

namespace quenlio {
namespace {

constexpr const char* kIngestNotification = "com.quenlio.release-test.ingest-screenshot";

class Termination : public AppTest {
 protected:
  void terminate() {
    app->applicationWillTerminate();
    platform.time.runReady();
  }
};

TEST_F(Termination, theWatcherStopsThenTheHotKeyGoesThenItsHandler) {
  launch();
  platform.log.clear();
  app->applicationWillTerminate();
  EXPECT_EQ(calls(), (Names{"FSEventStreamStop /home/user/Desktop", "FSEventStreamInvalidate /home/user/Desktop",
                            "FSEventStreamRelease /home/user/Desktop", "UnregisterEventHotKey", "RemoveEventHandler",
                            std::string("removeObserver ") + kIngestNotification}));
}

TEST_F(Termination, noTimerRemainsButTheLastTurnOfTheRequestPollWhichDoesNothing) {
  launch();
  terminate();
  EXPECT_EQ(platform.time.pending(), 1U);
  const std::string events = eventText();
  platform.time.advanceBy(500ms);
  EXPECT_EQ(platform.time.pending(), 0U);
  EXPECT_EQ(eventText(), events);
}

TEST_F(Termination, withDiagnosticsOffNoTimerRemains) {
  platform.configuration.isEnabled = false;
  launch();
  ASSERT_GT(platform.time.pending(), 0U);
  terminate();
  EXPECT_EQ(platform.time.pending(), 0U);
}

TEST_F(Termination, afterABusyRunNothingGoesOnForEver) {
  launch();
  for (int i = 10; i < 20; ++i) {
    capture("Screenshot 2026-11-" + std::to_string(i) + ".png");
  }
  platform.time.advanceBy(300ms);
  ASSERT_EQ(listed().size(), 10U);
  ASSERT_TRUE(isIslandUp());
  terminate();
  EXPECT_EQ(platform.time.pending(), 1U) << "the request poll's last turn, and nothing of the island's";
  platform.time.advanceBy(500ms);
  EXPECT_EQ(platform.time.pending(), 0U);
}

// The pointer is looked for a little after the entry, and the island has not come that far yet.
TEST_F(Termination, whileTheIslandComesUpOnlyThePanelsOwnMotionGoesOn) {
  launch();
  for (int i = 10; i < 20; ++i) {
    capture("Screenshot 2026-11-" + std::to_string(i) + ".png");
  }
  platform.time.advanceBy(100ms);
  ASSERT_EQ(listed().size(), 10U);
  ASSERT_TRUE(isIslandUp());
  ASSERT_EQ(platform.islandShell.panel->alpha(), 0.0);
  terminate();
  EXPECT_EQ(platform.time.pending(), 2U) << "the request poll's last turn and the panel's entry";
  platform.time.advanceBy(500ms);
  EXPECT_EQ(platform.time.pending(), 0U);
}

TEST_F(Termination, noHotKeyRemains) {
  launch();
  terminate();
  EXPECT_TRUE(platform.hotKeys.keys.empty());
  EXPECT_TRUE(platform.hotKeys.handlers.empty());
}

TEST_F(Termination, nothingListensForRequestsAnyMore) {
  launch();
  ASSERT_EQ(platform.notifications.observers[kIngestNotification].size(), 1U);
  terminate();
  EXPECT_EQ(platform.notifications.observers[kIngestNotification].size(), 0U);
  platform.files.write("/run/ingest-screenshot-request.txt", "/shots/a.png");
  platform.time.advanceBy(10s);
  EXPECT_TRUE(platform.files.content("/run/ingest-screenshot-request.txt"));
}

TEST_F(Termination, newFilesAreNoLongerFound) {
  launch();
  terminate();
  capture();
  platform.time.advanceBy(60s);
  EXPECT_EQ(listed(), Names{});
  EXPECT_EQ(platform.eventStreams.runningCount(), 0U);
}

TEST_F(Termination, missingFilesAreNoLongerLookedFor) {
  launch();
  platform.files.write("/shots/a.png");
  arrive("/shots/a.png");
  platform.files.remove("/shots/a.png");
  terminate();
  platform.time.advanceBy(60s);
  EXPECT_EQ(listed(), Names{"/shots/a.png"});
}

TEST_F(Termination, beforeTheLaunchThereIsNothingToStop) {
  app = platform.makeApp();
  platform.log.clear();
  terminate();
  EXPECT_EQ(calls(), Names{});
  EXPECT_EQ(platform.time.pending(), 0U);
}

TEST_F(Termination, aSecondOneDoesNothing) {
  launch();
  terminate();
  platform.log.clear();
  terminate();
  EXPECT_EQ(platform.log.calls(), Names{});
}

// Takes the application away. What had been posted to run at once cannot be taken back and still runs, but it must do
// nothing; whatever waits for a later moment must be gone. The answer tells whether both hold.
bool vanishesWithoutATrace(AppRig& rig) {
  rig.app.reset();
  const std::size_t calls = rig.platform.log.calls().size();
  const std::size_t rendered = rig.platform.thumbnails.rendered.size();
  const std::string events = rig.eventText();
  rig.platform.time.runReady();
  return rig.platform.time.pending() == 0 && rig.platform.log.calls().size() == calls &&
         rig.platform.thumbnails.rendered.size() == rendered && rig.eventText() == events &&
         rig.platform.hotKeys.keys.empty() && rig.platform.hotKeys.handlers.empty() &&
         rig.platform.eventStreams.runningCount() == 0 &&
         rig.platform.notifications.observers[kIngestNotification].size() == 0 &&
         rig.platform.eventMonitors.monitors.size() == 0 && rig.platform.appearance.appearanceObservers.size() == 0 &&
         rig.platform.appearance.contrastObservers.size() == 0;
}

class Disappearance : public AppTest {};

TEST_F(Disappearance, beforeTheLaunchLeavesNothing) {
  app = platform.makeApp();
  EXPECT_EQ(platform.time.pending(), 0U);
  EXPECT_TRUE(vanishesWithoutATrace(*this));
}

TEST_F(Disappearance, betweenTheHalvesOfTheLaunchLeavesNothing) {
  app = platform.makeApp();
  app->bootstrapStatusBarIfNeeded();
  EXPECT_TRUE(vanishesWithoutATrace(*this));
}

TEST_F(Disappearance, rightAfterTheLaunchWithItsFirstTasksStillPostedLeavesNothing) {
  platform.configuration.screenshotDirectory = FileURL("/seeds");
  platform.files.write("/seeds/seed.png");
  platform.process.argumentList = {"quenlio", "--release-test-ingest", "/seeds/seed.png"};
  app = platform.makeApp();
  app->applicationDidFinishLaunching();
  ASSERT_GT(platform.time.pending(), 3U);
  EXPECT_TRUE(vanishesWithoutATrace(*this));
  EXPECT_EQ(platform.eventCount("screenshot_detected"), 0);
  EXPECT_TRUE(platform.thumbnails.rendered.empty());
}

TEST_F(Disappearance, whileFilesAreBeingLookedAtLeavesNothing) {
  launch();
  capture();
  platform.time.advanceBy(40ms);
  ASSERT_EQ(listed(), Names{});
  EXPECT_TRUE(vanishesWithoutATrace(*this));
}

TEST_F(Disappearance, whileThumbnailsAreWaitedForLeavesNothing) {
  launch();
  platform.files.write("/shots/a.png");
  app->store().ingestScreenshot(FileURL("/shots/a.png"), std::nullopt);
  EXPECT_TRUE(vanishesWithoutATrace(*this));
}

TEST_F(Disappearance, whileTheIslandComesUpLeavesNothing) {
  launch();
  app->openIslandToolFromMenu();
  platform.time.advanceBy(50ms);
  ASSERT_EQ(platform.islandShell.panel->alpha(), 0.0);
  EXPECT_TRUE(vanishesWithoutATrace(*this));
}

TEST_F(Disappearance, whileTheRingRunsLeavesNothing) {
  launch();
  app->openIslandToolFromMenu();
  platform.time.advanceBy(5s);
  ASSERT_TRUE(app->overlayController().presentationState().showDismissProgress.get());
  EXPECT_TRUE(vanishesWithoutATrace(*this));
}

TEST_F(Disappearance, whileTheIslandLeavesLeavesNothing) {
  launch();
  app->openIslandToolFromMenu();
  platform.time.advanceBy(1s);
  app->overlayController().hide({.animated = true});
  platform.time.advanceBy(50ms);
  EXPECT_TRUE(vanishesWithoutATrace(*this));
}

TEST_F(Disappearance, withAPressOfTheHotKeyOnItsWayLeavesNothing) {
  launch();
  platform.hotKeys.press();
  EXPECT_TRUE(vanishesWithoutATrace(*this));
  EXPECT_FALSE(isIslandUp());
}

TEST_F(Disappearance, duringOnboardingsWaitForACaptureLeavesNothing) {
  launch();
  app->onboarding().onboardingCaptureTimeoutTask = platform.time.after(45s, [] { FAIL() << "the timeout fired"; });
  EXPECT_TRUE(vanishesWithoutATrace(*this));
  platform.time.advanceBy(60s);
}

TEST_F(Disappearance, afterTheTerminationLeavesNothing) {
  launch();
  app->applicationWillTerminate();
  EXPECT_TRUE(vanishesWithoutATrace(*this));
}

// Something that may happen to a running application.
void happen(AppRig& rig) {
  AppDelegate& app = *rig.app;
  const auto day = std::to_string(*rc::gen::inRange(10, 30));
  switch (*rc::gen::inRange(0, 13)) {
    case 0:
      return (void)rig.capture("Screenshot 2026-11-" + day + ".png");
    case 1:
      return rig.platform.files.remove(std::string(AppRig::kDesktop) + "/Screenshot 2026-11-" + day + ".png");
    case 2:
      return rig.platform.files.write("/run/ingest-screenshot-request.txt", "/shots/" + day + ".png");
    case 3:
      return rig.platform.notifications.post(kIngestNotification, {{"path", "/shots/" + day + ".png"}});
    case 4:
      return rig.platform.hotKeys.press();
    case 5:
      return app.openIslandToolFromMenu();
    case 6:
      return app.overlayController().hide({.animated = *rc::gen::arbitrary<bool>()});
    case 7:
      return app.settings().islandEnabled.set(*rc::gen::arbitrary<bool>());
    case 8:
      return app.settings().islandDurationMode.set(*rc::gen::element(
          IslandDurationMode::timed, IslandDurationMode::neverHide, IslandDurationMode::hideWhenInactive));
    case 9:
      return app.handleNewScreenshot(FileURL("/shots/" + day + ".png"), std::nullopt);
    case 10:
      return app.store().refreshEditedScreenshot(FileURL("/shots/" + day + ".png"));
    case 11:
      return app.applicationWillTerminate();
    default:
      return rig.platform.time.advanceBy(Seconds(*rc::gen::element(0.0, 0.01, 0.03, 0.05, 0.12, 0.14, 0.5, 1.0, 31.0)));
  }
}

RC_GTEST_PROP(DisappearanceProperty, leavesNothingAtAnyMomentOfAnyRun, (std::uint32_t seed)) {
  AppRig rig(seed);
  for (int day = 10; day < 30; ++day) {
    rig.platform.files.write("/shots/" + std::to_string(day) + ".png");
  }
  rig.platform.configuration.isEnabled = *rc::gen::arbitrary<bool>();
  rig.app = rig.platform.makeApp();
  rig.app->applicationDidFinishLaunching();
  const int steps = *rc::gen::inRange(0, 30);
  for (int step = 0; step < steps; ++step) {
    happen(rig);
  }
  RC_ASSERT(vanishesWithoutATrace(rig));
}

}  // namespace
}  // namespace quenlio
