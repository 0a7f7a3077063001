// The road of a capture on the threads that it has in the program: real folder events, real files, the watcher, the
// library and the reports of a run. What belongs to no thread but the main one is fake.
#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/detection/ScreenshotLocationResolver.h"
#include "core/detection/ScreenshotWatcher.h"
#include "core/diagnostics/QuenlioReleaseTestDiagnostics.h"
#include "core/identity/AppPaths.h"
#include "core/library/ItemHandOut.h"
#include "core/library/ScreenshotStore.h"
#include "core/settings/AppSettings.h"

#include "desktop/linux/system/InotifyEventStream.h"
#include "desktop/linux/system/LinuxClock.h"
#include "desktop/linux/system/LinuxFileContents.h"
#include "desktop/linux/system/LinuxFileManager.h"
#include "desktop/linux/system/ScreenshotMetadata.h"

#include "tests/desktop/system/SampleFiles.h"
#include "tests/desktop/system/TemporaryFolder.h"
#include "tests/harness/TestPlatform.h"
#include "tests/harness/ThreadScheduler.h"

namespace quenlio {

// The real streams. The main thread hears of each file once the watcher has.
class TellingStreams final : public FSEventStreams {
 public:
  TellingStreams(FSEventStreams& streams, Scheduler& scheduler) : streams_(streams), scheduler_(scheduler) {}

  [[nodiscard]] std::unique_ptr<FSEventStream> FSEventStreamCreate(FSEventStreamCallback callback,
                                                                   const FileURL& folder,
                                                                   const FSEventStreamOptions& options) override {
    return streams_.FSEventStreamCreate(
        [callback = std::move(callback), &scheduler = scheduler_, heard = heard_](const FSEventBatch& batch) {
          callback(batch);
          scheduler.post([heard, paths = *batch.paths] {
            for (const auto& path : paths) {
              heard->insert(*path);
            }
          });
        },
        folder, options);
  }
  // How many files, so far. Main thread.
  [[nodiscard]] std::size_t heard() const { return heard_->size(); }

 private:
  FSEventStreams& streams_;
  Scheduler& scheduler_;
  const std::shared_ptr<std::set<std::string>> heard_ = std::make_shared<std::set<std::string>>();
};

// Makes thumbnails on any thread, of pictures at once and of documents apart, and can be held up in it.
class HeldThumbnails final : public ThumbnailRenderer {
 public:
  [[nodiscard]] ImageRef render(const FileURL& /*url*/, Size canvas) override {
    std::unique_lock lock(mutex_);
    ++begun_;
    changed_.notify_all();
    changed_.wait(lock, [this] { return !isHeld_; });
    return std::make_shared<CountedImage>(canvas, counted_);
  }
  [[nodiscard]] std::optional<ImageRef> renderHere(const FileURL& url, Size canvas) override {
    return url.pathExtension() == "pdf" ? std::nullopt : std::optional(render(url, canvas));
  }

  void hold(bool isHeld) {
    const std::scoped_lock lock(mutex_);
    isHeld_ = isHeld;
    changed_.notify_all();
  }
  // Until so many have been begun; false when the deadline has passed first.
  [[nodiscard]] bool waitUntilBegun(int count) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, kThumbnailDeadline, [&] { return begun_ >= count; });
  }
  [[nodiscard]] int begun() {
    const std::scoped_lock lock(mutex_);
    return begun_;
  }
  // Those that somebody still keeps.
  [[nodiscard]] long kept() const { return counted_.use_count() - 1; }

 private:
  static constexpr std::chrono::seconds kThumbnailDeadline{20};
  class CountedImage final : public Image {
   public:
    CountedImage(Size size, std::shared_ptr<const bool> counted) : size_(size), counted_(std::move(counted)) {}
    [[nodiscard]] Size size() const override { return size_; }

   private:
    Size size_;
    std::shared_ptr<const bool> counted_;
  };

  std::mutex mutex_;
  std::condition_variable changed_;
  bool isHeld_ = false;  // guarded by mutex_
  int begun_ = 0;        // guarded by mutex_
  const std::shared_ptr<const bool> counted_ = std::make_shared<const bool>(true);
};

class RoadOnThreadsTest : public testing::Test {
 protected:
  static constexpr Seconds kNoPoll{0};

  RoadOnThreadsTest() {
    std::filesystem::create_directory(captures.path());
    directories.desktop = captures;
    directories.applicationSupport = folder / "data";
    platform.configuration.isEnabled = true;
    platform.configuration.diagnosticsDirectory = folder / "run";
    settings.maxHistory.set(1000);
    diagnostics.emplace(platform.configuration, scheduler, clock, files, contents);
  }

  void TearDown() override { thumbnails.hold(false); }

  // Watches the captures from now on, and looks at the folder of its own accord as often as it is told.
  void watch(Seconds pollInterval) {
    watcher.emplace(ScreenshotWatcher::Dependencies{.settings = settings,
                                                    .locations = locations,
                                                    .scheduler = scheduler,
                                                    .clock = clock,
                                                    .files = files,
                                                    .metadata = metadata,
                                                    .eventStreams = streams,
                                                    .screens = platform.screens,
                                                    .log = platform.systemLog,
                                                    .pollInterval = pollInterval},
                    [this](const FileURL& url, std::optional<DisplayID> display) {
                      found.push_back(url.path());
                      if (store) {
                        store->ingestScreenshot(url, display);
                      }
                    });
    watcher->restartWatcher(false);
    if (pollInterval != kNoPoll) {
      watcher->startPollingForLocationChanges();
    }
  }
  void openLibrary() {
    store.emplace(ScreenshotStore::Dependencies{.settings = settings,
                                                .diagnostics = *diagnostics,
                                                .analytics = platform.analytics,
                                                .paths = paths,
                                                .files = files,
                                                .contents = contents,
                                                .clock = clock,
                                                .scheduler = scheduler,
                                                .thumbnails = thumbnails,
                                                .handOut = handOut,
                                                .log = platform.systemLog});
  }

  // The path of a capture of that number.
  [[nodiscard]] FileURL capture(int number, const std::string& extension = "png") const {
    return captures / ("Screenshot 2026-11-15 at " + std::to_string(number) + "." + extension);
  }
  [[nodiscard]] std::ptrdiff_t thumbnailsListed() const {
    return std::ranges::count_if(store->items.get(), [](const auto& item) { return item.thumbnail != nullptr; });
  }
  [[nodiscard]] bool runUntilFound(std::size_t count) {
    return scheduler.runUntil([&] { return found.size() >= count; });
  }

  TemporaryFolder folder;
  FileURL captures = folder / "Captures";
  LinuxClock clock;
  OwnFiles own;
  FakeDirectories directories;
  LinuxFileManager files{own, clock, directories};
  LinuxFileContents contents;
  ScreenshotMetadata metadata{own};
  TestPlatform platform;
  HeldThumbnails thumbnails;
  ThreadScheduler scheduler;
  InotifyEventStreams inotify{clock};
  TellingStreams streams{inotify, scheduler};
  AppSettings settings{platform.settingsDependencies()};
  AppPaths paths{platform.configuration, files, directories};
  ItemHandOut handOut{platform.handOutDependencies()};
  ScreenshotLocationResolver locations{{.bookmarks = platform.bookmarks,
                                        .preferences = platform.preferences,
                                        .files = files,
                                        .directories = directories,
                                        .log = platform.systemLog}};
  std::optional<QuenlioReleaseTestDiagnostics> diagnostics;
  std::vector<std::string> found;
  std::optional<ScreenshotStore> store;
  std::optional<ScreenshotWatcher> watcher;
};

}  // namespace quenlio
