#include "tests/harness/VirtualTime.h"

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

namespace quenlio {
namespace {

constexpr int kMostTasksWithoutProgress = 10'000;
constexpr auto kStart = std::chrono::sys_days(std::chrono::year(2026) / 11 / 15) + std::chrono::hours(21);

std::chrono::nanoseconds nanoseconds(Seconds duration) {
  return std::chrono::round<std::chrono::nanoseconds>(duration);
}

}  // namespace

class VirtualTime::Queue final : public SerialQueue {
 public:
  Queue(VirtualTime& time, QueueID id, std::string label) : time_(time), id_(id), label_(std::move(label)) {}
  ~Queue() override { time_.dropQueue(id_); }

  [[nodiscard]] const std::string& label() const override { return label_; }
  void async(Task task) override { time_.add(time_.elapsed_, id_, std::move(task)); }
  void sync(const Task& task) override { time_.syncOn(id_, task); }
  void after(Seconds delay, Task task) override {
    time_.add(time_.elapsed_ + nanoseconds(delay), id_, std::move(task));
  }

 private:
  VirtualTime& time_;
  QueueID id_;
  std::string label_;
};

Date VirtualTime::now() const {
  return Date(kStart) + elapsed_ + wallOffset_;
}

void VirtualTime::post(Task task) {
  add(elapsed_, kMainQueue, std::move(task));
}

ScheduledTask VirtualTime::after(Seconds delay, Task task) {
  const auto sequence = add(elapsed_ + nanoseconds(delay), kMainQueue, std::move(task));
  return ScheduledTask([this, sequence, alive = std::weak_ptr(isAlive_)] {
    if (!alive.expired()) {
      remove(sequence);
    }
  });
}

ScheduledTask VirtualTime::every(Seconds interval, Seconds, Task task) {
  const auto sequence = add(elapsed_ + nanoseconds(interval), kMainQueue, std::move(task), nanoseconds(interval));
  return ScheduledTask([this, sequence, alive = std::weak_ptr(isAlive_)] {
    if (!alive.expired()) {
      remove(sequence);
    }
  });
}

void VirtualTime::detached(QualityOfService priority, Task task) {
  add(elapsed_, priority == QualityOfService::background ? kBackgroundQueue : ++lastQueue_, std::move(task));
}

std::unique_ptr<SerialQueue> VirtualTime::makeSerialQueue(std::string label, QualityOfService) {
  return std::make_unique<Queue>(*this, ++lastQueue_, std::move(label));
}

std::uint64_t VirtualTime::add(std::chrono::nanoseconds due, QueueID queue, Task task,
                               std::optional<std::chrono::nanoseconds> interval) {
  entries_.push_back({due, ++lastSequence_, queue, std::move(task), interval});
  return lastSequence_;
}

void VirtualTime::remove(std::uint64_t sequence) {
  entries_.remove_if([&](const Entry& entry) { return entry.sequence == sequence; });
}

void VirtualTime::dropQueue(QueueID queue) {
  entries_.remove_if([&](const Entry& entry) { return entry.queue == queue; });
}

void VirtualTime::syncOn(QueueID queue, const Task& task) {
  if (current_ != queue) {
    runDue(queue);
  }
  const QueueID before = std::exchange(current_, queue);
  task();
  current_ = before;
}

// The entry to run next: the earliest; with a seed, any queue's earliest of those that are due as early.
VirtualTime::Entries::iterator VirtualTime::first(std::optional<QueueID> only) {
  const auto order = [](const Entry& entry) { return std::pair(entry.due, entry.sequence); };
  std::vector<Entries::iterator> earliestOfQueue;
  for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
    if (only && entry->queue != *only) {
      continue;
    }
    const auto known = std::ranges::find(earliestOfQueue, entry->queue, [](auto other) { return other->queue; });
    if (known == earliestOfQueue.end()) {
      earliestOfQueue.push_back(entry);
    } else if (order(*entry) < order(**known)) {
      *known = entry;
    }
  }
  if (earliestOfQueue.empty()) {
    return entries_.end();
  }
  const auto earliest = *std::ranges::min_element(earliestOfQueue, {}, [&](auto entry) { return order(*entry); });
  if (!shuffle_) {
    return earliest;
  }
  std::erase_if(earliestOfQueue, [&](auto entry) { return entry->due > std::max(earliest->due, elapsed_); });
  std::uniform_int_distribution<std::size_t> choice(0, earliestOfQueue.size() - 1);
  return earliestOfQueue[choice(*shuffle_)];
}

void VirtualTime::run(Entries::iterator entry) {
  if (++tasksSinceProgress_ > kMostTasksWithoutProgress) {
    throw std::logic_error("ten thousand tasks ran without any time passing");
  }
  const Task task = entry->interval ? entry->task : std::move(entry->task);
  const QueueID queue = entry->queue;
  if (entry->interval) {
    entry->due += *entry->interval;
  } else {
    entries_.erase(entry);
  }
  const QueueID before = std::exchange(current_, queue);
  task();
  current_ = before;
}

void VirtualTime::runDue(std::optional<QueueID> only) {
  for (auto entry = first(only); entry != entries_.end() && entry->due <= elapsed_; entry = first(only)) {
    run(entry);
  }
}

void VirtualTime::runReady() {
  tasksSinceProgress_ = 0;
  runDue(std::nullopt);
}

void VirtualTime::advanceBy(Seconds duration) {
  const auto end = elapsed_ + nanoseconds(duration);
  runReady();
  for (auto entry = first(std::nullopt); entry != entries_.end() && entry->due <= end; entry = first(std::nullopt)) {
    if (entry->due > elapsed_) {
      elapsed_ = entry->due;
      tasksSinceProgress_ = 0;
    }
    run(entry);
  }
  elapsed_ = end;
  tasksSinceProgress_ = 0;
}

}  // namespace quenlio
