#include "core/app/AppDelegate.h"

#include <utility>

#include "core/identity/AppIdentity.h"
#include "core/identity/LegacyIdentifiers.h"
#include "core/platform/Application.h"
#include "core/platform/FileManager.h"
#include "core/platform/ProcessInfo.h"
#include "core/settings/ScreenshotThumbnailPreference.h"

namespace quenlio {
namespace {

using namespace std::chrono_literals;

constexpr Seconds kMaintenanceInterval = 30s;
constexpr Seconds kFolderPollInterval = 5s;
constexpr Seconds kFolderPollIntervalInRun = 1s;

UserDefaults& defaultsOf(const QuenlioReleaseTestConfiguration& configuration, UserDefaultsSuites& suites) {
  UserDefaults* own = configuration.userDefaults(suites);
  return own != nullptr ? *own : suites.standardUserDefaults();
}

std::string joined(const std::vector<std::string>& arguments) {
  std::string text;
  for (const std::string& argument : arguments) {
    text.append(&argument == &arguments.front() ? "" : " ").append(argument);
  }
  return text;
}

}  // namespace

// The callbacks given to members here hold the root itself: each holder is one of its own members and goes with it.
AppDelegate::AppDelegate(const Platform& platform, const AppServices& services,
                         const QuenlioReleaseTestConfiguration& configuration)
    : platform_(platform),
      services_(services),
      boundConfiguration_(configuration),
      boundAnalytics_(services.analytics),
      boundEditors_(services.editors),
      configuration_(configuration),
      releaseTestDiagnostics_(configuration, platform.scheduler, platform.clock, platform.files, platform.contents),
      defaults_(defaultsOf(configuration, platform.defaults)),
      paths_(configuration, platform.files, platform.directories),
      settings_({.defaults = defaults_,
                 .previousDefaults = platform.defaults.initWithSuiteName(LegacyIdentifiers::previousDefaultsSuiteName),
                 .bundle = platform.bundle,
                 .loginItem = platform.loginItem,
                 .openPanel = platform.openPanel,
                 .bookmarks = platform.bookmarks,
                 .log = platform.log}),
      locations_({.bookmarks = platform.bookmarks,
                  .preferences = platform.preferences,
                  .files = platform.files,
                  .directories = platform.directories,
                  .log = platform.log}),
      onboardingPermissionService_(platform.files, platform.directories, platform.screenCapture),
      report_({.diagnostics = releaseTestDiagnostics_,
               .bundle = platform.bundle,
               .defaults = defaults_,
               .onboarding = onboarding_,
               .permissions = onboardingPermissionService_,
               .captureTrigger = captureTrigger_,
               .store = [this]() -> ScreenshotStore& { return store(); }}),
      arrival_({.scheduler = platform.scheduler,
                .diagnostics = releaseTestDiagnostics_,
                .analytics = services.analytics,
                .defaults = defaults_,
                .onboarding = onboarding_,
                .ingest = [this](const FileURL& url,
                                 std::optional<DisplayID> display) { store().ingestScreenshot(url, display); },
                .showIsland = [this](std::optional<DisplayID> display) { overlayController().show(display); },
                .syncReleaseTestState = [this] { report_.syncReleaseTestState(std::nullopt); }}),
      requestChannel_({.configuration = configuration,
                       .diagnostics = releaseTestDiagnostics_,
                       .scheduler = platform.scheduler,
                       .files = platform.files,
                       .contents = platform.contents,
                       .process = platform.process,
                       .notifications = platform.notifications,
                       .ingest = [this](const FileURL& url) { store().ingestScreenshot(url, std::nullopt); },
                       .handleNewScreenshot = [this](const FileURL& url) { handleNewScreenshot(url, std::nullopt); },
                       .checkForUpdates = [this] { checkForUpdates(); }}),
      editorEntry_({.files = platform.files,
                    .directories = platform.directories,
                    .openPanel = platform.openPanel,
                    .scheduler = platform.scheduler,
                    .editors = services.editors,
                    .diagnostics = releaseTestDiagnostics_,
                    .store = [this]() -> ScreenshotStore& { return store(); }}),
      islandHotKey_(platform.hotKeys, platform.log) {}

AppDelegate::~AppDelegate() = default;

ScreenshotStore& AppDelegate::store() {
  if (!store_) {
    store_ = std::make_unique<ScreenshotStore>(ScreenshotStore::Dependencies{
        .settings = settings_,
        .diagnostics = releaseTestDiagnostics_,
        .paths = paths_,
        .files = platform_.files,
        .contents = platform_.contents,
        .clock = platform_.clock,
        .scheduler = platform_.scheduler,
        .thumbnails = platform_.thumbnails,
        .log = platform_.log,
    });
  }
  return *store_;
}

IslandOverlayController& AppDelegate::overlayController() {
  if (!overlayController_) {
    overlayController_ = std::make_unique<IslandOverlayController>(IslandOverlayController::Dependencies{
        .settings = settings_,
        .store = store(),
        .shell = services_.islandShell,
        .screens = platform_.screens,
        .scheduler = platform_.scheduler,
        .clock = platform_.clock,
        .application = platform_.application,
        .appearance = platform_.appearance,
        .eventMonitors = platform_.eventMonitors,
        .files = platform_.files,
        .locations = locations_,
        .onRequestNewScreenshot = weak_.bind([](AppDelegate& self) { self.captureTrigger_.trigger(); }),
        .onRequestFolderAccess = weak_.bind([](AppDelegate& self) { self.requestFolderAccess(); }),
    });
  }
  return *overlayController_;
}

UpdaterController& AppDelegate::updaterController() {
  if (!updaterController_) {
    updaterController_ = services_.makeUpdater();
  }
  return *updaterController_;
}

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

StatusBarCallbacks AppDelegate::statusBarCallbacks() {
  return {
      .onTriggerScreenshot = weak_.bind([](AppDelegate& self) { self.captureTrigger_.trigger(); }),
      .onOpenIslandTool = weak_.bind([](AppDelegate& self) { self.openIslandToolFromMenu(); }),
      .onOpenEditor =
          weak_.bind([](AppDelegate& self, const std::optional<FileURL>& url) { self.openEditorFromMenu(url); }),
      .onRefreshLocation = weak_.bind([](AppDelegate& self) {
        if (self.watcher_) {
          self.watcher_->restartWatcher(true);
        }
      }),
      .onCheckUpdates = weak_.bind([](AppDelegate& self) { self.checkForUpdates(); }),
      .onShowOnboarding = weak_.bind([](AppDelegate& self) { self.showOnboarding(true); }),
      .onStatusItemVisibilityChanged =
          weak_.bind([](AppDelegate& self, bool visible) { self.report_.statusItemVisibilityChanged(visible); }),
      .onQuit = weak_.bind([](AppDelegate& self) { self.platform_.application.terminate(); }),
  };
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
  islandHotKey_.registerIslandOpenHotKey(
      [toggle = weak_.bind([](AppDelegate& self) { self.openIslandToolFromShortcut(); }),
       &scheduler = platform_.scheduler]() -> OSStatus {
        scheduler.post(toggle);
        return noErr;
      });
  requestChannel_.registerReleaseTestNotificationsIfNeeded();
  requestChannel_.startReleaseTestRequestPollingIfNeeded();
  showOnboarding(false);
  report_.syncReleaseTestState(std::nullopt);
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

void AppDelegate::handleNewScreenshot(const FileURL& url, std::optional<DisplayID> displayID) {
  arrival_.handleNewScreenshot(url, displayID);
}

void AppDelegate::showOnboarding(bool force) {
  onboarding_.showOnboarding(force);
}

std::optional<DisplayID> AppDelegate::displayForIslandTool() {
  const ScreenshotItem* selected = store().selectedItem();
  return selected != nullptr && selected->sourceDisplayID ? selected->sourceDisplayID
                                                          : ScreenUtilities::activeDisplayID(platform_.screens);
}

void AppDelegate::openIslandToolFromMenu() {
  overlayController().show(displayForIslandTool());
}

void AppDelegate::openIslandToolFromShortcut() {
  const auto display = displayForIslandTool();
  // Without an island there is nothing to hide, and the first use of it brings it up by itself.
  const bool isUp = overlayController_ != nullptr && overlayController_->panel().isVisible();
  if (isUp) {
    overlayController().hide({.animated = true, .duration = 0.12s, .shouldSlide = true});
  } else {
    overlayController().show(display);
  }
}

void AppDelegate::openEditorFromMenu(const std::optional<FileURL>& url) {
  editorEntry_.openEditorFromMenu(url);
}

void AppDelegate::openEditor(const FileURL& url) {
  editorEntry_.openEditor(url);
}

std::optional<FileURL> AppDelegate::promptForEditorImage() {
  return editorEntry_.promptForEditorImage();
}

void AppDelegate::requestFolderAccess() {
  const FileURL folder = locations_.resolveFolder(settings_);
  // The attempt to list is what makes some systems ask the user; its outcome does not matter here.
  if (platform_.files.isDirectory(folder) && platform_.files.isReadableFileAtPath(folder)) {
    (void)platform_.files.contentsOfDirectoryAtURL(folder, HiddenFiles::skip);
  }
  onboardingPermissionService_.openFilesAndFoldersSettings();
  if (watcher_) {
    watcher_->restartWatcher(true);
  }
  report_.syncReleaseTestState(onboardingPermissionService_.probe());
}

void AppDelegate::checkForUpdates() {
  UpdaterController& updater = updaterController();
  releaseTestDiagnostics_.record("sparkle_update_check_requested");
  services_.analytics.track(AnalyticsEventName::updateCheckRequested, {});
  updater.checkForUpdates();
}

}  // namespace quenlio
