// The ways in which a scripted run feeds the program: seed screenshots, a launch argument, a notification and a request
// file that is looked for twice a second. All of it does nothing unless diagnostics are switched on. Main thread; owned
// by the composition root.
#pragma once

#include <functional>
#include <memory>

#include "core/base/FileURL.h"
#include "core/base/Subscription.h"
#include "core/base/WeakOwner.h"
#include "core/platform/Scheduler.h"

namespace quenlio {

class DistributedNotificationCenter;
class FileContents;
class FileManager;
class ProcessInfo;
class QuenlioReleaseTestDiagnostics;
struct QuenlioReleaseTestConfiguration;

class RequestChannel {
 public:
  struct Dependencies {
    const QuenlioReleaseTestConfiguration& configuration;
    QuenlioReleaseTestDiagnostics& diagnostics;
    Scheduler& scheduler;
    FileManager& files;
    FileContents& contents;
    const ProcessInfo& process;
    DistributedNotificationCenter& notifications;
    std::function<void(const FileURL&)> ingest;               // into the library, with no display
    std::function<void(const FileURL&)> handleNewScreenshot;  // the whole arrival, with no display
    std::function<void()> checkForUpdates;
  };

  explicit RequestChannel(Dependencies dependencies);
  RequestChannel(const RequestChannel&) = delete;
  RequestChannel& operator=(const RequestChannel&) = delete;

  void ingestSeededReleaseTestScreenshotsIfNeeded();
  void processReleaseTestLaunchArgumentsIfNeeded();
  void registerReleaseTestNotificationsIfNeeded();
  void unregisterReleaseTestNotifications();
  void startReleaseTestRequestPollingIfNeeded();
  // The chain of polls ends at its next turn.
  void stopReleaseTestRequestPolling() { isReleaseTestRequestPollingActive_ = false; }
  // Takes the request file, if it holds a request, and carries it out.
  void processPendingReleaseTestRequest();

 private:
  [[nodiscard]] bool isEnabled() const;
  void scheduleNextReleaseTestRequestPoll();
  void poll();
  void postArrival(const std::string& path);

  Dependencies dependencies_;
  Subscription releaseTestNotificationObserver_;
  bool isReleaseTestRequestPollingActive_ = false;
  std::unique_ptr<SerialQueue> releaseTestRequestPollQueue_;  // waits, and does nothing else
  WeakOwner<RequestChannel> weak_{this};
};

}  // namespace quenlio
