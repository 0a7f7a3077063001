// The main queue on Qt's event loop: tasks posted from any thread, timers, and the way to other threads. Made on the
// main thread after the application object, and destroyed there before it.
//
// Timers with a tolerance wait for one another within it, so that an idle program wakes up as seldom as it may.
#pragma once

#include <QSocketNotifier>
#include <QTimer>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

#include "core/base/WeakOwner.h"
#include "core/platform/Scheduler.h"

#include "desktop/linux/system/WorkerPool.h"

namespace quenlio {

class MainQueue final : public Scheduler {
 public:
  MainQueue();
  MainQueue(const MainQueue&) = delete;
  MainQueue& operator=(const MainQueue&) = delete;
  // Drops what waits, and waits for detached work that runs.
  ~MainQueue() override;

  void post(Task task) override;
  [[nodiscard]] ScheduledTask after(Seconds delay, Task task) override;
  [[nodiscard]] ScheduledTask every(Seconds interval, Seconds tolerance, Task task) override;
  void detached(QualityOfService priority, Task task) override;
  [[nodiscard]] std::unique_ptr<SerialQueue> makeSerialQueue(std::string label, QualityOfService quality) override;

 private:
  class Timers;

  [[nodiscard]] ScheduledTask handleOf(std::uint64_t id) const;
  void runPosted();
  [[nodiscard]] std::size_t postedCount();
  // The one that was posted first of those that wait.
  [[nodiscard]] std::optional<Task> takePosted();

  std::mutex mutex_;
  std::deque<Task> posted_;  // guarded by mutex_
  struct EventDescriptor {
    EventDescriptor();
    EventDescriptor(const EventDescriptor&) = delete;
    EventDescriptor& operator=(const EventDescriptor&) = delete;
    ~EventDescriptor();
    int fd;
  };
  EventDescriptor wakeUp_;  // readable exactly while tasks wait; written and read under mutex_
  QSocketNotifier notifier_;
  std::shared_ptr<Timers> timers_;  // shared with the handles, which may outlive this
  // The last of the three to go: tasks of the others hand work on to it.
  WorkerPool background_{WorkerPool::Priority::background, 1};
  WorkerPool utility_{WorkerPool::Priority::background, 2};
  WorkerPool workers_{WorkerPool::Priority::normal, 2};
  WeakOwner<MainQueue> weak_{this};
};

}  // namespace quenlio
