#include "core/island/IslandAutoDismiss.h"

#include <algorithm>

#include "core/island/IslandOverlayPresentationState.h"
#include "core/library/ScreenshotStore.h"
#include "core/platform/Panel.h"

namespace quenlio {
namespace {

using namespace std::chrono_literals;

constexpr Seconds kShortestDuration = 1.0s;
constexpr Seconds kInactiveDelay = 0.8s;
constexpr Seconds kTickInterval = 0.033s;

}  // namespace

bool IslandAutoDismiss::shouldRemainVisible() const {
  if (isHovered || isWindowDragging || isItemDragging) {
    return true;
  }
  if (dependencies_.settings.pinnedKeepsVisible.get() &&
      std::ranges::any_of(dependencies_.store.items.get(), &ScreenshotItem::isPinned)) {
    return true;
  }
  return dependencies_.announced.islandDurationMode == IslandDurationMode::neverHide;
}

void IslandAutoDismiss::scheduleHideIfNeeded() {
  disarm();
  const IslandDurationMode mode = dependencies_.announced.islandDurationMode;
  if (hasEnded_ || !dependencies_.panel.isVisible() || shouldRemainVisible() || mode == IslandDurationMode::neverHide) {
    return;
  }
  const bool isTimed = mode == IslandDurationMode::timed;
  const Seconds delay =
      isTimed ? std::max(Seconds(dependencies_.announced.islandDurationSeconds), kShortestDuration) : kInactiveDelay;
  const ScreenshotItem* selected = dependencies_.store.selectedItem();
  if (isTimed && (selected == nullptr || !selected->isPinned)) {
    startDismissProgress(delay);
  } else {
    dependencies_.presentationState.showDismissProgress.set(false);
  }
  hideWorkItem_ = dependencies_.scheduler.after(delay, weak_.bind([](IslandAutoDismiss& self) {
    if (!self.shouldRemainVisible()) {
      self.dependencies_.hide();
    }
  }));
}

void IslandAutoDismiss::disarm() {
  hideWorkItem_.cancel();
  stopDismissProgress();
}

void IslandAutoDismiss::end() {
  hasEnded_ = true;
  disarm();
}

void IslandAutoDismiss::startDismissProgress(Seconds duration) {
  dismissProgressTimer_.cancel();
  dependencies_.presentationState.dismissProgress.set(1.0);
  dependencies_.presentationState.showDismissProgress.set(true);
  dismissProgressTimer_ = dependencies_.scheduler.every(
      kTickInterval, 0s, weak_.bind([start = dependencies_.clock.monotonic(), duration](IslandAutoDismiss& self) {
        self.tick(start, duration);
      }));
}

void IslandAutoDismiss::tick(std::chrono::nanoseconds start, Seconds duration) {
  const Seconds elapsed = dependencies_.clock.monotonic() - start;
  dependencies_.presentationState.dismissProgress.set(std::max(1.0 - elapsed / duration, 0.0));
  if (duration <= elapsed) {
    dismissProgressTimer_.cancel();
  }
}

void IslandAutoDismiss::stopDismissProgress() {
  dismissProgressTimer_.cancel();
  dependencies_.presentationState.showDismissProgress.set(false);
  dependencies_.presentationState.dismissProgress.set(1.0);
}

}  // namespace quenlio
