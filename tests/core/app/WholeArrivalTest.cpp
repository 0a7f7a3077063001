// A new screenshot with the whole application behind it: the library, the island, onboarding and the count of the
// first.
#include "core/app/ScreenshotArrival.h"

#include "tests/core/app/AppTest.h"

namespace quenlio {
namespace {

class FirstScreenshot : public AppTest {
 protected:
  [[nodiscard]] std::ptrdiff_t sent() const {
    return platform.analytics.count(AnalyticsEventName::firstScreenshotTaken);
  }
};

TEST_F(FirstScreenshot, isCountedOncePerInstallation) {
  launch();
  platform.files.write("/shots/a.png");
  arrive("/shots/a.png");
  EXPECT_EQ(sent(), 1);
  EXPECT_EQ(platform.analytics.events.back().second, (std::map<std::string, std::string>{{"path", "/shots/a.png"}}));
  EXPECT_TRUE(platform.defaults.standardUserDefaults().boolForKey("analytics.firstScreenshotTracked"));
  arrive("/shots/a.png");
  EXPECT_EQ(sent(), 1);
  app.reset();
  launch();
  arrive("/shots/a.png");
  EXPECT_EQ(sent(), 1);
}

// Analytics that looks at the defaults at the moment of a send.
class LookingAnalytics final : public AnalyticsTracker {
 public:
  explicit LookingAnalytics(UserDefaults& defaults) : defaults_(defaults) {}
  void track(AnalyticsEventName, const std::map<std::string, std::string>&) override {
    wasMarked.push_back(defaults_.boolForKey(ScreenshotArrival::firstScreenshotTrackedKey));
  }
  std::vector<bool> wasMarked;

 private:
  UserDefaults& defaults_;
};

TEST_F(FirstScreenshot, isMarkedAsCountedBeforeItIsSent) {
  UserDefaults& defaults = platform.defaults.standardUserDefaults();
  LookingAnalytics analytics(defaults);
  QuenlioReleaseTestDiagnostics diagnostics(platform.configuration, platform.time, platform.time, platform.files,
                                            platform.files);
  OnboardingSession onboarding;
  ScreenshotArrival arrival({.scheduler = platform.time,
                             .diagnostics = diagnostics,
                             .analytics = analytics,
                             .defaults = defaults,
                             .onboarding = onboarding,
                             .ingest = [](const FileURL&, std::optional<DisplayID>) {},
                             .showIsland = [](std::optional<DisplayID>) {},
                             .syncReleaseTestState = [] {}});
  arrival.arrive(FileURL("/shots/a.png"), std::nullopt);
  EXPECT_EQ(analytics.wasMarked, std::vector{true});
}

// The arrival with everything behind it.
class WholeArrival : public AppTest {
 protected:
  void SetUp() override {
    launch();
    platform.files.write("/shots/a.png");
  }
};

TEST_F(WholeArrival, theReportTellsOfTheScreenshot) {
  arrive("/shots/a.png", 1);
  const auto state = platform.state();
  EXPECT_EQ(state.screenshotCount, 1);
  EXPECT_EQ(state.latestScreenshotPath, "/shots/a.png");
  EXPECT_EQ(state.selectedScreenshotPath, "/shots/a.png");
  EXPECT_EQ(app->store().items.get().front().sourceDisplayID, 1U);
}

TEST_F(WholeArrival, theIslandComesUpOnTheDisplayOfTheScreenshot) {
  platform.screens.list.push_back({{{1280, 0}, {1000, 600}}, {{1280, 0}, {1000, 580}}, 2});
  arrive("/shots/a.png", 2);
  EXPECT_EQ(app->overlayController().lastPresentedDisplayID(), 2U);
  // Without a display the island chooses for itself.
  platform.files.write("/shots/b.png");
  arrive("/shots/b.png");
  EXPECT_TRUE(isIslandUp());
  EXPECT_EQ(app->overlayController().lastPresentedDisplayID(), 1U);
}

TEST_F(WholeArrival, theSameFileTwiceIsOneItemAndTwoDetections) {
  arrive("/shots/a.png");
  arrive("/shots/a.png");
  EXPECT_EQ(listed(), Names{"/shots/a.png"});
  EXPECT_EQ(platform.eventCount("screenshot_detected"), 2);
}

TEST_F(WholeArrival, theIslandComesUpForEveryArrivalAlsoAfterItWasClosedAndForAFileThatHasGone) {
  arrive("/shots/a.png");
  for (const char* path : {"/shots/a.png", "/shots/gone.png"}) {
    platform.islandShell.view->onClose();
    platform.time.advanceBy(200ms);
    ASSERT_FALSE(isIslandUp());
    arrive(path);
    EXPECT_TRUE(isIslandUp()) << path;
  }
  EXPECT_EQ(listed(), Names{"/shots/a.png"});
  EXPECT_EQ(platform.eventCount("screenshot_detected"), 3);
}

TEST_F(WholeArrival, aDisabledIslandStaysOutAndTheLibraryGrowsAllTheSame) {
  app->settings().islandEnabled.set(false);
  arrive("/shots/a.png");
  EXPECT_FALSE(isIslandUp());
  EXPECT_EQ(listed(), Names{"/shots/a.png"});
}

TEST_F(WholeArrival, onboardingHearsOfItWhenTheIslandIsUpAndTheReportNamesTheResult) {
  bool wasUp = false;
  OnboardingSession& onboarding = app->onboarding();
  onboarding.onboardingController = std::make_unique<OnboardingWindow>();
  onboarding.onboardingAwaitingLiveCapture = true;
  onboarding.onboardingLiveEventSubscriber = [&](const OnboardingLiveEvent& event) {
    wasUp = isIslandUp() && listed() == Names{std::get<CaptureDetected>(event).url.path()};
  };
  arrive("/shots/a.png");
  EXPECT_TRUE(wasUp);
  EXPECT_EQ(platform.state().onboardingScreenshotRecoveryResult, "notNeeded");
  EXPECT_TRUE(platform.state().onboardingVisible);
}

TEST_F(WholeArrival, aScreenshotCarriesTheDisplayThatIsActiveWhenItIsFound) {
  platform.screens.list.push_back({{{1280, 0}, {1000, 600}}, {{1280, 0}, {1000, 580}}, 2});
  capture();
  platform.screens.pointer = {1300, 500};
  platform.time.advanceBy(60ms);
  ASSERT_EQ(listed().size(), 1U);
  EXPECT_EQ(app->store().items.get().front().sourceDisplayID, 2U);
}

}  // namespace
}  // namespace quenlio
