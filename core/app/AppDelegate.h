// The composition root: it owns every long-lived object but the services it is given, builds them in a fixed order,
// wires them to one another, runs the launch and takes everything down at the end. What it is told to do beyond that
// stands in its members. Main thread.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "core/app/CaptureTrigger.h"
#include "core/app/EditorEntry.h"
#include "core/app/IslandHotKey.h"
#include "core/app/RequestChannel.h"
#include "core/app/RunReport.h"
#include "core/app/ScreenshotArrival.h"
#include "core/base/SharedBinding.h"
#include "core/base/WeakOwner.h"
#include "core/detection/ScreenshotLocationResolver.h"
#include "core/detection/ScreenshotWatcher.h"
#include "core/diagnostics/QuenlioReleaseTestDiagnostics.h"
#include "core/identity/AppPaths.h"
#include "core/island/IslandOverlayController.h"
#include "core/library/DragDropProvider.h"
#include "core/library/ItemHandOut.h"
#include "core/library/QuickLookPreviewController.h"
#include "core/library/ScreenshotStore.h"
#include "core/onboarding/OnboardingSession.h"
#include "core/permissions/OnboardingPermissionService.h"
#include "core/platform/Platform.h"
#include "core/settings/AppSettings.h"
#include "core/statusbar/StatusBarController.h"
#include "core/telemetry/AnalyticsTracker.h"
#include "core/telemetry/UpdaterController.h"

namespace quenlio {

class ScreenshotEditorManager;

// What the application is made of beside the platform. The references outlive it.
struct AppServices {
  IslandShell& islandShell;
  AnalyticsTracker& analytics;
  ScreenshotEditorManager& editors;
  std::function<std::unique_ptr<UpdaterController>()> makeUpdater;
};

class AppDelegate {
 public:
  AppDelegate(const Platform& platform, const AppServices& services,
              const QuenlioReleaseTestConfiguration& configuration);
  AppDelegate(const AppDelegate&) = delete;
  AppDelegate& operator=(const AppDelegate&) = delete;
  // Nothing of it waits or watches afterwards, and what is posted already does nothing.
  ~AppDelegate();

  void applicationDidFinishLaunching();
  void applicationDidBecomeActive() {}
  void applicationWillTerminate();

  // The second half of the launch; runs once however often it is called.
  void finishInitialLaunch();
  // Makes the status item, once.
  void bootstrapStatusBarIfNeeded();

  void handleNewScreenshot(const FileURL& url, std::optional<DisplayID> displayID);
  void showOnboarding(bool force);
  // Brings the island up on the display of the selected screenshot, or the one under the pointer.
  void openIslandToolFromMenu();
  // The same, but a second time hides it.
  void openIslandToolFromShortcut();
  void openEditorFromMenu(const std::optional<FileURL>& url);
  void openEditor(const FileURL& url);
  [[nodiscard]] std::optional<FileURL> promptForEditorImage();

  // Each is made on first use.
  [[nodiscard]] ScreenshotStore& store();
  [[nodiscard]] IslandOverlayController& overlayController();
  [[nodiscard]] UpdaterController& updaterController();

  [[nodiscard]] AppSettings& settings() { return settings_; }
  [[nodiscard]] OnboardingSession& onboarding() { return onboarding_; }
  [[nodiscard]] const StatusBarController* statusBarController() const { return statusBarController_.get(); }

 private:
  // Reports the whole state of the run. Without a permission state the permissions are probed.
  void syncReleaseTestState(const std::optional<OnboardingPermissionState>& permissionState = std::nullopt);
  [[nodiscard]] std::optional<FileURL> newestScreenshot();
  [[nodiscard]] StatusBarCallbacks statusBarCallbacks();
  [[nodiscard]] std::optional<DisplayID> displayForIslandTool();
  // Offers to move the bundle to the Applications folder; true when the program starts again from there. Never offers
  // yet.
  [[nodiscard]] bool handleApplicationsInstallPromptIfNeeded() { return false; }
  void decideOnboardingState();
  void requestFolderAccess();
  // Probes the permissions and reports them; the onboarding window is to hear of those that have changed, or of all
  // when forced. No event goes out yet.
  void publishCurrentOnboardingPermissionState(bool force);
  void checkForUpdates();
  void startWatcher();
  void startMaintenanceTimer();

  WeakOwner<AppDelegate> weak_{this};  // first, since the members are given their callbacks as they are made
  Platform platform_;
  AppServices services_;
  SharedBinding<const QuenlioReleaseTestConfiguration> boundConfiguration_;
  SharedBinding<AnalyticsTracker> boundAnalytics_;
  SharedBinding<ScreenshotEditorManager> boundEditors_;
  const QuenlioReleaseTestConfiguration& configuration_;
  QuenlioReleaseTestDiagnostics releaseTestDiagnostics_;
  SharedBinding<QuenlioReleaseTestDiagnostics> boundDiagnostics_{releaseTestDiagnostics_};
  UserDefaults& defaults_;
  AppPaths paths_;
  AppSettings settings_;  // made at once and not on first use: the binding needs it, and so does every launch
  SharedBinding<AppSettings> boundSettings_{settings_};
  ScreenshotLocationResolver locations_;
  OnboardingPermissionService onboardingPermissionService_;
  OnboardingSession onboarding_;
  CaptureTrigger captureTrigger_;
  RunReport report_;
  ScreenshotArrival arrival_;
  RequestChannel requestChannel_;
  EditorEntry editorEntry_;
  IslandHotKey islandHotKey_;
  ItemHandOut handOut_;
  DragDropProvider dragDrop_;
  QuickLookPreviewController quickLook_;
  SharedBinding<QuickLookPreviewController> boundQuickLook_{quickLook_};
  std::unique_ptr<ScreenshotStore> store_;
  std::unique_ptr<IslandOverlayController> overlayController_;
  std::unique_ptr<UpdaterController> updaterController_;
  std::unique_ptr<StatusBarController> statusBarController_;
  std::unique_ptr<ScreenshotWatcher> watcher_;
  ScheduledTask maintenanceTimer_;
  bool hasCompletedInitialLaunch_ = false;
};

}  // namespace quenlio
