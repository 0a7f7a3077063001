// Tells a click from a double click where each means something of its own: a single one counts only once the time for
// a second has passed. What it will lead to may be begun meanwhile. Owned by the view that is clicked. Main thread.
#pragma once

#include <functional>

#include "core/base/WeakOwner.h"
#include "core/platform/Scheduler.h"

namespace quenlio {

class DeferredClick {
 public:
  struct Callbacks {
    // The time begins in which a second one would make it a double click. onClick or onNoClick follows.
    std::function<void()> onMayBecomeClick;
    std::function<void()> onClick;
    std::function<void()> onNoClick;
    std::function<void()> onDoubleClick;
  };
  // Both outlive this.
  DeferredClick(Scheduler& scheduler, const Clock& clock, Callbacks callbacks);
  DeferredClick(const DeferredClick&) = delete;
  DeferredClick& operator=(const DeferredClick&) = delete;

  // isSecond: soon enough after the last one and in the same place, which the desktop decides. The first click then
  // counts for nothing of its own, whatever becomes of this press.
  void pressed(bool isSecond);
  // A press has ended as a click. doubleClickTime is the desktop's, from press to press.
  void clicked(Seconds doubleClickTime);
  // What was clicked is gone.
  void cancel();

  [[nodiscard]] bool isWaiting() const { return static_cast<bool>(wait_); }

 private:
  void stopWaiting();

  Scheduler& scheduler_;
  const Clock& clock_;
  Callbacks callbacks_;
  std::chrono::nanoseconds pressedAt_{0};  // monotonic
  bool isSecond_ = false;
  ScheduledTask wait_;
  WeakOwner<DeferredClick> weak_{this};
};

}  // namespace quenlio
