#include "core/app/ScreenshotArrival.h"

#include "core/diagnostics/QuenlioReleaseTestDiagnostics.h"
#include "core/onboarding/OnboardingSession.h"
#include "core/platform/Scheduler.h"
#include "core/platform/UserDefaults.h"
#include "core/telemetry/AnalyticsTracker.h"

namespace quenlio {

void ScreenshotArrival::handleNewScreenshot(const FileURL& url, std::optional<DisplayID> displayID) {
  dependencies_.scheduler.post(weak_.bind([url, displayID](ScreenshotArrival& self) { self.arrive(url, displayID); }));
}

void ScreenshotArrival::arrive(const FileURL& url, std::optional<DisplayID> displayID) {
  const std::string path = url.standardized().path();
  if (!inFlightScreenshotPaths_.insert(path).second) {
    dependencies_.diagnostics.record("screenshot_duplicate_ignored", {{"path", path}});
    return;
  }
  if (isLiveOnboardingCapture()) {
    dependencies_.onboarding.onboardingScreenshotRecoveryResultName = "notNeeded";
  }
  // The library first: the island must find the screenshot there.
  dependencies_.ingest(url, displayID);
  dependencies_.showIsland(displayID);
  tellOnboarding(url);
  trackFirstScreenshotIfNeeded(url.path());
  dependencies_.diagnostics.record("screenshot_detected", {{"path", url.path()}});
  dependencies_.syncReleaseTestState();
  inFlightScreenshotPaths_.erase(path);
}

bool ScreenshotArrival::isLiveOnboardingCapture() const {
  const OnboardingSession& onboarding = dependencies_.onboarding;
  return onboarding.onboardingController != nullptr && onboarding.onboardingAwaitingLiveCapture &&
         onboarding.onboardingState == OnboardingProgressState::pending;
}

void ScreenshotArrival::tellOnboarding(const FileURL& url) {
  OnboardingSession& onboarding = dependencies_.onboarding;
  if (onboarding.onboardingController == nullptr) {
    return;
  }
  if (onboarding.onboardingAwaitingLiveCapture) {
    onboarding.onboardingAwaitingLiveCapture = false;
    onboarding.onboardingCaptureTimeoutTask.cancel();
  }
  // A copy: the subscriber may end its own subscription.
  if (const auto subscriber = onboarding.onboardingLiveEventSubscriber) {
    subscriber(CaptureDetected{url});
  }
}

void ScreenshotArrival::trackFirstScreenshotIfNeeded(const std::string& path) {
  if (dependencies_.defaults.boolForKey(firstScreenshotTrackedKey)) {
    return;
  }
  dependencies_.defaults.setObject(firstScreenshotTrackedKey, true);
  dependencies_.analytics.track(AnalyticsEventName::firstScreenshotTaken, {{"path", path}});
}

}  // namespace quenlio
