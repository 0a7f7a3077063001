// Scheduler of a test on real threads. Serial queues and detached work have the program's own threads; the main queue
// is worked off by the test's thread, while it waits for something. No toolkit, so that the thread sanitizer sees it
// all.
//
// The thread that makes it is the main thread. Conditions are about what tasks of the main queue have done: they are
// looked at after each of them, and nothing else ends a wait but the deadline.
#pragma once

#include <algorithm>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "core/platform/Scheduler.h"

#include "desktop/linux/system/LinuxClock.h"
#include "desktop/linux/system/TaskHeap.h"
#include "desktop/linux/system/ThreadQueue.h"
#include "desktop/linux/system/WorkerPool.h"

namespace quenlio {

class ThreadScheduler final : public Scheduler {
 public:
  // Those of detached work: at background, and at all other priorities.
  static constexpr int kBackgroundThreads = 1;
  static constexpr int kWorkers = 2;

  ThreadScheduler() = default;
  ThreadScheduler(const ThreadScheduler&) = delete;
  ThreadScheduler& operator=(const ThreadScheduler&) = delete;

  void post(Task task) override { push(now(), std::move(task)); }
  [[nodiscard]] ScheduledTask after(Seconds delay, Task task) override { return arm({delay, false, std::move(task)}); }
  [[nodiscard]] ScheduledTask every(Seconds interval, Seconds, Task task) override {
    return arm({interval, true, std::move(task)});
  }
  void detached(QualityOfService priority, Task task) override {
    (priority == QualityOfService::background ? background_ : workers_).run(std::move(task));
  }
  [[nodiscard]] std::unique_ptr<SerialQueue> makeSerialQueue(std::string label, QualityOfService) override {
    return std::make_unique<ThreadQueue>(std::move(label));
  }

  // Runs the main queue until the condition holds; false when the deadline has passed first.
  [[nodiscard]] bool runUntil(const std::function<bool()>& condition) {
    const auto end = deadline();
    while (!condition()) {
      if (!waitForTask(end)) {
        return false;
      }
      runNext();
    }
    return true;
  }
  // Runs all that is due now, and what that posts.
  void runReady() {
    while (runNext()) {
    }
  }
  // Waits until a task of the main queue is due, and leaves it there. False when the deadline has passed first.
  [[nodiscard]] bool waitForTask() { return waitForTask(deadline()); }

 private:
  struct Timer {
    Seconds delay;
    bool repeats;
    Task task;
  };

  static TaskHeap::Moment now() { return TaskHeap::Moment(LinuxClock().monotonic()); }
  static TaskHeap::Moment deadline() { return now() + std::chrono::seconds(20); }

  // The handle alone keeps the timer.
  [[nodiscard]] ScheduledTask arm(Timer timer) {
    auto armed = std::make_shared<const Timer>(std::move(timer));
    await(armed);
    return ScheduledTask([armed]() mutable { armed.reset(); });
  }
  void await(const std::shared_ptr<const Timer>& timer) {
    push(now() + std::chrono::ceil<TaskHeap::Moment::duration>(timer->delay), [this, weak = std::weak_ptr(timer)] {
      if (const auto due = weak.lock()) {
        if (due->repeats) {
          await(due);
        }
        due->task();
      }
    });
  }

  void push(TaskHeap::Moment due, Task task) {
    {
      const std::scoped_lock lock(mutex_);
      waiting_.push(due, std::move(task));
    }
    changed_.notify_one();
  }
  bool runNext() {
    std::unique_lock lock(mutex_);
    const auto task = waiting_.popDue(now());
    lock.unlock();
    if (task) {
      (*task)();
    }
    return task.has_value();
  }
  bool waitForTask(TaskHeap::Moment end) {
    std::unique_lock lock(mutex_);
    for (auto due = waiting_.nextDue(); !due || *due > now(); due = waiting_.nextDue()) {
      if (now() >= end) {
        return false;
      }
      changed_.wait_until(lock, std::min(end, due.value_or(end)));
    }
    return true;
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  TaskHeap waiting_;  // guarded by mutex_
  // The first to go, since what runs there may still post; and the workers before the one that they hand work on to.
  WorkerPool background_{WorkerPool::Priority::background, kBackgroundThreads};
  WorkerPool workers_{WorkerPool::Priority::normal, kWorkers};
};

}  // namespace quenlio
