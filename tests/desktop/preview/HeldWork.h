// A scheduler on virtual time whose work on other threads takes as long as the test says.
#pragma once

#include <deque>
#include <utility>

#include "tests/harness/VirtualTime.h"

namespace quenlio {

class HeldWork final : public Scheduler {
 public:
  void post(Task task) override { time.post(std::move(task)); }
  [[nodiscard]] ScheduledTask after(Seconds delay, Task task) override { return time.after(delay, std::move(task)); }
  [[nodiscard]] ScheduledTask every(Seconds interval, Seconds tolerance, Task task) override {
    return time.every(interval, tolerance, std::move(task));
  }
  void detached(QualityOfService /*priority*/, Task task) override { held_.push_back(std::move(task)); }
  [[nodiscard]] std::unique_ptr<SerialQueue> makeSerialQueue(std::string label, QualityOfService quality) override {
    return time.makeSerialQueue(std::move(label), quality);
  }

  [[nodiscard]] std::size_t running() const { return held_.size(); }
  // The oldest, or another one by its age, comes to its end, and what it tells arrives.
  void finishOne(std::size_t index = 0) {
    const Task task = std::move(held_.at(index));
    held_.erase(held_.begin() + static_cast<std::ptrdiff_t>(index));
    task();
    time.runReady();
  }
  // All of it, and what it leads to within this time of each.
  void finishAll(Seconds pause) {
    time.advanceBy(pause);
    while (!held_.empty()) {
      finishOne();
      time.advanceBy(pause);
    }
  }

  VirtualTime time;

 private:
  std::deque<Task> held_;
};

}  // namespace quenlio
