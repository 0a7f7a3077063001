// A serial queue on a thread of its own. The thread starts with the first task and sleeps while none is due.
#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "core/platform/Scheduler.h"

#include "desktop/linux/system/TaskHeap.h"

namespace quenlio {

class ThreadQueue final : public SerialQueue {
 public:
  explicit ThreadQueue(std::string label) : label_(std::move(label)) {}
  ThreadQueue(const ThreadQueue&) = delete;
  ThreadQueue& operator=(const ThreadQueue&) = delete;
  // Drops what waits and joins the thread. Not from a task of this queue.
  ~ThreadQueue() override;

  [[nodiscard]] const std::string& label() const override { return label_; }
  void async(Task task) override;
  void sync(const Task& task) override;
  void after(Seconds delay, Task task) override;

 private:
  void push(TaskHeap::Moment due, Task task);
  void run();

  const std::string label_;
  std::mutex mutex_;
  std::condition_variable changed_;
  TaskHeap waiting_;          // guarded by mutex_
  bool isStopping_ = false;   // guarded by mutex_
  std::thread::id threadID_;  // guarded by mutex_
  std::thread thread_;        // started under mutex_, joined by the destructor
};

}  // namespace quenlio
