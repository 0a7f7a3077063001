#include "core/detection/ScreenshotWatcher.h"

#include <chrono>
#include <utility>

#include "core/detection/CandidateFiles.h"
#include "core/detection/ScreenshotLocationResolver.h"
#include "core/platform/SystemLog.h"

namespace quenlio {
namespace {

using namespace std::chrono_literals;

constexpr Seconds kStreamLatency = 0.02s;
constexpr Seconds kPollTolerance = 0.2s;

}  // namespace

ScreenshotWatcher::ScreenshotWatcher(const Dependencies& dependencies, OnNewScreenshot onNewScreenshot)
    : dependencies_(dependencies),
      onNewScreenshot_(std::move(onNewScreenshot)),
      queue_(dependencies.scheduler.makeSerialQueue("Quenlio.Watcher", QualityOfService::userInitiated)) {
  auto found = weak_.bind([](ScreenshotWatcher& self, const FileURL& url) { self.emit(url); });
  candidates_ = std::make_shared<CandidateFiles>(CandidateFiles::Dependencies{
      .queue = *queue_,
      .files = dependencies_.files,
      .metadata = dependencies_.metadata,
      .emit = [&scheduler = dependencies_.scheduler,
               found](const FileURL& url) { scheduler.post([found, url] { found(url); }); },
  });
}

ScreenshotWatcher::~ScreenshotWatcher() {
  stop();
}

void ScreenshotWatcher::restartWatcher(bool force) {
  const FileURL folder = dependencies_.locations.resolveFolder(dependencies_.settings);
  if (!force && folderURL_ && folderURL_->standardized() == folder.standardized()) {
    return;
  }
  stopStream();
  folderURL_ = folder;
  const Date startupDate = dependencies_.clock.now();
  // Waited for, so that the stream cannot report a file before the listing has decided what is old.
  queue_->sync([&] { candidates_->watch(folder, startupDate); });
  startStream();
}

void ScreenshotWatcher::startStream() {
  const std::string& path = folderURL_->path();
  auto stream = dependencies_.eventStreams.FSEventStreamCreate(
      [weak = std::weak_ptr(candidates_)](const FSEventBatch& batch) {
        if (const auto candidates = weak.lock()) {
          candidates->handleFileEvents(batch);
        }
      },
      *folderURL_,
      {.latency = kStreamLatency,
       .flags =
           kFSEventStreamCreateFlagUseCFTypes | kFSEventStreamCreateFlagNoDefer | kFSEventStreamCreateFlagFileEvents});
  if (!stream) {
    dependencies_.log.NSLog("Failed to create FSEvent stream for " + path);
    return;
  }
  stream_ = std::move(stream);
  stream_->FSEventStreamSetDispatchQueue(*queue_);
  if (!stream_->FSEventStreamStart()) {
    dependencies_.log.NSLog("Failed to start FSEvent stream for " + path);
    stopStream();
  }
}

void ScreenshotWatcher::stopStream() {
  if (stream_) {
    stream_->FSEventStreamStop();
    stream_->FSEventStreamInvalidate();
    stream_.reset();
  }
}

void ScreenshotWatcher::startPollingForLocationChanges() {
  locationPollTimer_ =
      dependencies_.scheduler.every(dependencies_.pollInterval, kPollTolerance, weak_.bind([](ScreenshotWatcher& self) {
        self.restartWatcher(false);
        self.scanDirectoryForNewScreenshots();
      }));
}

void ScreenshotWatcher::scanDirectoryForNewScreenshots() {
  if (folderURL_) {
    queue_->async([weak = std::weak_ptr(candidates_)] {
      if (const auto candidates = weak.lock()) {
        candidates->scanDirectory();
      }
    });
  }
}

void ScreenshotWatcher::stop() {
  stopStream();
  locationPollTimer_.cancel();
}

void ScreenshotWatcher::emit(const FileURL& url) {
  onNewScreenshot_(url, ScreenUtilities::activeDisplayID(dependencies_.screens));
}

}  // namespace quenlio
