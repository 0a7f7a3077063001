// Keeps a view up to date with what it observes. Whatever is announced only marks the view stale; it reads its model
// once, on the next turn of the main queue, however many fields have changed: inside an announcement the model still
// holds the old value. Owned by its view. Main thread.
#pragma once

#include <functional>
#include <vector>

#include "core/base/Published.h"
#include "core/base/Subscription.h"
#include "core/base/WeakOwner.h"

namespace quenlio {

class Scheduler;

class ViewRefresh {
 public:
  // refresh holds the view weakly. The scheduler outlives this object.
  ViewRefresh(Scheduler& scheduler, std::function<void()> refresh);

  // The present value, which a subscription announces at once, makes the view stale too.
  template <class T>
  void watch(Published<T>& field) {
    subscriptions_.push_back(field.subscribe(weak_.bind([](ViewRefresh& self, const T&) { self.markStale(); })));
  }

  void markStale();

 private:
  void refreshNow();

  Scheduler& scheduler_;
  std::function<void()> refresh_;
  bool isStale_ = false;
  std::vector<Subscription> subscriptions_;
  WeakOwner<ViewRefresh> weak_{this};
};

}  // namespace quenlio
