// Named product events, sent and forgotten. Main thread.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace quenlio {

enum class AnalyticsEventName {
  appLaunched,
  onboardingShown,
  onboardingCompleted,
  installPromptShown,
  installPromptMoveSucceeded,
  firstScreenshotTaken,
  screenshotDeleted,
  screenshotRestored,
  screenshotRenamed,
  editorSaved,
  editorShared,
  editorDownloaded,
  updateCheckRequested,
  updateFound,
};

// Callers track unconditionally; whether anything is sent is decided here.
class AnalyticsTracker {
 public:
  virtual ~AnalyticsTracker() = default;
  [[nodiscard]] static AnalyticsTracker& shared();
  // Returns at once. It never fails for the caller.
  virtual void track(AnalyticsEventName event, const std::map<std::string, std::string>& metadata) = 0;
};

// The tracker until events have a service to go to: it does nothing.
class NoAnalytics final : public AnalyticsTracker {
 public:
  void track(AnalyticsEventName, const std::map<std::string, std::string>&) override {}
};

}  // namespace quenlio
