// Threads for detached work, at most two at a time. A thread ends when nothing is left to do, so that an idle program
// has none. Any thread may add work.
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

  void run(Task task);

 private:
  void work();

  std::mutex mutex_;
  std::condition_variable idle_;
  std::deque<Task> waiting_;  // guarded by mutex_
  int running_ = 0;           // threads; guarded by mutex_
};

}  // namespace quenlio
