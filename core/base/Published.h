// One observable value. Main thread only.
//
// Observers are told of the next value before it is stored: inside an announcement get() still gives the old value.
// Equal values announce too; an observer that wants fewer filters for itself. A subscriber is called at once with the
// present value. Subscribing, unsubscribing and setting during an announcement are all safe: an observer that leaves is
// not called again, and one that joins hears of the next announcement.
#pragma once

#include <utility>

#include "core/base/Observers.h"
#include "core/base/Subscription.h"

namespace quenlio {

template <class T>
class Published {
 public:
  using Observer = typename Observers<const T&>::Observer;

  explicit Published(T value = T{}) : value_(std::move(value)) {}
  Published(const Published&) = delete;
  Published& operator=(const Published&) = delete;
  virtual ~Published() = default;

  [[nodiscard]] const T& get() const { return value_; }

  // Announces next, then stores it.
  virtual void set(T next) {
    observers_.call(next);
    value_ = std::move(next);
  }

  // Copies the value, edits the copy and sets it: one announcement whatever the edit does.
  template <class Edit>
  void mutate(Edit edit) {
    T next = value_;
    edit(next);
    set(std::move(next));
  }

  // Calls the observer at once with the present value, then at each announcement until the Subscription ends. The
  // Subscription may outlive this object.
  [[nodiscard]] Subscription subscribe(Observer observer) { return observers_.addAndCall(std::move(observer), value_); }

 private:
  T value_;
  Observers<const T&> observers_;
};

}  // namespace quenlio
