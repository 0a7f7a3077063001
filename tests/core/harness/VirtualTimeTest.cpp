// The time of the tests themselves: order, limits and what a seed may change.
#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <rapidcheck/gtest.h>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/harness/VirtualTime.h"

namespace quenlio {
namespace {

using namespace std::chrono_literals;

TEST(VirtualTime, runsTasksByDueTimeAndThenByPosting) {
  VirtualTime time;
  std::string order;
  const auto queue = time.makeSerialQueue("q", QualityOfService::utility);
  const auto late = time.after(2s, [&] { order += 'd'; });
  const auto early = time.after(1s, [&] { order += 'b'; });
  queue->after(1s, [&] { order += 'c'; });
  time.post([&] { order += 'a'; });
  time.advanceBy(2s);
  EXPECT_EQ(order, "abcd");
}

TEST(VirtualTime, nothingRunsBeforeItIsDue) {
  VirtualTime time;
  int runs = 0;
  const auto task = time.after(1300ms, [&] { ++runs; });
  time.advanceBy(1300ms - 1ns);
  EXPECT_EQ(runs, 0);
  time.advanceBy(1ns);
  EXPECT_EQ(runs, 1);
  EXPECT_EQ(time.pending(), 0U);
}

TEST(VirtualTime, runningWhatIsReadyDoesNotMoveTheClock) {
  VirtualTime time;
  std::string order;
  const auto begin = time.now();
  const auto later = time.after(1s, [&] { order += 'z'; });
  time.post([&] {
    order += 'a';
    time.post([&] { order += 'b'; });
  });
  time.runReady();
  EXPECT_EQ(order, "ab");
  EXPECT_EQ(time.now(), begin);
}

TEST(VirtualTime, aTaskSeesTheTimeAtWhichItIsDue) {
  VirtualTime time;
  std::vector<std::chrono::nanoseconds> seen;
  const auto begin = time.now();
  const auto task = time.after(250ms, [&] {
    seen.push_back(time.monotonic());
    seen.push_back(time.now() - begin);
  });
  time.advanceBy(1s);
  EXPECT_EQ(seen, (std::vector<std::chrono::nanoseconds>{250ms, 250ms}));
  EXPECT_EQ(time.monotonic(), 1s);
}

TEST(VirtualTime, repeatsAtExactIntervalsUntilTheHandleGoes) {
  VirtualTime time;
  std::vector<std::chrono::nanoseconds> seen;
  auto timer = time.every(5s, 200ms, [&] { seen.push_back(time.monotonic()); });
  time.advanceBy(15s);
  EXPECT_EQ(seen, (std::vector<std::chrono::nanoseconds>{5s, 10s, 15s}));
  timer.cancel();
  time.advanceBy(60s);
  EXPECT_EQ(seen.size(), 3U);
  EXPECT_EQ(time.pending(), 0U);
}

TEST(VirtualTime, aTimerMayEndItself) {
  VirtualTime time;
  int runs = 0;
  ScheduledTask timer;
  timer = time.every(1s, 0s, [&] {
    if (++runs == 2) {
      timer.cancel();
    }
  });
  time.advanceBy(10s);
  EXPECT_EQ(runs, 2);
}

TEST(VirtualTime, aCancelledTaskNeverRuns) {
  VirtualTime time;
  int runs = 0;
  auto task = time.after(1s, [&] { ++runs; });
  task.cancel();
  time.advanceBy(2s);
  EXPECT_EQ(runs, 0);
}

TEST(VirtualTime, aHandleMayOutliveTheTime) {
  ScheduledTask task;
  {
    VirtualTime time;
    task = time.after(1s, [] {});
  }
  task.cancel();
  EXPECT_FALSE(task);
}

TEST(VirtualTime, tenThousandTasksWithoutTheClockMovingAreAnError) {
  VirtualTime time;
  int runs = 0;
  std::function<void()> again = [&] {
    ++runs;
    time.post(again);
  };
  time.post(again);
  EXPECT_THROW(time.runReady(), std::logic_error);
  EXPECT_EQ(runs, 10'000);
}

TEST(VirtualTime, tenThousandTasksInOneGoAreNone) {
  VirtualTime time;
  int runs = 0;
  for (int i = 0; i < 10'000; ++i) {
    time.post([&] { ++runs; });
  }
  time.runReady();
  EXPECT_EQ(runs, 10'000);
}

TEST(VirtualTime, theErrorAlsoComesWhileTheClockIsOnItsWay) {
  VirtualTime time;
  std::function<void()> again = [&] { time.post(again); };
  const auto task = time.after(1s, again);
  EXPECT_THROW(time.advanceBy(2s), std::logic_error);
}

TEST(VirtualTime, manyTasksOverALongTimeAreNoError) {
  VirtualTime time;
  int runs = 0;
  const auto timer = time.every(1ms, 0s, [&] { ++runs; });
  time.advanceBy(30s);
  EXPECT_EQ(runs, 30'000);
}

TEST(VirtualTime, syncRunsAfterAllThatStoodInTheQueue) {
  VirtualTime time;
  std::string order;
  const auto queue = time.makeSerialQueue("q", QualityOfService::utility);
  const auto other = time.makeSerialQueue("other", QualityOfService::utility);
  other->async([&] { order += 'x'; });
  queue->async([&] { order += 'a'; });
  queue->async([&] { order += 'b'; });
  queue->after(1s, [&] { order += 'z'; });
  queue->sync([&] { order += 'c'; });
  EXPECT_EQ(order, "abc") << "neither what is not due nor what another queue holds";
}

TEST(VirtualTime, syncRunsAtOnceWhenAlreadyOnTheQueue) {
  VirtualTime time;
  std::string order;
  const auto queue = time.makeSerialQueue("q", QualityOfService::utility);
  queue->async([&] {
    order += '(';
    queue->sync([&] { order += 'x'; });
    order += ')';
  });
  queue->async([&] { order += 'y'; });
  time.runReady();
  EXPECT_EQ(order, "(x)y");
}

TEST(VirtualTime, waitingTasksGoWithTheirQueue) {
  VirtualTime time;
  int runs = 0;
  auto queue = time.makeSerialQueue("q", QualityOfService::utility);
  queue->async([&] { ++runs; });
  queue->after(1s, [&] { ++runs; });
  queue.reset();
  EXPECT_EQ(time.pending(), 0U);
  time.advanceBy(2s);
  EXPECT_EQ(runs, 0);
}

TEST(VirtualTime, theWallClockMayJumpWithoutMovingTime) {
  VirtualTime time;
  int runs = 0;
  const auto task = time.after(1s, [&] { ++runs; });
  const auto begin = time.now();
  time.jumpWallClock(-3600s);
  time.runReady();
  EXPECT_EQ(time.now(), begin - 3600s);
  EXPECT_EQ(time.monotonic(), 0s);
  EXPECT_EQ(runs, 0);
}

TEST(VirtualTime, aQueueTellsItsLabel) {
  VirtualTime time;
  EXPECT_EQ(time.makeSerialQueue("Quenlio.Watcher", QualityOfService::userInitiated)->label(), "Quenlio.Watcher");
}

// The order in which three tasks each of three queues run under a seed.
std::string orderUnder(std::uint32_t seed) {
  VirtualTime time(seed);
  std::string order;
  const auto one = time.makeSerialQueue("one", QualityOfService::utility);
  const auto two = time.makeSerialQueue("two", QualityOfService::utility);
  for (int i = 0; i < 3; ++i) {
    time.post([&, i] { order += static_cast<char>('a' + i); });
    one->async([&, i] { order += static_cast<char>('A' + i); });
    two->async([&, i] { order += static_cast<char>('0' + i); });
  }
  time.runReady();
  return order;
}

TEST(VirtualTime, aSeedGivesTheSameOrderEachTimeAndSeedsDiffer) {
  std::set<std::string> orders;
  for (std::uint32_t seed = 0; seed < 50; ++seed) {
    EXPECT_EQ(orderUnder(seed), orderUnder(seed));
    orders.insert(orderUnder(seed));
  }
  EXPECT_GT(orders.size(), 10U);
}

RC_GTEST_PROP(VirtualTimeProperty, noSeedChangesTheOrderWithinAQueueOrLosesATask, (std::uint32_t seed)) {
  const std::string order = orderUnder(seed);
  RC_ASSERT(order.size() == 9U);
  for (const char* queue : {"abc", "ABC", "012"}) {
    RC_ASSERT(order.find(queue[0]) < order.find(queue[1]));
    RC_ASSERT(order.find(queue[1]) < order.find(queue[2]));
  }
}

TEST(VirtualTime, aSeedChangesTheOrderOfDetachedTasksButNotAtBackground) {
  std::set<std::string> utilityOrders;
  for (std::uint32_t seed = 0; seed < 50; ++seed) {
    VirtualTime time(seed);
    std::string utility;
    std::string background;
    for (const char name : {'a', 'b', 'c'}) {
      time.detached(QualityOfService::utility, [&utility, name] { utility += name; });
      time.detached(QualityOfService::background, [&background, name] { background += name; });
    }
    time.runReady();
    EXPECT_EQ(background, "abc") << seed;
    utilityOrders.insert(utility);
  }
  EXPECT_EQ(utilityOrders.size(), 6U);
}

RC_GTEST_PROP(VirtualTimeProperty, noSeedRunsALaterTaskBeforeAnEarlierOne,
              (std::uint32_t seed, const std::vector<std::uint8_t>& delays)) {
  VirtualTime time(seed);
  std::vector<std::chrono::nanoseconds> seen;
  std::vector<std::unique_ptr<SerialQueue>> queues;
  for (int i = 0; i < 3; ++i) {
    queues.push_back(time.makeSerialQueue("q", QualityOfService::utility));
  }
  for (std::size_t i = 0; i < delays.size(); ++i) {
    const auto due = std::chrono::milliseconds(delays[i]);
    queues[i % 3]->after(due, [&, due] {
      RC_ASSERT(time.monotonic() == due);
      seen.push_back(due);
    });
  }
  time.advanceBy(1s);
  RC_ASSERT(seen.size() == delays.size());
  RC_ASSERT(std::ranges::is_sorted(seen));
}

}  // namespace
}  // namespace quenlio
