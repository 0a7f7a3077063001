// What the diagnostics state tells of the application, gathered by itself.
#include <functional>
#include <tuple>

#include "core/app/CaptureTrigger.h"
#include "core/app/RunReport.h"
#include "core/onboarding/OnboardingSession.h"
#include "core/permissions/OnboardingPermissionService.h"

#include "tests/core/library/LibraryTest.h"

namespace quenlio {
namespace {

class RunReportTest : public LibraryTest {
 protected:
  void SetUp() override {
    platform.files.makeFolder("/home/user/Desktop");
    platform.screenCapture.isGranted = true;
    open();
    report.emplace(RunReport::Dependencies{.diagnostics = *diagnostics,
                                           .bundle = platform.bundle,
                                           .defaults = platform.defaults.standardUserDefaults(),
                                           .onboarding = onboarding,
                                           .permissions = permissions,
                                           .captureTrigger = trigger});
  }
  [[nodiscard]] QuenlioReleaseTestPermissionSnapshot reported() const { return platform.state().permissionState; }

  OnboardingSession onboarding;
  OnboardingPermissionService permissions{platform.files, platform.directories, platform.screenCapture};
  CaptureTrigger trigger;
  std::optional<RunReport> report;
};

TEST_F(RunReportTest, tellsTheGivenPermissionsAndNotThePresentOnes) {
  for (const bool isGranted : {false, true}) {
    const OnboardingPermissionState given{
        .screenRecordingGranted = isGranted, .desktopFolderURL = {}, .desktopFolderReadable = !isGranted};
    report->syncReleaseTestState(*store, given);
    EXPECT_EQ(reported(), (QuenlioReleaseTestPermissionSnapshot{isGranted, !isGranted}));
  }
}

TEST_F(RunReportTest, probesThePermissionsWhereNoneAreGiven) {
  report->syncReleaseTestState(*store, std::nullopt);
  EXPECT_EQ(reported(), (QuenlioReleaseTestPermissionSnapshot{true, true}));
  platform.screenCapture.isGranted = false;
  platform.files.setUnlistable("/home/user/Desktop", true);
  report->syncReleaseTestState(*store, std::nullopt);
  EXPECT_EQ(reported(), (QuenlioReleaseTestPermissionSnapshot{false, false}));
}

TEST_F(RunReportTest, bothReportsTellOfTheFirstRunAndOfTheThumbnailThatTheUserDoesNotWant) {
  const auto told = [this] {
    const auto state = platform.state();
    return std::tuple(state.onboardingState, state.onboardingCurrentStep, state.firstRunRecoveryApplied,
                      state.firstRunRecoveryForcedPending, state.firstRunRecoveryAction,
                      state.floatingThumbnailDisabledRequested, state.installPromptVisible);
  };
  const auto nothing = std::tuple(std::optional<std::string>("pending"), std::optional<std::string>(), false, false,
                                  std::optional<std::string>(), false, false);
  const auto all = std::tuple(std::optional<std::string>("completed"), std::optional<std::string>("welcome"), true,
                              true, std::optional<std::string>("resume_pending_onboarding"), true, false);
  for (const auto& tell : {std::function<void()>([this] { report->syncFirstRunDiagnostics(); }),
                           std::function<void()>([this] { report->syncReleaseTestState(*store, std::nullopt); })}) {
    onboarding = {};
    platform.defaults.standardUserDefaults().removeObjectForKey("settings.disableFloatingThumbnail.requested");
    tell();
    EXPECT_EQ(told(), nothing);
    onboarding.onboardingState = OnboardingProgressState::completed;
    onboarding.onboardingCurrentStep = "welcome";
    onboarding.firstRunRecoveryApplied = true;
    onboarding.firstRunRecoveryForcedPending = true;
    onboarding.firstRunRecoveryActionName = "resume_pending_onboarding";
    platform.defaults.standardUserDefaults().setObject("settings.disableFloatingThumbnail.requested", true);
    tell();
    EXPECT_EQ(told(), all);
  }
}

TEST_F(RunReportTest, theWholeReportTellsWhatTheApplicationAloneKnows) {
  platform.bundle.info["CFBundleShortVersionString"] = "7.8.9";
  onboarding.onboardingController = std::make_unique<FloatingThumbnailOnboardingController>();
  onboarding.onboardingScreenshotRecoveryResultName = "notNeeded";
  report->statusItemVisibilityChanged(true);
  diagnostics->update([](QuenlioReleaseTestState& state) { state = {}; });
  report->syncReleaseTestState(*store, std::nullopt);
  EXPECT_EQ(platform.state().appVersion, "7.8.9");
  EXPECT_TRUE(platform.state().onboardingVisible);
  EXPECT_EQ(platform.state().onboardingScreenshotRecoveryResult, "notNeeded");
  EXPECT_TRUE(platform.state().statusItemVisible);
}

TEST_F(RunReportTest, thePartOfTheFirstRunLeavesTheRestAsItStands) {
  add("a.png");
  report->syncReleaseTestState(*store, std::nullopt);
  const QuenlioReleaseTestState before = platform.state();
  platform.screenCapture.isGranted = false;
  onboarding.onboardingState = OnboardingProgressState::completed;
  onboarding.onboardingCurrentStep = "welcome";
  report->syncFirstRunDiagnostics();
  QuenlioReleaseTestState expected = before;
  expected.onboardingState = "completed";
  expected.onboardingCurrentStep = "welcome";
  EXPECT_EQ(platform.state(), expected);
}

}  // namespace
}  // namespace quenlio
