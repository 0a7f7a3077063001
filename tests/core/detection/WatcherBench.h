// A watcher on fakes and virtual time, with what it found and when.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/detection/ScreenshotLocationResolver.h"
#include "core/detection/ScreenshotWatcher.h"
#include "core/settings/AppSettings.h"

#include "tests/fakes/CallLog.h"
#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakeEventStreams.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeSettingsStores.h"
#include "tests/harness/VirtualTime.h"

namespace quenlio {

inline const std::string kFolder = "/home/user/Desktop";
// A name that says by itself that the file is a screenshot.
inline const std::string kShot = kFolder + "/Screenshot 2026-11-15 at 21.04.33.png";
inline const std::string kOtherShot = kFolder + "/Screenshot 2026-11-15 at 21.05.00.png";
// A name that says nothing.
inline const std::string kHoliday = kFolder + "/Holiday.png";

using Milliseconds = std::chrono::milliseconds;
inline constexpr auto kLook = std::chrono::milliseconds(30);
// From an event to the emission of a file that lies finished.
inline constexpr auto kTwoLooks = 2 * kLook;

class WatcherBench {
 public:
  struct Found {
    std::string path;
    std::optional<DisplayID> display;
    std::chrono::nanoseconds at;
  };

  // With a seed, tasks of different queues that are due together change places.
  explicit WatcherBench(std::optional<std::uint32_t> seed = std::nullopt)
      : time(seed ? VirtualTime(*seed) : VirtualTime()) {
    files.makeFolder(kFolder);
    watcher = makeWatcher(time);
  }

  // A watcher of the same folder that writes into the same list.
  [[nodiscard]] std::unique_ptr<ScreenshotWatcher> makeWatcher(Scheduler& scheduler,
                                                               Seconds pollInterval = Seconds(5)) {
    return std::make_unique<ScreenshotWatcher>(ScreenshotWatcher::Dependencies{.settings = settings,
                                                                               .locations = locations,
                                                                               .scheduler = scheduler,
                                                                               .clock = time,
                                                                               .files = files,
                                                                               .metadata = metadata,
                                                                               .eventStreams = eventStreams,
                                                                               .screens = screens,
                                                                               .log = systemLog,
                                                                               .pollInterval = pollInterval},
                                               [this](const FileURL& url, std::optional<DisplayID> display) {
                                                 found.push_back({url.path(), display, time.monotonic()});
                                               });
  }

  // The three calls of a launch. Nothing is due afterwards.
  void start() {
    watcher->restartWatcher(false);
    watcher->startPollingForLocationChanges();
    watcher->scanDirectoryForNewScreenshots();
    time.runReady();
  }
  // Without the poll, so that only what a test does makes things happen.
  void startWithoutPoll() {
    watcher->restartWatcher(false);
    time.runReady();
  }
  // A file that is there at once, and the stream's word of it.
  void arrive(const std::string& path) {
    files.write(path);
    eventStreams.changed(path);
    time.runReady();
  }
  void event(const std::string& path, FSEventFlags flags) {
    eventStreams.changed(path, flags);
    time.runReady();
  }
  void chooseFolder(const std::string& path) { preferences.setLocation(path); }

  [[nodiscard]] std::vector<std::string> foundPaths() const {
    std::vector<std::string> paths;
    for (const Found& one : found) {
      paths.push_back(one.path);
    }
    return paths;
  }

  CallLog log;
  VirtualTime time;
  FakeFileSystem files{time, log};
  FakeEventStreams eventStreams{log};
  FakeMetadata metadata;
  FakeUserDefaults defaults;
  FakeMainBundle bundle;
  FakeLoginItem loginItem;
  FakeOpenPanel openPanel;
  FakeBookmarks bookmarks;
  FakePreferences preferences;
  FakeDirectories directories;
  FakeScreens screens;
  FakeSystemLog systemLog;
  AppSettings settings{{.defaults = defaults,
                        .previousDefaults = nullptr,
                        .bundle = bundle,
                        .loginItem = loginItem,
                        .openPanel = openPanel,
                        .bookmarks = bookmarks,
                        .log = systemLog}};
  ScreenshotLocationResolver locations{{.bookmarks = bookmarks,
                                        .preferences = preferences,
                                        .files = files,
                                        .directories = directories,
                                        .log = systemLog}};
  std::vector<Found> found;
  std::unique_ptr<ScreenshotWatcher> watcher;
};

using Paths = std::vector<std::string>;

}  // namespace quenlio
