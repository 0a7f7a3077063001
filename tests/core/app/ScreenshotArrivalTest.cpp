// What happens when a file has proved to be a new screenshot.
#include "core/app/ScreenshotArrival.h"

#include "tests/core/app/AppTest.h"

namespace quenlio {
namespace {

std::string text(std::optional<DisplayID> display) {
  return display ? std::to_string(*display) : "none";
}

// The arrival alone: what it calls is written into the call log.
class Arrival : public AppTest {
 protected:
  std::unique_ptr<ScreenshotArrival> makeArrival() {
    return std::make_unique<ScreenshotArrival>(ScreenshotArrival::Dependencies{
        .scheduler = platform.time,
        .diagnostics = diagnostics,
        .analytics = platform.analytics,
        .defaults = platform.defaults.standardUserDefaults(),
        .onboarding = onboarding,
        .ingest =
            [this](const FileURL& url, std::optional<DisplayID> display) {
              platform.log.add("ingest " + url.path() + " " + text(display));
              if (duringIngest) {
                std::exchange(duringIngest, nullptr)();
              }
            },
        .showIsland = [this](std::optional<DisplayID> display) { platform.log.add("show " + text(display)); },
        .syncReleaseTestState =
            [this] { platform.log.add("sync after " + std::to_string(platform.eventNames().size()) + " events"); },
    });
  }
  void openOnboarding(bool isAwaiting, OnboardingProgressState state) {
    onboarding.onboardingController = std::make_unique<OnboardingWindow>();
    onboarding.onboardingAwaitingLiveCapture = isAwaiting;
    onboarding.onboardingState = state;
    onboarding.onboardingLiveEventSubscriber = [this](const OnboardingLiveEvent& event) {
      platform.log.add("captureDetected " + std::get<CaptureDetected>(event).url.path());
    };
    onboarding.onboardingCaptureTimeoutTask = platform.time.after(45s, [this] { hasTimedOut = true; });
  }
  void arriveNow(const std::string& path, std::optional<DisplayID> display = std::nullopt) {
    arrival->arrive(FileURL(path), display);
  }
  void SetUp() override {
    platform.log.clear();
    // The first screenshot of an installation has tests of its own.
    platform.defaults.standardUserDefaults().setObject(ScreenshotArrival::firstScreenshotTrackedKey, true);
  }

  // The platform must have diagnostics switched on before these are made.
  QuenlioReleaseTestDiagnostics diagnostics{platform.configuration, platform.time, platform.time, platform.files,
                                            platform.files};
  OnboardingSession onboarding;
  std::function<void()> duringIngest;
  bool hasTimedOut = false;
  std::unique_ptr<ScreenshotArrival> arrival = makeArrival();
};

TEST_F(Arrival, theLibraryComesFirstThenTheIslandThenOnboardingThenAnalyticsThenTheReports) {
  platform.defaults.standardUserDefaults().removeObjectForKey(ScreenshotArrival::firstScreenshotTrackedKey);
  openOnboarding(true, OnboardingProgressState::pending);
  arriveNow("/shots/a.png", 7);
  EXPECT_EQ(calls(), (Names{"ingest /shots/a.png 7", "show 7", "captureDetected /shots/a.png", "track 5",
                            "sync after 1 events"}));
  EXPECT_EQ(platform.eventNames(), Names{"screenshot_detected"});
  EXPECT_EQ(eventValues("screenshot_detected", "path"), Names{"/shots/a.png"});
}

TEST_F(Arrival, theCallerIsNotKeptWaiting) {
  arrival->handleNewScreenshot(FileURL("/shots/a.png"), 7);
  EXPECT_EQ(calls(), Names{});
  platform.time.runReady();
  EXPECT_EQ(calls(), (Names{"ingest /shots/a.png 7", "show 7", "sync after 1 events"}));
}

TEST_F(Arrival, nothingHappensOnceTheApplicationIsGone) {
  arrival->handleNewScreenshot(FileURL("/shots/a.png"), 7);
  arrival.reset();
  platform.time.runReady();
  EXPECT_EQ(calls(), Names{});
  EXPECT_EQ(platform.eventNames(), Names{});
}

TEST_F(Arrival, aSecondOneOfTheSameFileDuringTheFirstIsNotedAndIgnored) {
  duringIngest = [this] { arriveNow("/shots/a.png"); };
  arriveNow("/shots/a.png");
  EXPECT_EQ(calls(), (Names{"ingest /shots/a.png none", "show none", "sync after 2 events"}));
  EXPECT_EQ(platform.eventNames(), (Names{"screenshot_duplicate_ignored", "screenshot_detected"}));
}

TEST_F(Arrival, twoSpellingsOfOnePathAreOneFileAndTheNoteNamesTheStandardOne) {
  duringIngest = [this] { arriveNow("/shots/sub/../a.png"); };
  arriveNow("/shots/./a.png");
  EXPECT_EQ(eventValues("screenshot_duplicate_ignored", "path"), Names{"/shots/a.png"});
  // Onward goes the path as it came.
  EXPECT_EQ(calls().front(), "ingest /shots/./a.png none");
  EXPECT_EQ(eventValues("screenshot_detected", "path"), Names{"/shots/./a.png"});
}

TEST_F(Arrival, anIgnoredOneDoesNotOpenTheWayForAThird) {
  duringIngest = [this] {
    arriveNow("/shots/a.png");
    arriveNow("/shots/a.png");
  };
  arriveNow("/shots/a.png");
  EXPECT_EQ(platform.eventCount("screenshot_duplicate_ignored"), 2);
  EXPECT_EQ(platform.eventCount("screenshot_detected"), 1);
}

TEST_F(Arrival, anotherFileDuringTheFirstIsNotHeldUp) {
  duringIngest = [this] { arriveNow("/shots/b.png"); };
  arriveNow("/shots/a.png");
  EXPECT_EQ(eventValues("screenshot_detected", "path"), (Names{"/shots/b.png", "/shots/a.png"}));
}

TEST_F(Arrival, aSecondOneOfTheSameFileAfterTheFirstTakesTheWholeWay) {
  arriveNow("/shots/a.png");
  arriveNow("/shots/a.png");
  EXPECT_EQ(calls(), (Names{"ingest /shots/a.png none", "show none", "sync after 1 events", "ingest /shots/a.png none",
                            "show none", "sync after 2 events"}));
  EXPECT_EQ(platform.eventCount("screenshot_duplicate_ignored"), 0);
}

TEST_F(Arrival, arrivalsAreTakenInTheOrderInWhichTheyReachTheMainThread) {
  for (const char* path : {"/shots/c.png", "/shots/a.png", "/shots/b.png"}) {
    arrival->handleNewScreenshot(FileURL(path), std::nullopt);
  }
  platform.time.runReady();
  EXPECT_EQ(eventValues("screenshot_detected", "path"), (Names{"/shots/c.png", "/shots/a.png", "/shots/b.png"}));
}

class LiveCapture : public Arrival {};

TEST_F(LiveCapture, theAwaitedOneEndsTheWaitAndItsTimeout) {
  openOnboarding(true, OnboardingProgressState::pending);
  arriveNow("/shots/a.png");
  EXPECT_FALSE(onboarding.onboardingAwaitingLiveCapture);
  EXPECT_EQ(platform.time.pending(), 0U);
  platform.time.advanceBy(60s);
  EXPECT_FALSE(hasTimedOut);
  EXPECT_EQ(onboarding.onboardingScreenshotRecoveryResultName, "notNeeded");
}

TEST_F(LiveCapture, oneOnAnotherStepIsStillDelivered) {
  openOnboarding(false, OnboardingProgressState::pending);
  arriveNow("/shots/a.png");
  EXPECT_EQ(platform.log.count("captureDetected /shots/a.png"), 1);
  EXPECT_FALSE(onboarding.onboardingAwaitingLiveCapture);
  EXPECT_EQ(onboarding.onboardingScreenshotRecoveryResultName, "notAttempted");
  platform.time.advanceBy(60s);
  EXPECT_TRUE(hasTimedOut);
}

TEST_F(LiveCapture, afterOnboardingWasCompletedItEndsTheWaitButLeavesTheResult) {
  openOnboarding(true, OnboardingProgressState::completed);
  arriveNow("/shots/a.png");
  EXPECT_FALSE(onboarding.onboardingAwaitingLiveCapture);
  EXPECT_EQ(platform.time.pending(), 0U);
  EXPECT_EQ(platform.log.count("captureDetected /shots/a.png"), 1);
  EXPECT_EQ(onboarding.onboardingScreenshotRecoveryResultName, "notAttempted");
}

TEST_F(LiveCapture, withoutTheWindowNobodyHearsOfItAndTheWaitStays) {
  openOnboarding(true, OnboardingProgressState::pending);
  onboarding.onboardingController.reset();
  arriveNow("/shots/a.png");
  EXPECT_EQ(platform.log.count("captureDetected /shots/a.png"), 0);
  EXPECT_TRUE(onboarding.onboardingAwaitingLiveCapture);
  EXPECT_EQ(platform.time.pending(), 1U);
  EXPECT_EQ(onboarding.onboardingScreenshotRecoveryResultName, "notAttempted");
}

TEST_F(LiveCapture, withoutASubscriberTheEventIsLostAndTheArrivalGoesOn) {
  openOnboarding(true, OnboardingProgressState::pending);
  onboarding.onboardingLiveEventSubscriber = nullptr;
  arriveNow("/shots/a.png");
  EXPECT_FALSE(onboarding.onboardingAwaitingLiveCapture);
  EXPECT_EQ(platform.eventCount("screenshot_detected"), 1);
}

TEST_F(LiveCapture, whetherItIsOneIsDecidedBeforeAnythingElseChanges) {
  openOnboarding(true, OnboardingProgressState::pending);
  duringIngest = [this] {
    EXPECT_EQ(onboarding.onboardingScreenshotRecoveryResultName, "notNeeded");
    onboarding.onboardingState = OnboardingProgressState::completed;
  };
  arriveNow("/shots/a.png");
  EXPECT_EQ(onboarding.onboardingScreenshotRecoveryResultName, "notNeeded");
}

TEST_F(LiveCapture, anIgnoredOneIsNotTold) {
  openOnboarding(true, OnboardingProgressState::pending);
  duringIngest = [this] { arriveNow("/shots/a.png"); };
  arriveNow("/shots/a.png");
  EXPECT_EQ(platform.log.count("captureDetected /shots/a.png"), 1);
}

}  // namespace
}  // namespace quenlio
