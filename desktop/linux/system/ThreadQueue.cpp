#include "desktop/linux/system/ThreadQueue.h"

#include <future>
#include <pthread.h>
#include <utility>

namespace quenlio {

using SteadyClock = std::chrono::steady_clock;

ThreadQueue::~ThreadQueue() {
  {
    const std::scoped_lock lock(mutex_);
    isStopping_ = true;
  }
  changed_.notify_all();
  if (thread_.joinable()) {
    thread_.join();
  }
}

void ThreadQueue::async(Task task) {
  // Due now and not at once: what has become due while the queue was busy does not wait for what came later.
  push(SteadyClock::now(), std::move(task));
}

void ThreadQueue::after(Seconds delay, Task task) {
  push(SteadyClock::now() + std::chrono::ceil<SteadyClock::duration>(delay), std::move(task));
}

void ThreadQueue::sync(const Task& task) {
  {
    std::unique_lock lock(mutex_);
    if (threadID_ == std::this_thread::get_id()) {
      lock.unlock();
      task();
      return;
    }
  }
  std::promise<void> done;
  async([&task, &done] {
    task();
    done.set_value();
  });
  done.get_future().wait();
}

void ThreadQueue::push(TaskHeap::Moment due, Task task) {
  {
    const std::scoped_lock lock(mutex_);
    waiting_.push(due, std::move(task));
    if (!thread_.joinable()) {
      thread_ = std::thread(&ThreadQueue::run, this);
      threadID_ = thread_.get_id();
    }
  }
  changed_.notify_one();
}

void ThreadQueue::run() {
  // The kernel keeps 15 characters of a thread's name.
  pthread_setname_np(pthread_self(), label_.substr(0, 15).c_str());
  std::unique_lock lock(mutex_);
  while (!isStopping_) {
    if (auto task = waiting_.popDue(SteadyClock::now())) {
      lock.unlock();
      (*task)();
      task.reset();  // what it holds is let go of outside the lock
      lock.lock();
    } else if (const auto due = waiting_.nextDue()) {
      changed_.wait_until(lock, *due);
    } else {
      changed_.wait(lock);
    }
  }
  const auto dropped = waiting_.takeAll();
  lock.unlock();
}

}  // namespace quenlio
