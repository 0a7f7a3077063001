// Decides when the island leaves by itself, and shows how much time is left. Main thread. Part of
// IslandOverlayController, which tells it of the pointer and of drags.
#pragma once

#include <functional>

#include "core/base/Date.h"
#include "core/base/WeakOwner.h"
#include "core/platform/Scheduler.h"
#include "core/settings/AppSettings.h"

namespace quenlio {

class Panel;
class ScreenshotStore;
struct IslandOverlayPresentationState;

// The settings that the island follows, as last announced. While a change is being announced the settings themselves
// still hold the old value, and the island acts on the new one.
struct IslandSettings {
  bool islandEnabled;
  IslandSize islandSize;
  IslandDurationMode islandDurationMode;
  double islandDurationSeconds;
};

class IslandAutoDismiss {
 public:
  struct Dependencies {
    const IslandSettings& announced;
    AppSettings& settings;
    const ScreenshotStore& store;
    IslandOverlayPresentationState& presentationState;
    const Panel& panel;
    Scheduler& scheduler;
    const Clock& clock;
    std::function<void()> hide;
  };

  explicit IslandAutoDismiss(Dependencies dependencies) : dependencies_(std::move(dependencies)) {}

  bool isHovered = false;         // the pointer is inside the panel
  bool isWindowDragging = false;  // the user is moving the panel
  bool isItemDragging = false;    // a screenshot is being dragged out

  [[nodiscard]] bool shouldRemainVisible() const;
  // The one place that arms or disarms the hiding; to be called after anything that could change the answer. The rule
  // is asked again when the time has run out.
  void scheduleHideIfNeeded();
  // Ends a pending hide and the ring.
  void disarm();
  // The same for good: nothing is armed any more.
  void end();

 private:
  void startDismissProgress(Seconds duration);
  void stopDismissProgress();
  void tick(std::chrono::nanoseconds start, Seconds duration);

  Dependencies dependencies_;
  bool hasEnded_ = false;
  ScheduledTask hideWorkItem_;
  ScheduledTask dismissProgressTimer_;
  WeakOwner<IslandAutoDismiss> weak_{this};
};

}  // namespace quenlio
