// A whole platform of fakes on virtual time, and the application on it.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/app/AppDelegate.h"
#include "core/diagnostics/QuenlioReleaseTestConfiguration.h"
#include "core/editor/ScreenshotEditorManager.h"
#include "core/platform/Platform.h"

#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakeEventStreams.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeHandOut.h"
#include "tests/fakes/FakeIslandShell.h"
#include "tests/fakes/FakeSettingsStores.h"
#include "tests/harness/VirtualTime.h"

namespace quenlio {

class FakeAnalytics final : public AnalyticsTracker {
 public:
  explicit FakeAnalytics(CallLog& log) : log_(log) {}
  void track(AnalyticsEventName event, const std::map<std::string, std::string>& metadata) override {
    log_.add("track " + std::to_string(static_cast<int>(event)));
    events.emplace_back(event, metadata);
  }
  [[nodiscard]] std::ptrdiff_t count(AnalyticsEventName event) const {
    return std::ranges::count(events, event, [](const auto& sent) { return sent.first; });
  }
  std::vector<std::pair<AnalyticsEventName, std::map<std::string, std::string>>> events;

 private:
  CallLog& log_;
};

class FakeEditors final : public ScreenshotEditorManager {
 public:
  void open(const FileURL& fileURL, std::function<void(const FileURL&)> onSave) override {
    opened.emplace_back(fileURL, std::move(onSave));
  }
  std::vector<std::pair<FileURL, std::function<void(const FileURL&)>>> opened;
};

struct FakeUpdater final : UpdaterController {
  explicit FakeUpdater(CallLog& callLog) : log(callLog) {}
  void checkForUpdates() override { log.add("checkForUpdates"); }
  CallLog& log;
};

// The members are the fakes, to be arranged before and looked at after.
class TestPlatform {
 public:
  CallLog log;
  VirtualTime time;
  FakeSystemLog systemLog;
  FakeProcessInfo process;
  FakeMainBundle bundle;
  FakeUserDefaultsSuites defaults;
  FakeFileSystem files{time, log};
  FakeDirectories directories;
  FakeEventStreams eventStreams{log};
  FakeMetadata metadata;
  FakePreferences preferences;
  FakeBookmarks bookmarks;
  FakeScreens screens;
  FakeApplication application{log};
  FakeAppearance appearance;
  FakeEventMonitors eventMonitors;
  FakeHotKeys hotKeys{log};
  FakeNotificationCenter notifications{log};
  FakeLoginItem loginItem;
  FakeOpenPanel openPanel;
  FakeScreenCaptureAccess screenCapture;
  FakeThumbnailRenderer thumbnails;
  FakeImages images;
  FakePasteboard pasteboard{log};
  FakeSharingServicePicker sharingServicePicker;
  FakeWorkspace workspace;
  FakeWindows windows;
  FakeDraggingSessions draggingSessions;
  FakePreviewPanel previewPanel{log};
  FakeIslandShell islandShell{screens, time, log};
  FakeAnalytics analytics{log};
  FakeEditors editors;
  QuenlioReleaseTestConfiguration configuration;

  TestPlatform() { files.makeFolder("/home/user/Desktop"); }
  // The same with a seed for the order of tasks on different queues.
  explicit TestPlatform(std::uint32_t seed) : time(seed) { files.makeFolder("/home/user/Desktop"); }

  // Switches diagnostics on, with the folder /run.
  void enableDiagnostics() {
    configuration.isEnabled = true;
    configuration.diagnosticsDirectory = FileURL("/run");
  }

  [[nodiscard]] Platform platform() { return platform(time); }
  [[nodiscard]] Platform platform(Scheduler& scheduler) {
    return {
        .scheduler = scheduler,
        .clock = time,
        .log = systemLog,
        .process = process,
        .bundle = bundle,
        .defaults = defaults,
        .files = files,
        .contents = files,
        .directories = directories,
        .eventStreams = eventStreams,
        .metadata = metadata,
        .preferences = preferences,
        .bookmarks = bookmarks,
        .screens = screens,
        .application = application,
        .appearance = appearance,
        .eventMonitors = eventMonitors,
        .hotKeys = hotKeys,
        .notifications = notifications,
        .loginItem = loginItem,
        .openPanel = openPanel,
        .screenCapture = screenCapture,
        .thumbnails = thumbnails,
        .images = images,
        .pasteboard = pasteboard,
        .sharingServicePicker = sharingServicePicker,
        .workspace = workspace,
        .windows = windows,
        .draggingSessions = draggingSessions,
        .previewPanel = previewPanel,
    };
  }

  [[nodiscard]] std::unique_ptr<AppDelegate> makeApp() { return makeApp(time); }
  [[nodiscard]] std::unique_ptr<AppDelegate> makeApp(Scheduler& scheduler) {
    return std::make_unique<AppDelegate>(
        platform(scheduler),
        AppServices{.islandShell = islandShell,
                    .analytics = analytics,
                    .editors = editors,
                    .makeUpdater = [this] { return std::make_unique<FakeUpdater>(log); }},
        configuration);
  }

  [[nodiscard]] AppSettings::Dependencies settingsDependencies() {
    return {.defaults = defaults.standardUserDefaults(),
            .previousDefaults = nullptr,
            .bundle = bundle,
            .loginItem = loginItem,
            .openPanel = openPanel,
            .bookmarks = bookmarks,
            .log = systemLog};
  }
  [[nodiscard]] ItemHandOut::Dependencies handOutDependencies() {
    return {.images = images,
            .pasteboard = pasteboard,
            .picker = sharingServicePicker,
            .workspace = workspace,
            .windows = windows,
            .screens = screens};
  }
  [[nodiscard]] ScreenshotLocationResolver::Dependencies locationDependencies() {
    return {.bookmarks = bookmarks,
            .preferences = preferences,
            .files = files,
            .directories = directories,
            .log = systemLog};
  }

  // The names of the events recorded so far, in order.
  [[nodiscard]] std::vector<std::string> eventNames() const;
  // How many events of this name were recorded.
  [[nodiscard]] std::ptrdiff_t eventCount(std::string_view name) const;
  // state.json as it stands.
  [[nodiscard]] QuenlioReleaseTestState state() const;
};

}  // namespace quenlio
