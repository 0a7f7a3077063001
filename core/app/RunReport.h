// Gathers what the diagnostics state tells of the application. Main thread; owned by the composition root.
#pragma once

#include <optional>
#include <string>

namespace quenlio {

class CaptureTrigger;
class MainBundle;
class OnboardingPermissionService;
class QuenlioReleaseTestDiagnostics;
class ScreenshotStore;
class UserDefaults;
struct OnboardingPermissionState;
struct OnboardingSession;
struct QuenlioReleaseTestState;

class RunReport {
 public:
  struct Dependencies {
    QuenlioReleaseTestDiagnostics& diagnostics;
    const MainBundle& bundle;
    const UserDefaults& defaults;
    const OnboardingSession& onboarding;
    const OnboardingPermissionService& permissions;
    const CaptureTrigger& captureTrigger;
  };

  explicit RunReport(const Dependencies& dependencies) : dependencies_(dependencies) {}

  // The whole state. Without a permission state the permissions are probed, if anybody listens.
  void syncReleaseTestState(const ScreenshotStore& store,
                            const std::optional<OnboardingPermissionState>& permissionState);
  // The fields of the first run alone.
  void syncFirstRunDiagnostics();

  // Stores the value and reports it, when it differs from the one before.
  void statusItemVisibilityChanged(bool visible);

 private:
  void fillFirstRun(QuenlioReleaseTestState& state) const;

  Dependencies dependencies_;
  bool isInstallPromptVisible_ = false;  // there is no install prompt yet
  bool isStatusItemVisible_ = false;
};

}  // namespace quenlio
