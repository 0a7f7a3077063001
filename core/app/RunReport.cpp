#include "core/app/RunReport.h"

#include "core/app/CaptureTrigger.h"
#include "core/diagnostics/QuenlioReleaseTestDiagnostics.h"
#include "core/identity/AppIdentity.h"
#include "core/library/ScreenshotStore.h"
#include "core/onboarding/OnboardingSession.h"
#include "core/permissions/OnboardingPermissionService.h"
#include "core/platform/UserDefaults.h"
#include "core/settings/ScreenshotThumbnailPreference.h"

namespace quenlio {

void RunReport::syncReleaseTestState(const std::optional<OnboardingPermissionState>& permissionState) {
  // Made here at the latest: what making it takes is not to wait for the first screenshot.
  const ScreenshotStore& store = dependencies_.store();
  if (!dependencies_.diagnostics.isEnabled()) {
    return;  // spares the probe a listing of the Desktop
  }
  const OnboardingPermissionState permissions = permissionState ? *permissionState : dependencies_.permissions.probe();
  const auto& items = store.items.get();
  const ScreenshotItem* selected = store.selectedItem();
  dependencies_.diagnostics.update([&](QuenlioReleaseTestState& state) {
    fillFirstRun(state);
    state.appVersion = AppVersion::current(dependencies_.bundle);
    state.onboardingVisible = dependencies_.onboarding.onboardingController != nullptr;
    state.onboardingScreenshotRecoveryResult = dependencies_.onboarding.onboardingScreenshotRecoveryResultName;
    state.screenshotCount = static_cast<std::int64_t>(items.size());
    state.latestScreenshotPath = items.empty() ? std::nullopt : std::optional(items.front().fileURL.path());
    state.selectedScreenshotPath = selected != nullptr ? std::optional(selected->fileURL.path()) : std::nullopt;
    state.statusItemVisible = isStatusItemVisible_;
    state.lastInteractiveScreenshotTrigger = dependencies_.captureTrigger.lastInteractiveScreenshotTrigger();
    state.permissionState = {permissions.screenRecordingGranted, permissions.desktopFolderReadable};
  });
}

void RunReport::syncFirstRunDiagnostics() {
  dependencies_.diagnostics.update([&](QuenlioReleaseTestState& state) { fillFirstRun(state); });
}

void RunReport::fillFirstRun(QuenlioReleaseTestState& state) const {
  const OnboardingSession& onboarding = dependencies_.onboarding;
  state.onboardingState = rawValue(onboarding.onboardingState);
  state.onboardingCurrentStep = onboarding.onboardingCurrentStep;
  state.installPromptVisible = isInstallPromptVisible_;
  state.firstRunRecoveryApplied = onboarding.firstRunRecoveryApplied;
  state.firstRunRecoveryForcedPending = onboarding.firstRunRecoveryForcedPending;
  state.firstRunRecoveryAction = onboarding.firstRunRecoveryActionName;
  state.floatingThumbnailDisabledRequested =
      dependencies_.defaults.boolForKey(ScreenshotThumbnailPreference::requestedKey);
}

void RunReport::statusItemVisibilityChanged(bool visible) {
  if (visible == isStatusItemVisible_) {
    return;
  }
  isStatusItemVisible_ = visible;
  dependencies_.diagnostics.update([&](QuenlioReleaseTestState& state) { state.statusItemVisible = visible; });
}

}  // namespace quenlio
