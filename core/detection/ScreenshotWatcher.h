// Finds new screenshots in the screenshot folder: an event stream for speed, a listing every few seconds for certainty,
// both into one step that takes each path once. A file that proves to be a finished screenshot goes to one callback.
//
// Main thread, owned by the composition root. What the looks at files need is kept on the queue "Quenlio.Watcher"
// alone: the main thread hands work over and never reads it.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "core/base/Date.h"
#include "core/base/FileURL.h"
#include "core/base/WeakOwner.h"
#include "core/identity/ScreenUtilities.h"
#include "core/platform/FSEventStream.h"
#include "core/platform/Scheduler.h"

namespace quenlio {

class AppSettings;
class CandidateFiles;
class FileManager;
class FileMetadata;
class ScreenshotLocationResolver;
class Screens;
class SystemLog;

class ScreenshotWatcher {
 public:
  // On the main thread, once for each screenshot, with the display that is active at that moment: a best guess.
  using OnNewScreenshot = std::function<void(const FileURL&, std::optional<DisplayID>)>;

  struct Dependencies {
    AppSettings& settings;
    const ScreenshotLocationResolver& locations;
    Scheduler& scheduler;
    const Clock& clock;
    const FileManager& files;
    const FileMetadata& metadata;
    FSEventStreams& eventStreams;
    const Screens& screens;
    SystemLog& log;
    Seconds pollInterval;  // 5, or 1 in a diagnostics run
  };

  // Starts nothing.
  ScreenshotWatcher(const Dependencies& dependencies, OnNewScreenshot onNewScreenshot);
  ScreenshotWatcher(const ScreenshotWatcher&) = delete;
  ScreenshotWatcher& operator=(const ScreenshotWatcher&) = delete;
  ~ScreenshotWatcher();

  // Watches the folder as it is resolved now; what lies in it already is not new. Unless forced, a folder that has not
  // changed is left alone.
  void restartWatcher(bool force);
  // Looks again, and follows changes of the folder, every few seconds.
  void startPollingForLocationChanges();
  // Takes up every new image in the folder.
  void scanDirectoryForNewScreenshots();
  // Ends the stream and the poll.
  void stop();

  [[nodiscard]] const std::optional<FileURL>& folderURL() const { return folderURL_; }
  [[nodiscard]] bool hasStream() const { return stream_ != nullptr; }

 private:
  void startStream();
  void stopStream();
  void emit(const FileURL& url);

  Dependencies dependencies_;
  OnNewScreenshot onNewScreenshot_;
  std::optional<FileURL> folderURL_;
  ScheduledTask locationPollTimer_;
  // The queue goes before what its tasks use; the candidates are shared with tasks that are under way.
  std::shared_ptr<CandidateFiles> candidates_;
  std::unique_ptr<SerialQueue> queue_;
  std::unique_ptr<FSEventStream> stream_;
  WeakOwner<ScreenshotWatcher> weak_{this};
};

}  // namespace quenlio
