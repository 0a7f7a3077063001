// The launch and the end of the application.
#include <utility>

#include "core/app/AppDelegate.h"
#include "core/identity/AppIdentity.h"
#include "core/platform/Application.h"
#include "core/platform/ProcessInfo.h"
#include "core/settings/ScreenshotThumbnailPreference.h"

namespace quenlio {
namespace {

using namespace std::chrono_literals;

constexpr Seconds kMaintenanceInterval = 30s;
constexpr Seconds kFolderPollInterval = 5s;
constexpr Seconds kFolderPollIntervalInRun = 1s;

std::string joined(const std::vector<std::string>& arguments) {
  std::string text;
  for (const std::string& argument : arguments) {
    text.append(&argument == &arguments.front() ? "" : " ").append(argument);
  }
  return text;
}

}  // namespace

void AppDelegate::applicationDidFinishLaunching() {
  platform_.application.setActivationPolicy(ActivationPolicy::accessory);
  const std::string version = AppVersion::current(platform_.bundle);
  releaseTestDiagnostics_.update([&](QuenlioReleaseTestState& state) {
    state.appVersion = version;
    state.launchedAt = platform_.clock.now();
  });
  releaseTestDiagnostics_.record("app_launched", {{"arguments", joined(platform_.process.arguments())}});
  services_.analytics.track(AnalyticsEventName::appLaunched, {{"appVersion", version}});
  onboarding_.repairBrokenFirstRunStateIfNeeded();
  decideOnboardingState();
  report_.syncFirstRunDiagnostics();
  bootstrapStatusBarIfNeeded();
  if (!handleApplicationsInstallPromptIfNeeded()) {
    finishInitialLaunch();
  }
}

void AppDelegate::decideOnboardingState() {
  const auto persisted = FirstRunExperience::persistedState(defaults_);
  onboarding_.onboardingState = FirstRunExperience::hasCompletedOnboarding(defaults_, persisted)
                                    ? OnboardingProgressState::completed
                                    : OnboardingProgressState::pending;
  defaults_.setObject(FirstRunExperience::progressStateKey, std::string(rawValue(onboarding_.onboardingState)));
}

void AppDelegate::bootstrapStatusBarIfNeeded() {
  if (statusBarController_) {
    return;
  }
  auto controller = std::make_unique<StatusBarController>(settings_, statusBarCallbacks());
  controller->setupStatusItem(0);
  controller->startStatusItemRefreshTimer();
  controller->setupActionPopover();
  controller->setupSettingsPopover();
  statusBarController_ = std::move(controller);
}

void AppDelegate::finishInitialLaunch() {
  if (std::exchange(hasCompletedInitialLaunch_, true)) {
    return;
  }
  ScreenshotThumbnailPreference::restoreSystemDefaultIfManaged(defaults_);
  ScreenshotThumbnailPreference::applyRequestedLaunchState(defaults_);
  report_.syncFirstRunDiagnostics();
  bootstrapStatusBarIfNeeded();
  requestChannel_.ingestSeededReleaseTestScreenshotsIfNeeded();
  startWatcher();
  requestChannel_.processReleaseTestLaunchArgumentsIfNeeded();
  startMaintenanceTimer();
  islandHotKey_.registerIslandOpenHotKey(weak_.bindOr(eventNotHandledErr, [](AppDelegate& self) {
    self.platform_.scheduler.post(self.weak_.bind([](AppDelegate& later) { later.openIslandToolFromShortcut(); }));
    return noErr;
  }));
  requestChannel_.registerReleaseTestNotificationsIfNeeded();
  requestChannel_.startReleaseTestRequestPollingIfNeeded();
  showOnboarding(false);
  syncReleaseTestState();
  requestChannel_.processPendingReleaseTestRequest();
}

void AppDelegate::startWatcher() {
  watcher_ = std::make_unique<ScreenshotWatcher>(
      ScreenshotWatcher::Dependencies{
          .settings = settings_,
          .locations = locations_,
          .scheduler = platform_.scheduler,
          .clock = platform_.clock,
          .files = platform_.files,
          .metadata = platform_.metadata,
          .eventStreams = platform_.eventStreams,
          .screens = platform_.screens,
          .log = platform_.log,
          .pollInterval = configuration_.isEnabled ? kFolderPollIntervalInRun : kFolderPollInterval,
      },
      [arrived = weak_.bind([](AppDelegate& self, const FileURL& url, std::optional<DisplayID> display) {
        self.handleNewScreenshot(url, display);
      }),
       &scheduler = platform_.scheduler](const FileURL& url, std::optional<DisplayID> display) {
        scheduler.post([arrived, url, display] { arrived(url, display); });
      });
  watcher_->restartWatcher(false);
  watcher_->startPollingForLocationChanges();
  watcher_->scanDirectoryForNewScreenshots();
}

void AppDelegate::startMaintenanceTimer() {
  maintenanceTimer_ =
      platform_.scheduler.every(kMaintenanceInterval, Seconds::zero(), weak_.bind([](AppDelegate& self) {
        self.platform_.scheduler.post(self.weak_.bind([](AppDelegate& later) { later.store().removeMissingFiles(); }));
      }));
}

void AppDelegate::applicationWillTerminate() {
  captureTrigger_.cancelPendingInteractiveScreenshotTrigger();
  ScreenshotThumbnailPreference::restoreSystemDefaultIfManaged(defaults_);
  if (watcher_) {
    watcher_->stop();
  }
  maintenanceTimer_.cancel();
  onboarding_.clearOnboardingLiveState();
  islandHotKey_.unregister();
  requestChannel_.unregisterReleaseTestNotifications();
  requestChannel_.stopReleaseTestRequestPolling();
  if (overlayController_) {
    overlayController_->endDelayedWork();
  }
}

}  // namespace quenlio
