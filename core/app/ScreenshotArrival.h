// What happens between the moment a file has proved to be a new screenshot and the moment it is in the library, the
// island is up and everybody has heard of it. Main thread; owned by the composition root.
#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>

#include "core/base/FileURL.h"
#include "core/base/WeakOwner.h"
#include "core/identity/ScreenUtilities.h"

namespace quenlio {

class AnalyticsTracker;
class QuenlioReleaseTestDiagnostics;
class Scheduler;
class UserDefaults;
struct OnboardingSession;

class ScreenshotArrival {
 public:
  struct Dependencies {
    Scheduler& scheduler;
    QuenlioReleaseTestDiagnostics& diagnostics;
    AnalyticsTracker& analytics;
    UserDefaults& defaults;
    OnboardingSession& onboarding;
    // The library, the island and the report of the run's state, each made on first use by the composition root.
    std::function<void(const FileURL&, std::optional<DisplayID>)> ingest;
    std::function<void(std::optional<DisplayID>)> showIsland;
    std::function<void()> syncReleaseTestState;
  };

  static constexpr const char* firstScreenshotTrackedKey = "analytics.firstScreenshotTracked";

  explicit ScreenshotArrival(Dependencies dependencies) : dependencies_(std::move(dependencies)) {}

  // Starts the arrival on the next turn of the main queue and returns at once.
  void handleNewScreenshot(const FileURL& url, std::optional<DisplayID> displayID);

  // The arrival itself. One that comes while the same file's arrival is still under way is noted and ignored.
  void arrive(const FileURL& url, std::optional<DisplayID> displayID);

 private:
  [[nodiscard]] bool isLiveOnboardingCapture() const;
  void tellOnboarding(const FileURL& url);
  void trackFirstScreenshotIfNeeded(const std::string& path);

  Dependencies dependencies_;
  std::set<std::string> inFlightScreenshotPaths_;  // standardized; empty between arrivals
  WeakOwner<ScreenshotArrival> weak_{this};
};

}  // namespace quenlio
