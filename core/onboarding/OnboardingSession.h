// What is known of the first run and of the onboarding window while the program runs. Main thread; owned by the
// composition root.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "core/base/FileURL.h"
#include "core/onboarding/FirstRunExperience.h"
#include "core/platform/Scheduler.h"

namespace quenlio {

// The onboarding window while it is up.
class FloatingThumbnailOnboardingController {
 public:
  virtual ~FloatingThumbnailOnboardingController() = default;
};

struct CaptureDetected {
  FileURL url;
};
struct ScreenRecordingChanged {
  bool isGranted;
};
struct DesktopFolderAccessChanged {
  bool isReadable;
};
struct CaptureTimeout {};

// What the onboarding window hears of while it is up. Only captures are told yet.
using OnboardingLiveEvent =
    std::variant<CaptureDetected, ScreenRecordingChanged, DesktopFolderAccessChanged, CaptureTimeout>;

struct OnboardingSession {
  OnboardingProgressState onboardingState = OnboardingProgressState::pending;
  std::unique_ptr<FloatingThumbnailOnboardingController> onboardingController;
  std::function<void(const OnboardingLiveEvent&)> onboardingLiveEventSubscriber;
  bool onboardingAwaitingLiveCapture = false;
  ScheduledTask onboardingCaptureTimeoutTask;
  std::optional<std::string> onboardingCurrentStep;
  std::string onboardingScreenshotRecoveryResultName = "notAttempted";
  bool firstRunRecoveryApplied = false;
  bool firstRunRecoveryForcedPending = false;
  std::optional<std::string> firstRunRecoveryActionName;

  // Puts a half-finished first run back on its feet. Does nothing yet.
  void repairBrokenFirstRunStateIfNeeded() {}
  // Shows the onboarding window, always when forced and else while the state is pending. Does nothing yet.
  void showOnboarding(bool) {}
  // Ends what onboarding waits for and watches. Nothing of it is started yet, so there is nothing to end.
  void clearOnboardingLiveState() {}
};

}  // namespace quenlio
