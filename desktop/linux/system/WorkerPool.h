// Threads for detached work, at most two at a time. A thread ends when nothing is left to do, so that an idle program
// has none. Any thread may add work.
//
// What the user waits for goes ahead of all other work that waits; apart from that, work is begun in the order in which
// it came.
#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>

#include "core/platform/Scheduler.h"

namespace quenlio {

class WorkerPool {
 public:
  WorkerPool() = default;
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;
  // Drops what waits and waits for what runs.
  ~WorkerPool();

  // Throws, and then forgets the task, when no thread is there for it and none can be made.
  void run(QualityOfService quality, Task task);

 private:
  void work();
  // The next in turn. With the lock, and with something that waits.
  [[nodiscard]] Task takeNext();

  std::mutex mutex_;
  std::condition_variable idle_;
  std::deque<Task> awaited_;  // by the user; guarded by mutex_
  std::deque<Task> others_;   // guarded by mutex_
  int running_ = 0;           // threads; guarded by mutex_
};

}  // namespace quenlio
