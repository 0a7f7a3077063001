#include "desktop/linux/session/MainQueue.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "desktop/linux/system/ThreadQueue.h"

namespace quenlio {

using SteadyClock = std::chrono::steady_clock;

// Every timer that is armed, and the one toolkit timer that wakes for the most urgent.
class MainQueue::Timers {
 public:
  Timers() {
    wake_.setTimerType(Qt::PreciseTimer);
    wake_.setSingleShot(true);
    QObject::connect(&wake_, &QTimer::timeout, &wake_, [this] { fireDue(); });
  }

  std::uint64_t add(SteadyClock::duration delay, SteadyClock::duration tolerance, bool repeats, Task task) {
    const std::uint64_t id = ++lastID_;
    const Task shared = std::move(task);
    timers_.emplace(
        id, Timer{SteadyClock::now() + delay, tolerance, repeats ? delay : SteadyClock::duration::zero(), shared});
    rearm();
    return id;
  }

  void remove(std::uint64_t id) {
    if (timers_.erase(id) > 0) {
      rearm();
    }
  }

 private:
  struct Timer {
    SteadyClock::time_point due;
    SteadyClock::duration tolerance;
    SteadyClock::duration interval;  // zero for a one-shot
    Task task;
  };

  void rearm() {
    if (timers_.empty()) {
      wake_.stop();
      return;
    }
    const auto urgent = std::ranges::min_element(
        timers_, {}, [](const auto& timer) { return timer.second.due + timer.second.tolerance; });
    const auto wait = urgent->second.due + urgent->second.tolerance - SteadyClock::now();
    wake_.start(std::max(std::chrono::ceil<std::chrono::milliseconds>(wait), std::chrono::milliseconds::zero()));
  }

  // The timer that is due first of those that are due by now, in the order of arming.
  [[nodiscard]] auto nextDue(SteadyClock::time_point now) {
    auto next = std::ranges::min_element(timers_, {}, [](const auto& timer) { return timer.second.due; });
    return next != timers_.end() && next->second.due <= now ? next : timers_.end();
  }

  void fireDue() {
    const auto now = SteadyClock::now();
    for (auto timer = nextDue(now); timer != timers_.end(); timer = nextDue(now)) {
      const Task task = timer->second.task;  // a copy: the task may let go of its own timer
      if (timer->second.interval == SteadyClock::duration::zero()) {
        timers_.erase(timer);
      } else {
        // Firings that were missed are not made up for.
        timer->second.due = std::max(timer->second.due + timer->second.interval, now + SteadyClock::duration(1));
      }
      task();
    }
    rearm();
  }

  std::map<std::uint64_t, Timer> timers_;
  std::uint64_t lastID_ = 0;
  QTimer wake_;
};

MainQueue::EventDescriptor::EventDescriptor() : fd(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (fd < 0) {
    throw std::system_error(errno, std::generic_category(), "eventfd");
  }
}

MainQueue::EventDescriptor::~EventDescriptor() {
  close(fd);
}

MainQueue::MainQueue() : notifier_(wakeUp_.fd, QSocketNotifier::Read), timers_(std::make_shared<Timers>()) {
  QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { runPosted(); });
}

MainQueue::~MainQueue() = default;

void MainQueue::post(Task task) {
  const std::scoped_lock lock(mutex_);
  posted_.push_back(std::move(task));
  if (posted_.size() == 1) {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(wakeUp_.fd, &one, sizeof one);
  }
}

// Runs what stood in the queue at the start; what those tasks post waits for the next turn, after pending events.
void MainQueue::runPosted() {
  std::uint64_t count = 0;
  [[maybe_unused]] const auto got = read(wakeUp_.fd, &count, sizeof count);
  std::deque<Task> tasks;
  {
    const std::scoped_lock lock(mutex_);
    tasks.swap(posted_);
  }
  for (auto& task : tasks) {
    std::exchange(task, nullptr)();
  }
}

ScheduledTask MainQueue::after(Seconds delay, Task task) {
  const auto id = timers_->add(std::chrono::ceil<SteadyClock::duration>(std::max(delay, Seconds::zero())),
                               SteadyClock::duration::zero(), false, std::move(task));
  return ScheduledTask([weak = std::weak_ptr(timers_), id] {
    if (const auto timers = weak.lock()) {
      timers->remove(id);
    }
  });
}

ScheduledTask MainQueue::every(Seconds interval, Seconds tolerance, Task task) {
  const auto id = timers_->add(std::chrono::ceil<SteadyClock::duration>(interval),
                               std::chrono::ceil<SteadyClock::duration>(tolerance), true, std::move(task));
  return ScheduledTask([weak = std::weak_ptr(timers_), id] {
    if (const auto timers = weak.lock()) {
      timers->remove(id);
    }
  });
}

void MainQueue::detached(QualityOfService, Task task) {
  workers_.run(std::move(task));
}

std::unique_ptr<SerialQueue> MainQueue::makeSerialQueue(std::string label, QualityOfService) {
  return std::make_unique<ThreadQueue>(std::move(label));
}

}  // namespace quenlio
