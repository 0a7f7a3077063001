#include "desktop/linux/system/WorkerPool.h"

#include <pthread.h>
#include <thread>
#include <utility>

namespace quenlio {
namespace {
constexpr int kMaximumThreads = 2;
}

WorkerPool::~WorkerPool() {
  std::unique_lock lock(mutex_);
  auto dropped = std::exchange(waiting_, {});
  idle_.wait(lock, [this] { return running_ == 0; });
  lock.unlock();
  dropped.clear();
}

void WorkerPool::run(Task task) {
  const std::scoped_lock lock(mutex_);
  waiting_.push_back(std::move(task));
  if (running_ < kMaximumThreads) {
    ++running_;
    std::thread(&WorkerPool::work, this).detach();
  }
}

void WorkerPool::work() {
  pthread_setname_np(pthread_self(), "Quenlio.utility");
  std::unique_lock lock(mutex_);
  while (!waiting_.empty()) {
    {
      const Task task = std::move(waiting_.front());
      waiting_.pop_front();
      lock.unlock();
      task();
    }  // what the task holds is let go of outside the lock
    lock.lock();
  }
  --running_;
  // Under the lock: the pool may be gone as soon as it is let go of.
  idle_.notify_all();
}

}  // namespace quenlio
