#include "desktop/linux/system/WorkerPool.h"

#include <pthread.h>
#include <sys/resource.h>
#include <system_error>
#include <thread>
#include <utility>

namespace quenlio {
namespace {
constexpr int kBackgroundNiceness = 10;
}  // namespace

WorkerPool::~WorkerPool() {
  std::unique_lock lock(mutex_);
  auto dropped = std::exchange(waiting_, {});
  lock.unlock();
  dropped.clear();  // what it holds is let go of outside the lock
  lock.lock();
  idle_.wait(lock, [this] { return running_ == 0; });
}

void WorkerPool::run(Task task) {
  const std::scoped_lock lock(mutex_);
  if (running_ < mostThreads_) {
    try {
      std::thread(&WorkerPool::work, this).detach();
      ++running_;  // before the thread can look, which takes the lock
    } catch (const std::system_error&) {
      if (running_ == 0) {
        throw;
      }
    }
  }
  waiting_.push_back(std::move(task));
}

void WorkerPool::work() {
  pthread_setname_np(pthread_self(), "Quenlio.worker");
  if (priority_ == Priority::background) {
    // Of this thread alone, as Linux has it. A refusal costs nothing but speed elsewhere.
    (void)::setpriority(PRIO_PROCESS, 0, kBackgroundNiceness);
  }
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
