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

void RunReport::syncReleaseTestState(const ScreenshotStore& store,
                                     const std::optional<OnboardingPermissionState>& permissionState) {
  if (!dependencies_.diagnostics.isEnabled()) {
    return;  // spares the probe a listing of the Desktop
  }
  const OnboardingPermissionState permissions = permissionState ? *permissionState : dependencies_.permissions.probe();
  dependencies_.diagnostics.update([&](QuenlioReleaseTestState& state) {
    fillFirstRun(state);
    state.appVersion = AppVersion::current(dependencies_.bundle);
    state.onboardingVisible = dependencies_.onboarding.onboardingController != nullptr;
    state.onboardingScreenshotRecoveryResult = dependencies_.onboarding.onboardingScreenshotRecoveryResultName;
    store.fillReleaseTestState(state);
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
