#include "desktop/linux/system/WorkerPool.h"

#include <pthread.h>
#include <system_error>
#include <thread>
#include <utility>

namespace quenlio {
namespace {
constexpr int kMaximumThreads = 2;
}

WorkerPool::~WorkerPool() {
  std::unique_lock lock(mutex_);
  auto dropped = std::pair(std::exchange(awaited_, {}), std::exchange(others_, {}));
  lock.unlock();
  dropped = {};  // what it holds is let go of outside the lock
  lock.lock();
  idle_.wait(lock, [this] { return running_ == 0; });
}

void WorkerPool::run(QualityOfService quality, Task task) {
  const std::scoped_lock lock(mutex_);
  if (running_ < kMaximumThreads) {
    try {
      std::thread(&WorkerPool::work, this).detach();
      ++running_;  // before the thread can look, which takes the lock
    } catch (const std::system_error&) {
      if (running_ == 0) {
        throw;
      }
    }
  }
  (quality == QualityOfService::userInitiated ? awaited_ : others_).push_back(std::move(task));
}

void WorkerPool::work() {
  pthread_setname_np(pthread_self(), "Quenlio.worker");
  std::unique_lock lock(mutex_);
  while (!awaited_.empty() || !others_.empty()) {
    {
      const Task task = takeNext();
      lock.unlock();
      task();
    }  // what the task holds is let go of outside the lock
    lock.lock();
  }
  --running_;
  // Under the lock: the pool may be gone as soon as it is let go of.
  idle_.notify_all();
}

Task WorkerPool::takeNext() {
  auto& waiting = awaited_.empty() ? others_ : awaited_;
  Task task = std::move(waiting.front());
  waiting.pop_front();
  return task;
}

}  // namespace quenlio
