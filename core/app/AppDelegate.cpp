#include "core/app/AppDelegate.h"

#include <utility>

#include "core/identity/LegacyIdentifiers.h"
#include "core/platform/Application.h"
#include "core/platform/FileManager.h"

namespace quenlio {
namespace {

using namespace std::chrono_literals;

UserDefaults& defaultsOf(const QuenlioReleaseTestConfiguration& configuration, UserDefaultsSuites& suites) {
  UserDefaults* own = configuration.userDefaults(suites);
  return own != nullptr ? *own : suites.standardUserDefaults();
}

}  // namespace

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
               .captureTrigger = captureTrigger_}),
      arrival_({.scheduler = platform.scheduler,
                .diagnostics = releaseTestDiagnostics_,
                .analytics = services.analytics,
                .defaults = defaults_,
                .onboarding = onboarding_,
                .ingest = weak_.bind([](AppDelegate& self, const FileURL& url, std::optional<DisplayID> display) {
                  self.store().ingestScreenshot(url, display);
                }),
                .showIsland = weak_.bind([](AppDelegate& self, std::optional<DisplayID> display) {
                  self.overlayController().show(display);
                }),
                .syncReleaseTestState = weak_.bind([](AppDelegate& self) { self.syncReleaseTestState(); })}),
      requestChannel_({.configuration = configuration,
                       .diagnostics = releaseTestDiagnostics_,
                       .scheduler = platform.scheduler,
                       .files = platform.files,
                       .contents = platform.contents,
                       .process = platform.process,
                       .notifications = platform.notifications,
                       .ingest = weak_.bind([](AppDelegate& self, const FileURL& url) {
                         self.store().ingestScreenshot(url, std::nullopt);
                       }),
                       .handleNewScreenshot = weak_.bind(
                           [](AppDelegate& self, const FileURL& url) { self.handleNewScreenshot(url, std::nullopt); }),
                       .checkForUpdates = weak_.bind([](AppDelegate& self) { self.checkForUpdates(); })}),
      editorEntry_({.files = platform.files,
                    .directories = platform.directories,
                    .openPanel = platform.openPanel,
                    .scheduler = platform.scheduler,
                    .editors = services.editors,
                    .diagnostics = releaseTestDiagnostics_,
                    .newestScreenshot = weak_.bindOr(std::optional<FileURL>(),
                                                     [](AppDelegate& self) { return self.newestScreenshot(); }),
                    .refreshEditedScreenshot = weak_.bind(
                        [](AppDelegate& self, const FileURL& url) { self.store().refreshEditedScreenshot(url); })}),
      islandHotKey_(platform.hotKeys, platform.log),
      handOut_({.images = platform.images,
                .pasteboard = platform.pasteboard,
                .picker = platform.sharingServicePicker,
                .workspace = platform.workspace,
                .windows = platform.windows,
                .screens = platform.screens}),
      dragDrop_({.files = platform.files,
                 .windows = platform.windows,
                 .screens = platform.screens,
                 .sessions = platform.draggingSessions,
                 .scheduler = platform.scheduler}),
      quickLook_(platform.files, platform.previewPanel) {}

AppDelegate::~AppDelegate() {
  weak_.letGo();
}

ScreenshotStore& AppDelegate::store() {
  if (!store_) {
    store_ = std::make_unique<ScreenshotStore>(ScreenshotStore::Dependencies{
        .settings = settings_,
        .diagnostics = releaseTestDiagnostics_,
        .analytics = services_.analytics,
        .paths = paths_,
        .files = platform_.files,
        .contents = platform_.contents,
        .clock = platform_.clock,
        .scheduler = platform_.scheduler,
        .thumbnails = platform_.thumbnails,
        .handOut = handOut_,
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
        .dragDrop = dragDrop_,
        .quickLook = quickLook_,
        .previewPanel = platform_.previewPanel,
        .editors = services_.editors,
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
  publishCurrentOnboardingPermissionState(true);
}

void AppDelegate::publishCurrentOnboardingPermissionState(bool) {
  syncReleaseTestState(onboardingPermissionService_.probe());
}

// The library is made here at the latest: what making it takes is not to wait for the first screenshot.
void AppDelegate::syncReleaseTestState(const std::optional<OnboardingPermissionState>& permissionState) {
  report_.syncReleaseTestState(store(), permissionState);
}

std::optional<FileURL> AppDelegate::newestScreenshot() {
  const auto& items = store().items.get();
  return items.empty() ? std::nullopt : std::optional(items.front().fileURL);
}

void AppDelegate::checkForUpdates() {
  UpdaterController& updater = updaterController();
  releaseTestDiagnostics_.record("sparkle_update_check_requested");
  services_.analytics.track(AnalyticsEventName::updateCheckRequested, {});
  updater.checkForUpdates();
}

}  // namespace quenlio
