// Threads for detached work, at most so many at a time. A thread ends when nothing is left to do, so that an idle
// program has none. Work is begun in the order in which it came. Any thread may add some.
#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>

#include "core/platform/Scheduler.h"

namespace quenlio {

class WorkerPool {
 public:
  // Threads in the background stand back where the machine is busy: what is on the screen goes first.
  enum class Priority { normal, background };

  WorkerPool(Priority priority, int mostThreads) : priority_(priority), mostThreads_(mostThreads) {}
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;
  // Drops what waits and waits for what runs.
  ~WorkerPool();

  // Throws, and then forgets the task, when no thread is there for it and none can be made.
  void run(Task task);

 private:
  void work();

  const Priority priority_;
  const int mostThreads_;
  std::mutex mutex_;
  std::condition_variable idle_;
  std::deque<Task> waiting_;  // guarded by mutex_
  int running_ = 0;           // threads; guarded by mutex_
};

}  // namespace quenlio
