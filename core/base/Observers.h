// Callbacks that are called in turn, each for as long as its Subscription lives. Main thread only.
//
// Joining, leaving and calling are all safe during a call: one that leaves is not called again, and one that joins
// hears of the next call. Subscriptions may outlive the list.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "core/base/Subscription.h"

namespace quenlio {

template <class... Args>
class Observers {
 public:
  using Observer = std::function<void(Args...)>;

  Observers() = default;
  Observers(const Observers&) = delete;
  Observers& operator=(const Observers&) = delete;

  // Called after those that are there already.
  [[nodiscard]] Subscription add(Observer observer) { return join(std::move(observer)).second; }

  // The same for one that is to be told of the present state, too: it is called at once.
  [[nodiscard]] Subscription addAndCall(Observer observer, Args... args) {
    auto [entry, subscription] = join(std::move(observer));
    entry->observer(std::forward<Args>(args)...);
    return std::move(subscription);
  }

  void call(Args... args) const {
    // A copy, since an observer may join or leave while this loop runs.
    const Entries entries = *entries_;
    for (const auto& entry : entries) {
      if (entry->active) {
        entry->observer(args...);
      }
    }
  }

  [[nodiscard]] std::size_t size() const { return entries_->size(); }

 private:
  struct Entry {
    Observer observer;
    bool active = true;
  };
  using Entries = std::vector<std::shared_ptr<Entry>>;

  [[nodiscard]] std::pair<std::shared_ptr<Entry>, Subscription> join(Observer observer) {
    auto entry = std::make_shared<Entry>(Entry{.observer = std::move(observer)});
    entries_->push_back(entry);
    return {entry, Subscription([entry, list = std::weak_ptr(entries_)] {
              entry->active = false;
              if (const auto entries = list.lock()) {
                std::erase(*entries, entry);
              }
            })};
  }

  std::shared_ptr<Entries> entries_ = std::make_shared<Entries>();  // weakly held by the subscriptions
};

}  // namespace quenlio
