#include "core/island/DeferredClick.h"

#include <algorithm>
#include <utility>

namespace quenlio {

DeferredClick::DeferredClick(Scheduler& scheduler, const Clock& clock, Callbacks callbacks)
    : scheduler_(scheduler), clock_(clock), callbacks_(std::move(callbacks)) {}

void DeferredClick::pressed(bool isSecond) {
  stopWaiting();
  isSecond_ = isSecond;
  pressedAt_ = clock_.monotonic();
}

void DeferredClick::clicked(Seconds doubleClickTime) {
  if (std::exchange(isSecond_, false)) {
    callbacks_.onDoubleClick();
    return;
  }
  const Seconds passed = clock_.monotonic() - pressedAt_;
  wait_ = scheduler_.after(std::max(doubleClickTime - passed, Seconds::zero()), weak_.bind([](DeferredClick& self) {
    self.wait_ = {};
    self.callbacks_.onClick();
  }));
  callbacks_.onMayBecomeClick();
}

void DeferredClick::cancel() {
  isSecond_ = false;
  stopWaiting();
}

void DeferredClick::stopWaiting() {
  if (isWaiting()) {
    wait_.cancel();
    callbacks_.onNoClick();
  }
}

}  // namespace quenlio
