// The launch: what is started, in which order, and that it is started once.
#include <cmath>

#include "tests/core/app/AppTest.h"
#include "tests/harness/SchedulerRecorder.h"

namespace quenlio {
namespace {

class Launch : public AppTest {
 protected:
  FakeUserDefaults& defaults() { return platform.defaults.standardUserDefaults(); }
  std::optional<std::string> progressState() { return defaults().object<std::string>("onboarding.progressState"); }
};

TEST_F(Launch, aCaptureReachesTheLibraryAndTheIsland) {
  launch();
  const std::string path = capture();
  platform.time.advanceBy(Seconds(0.06));
  ASSERT_EQ(listed(), Names{path});
  EXPECT_TRUE(app->overlayController().panel().isVisible());
  EXPECT_EQ(platform.eventCount("screenshot_detected"), 1);
  EXPECT_EQ(platform.state().latestScreenshotPath, path);
}

TEST_F(Launch, takesItsStepsInTheirOrder) {
  defaults().setObject("onboarding.quick.v3.completed", true);
  platform.configuration.screenshotDirectory = FileURL("/seeds");
  platform.files.write("/seeds/seed.png");
  platform.files.write("/shots/argument.png");
  platform.process.argumentList = {"quenlio", "--release-test-ingest", "/shots/argument.png"};
  platform.files.write("/run/ingest-screenshot-request.txt", "/shots/argument.png");
  platform.files.afterWriting = [this](const FileURL& file, std::string_view data) {
    if (file.path() == "/run/state.json") {
      platform.log.add("state " + decodeState(data)->onboardingState.value_or("undecided") +
                       (app && app->statusBarController() != nullptr ? ", with a status item" : ""));
    } else if (file.path() == "/run/events.jsonl") {
      platform.log.add("event " + platform.eventNames().back());
    }
  };
  SchedulerRecorder scheduler(platform.time);
  scheduler.whenRepeating = [this](Seconds interval) {
    platform.log.add("every " + std::to_string(std::lround(interval.count())) + " s");
  };
  app = platform.makeApp(scheduler);
  // Which half makes the status item is told by the calls around it, and where work is left for later by how many tasks
  // and timers waited on all queues when a call was made.
  EXPECT_EQ(stepsOf([this] { app->applicationDidFinishLaunching(); }),
            (std::vector<Step>{
                // The first half. The report of the first run comes once that is decided.
                {"setActivationPolicy accessory", 0},
                {"state undecided", 0},
                {"event app_launched", 0},
                {"track 0", 0},
                {"state completed", 0},
                // The second half: the first run again, then the seeds, for which the library is made.
                {"state completed, with a status item", 0},
                {"createDirectory /home/user/support/Quenlio", 0},
                {"state completed, with a status item", 0},
                {"writeAtomically /home/user/support/Quenlio/pinned.json", 0},
                {"state completed, with a status item", 1},  // the seed's thumbnail waits
                {"event release_test_seed_ingested_on_launch", 1},
                // The watcher: its stream, its poll, its first look. Then the argument, the upkeep, the hot key.
                {"FSEventStreamCreate /home/user/Desktop", 1},
                {"FSEventStreamSetDispatchQueue Quenlio.Watcher", 1},
                {"FSEventStreamStart /home/user/Desktop", 1},
                {"every 1 s", 1},
                {"event release_test_launch_ingest_requested", 3},
                {"every 30 s", 4},
                {"RegisterEventHotKey", 5},
                {"InstallEventHandler", 5},
                // Requests: the notification, the poll; then the whole state, and the request that waits.
                {"addObserver com.quenlio.release-test.ingest-screenshot", 5},
                {"event release_test_request_polling_started", 6},
                {"state completed, with a status item", 6},
                {"event release_test_request_check", 6},
                {"removeItem /run/ingest-screenshot-request.txt", 6},
                {"event release_test_request_consumed", 6}}));
  app.reset();  // its queues before the scheduler that gave them
}

TEST_F(Launch, theVersionAndTheTimeAreReportedBeforeTheLaunchIsAnnounced) {
  platform.bundle.info["CFBundleShortVersionString"] = "7.8.9";
  const Date now = platform.time.now();
  launch();
  EXPECT_EQ(platform.state().appVersion, "7.8.9");
  EXPECT_EQ(platform.state().launchedAt, now);
  const auto report = platform.log.indexOf("writeAtomically /run/state.json");
  EXPECT_LT(platform.log.indexOf("setActivationPolicy accessory"), platform.log.indexOf("track 0"));
  EXPECT_LT(report, platform.log.indexOf("track 0"));
}

TEST_F(Launch, theFirstRunIsReportedInBothHalvesOfTheLaunchBeforeTheWatcherStarts) {
  launch();
  const auto& all = platform.log.calls();
  const auto announced = std::ranges::find(all, "track 0");
  const auto watching = std::ranges::find(all, "FSEventStreamCreate /home/user/Desktop");
  EXPECT_EQ(std::count(announced, watching, "writeAtomically /run/state.json"), 2);
}

TEST_F(Launch, theLaunchIsAnnouncedWithTheArgumentsAndTheVersion) {
  platform.bundle.info["CFBundleShortVersionString"] = "7.8.9";
  platform.process.argumentList = {"quenlio", "one", "two words"};
  launch();
  EXPECT_EQ(eventValues("app_launched", "arguments"), Names{"quenlio one two words"});
  ASSERT_EQ(platform.analytics.count(AnalyticsEventName::appLaunched), 1);
  EXPECT_EQ(platform.analytics.events.front().second, (std::map<std::string, std::string>{{"appVersion", "7.8.9"}}));
}

TEST_F(Launch, withoutAnyFlagTheFirstRunIsPendingAndThatIsWrittenDown) {
  launch();
  EXPECT_EQ(app->onboarding().onboardingState, OnboardingProgressState::pending);
  EXPECT_EQ(progressState(), "pending");
  EXPECT_EQ(platform.state().onboardingState, "pending");
}

TEST_F(Launch, eachOfTheThreeFlagsAloneProvesTheFirstRunCompleted) {
  for (const char* key : {"onboarding.floatingThumbnail.v1.completed", "onboarding.quick.v2.completed",
                          "onboarding.quick.v3.completed"}) {
    defaults().setObject("onboarding.progressState", std::string("pending"));
    defaults().setObject(key, true);
    launch();
    EXPECT_EQ(app->onboarding().onboardingState, OnboardingProgressState::completed) << key;
    EXPECT_EQ(progressState(), "completed") << key;
    EXPECT_EQ(platform.state().onboardingState, "completed") << key;
    defaults().removeObjectForKey(key);
  }
}

TEST_F(Launch, aStoredStateOfCompletedStaysAndAnyOtherBecomesPending) {
  for (const auto& [stored, expected] : std::map<std::string, std::string>{{"completed", "completed"},
                                                                           {"pending", "pending"},
                                                                           {"existingInstall", "pending"},
                                                                           {"strange", "pending"}}) {
    defaults().setObject("onboarding.progressState", stored);
    launch();
    EXPECT_EQ(progressState(), expected) << stored;
  }
}

TEST_F(Launch, aRunsOwnSuiteTakesThePlaceOfTheStandardDefaults) {
  platform.configuration.defaultsSuiteName = "run";
  launch();
  EXPECT_EQ(progressState(), std::nullopt);
  EXPECT_EQ(platform.defaults.initWithSuiteName("run")->object<std::string>("onboarding.progressState"), "pending");
}

TEST_F(Launch, theStatusItemComesFirstAndAloneAndOnlyOnce) {
  app = platform.makeApp();
  EXPECT_EQ(app->statusBarController(), nullptr);
  app->bootstrapStatusBarIfNeeded();
  const StatusBarController* first = app->statusBarController();
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(&first->settings(), &app->settings());
  EXPECT_EQ(calls(), Names{});  // no watcher and no hot key yet
  EXPECT_EQ(platform.time.pending(), 0U);
  app->bootstrapStatusBarIfNeeded();
  app->applicationDidFinishLaunching();
  EXPECT_EQ(app->statusBarController(), first);
}

TEST_F(Launch, itsSecondHalfRunsOnceHoweverOftenItIsCalled) {
  platform.configuration.screenshotDirectory = FileURL("/seeds");
  platform.files.write("/seeds/seed.png");
  launch();
  const std::size_t pending = platform.time.pending();
  const std::string events = eventText();
  platform.log.clear();
  app->finishInitialLaunch();
  EXPECT_EQ(platform.log.calls(), Names{});
  EXPECT_EQ(platform.time.pending(), pending);
  EXPECT_EQ(eventText(), events);
}

TEST_F(Launch, missingFilesAreLookedForEvery30Seconds) {
  launch();
  for (int round = 0; round < 2; ++round) {
    const std::string path = "/shots/a.png";
    platform.files.write(path);
    arrive(path);
    platform.files.remove(path);
    platform.time.advanceBy(Seconds(29.9));
    EXPECT_EQ(listed(), Names{path});
    platform.time.advanceBy(Seconds(0.1));
    EXPECT_EQ(listed(), Names{});
  }
}

TEST_F(Launch, theFolderIsLookedAtEverySecondInADiagnosticsRunAndEveryFiveElse) {
  for (const bool isRun : {true, false}) {
    platform.configuration.isEnabled = isRun;
    launch();
    platform.files.write(std::string(kDesktop) + (isRun ? "/Screenshot 2026-11-15.png" : "/Screenshot 2026-11-16.png"));
    platform.time.advanceBy(isRun ? Seconds(0.99) : Seconds(4.99));
    EXPECT_EQ(listed(), Names{});
    platform.time.advanceBy(Seconds(0.1));
    EXPECT_EQ(listed().size(), 1U) << isRun;
  }
}

TEST_F(Launch, whatLiesInTheFolderAlreadyIsNoArrival) {
  platform.files.write(std::string(kDesktop) + "/Screenshot 2026-11-14.png");
  launch();
  platform.time.advanceBy(10s);
  EXPECT_EQ(listed(), Names{});
}

TEST_F(Launch, aFileThatCameWithoutAWordWhileTheLaunchRanIsFoundByTheFirstLookAtTheFolder) {
  app = platform.makeApp();
  app->applicationDidFinishLaunching();
  platform.files.write(std::string(kDesktop) + "/Screenshot 2026-11-15.png");
  platform.time.advanceBy(Seconds(0.06));
  EXPECT_EQ(listed().size(), 1U);
  EXPECT_TRUE(isIslandUp());
  EXPECT_EQ(platform.eventCount("screenshot_detected"), 1);
}

TEST_F(Launch, theIslandIsNotMadeBeforeItIsNeeded) {
  launch();
  EXPECT_EQ(platform.islandShell.panel, nullptr);
}

TEST_F(Launch, aFailureOfTheStreamOrTheHotKeyStopsNothing) {
  platform.eventStreams.creationFails = true;
  platform.hotKeys.registerStatus = -9878;
  launch();
  EXPECT_EQ(platform.eventCount("release_test_request_polling_started"), 1);
  platform.files.write(std::string(kDesktop) + "/Screenshot 2026-11-15.png");
  platform.time.advanceBy(Seconds(1.1));
  EXPECT_EQ(listed().size(), 1U);
}

TEST_F(Launch, withDiagnosticsOffNothingIsWrittenForAnObserver) {
  platform.configuration.isEnabled = false;
  launch();
  capture();
  platform.time.advanceBy(60s);
  EXPECT_FALSE(platform.files.fileExistsAtPath(FileURL("/run")));
  EXPECT_EQ(listed().size(), 1U);
}

TEST_F(Launch, comingToTheFrontChangesNothing) {
  launch();
  const std::size_t pending = platform.time.pending();
  platform.log.clear();
  app->applicationDidBecomeActive();
  EXPECT_EQ(platform.log.calls(), Names{});
  EXPECT_EQ(platform.time.pending(), pending);
}

}  // namespace
}  // namespace quenlio
