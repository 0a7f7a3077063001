// What every scheduler does: tasks of the main thread, timers, and the way to other threads.
#include <algorithm>
#include <atomic>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include "desktop/linux/session/MainQueue.h"
#include "desktop/linux/system/LinuxClock.h"

#include "tests/contract/session/Until.h"
#include "tests/desktop/session/Desk.h"

namespace quenlio {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

struct VirtualKind {
  std::optional<VirtualTime> time{std::in_place};
  Scheduler& scheduler() { return *time; }
  const Clock& clock() { return *time; }
  void end() { time.reset(); }
  bool waitFor(const std::function<bool()>& condition) { return until(*time, condition); }
};

struct RealKind {
  std::optional<MainQueue> queue{std::in_place};
  LinuxClock linuxClock;
  Scheduler& scheduler() { return *queue; }
  const Clock& clock() { return linuxClock; }
  void end() { queue.reset(); }
  static bool waitFor(const std::function<bool()>& condition) { return waitUntil(condition); }
};

template <class Kind>
class SchedulerContract : public testing::Test {
 protected:
  Scheduler& scheduler() { return kind.scheduler(); }
  // A task that notes its number.
  [[nodiscard]] Task noting(int number) {
    return [this, number] { order.push_back(number); };
  }
  [[nodiscard]] bool waitForCount(std::size_t count) {
    return kind.waitFor([this, count] { return order.size() >= count; });
  }
  // Until a timer has fired that is armed now: by then everything that was due within its time has run.
  [[nodiscard]] bool settle(Seconds duration = 50ms) {
    bool hasFired = false;
    const auto timer = scheduler().after(duration, [&hasFired] { hasFired = true; });
    return kind.waitFor([&hasFired] { return hasFired; });
  }

  std::vector<int> order;
  Kind kind;
};

using Kinds = testing::Types<VirtualKind, RealKind>;
TYPED_TEST_SUITE(SchedulerContract, Kinds);

TYPED_TEST(SchedulerContract, whatIsPostedRunsLaterAndInItsOrder) {
  for (int i = 0; i < 100; ++i) {
    this->scheduler().post(this->noting(i));
  }
  EXPECT_TRUE(this->order.empty());
  ASSERT_TRUE(this->waitForCount(100));
  EXPECT_TRUE(std::ranges::is_sorted(this->order));
}

TYPED_TEST(SchedulerContract, whatATaskPostsRunsAfterAllThatWaited) {
  this->scheduler().post([this] {
    this->order.push_back(1);
    this->scheduler().post(this->noting(3));
  });
  this->scheduler().post(this->noting(2));
  ASSERT_TRUE(this->waitForCount(3));
  EXPECT_THAT(this->order, ElementsAre(1, 2, 3));
}

TYPED_TEST(SchedulerContract, timersFireByTheirDueTimesAndThoseThatAreDueTogetherInTheOrderOfArming) {
  const auto late = this->scheduler().after(30ms, this->noting(5));
  const auto first = this->scheduler().after(0ms, this->noting(1));
  const auto middle = this->scheduler().after(10ms, this->noting(3));
  const auto nextToIt = this->scheduler().after(10ms, this->noting(4));
  const auto second = this->scheduler().after(0ms, this->noting(2));
  EXPECT_TRUE(this->order.empty());
  ASSERT_TRUE(this->waitForCount(5));
  EXPECT_THAT(this->order, ElementsAre(1, 2, 3, 4, 5));
}

TYPED_TEST(SchedulerContract, aDelayedTaskRunsOnceAndNeverEarly) {
  const auto start = this->kind.clock().monotonic();
  const auto timer = this->scheduler().after(25ms, this->noting(1));
  ASSERT_TRUE(this->waitForCount(1));
  EXPECT_GE(this->kind.clock().monotonic() - start, 25ms);
  ASSERT_TRUE(this->settle());
  EXPECT_THAT(this->order, ElementsAre(1));
}

TYPED_TEST(SchedulerContract, lettingGoOfAHandleEndsItsTask) {
  { const auto goesAtOnce = this->scheduler().after(5ms, this->noting(1)); }
  auto isCancelled = this->scheduler().after(5ms, this->noting(2));
  isCancelled.cancel();
  auto isReplaced = this->scheduler().after(5ms, this->noting(3));
  isReplaced = this->scheduler().after(5ms, this->noting(4));
  { const auto repeats = this->scheduler().every(5ms, 0ms, this->noting(5)); }
  ASSERT_TRUE(this->settle());
  EXPECT_THAT(this->order, ElementsAre(4));
}

TYPED_TEST(SchedulerContract, aTaskMayEndAnotherThatIsDueWithIt) {
  ScheduledTask second;
  ScheduledTask third;
  const auto first = this->scheduler().after(5ms, [&] {
    this->order.push_back(1);
    second.cancel();
    third.cancel();
  });
  second = this->scheduler().after(5ms, this->noting(2));
  third = this->scheduler().every(5ms, 0ms, this->noting(3));
  ASSERT_TRUE(this->settle());
  EXPECT_THAT(this->order, ElementsAre(1));
}

TYPED_TEST(SchedulerContract, aRepeatingTaskRunsFirstAfterOneIntervalAndThenAgainNeverEarly) {
  const auto start = this->kind.clock().monotonic();
  std::vector<std::chrono::nanoseconds> fired;
  const auto timer =
      this->scheduler().every(20ms, 5ms, [&] { fired.push_back(this->kind.clock().monotonic() - start); });
  ASSERT_TRUE(this->kind.waitFor([&fired] { return fired.size() >= 3; }));
  for (std::size_t i = 0; i < fired.size(); ++i) {
    EXPECT_GE(fired[i], 20ms * (i + 1)) << i;
  }
}

TYPED_TEST(SchedulerContract, aRepeatingTaskMayEndItself) {
  ScheduledTask timer;
  timer = this->scheduler().every(1ms, 0ms, [&] {
    this->order.push_back(1);
    if (this->order.size() == 3) {
      timer.cancel();
    }
  });
  ASSERT_TRUE(this->waitForCount(3));
  ASSERT_TRUE(this->settle());
  EXPECT_THAT(this->order, ElementsAre(1, 1, 1));
}

TYPED_TEST(SchedulerContract, aDetachedTaskRunsOnceAndPostsBackToTheMainThread) {
  const auto main = std::this_thread::get_id();
  std::vector<std::thread::id> threads;
  for (const auto priority :
       {QualityOfService::userInitiated, QualityOfService::utility, QualityOfService::background}) {
    this->scheduler().detached(priority, [&] {
      this->scheduler().post([&] {
        this->order.push_back(1);
        threads.push_back(std::this_thread::get_id());
      });
    });
  }
  EXPECT_TRUE(this->order.empty());
  ASSERT_TRUE(this->waitForCount(3));
  ASSERT_TRUE(this->settle());
  EXPECT_THAT(this->order, ElementsAre(1, 1, 1));
  EXPECT_THAT(threads, ElementsAre(main, main, main));
}

TYPED_TEST(SchedulerContract, tasksAtBackgroundRunOneAfterTheOtherInTheirOrder) {
  std::atomic<int> running = 0;
  std::atomic<bool> haveMet = false;
  this->scheduler().detached(QualityOfService::utility, [&, this] {
    for (int i = 0; i < 100; ++i) {
      this->scheduler().detached(QualityOfService::background, [&, this, i] {
        haveMet = ++running > 1 || haveMet;
        this->scheduler().post(this->noting(i));
        --running;
      });
    }
  });
  ASSERT_TRUE(this->waitForCount(100));
  EXPECT_TRUE(std::ranges::is_sorted(this->order));
  EXPECT_FALSE(haveMet);
}

TYPED_TEST(SchedulerContract, aSerialQueueRunsBesideTheMainThreadAndPostsBackInItsOrder) {
  const auto queue = this->scheduler().makeSerialQueue("a queue", QualityOfService::utility);
  EXPECT_EQ(queue->label(), "a queue");
  this->scheduler().post(this->noting(2));
  for (const int number : {3, 4, 5}) {
    queue->async([this, number] { this->scheduler().post(this->noting(number)); });
  }
  // The main thread waits meanwhile: what is posted to it runs when it is free again.
  queue->sync(this->noting(1));
  EXPECT_THAT(this->order, ElementsAre(1));
  ASSERT_TRUE(this->waitForCount(5));
  EXPECT_THAT(this->order, ElementsAre(1, 2, 3, 4, 5));
}

TYPED_TEST(SchedulerContract, whatWaitsIsDroppedWithTheSchedulerAndHandlesMayOutliveIt) {
  const auto held = std::make_shared<int>(0);
  const Task task = [this, held] { this->order.push_back(*held); };
  this->scheduler().post(task);
  auto timer = this->scheduler().after(0ms, task);
  auto repeating = this->scheduler().every(60s, 0ms, task);
  EXPECT_EQ(held.use_count(), 5);
  this->kind.end();
  EXPECT_EQ(held.use_count(), 2) << "a dropped task must not be kept";
  timer.cancel();
  repeating.cancel();
  EXPECT_TRUE(this->order.empty());
}

}  // namespace
}  // namespace quenlio
