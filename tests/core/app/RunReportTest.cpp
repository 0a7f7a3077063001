// What the diagnostics state tells of the application, gathered by itself.
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
