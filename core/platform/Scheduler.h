// Time and threads. Everything in core/ that waits, repeats or leaves the main thread goes through these three, so that
// a test can put virtual time in their place.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "core/base/Date.h"
#include "core/base/Subscription.h"

namespace quenlio {

using Task = std::function<void()>;

// A timer or a delayed task that is ended by letting go of it. Main thread, like the Scheduler that gave it.
using ScheduledTask = Subscription;

class Clock {
 public:
  virtual ~Clock() = default;
  // Wall time. It may jump. Any thread.
  [[nodiscard]] virtual Date now() const = 0;
  // Time since some fixed moment; it never goes back. Any thread.
  [[nodiscard]] virtual std::chrono::nanoseconds monotonic() const = 0;
};

// A queue of its own that runs one task after the other, in the order of posting. Tasks that are still waiting when it
// is destroyed are dropped; one that is running is waited for.
class SerialQueue {
 public:
  virtual ~SerialQueue() = default;
  [[nodiscard]] virtual const std::string& label() const = 0;
  // Any thread.
  virtual void async(Task task) = 0;
  // Runs the task after all that was posted before it and returns when it is done. Any thread; called from a task of
  // this very queue, it runs at once.
  virtual void sync(const Task& task) = 0;
  // Any thread. The delay counts from now; tasks that are due together run in the order of posting.
  virtual void after(Seconds delay, Task task) = 0;
};

enum class QualityOfService { userInitiated, unspecified, utility, background };

// The main queue and the way off it.
class Scheduler {
 public:
  virtual ~Scheduler() = default;

  // Runs the task on the main thread, after all that was posted before it. Any thread.
  virtual void post(Task task) = 0;
  // Once, on the main thread, unless the handle goes first. Main thread.
  [[nodiscard]] virtual ScheduledTask after(Seconds delay, Task task) = 0;
  // Again and again, on the main thread, first after one interval. The tolerance allows a firing to come later by up to
  // that much, so that wake-ups can be shared. Main thread.
  [[nodiscard]] virtual ScheduledTask every(Seconds interval, Seconds tolerance, Task task) = 0;
  // Once, on some other thread, at the given priority. Tasks at background, which may take very long, run one after the
  // other in the order of asking, and no task of another priority waits for them. Any thread.
  virtual void detached(QualityOfService priority, Task task) = 0;

  [[nodiscard]] virtual std::unique_ptr<SerialQueue> makeSerialQueue(std::string label, QualityOfService quality) = 0;
};

}  // namespace quenlio
