// Virtual time that remembers how urgent and how exact the work was asked to be, which virtual time itself leaves out
// of account.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/harness/VirtualTime.h"

namespace quenlio {

class SchedulerRecorder final : public Scheduler {
 public:
  struct Repeating {
    Seconds interval;
    Seconds tolerance;
    bool operator==(const Repeating&) const = default;
  };

  // The time outlives this object.
  explicit SchedulerRecorder(VirtualTime& time) : time_(time) {}

  void post(Task task) override { time_.post(std::move(task)); }
  [[nodiscard]] ScheduledTask after(Seconds delay, Task task) override { return time_.after(delay, std::move(task)); }
  [[nodiscard]] ScheduledTask every(Seconds interval, Seconds tolerance, Task task) override {
    repeating.push_back({interval, tolerance});
    if (whenRepeating) {
      whenRepeating(interval);
    }
    return time_.every(interval, tolerance, std::move(task));
  }
  void detached(QualityOfService priority, Task task) override {
    detachedPriorities.push_back(priority);
    time_.detached(priority, std::move(task));
  }
  [[nodiscard]] std::unique_ptr<SerialQueue> makeSerialQueue(std::string label, QualityOfService quality) override {
    queueQualities[label] = quality;
    return time_.makeSerialQueue(std::move(label), quality);
  }

  std::vector<Repeating> repeating;  // in the order of asking
  std::vector<QualityOfService> detachedPriorities;
  std::map<std::string, QualityOfService> queueQualities;  // by label
  // Hears of each interval before its timer waits.
  std::function<void(Seconds interval)> whenRepeating;

 private:
  VirtualTime& time_;
};

}  // namespace quenlio
