#include "core/app/RequestChannel.h"

#include <algorithm>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "core/base/ImageExtensions.h"
#include "core/base/Text.h"
#include "core/diagnostics/QuenlioReleaseTestDiagnostics.h"
#include "core/platform/DistributedNotificationCenter.h"
#include "core/platform/FileManager.h"
#include "core/platform/ProcessInfo.h"

namespace quenlio {
namespace {

using namespace std::chrono_literals;

constexpr Seconds kPollInterval = 0.5s;
constexpr std::string_view kIngestNotification = "com.quenlio.release-test.ingest-screenshot";
constexpr std::string_view kIngestArgument = "--release-test-ingest";
constexpr std::string_view kCheckForUpdates = "__check_for_updates__";

}  // namespace

RequestChannel::RequestChannel(Dependencies dependencies)
    : dependencies_(std::move(dependencies)),
      releaseTestRequestPollQueue_(
          dependencies_.scheduler.makeSerialQueue("Quenlio.ReleaseTestRequestPoll", QualityOfService::unspecified)) {}

bool RequestChannel::isEnabled() const {
  return dependencies_.configuration.isEnabled;
}

void RequestChannel::ingestSeededReleaseTestScreenshotsIfNeeded() {
  const auto& folder = dependencies_.configuration.screenshotDirectory;
  if (!isEnabled() || !folder) {
    return;
  }
  const auto contents = dependencies_.files.contentsOfDirectoryAtURL(*folder, HiddenFiles::include);
  if (!contents.ok()) {
    return;
  }
  std::vector<DirectoryEntry> seeds;
  std::ranges::copy_if(contents.value(), std::back_inserter(seeds), [](const DirectoryEntry& entry) {
    return entry.isRegularFile.value_or(false) && hasImageExtension(entry.url);
  });
  std::ranges::stable_sort(seeds, {},
                           [](const DirectoryEntry& entry) { return entry.creationDate.value_or(kDistantPast); });
  for (const DirectoryEntry& seed : seeds) {
    dependencies_.ingest(seed.url);
    dependencies_.diagnostics.record("release_test_seed_ingested_on_launch", {{"path", seed.url.path()}});
  }
}

void RequestChannel::processReleaseTestLaunchArgumentsIfNeeded() {
  const auto& arguments = dependencies_.process.arguments();
  const auto flag = std::ranges::find(arguments, kIngestArgument);
  if (!isEnabled() || flag == arguments.end() || flag + 1 == arguments.end() || (flag + 1)->empty()) {
    return;
  }
  const std::string& path = *(flag + 1);
  dependencies_.diagnostics.record("release_test_launch_ingest_requested", {{"path", path}});
  postArrival(path);
}

void RequestChannel::postArrival(const std::string& path) {
  dependencies_.scheduler.post(
      weak_.bind([url = FileURL(path)](RequestChannel& self) { self.dependencies_.handleNewScreenshot(url); }));
}

void RequestChannel::registerReleaseTestNotificationsIfNeeded() {
  if (!isEnabled() || releaseTestNotificationObserver_) {
    return;
  }
  releaseTestNotificationObserver_ = dependencies_.notifications.addObserverForName(
      kIngestNotification, weak_.bind([](RequestChannel& self, const NotificationUserInfo& userInfo) {
        const auto found = userInfo.find("path");
        const auto* path = found != userInfo.end() ? std::get_if<std::string>(&found->second) : nullptr;
        if (path != nullptr && !path->empty()) {
          self.postArrival(*path);
        }
      }));
}

void RequestChannel::unregisterReleaseTestNotifications() {
  releaseTestNotificationObserver_.cancel();
}

void RequestChannel::startReleaseTestRequestPollingIfNeeded() {
  if (!isEnabled() || isReleaseTestRequestPollingActive_) {
    return;
  }
  isReleaseTestRequestPollingActive_ = true;
  scheduleNextReleaseTestRequestPoll();
  const auto file = dependencies_.configuration.screenshotIngestRequestFileURL();
  dependencies_.diagnostics.record("release_test_request_polling_started", {{"path", file ? file->path() : "missing"}});
}

void RequestChannel::scheduleNextReleaseTestRequestPoll() {
  auto poll = weak_.bind([](RequestChannel& self) { self.poll(); });
  releaseTestRequestPollQueue_->after(kPollInterval,
                                      [&scheduler = dependencies_.scheduler, poll] { scheduler.post(poll); });
}

void RequestChannel::poll() {
  if (!isReleaseTestRequestPollingActive_) {
    return;
  }
  dependencies_.diagnostics.record("release_test_request_tick");
  const auto file = dependencies_.configuration.screenshotIngestRequestFileURL();
  if (file && dependencies_.files.fileExistsAtPath(*file)) {
    dependencies_.diagnostics.record("release_test_request_detected");
  }
  processPendingReleaseTestRequest();
  scheduleNextReleaseTestRequestPoll();
}

void RequestChannel::processPendingReleaseTestRequest() {
  const auto file = dependencies_.configuration.screenshotIngestRequestFileURL();
  if (!isEnabled() || !file) {
    return;
  }
  const bool exists = dependencies_.files.fileExistsAtPath(*file);
  dependencies_.diagnostics.record("release_test_request_check",
                                   {{"path", file->path()}, {"exists", exists ? "true" : "false"}});
  const auto text = dependencies_.contents.read(*file);
  const std::string request(text.ok() ? trimmed(text.value()) : std::string_view());
  if (request.empty()) {
    return;
  }
  // Removed before it is carried out, so that it is carried out at most once.
  (void)dependencies_.files.removeItemAtURL(*file);
  if (request == kCheckForUpdates) {
    dependencies_.diagnostics.record("release_test_update_check_consumed");
    dependencies_.checkForUpdates();
    return;
  }
  dependencies_.diagnostics.record("release_test_request_consumed");
  postArrival(request);
}

}  // namespace quenlio
