// Tasks that wait for their moment, given out in the order (due time, order of entry). No lock and no thread of its
// own: its owner brings both.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "core/platform/Scheduler.h"

namespace quenlio {

class TaskHeap {
 public:
  using Moment = std::chrono::steady_clock::time_point;

  void push(Moment due, Task task) {
    entries_.push_back({due, sequence_++, std::move(task)});
    std::ranges::push_heap(entries_, later);
  }

  [[nodiscard]] std::optional<Moment> nextDue() const {
    return entries_.empty() ? std::nullopt : std::optional(entries_.front().due);
  }

  // The first task, if it is due by now.
  [[nodiscard]] std::optional<Task> popDue(Moment now) {
    if (entries_.empty() || entries_.front().due > now) {
      return std::nullopt;
    }
    std::ranges::pop_heap(entries_, later);
    Task task = std::move(entries_.back().task);
    entries_.pop_back();
    return task;
  }

  // Everything that still waits, for its owner to let go of outside its lock.
  [[nodiscard]] auto takeAll() { return std::exchange(entries_, {}); }

 private:
  struct Entry {
    Moment due;
    std::uint64_t sequence;
    Task task;
  };

  static bool later(const Entry& a, const Entry& b) {
    return std::pair(a.due, a.sequence) > std::pair(b.due, b.sequence);
  }

  std::vector<Entry> entries_;
  std::uint64_t sequence_ = 0;
};

}  // namespace quenlio
