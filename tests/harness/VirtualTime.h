// Scheduler, queues and clock of a test, all on one thread: nothing sleeps, and thirty seconds pass at once.
//
// Tasks run in the order (due time, order of posting). Moving the clock and running what is due are one act in
// advanceBy() and apart in runReady(). A run that executes ten thousand tasks without the clock moving throws, since it
// would never end. With a seed, tasks of different queues that are due together change places; within one queue, never.
// Detached tasks are a queue each, but for those at background, which have one in common.
#pragma once

#include <cstdint>
#include <list>
#include <optional>
#include <random>

#include "core/platform/Scheduler.h"

namespace quenlio {

class VirtualTime final : public Scheduler, public Clock {
 public:
  VirtualTime() = default;
  explicit VirtualTime(std::uint32_t seed) : shuffle_(std::in_place, seed) {}
  VirtualTime(const VirtualTime&) = delete;
  VirtualTime& operator=(const VirtualTime&) = delete;

  // Runs all that is due now, and what that posts.
  void runReady();
  // Moves the clock on, stopping at each due time on the way.
  void advanceBy(Seconds duration);
  // Makes the wall clock jump, as a user may; time that passes is not touched.
  void jumpWallClock(Seconds by) { wallOffset_ += std::chrono::round<std::chrono::nanoseconds>(by); }

  // Tasks and timers that wait, on all queues.
  [[nodiscard]] std::size_t pending() const { return entries_.size(); }

  [[nodiscard]] Date now() const override;
  [[nodiscard]] std::chrono::nanoseconds monotonic() const override { return elapsed_; }

  void post(Task task) override;
  [[nodiscard]] ScheduledTask after(Seconds delay, Task task) override;
  [[nodiscard]] ScheduledTask every(Seconds interval, Seconds tolerance, Task task) override;
  void detached(QualityOfService priority, Task task) override;
  [[nodiscard]] std::unique_ptr<SerialQueue> makeSerialQueue(std::string label, QualityOfService quality) override;

 private:
  class Queue;
  using QueueID = std::uint64_t;
  static constexpr QueueID kMainQueue = 0;
  static constexpr QueueID kBackgroundQueue = 1;

  struct Entry {
    std::chrono::nanoseconds due;
    std::uint64_t sequence;
    QueueID queue;
    Task task;
    std::optional<std::chrono::nanoseconds> interval;
  };
  using Entries = std::list<Entry>;

  std::uint64_t add(std::chrono::nanoseconds due, QueueID queue, Task task,
                    std::optional<std::chrono::nanoseconds> interval = std::nullopt);
  void remove(std::uint64_t sequence);
  void dropQueue(QueueID queue);
  void syncOn(QueueID queue, const Task& task);
  [[nodiscard]] Entries::iterator first(std::optional<QueueID> only);
  void run(Entries::iterator entry);
  void runDue(std::optional<QueueID> only);

  Entries entries_;
  std::chrono::nanoseconds elapsed_{0};
  std::chrono::nanoseconds wallOffset_{0};
  std::uint64_t lastSequence_ = 0;
  QueueID lastQueue_ = kBackgroundQueue;
  QueueID current_ = kMainQueue;
  int tasksSinceProgress_ = 0;
  std::optional<std::mt19937> shuffle_;
  std::shared_ptr<const bool> isAlive_ = std::make_shared<const bool>(true);  // handles may outlive this
};

}  // namespace quenlio
