// One observable value. Main thread only.
//
// Observers are told of the next value before it is stored: inside an announcement get() still gives the old value.
// Equal values announce too; an observer that wants fewer filters for itself. A subscriber is called at once with the
// present value. Subscribing, unsubscribing and setting during an announcement are all safe: an observer that leaves is
// not called again, and one that joins hears of the next announcement.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "core/base/Subscription.h"

namespace quenlio {

template <class T>
class Published {
 public:
  using Observer = std::function<void(const T&)>;

  explicit Published(T value = T{}) : value_(std::move(value)) {}
  Published(const Published&) = delete;
  Published& operator=(const Published&) = delete;
  virtual ~Published() = default;

  [[nodiscard]] const T& get() const { return value_; }

  // Announces next, then stores it.
  virtual void set(T next) {
    // A copy, since an observer may subscribe or leave while this loop runs.
    const std::vector<std::shared_ptr<Entry>> observers = *observers_;
    for (const auto& entry : observers) {
      if (entry->active) {
        entry->observer(next);
      }
    }
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
  [[nodiscard]] Subscription subscribe(Observer observer) {
    auto entry = std::make_shared<Entry>(Entry{std::move(observer), true});
    observers_->push_back(entry);
    Subscription subscription([entry, list = std::weak_ptr(observers_)] {
      entry->active = false;
      if (const auto observers = list.lock()) {
        std::erase(*observers, entry);
      }
    });
    entry->observer(value_);
    return subscription;
  }

 private:
  struct Entry {
    Observer observer;
    bool active;
  };

  T value_;
  std::shared_ptr<std::vector<std::shared_ptr<Entry>>> observers_ =
      std::make_shared<std::vector<std::shared_ptr<Entry>>>();
};

}  // namespace quenlio
