#include "desktop/views/common/ViewRefresh.h"

#include <utility>

#include "core/platform/Scheduler.h"

namespace quenlio {

ViewRefresh::ViewRefresh(Scheduler& scheduler, std::function<void()> refresh)
    : scheduler_(scheduler), refresh_(std::move(refresh)) {}

void ViewRefresh::markStale() {
  if (isStale_) {
    return;
  }
  isStale_ = true;
  scheduler_.post(weak_.bind([](ViewRefresh& self) { self.refreshNow(); }));
}

void ViewRefresh::refreshNow() {
  // First, so that what refreshing changes makes the view stale again.
  isStale_ = false;
  refresh_();
}

}  // namespace quenlio
