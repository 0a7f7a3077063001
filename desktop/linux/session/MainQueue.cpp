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

namespace {

// The toolkit counts a wait in milliseconds, in an int that 25 days do not fit into. Waking up before the time is
// harmless: the wait then begins anew.
constexpr std::chrono::milliseconds kLongestWait = std::chrono::hours(24);
// Nobody lives to see it, and the clock can still count it from now, several times over.
constexpr Seconds kLongestDelay = std::chrono::hours(24 * 365 * 50);

// In the clock's units; no delay at all for what is none, and never early.
SteadyClock::duration counted(Seconds delay) {
  return std::chrono::ceil<SteadyClock::duration>(std::min(std::max(Seconds::zero(), delay), kLongestDelay));
}

}  // namespace

// Every timer that is armed, and the one toolkit timer that wakes for the most urgent. A task may run an event loop of
// its own: the other timers go on firing in it, its own does not until the task is done.
class MainQueue::Timers {
 public:
  Timers() {
    wake_.setTimerType(Qt::PreciseTimer);
    wake_.setSingleShot(true);
    const Task fire = weak_.bind([](Timers& self) { self.fireDue(); });
    QObject::connect(&wake_, &QTimer::timeout, &wake_, fire);
  }

  std::uint64_t add(SteadyClock::duration delay, SteadyClock::duration tolerance, bool repeats, Task task) {
    const std::uint64_t id = ++lastID_;
    const Task shared = std::move(task);
    timers_.emplace(id, Timer{SteadyClock::now() + delay, tolerance, repeats ? delay : SteadyClock::duration::zero(),
                              shared, false});
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
    bool isFiring;
  };
  using Entry = std::pair<const std::uint64_t, Timer>;

  static SteadyClock::time_point earliest(const Entry& timer) {
    return timer.second.isFiring ? SteadyClock::time_point::max() : timer.second.due;
  }
  static SteadyClock::time_point latest(const Entry& timer) {
    return timer.second.isFiring ? SteadyClock::time_point::max() : timer.second.due + timer.second.tolerance;
  }

  void rearm() {
    const auto urgent = std::ranges::min_element(timers_, {}, latest);
    if (urgent == timers_.end() || urgent->second.isFiring) {
      wake_.stop();
      return;
    }
    const auto wait = latest(*urgent) - SteadyClock::now();
    wake_.start(std::clamp(std::chrono::ceil<std::chrono::milliseconds>(wait), std::chrono::milliseconds::zero(),
                           kLongestWait));
  }

  // The timer that is due first of those that are due by now, in the order of arming.
  [[nodiscard]] auto nextDue(SteadyClock::time_point now) {
    auto next = std::ranges::min_element(timers_, {}, earliest);
    return next != timers_.end() && earliest(*next) <= now ? next : timers_.end();
  }

  void fireDue() {
    const auto now = SteadyClock::now();
    for (auto timer = nextDue(now); timer != timers_.end(); timer = nextDue(now)) {
      fire(timer->first, timer->second, now);
    }
    rearm();
  }

  void fire(std::uint64_t id, Timer& timer, SteadyClock::time_point now) {
    const Task task = timer.task;  // a copy: the task may let go of its own timer
    if (timer.interval == SteadyClock::duration::zero()) {
      timers_.erase(id);
    } else {
      // Firings that were missed are not made up for.
      timer.due = std::max(timer.due + timer.interval, now + SteadyClock::duration(1));
      timer.isFiring = true;
    }
    rearm();  // for the others, in an event loop that the task may run
    task();
    if (const auto fired = timers_.find(id); fired != timers_.end()) {
      fired->second.isFiring = false;
    }
  }

  std::map<std::uint64_t, Timer> timers_;
  std::uint64_t lastID_ = 0;
  QTimer wake_;
  WeakOwner<Timers> weak_{this};
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
  const Task run = weak_.bind([](MainQueue& self) { self.runPosted(); });
  QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, run);
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

std::size_t MainQueue::postedCount() {
  const std::scoped_lock lock(mutex_);
  return posted_.size();
}

std::optional<Task> MainQueue::takePosted() {
  const std::scoped_lock lock(mutex_);
  if (posted_.empty()) {
    return std::nullopt;
  }
  Task task = std::move(posted_.front());
  posted_.pop_front();
  if (posted_.empty()) {
    std::uint64_t count = 0;
    [[maybe_unused]] const auto got = read(wakeUp_.fd, &count, sizeof count);
  }
  return task;
}

// Runs as many as stood in the queue at the start; what those tasks post waits for the next turn, after pending events.
// Each is taken only when its turn has come: a task may run an event loop of its own, and there the rest goes on.
void MainQueue::runPosted() {
  for (std::size_t left = postedCount(); left > 0; --left) {
    if (const auto task = takePosted()) {
      (*task)();
    }
  }
}

ScheduledTask MainQueue::after(Seconds delay, Task task) {
  return handleOf(timers_->add(counted(delay), SteadyClock::duration::zero(), false, std::move(task)));
}

ScheduledTask MainQueue::every(Seconds interval, Seconds tolerance, Task task) {
  return handleOf(timers_->add(counted(interval), counted(tolerance), true, std::move(task)));
}

ScheduledTask MainQueue::handleOf(std::uint64_t id) const {
  return ScheduledTask([weak = std::weak_ptr(timers_), id] {
    if (const auto timers = weak.lock()) {
      timers->remove(id);
    }
  });
}

void MainQueue::detached(QualityOfService priority, Task task) {
  switch (priority) {
    case QualityOfService::background:
      background_.run(std::move(task));
      break;
    case QualityOfService::utility:
      utility_.run(std::move(task));
      break;
    default:
      workers_.run(std::move(task));
  }
}

// Of whatever quality: a thread has the program's own priority, it may not ask for more, and no queue asks for less.
std::unique_ptr<SerialQueue> MainQueue::makeSerialQueue(std::string label, QualityOfService) {
  return std::make_unique<ThreadQueue>(std::move(label));
}

}  // namespace quenlio
