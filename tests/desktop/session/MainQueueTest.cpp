// Tasks and timers on the real event loop, also inside a loop that a task runs by itself, as a dialog does.
#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtCore/QtGlobal>
#include <algorithm>
#include <array>
#include <atomic>
#include <future>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <thread>
#include <vector>

#include "desktop/linux/session/MainQueue.h"

#include "tests/desktop/session/Desk.h"

namespace quenlio {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

// An event loop inside a task: runs until it is left. One that nobody leaves ends by its alarm.
class NestedLoop {
 public:
  NestedLoop() {
    alarm_.setSingleShot(true);
    QObject::connect(&alarm_, &QTimer::timeout, &loop_, [this] { loop_.exit(1); });
  }
  // False when the alarm has ended it.
  [[nodiscard]] bool run() {
    alarm_.start(5s);
    return loop_.exec() == 0;
  }
  void leave() { loop_.quit(); }

 private:
  QEventLoop loop_;
  QTimer alarm_;
};

class MainQueueTest : public testing::Test {
 protected:
  // A task that notes its number.
  [[nodiscard]] Task noting(int number) {
    return [this, number] { order.push_back(number); };
  }
  [[nodiscard]] bool waitForCount(std::size_t count) {
    return waitUntil([this, count] { return order.size() >= count; });
  }

  std::vector<int> order;
  MainQueue queue;
};

TEST_F(MainQueueTest, runsWhatIsPostedInItsOrderAndOnTheMainThread) {
  std::vector<std::thread::id> threads;
  for (int i = 0; i < 100; ++i) {
    queue.post([&, i] {
      order.push_back(i);
      threads.push_back(std::this_thread::get_id());
    });
  }
  EXPECT_TRUE(order.empty());  // never at once
  ASSERT_TRUE(waitForCount(100));
  EXPECT_TRUE(std::ranges::is_sorted(order));
  EXPECT_EQ(std::ranges::count(threads, std::this_thread::get_id()), 100);
}

TEST_F(MainQueueTest, keepsTheOrderOfEachThreadThatPosts) {
  constexpr int count = 500;
  const auto poster = [this](int first) {
    return std::thread([this, first] {
      for (int i = 0; i < count; ++i) {
        queue.post(noting(first + i));
      }
    });
  };
  std::thread low = poster(0);
  std::thread high = poster(count);
  const bool haveAllRun = waitForCount(2 * count);
  low.join();
  high.join();
  ASSERT_TRUE(haveAllRun);
  std::ranges::stable_partition(order, [](int number) { return number < count; });
  EXPECT_TRUE(std::ranges::is_sorted(order));
}

TEST_F(MainQueueTest, whatATaskPostsWaitsForTheNextTurn) {
  queue.post([this] {
    order.push_back(1);
    queue.post(noting(3));
  });
  queue.post(noting(2));
  ASSERT_TRUE(waitForCount(3));
  EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST_F(MainQueueTest, whatWaitsGoesOnInsideATasksOwnLoopBeforeNewerTasks) {
  NestedLoop nested;
  bool wasLeft = false;
  queue.post([&] {
    order.push_back(1);
    queue.post(noting(4));
    queue.post([&] {
      order.push_back(5);
      nested.leave();
    });
    wasLeft = nested.run();
    order.push_back(6);
  });
  queue.post(noting(2));
  queue.post(noting(3));
  ASSERT_TRUE(waitForCount(6));
  EXPECT_TRUE(wasLeft);
  EXPECT_THAT(order, ElementsAre(1, 2, 3, 4, 5, 6));
}

// The loop is left by what waited, with more behind it.
TEST_F(MainQueueTest, whatATasksOwnLoopLeavesBehindRunsAfterIt) {
  NestedLoop nested;
  bool wasLeft = false;
  queue.post([&] {
    wasLeft = nested.run();
    order.push_back(3);
  });
  queue.post([&] {
    order.push_back(1);
    nested.leave();
    queue.post(noting(5));
  });
  queue.post(noting(2));
  queue.post(noting(4));
  ASSERT_TRUE(waitForCount(5));
  EXPECT_TRUE(wasLeft);
  EXPECT_EQ(order.back(), 5);  // the newest
  EXPECT_EQ(order.size(), 5U);
}

TEST_F(MainQueueTest, timersFireByTheirDueTimesAndThoseThatAreDueTogetherInTheOrderOfArming) {
  const auto late = queue.after(30ms, noting(4));
  const auto first = queue.after(0ms, noting(1));
  const auto middle = queue.after(10ms, noting(3));
  const auto second = queue.after(0ms, noting(2));
  ASSERT_TRUE(waitForCount(4));
  EXPECT_THAT(order, ElementsAre(1, 2, 3, 4));
}

TEST_F(MainQueueTest, aTimerIsNeverEarlyAndNotAfterItsHandleIsGone) {
  const auto start = std::chrono::steady_clock::now();
  auto gone = queue.after(1ms, noting(1));
  gone.cancel();
  const auto timer = queue.after(25ms, noting(2));
  ASSERT_TRUE(waitForCount(1));
  EXPECT_GE(std::chrono::steady_clock::now() - start, 25ms);
  EXPECT_THAT(order, ElementsAre(2));
}

TEST_F(MainQueueTest, aRepeatingTimerMayEndItself) {
  ScheduledTask timer;
  timer = queue.every(1ms, 0ms, [&] {
    order.push_back(1);
    if (order.size() == 3) {
      timer.cancel();
    }
  });
  ASSERT_TRUE(waitForCount(3));
  const auto later = queue.after(20ms, noting(2));
  ASSERT_TRUE(waitForCount(4));
  EXPECT_THAT(order, ElementsAre(1, 1, 1, 2));
}

// The tolerant one is due earlier and waits for the other: both fire in one wake-up of the loop.
TEST_F(MainQueueTest, aTimerWithToleranceSharesTheWakeUpOfALaterOne) {
  const auto start = std::chrono::steady_clock::now();
  int wakeUps = 0;
  std::vector<int> wakeUpsAtFiring;
  std::chrono::steady_clock::duration tolerantFired{};
  const QObject context;
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &context,
                   [&wakeUps] { ++wakeUps; });
  auto tolerant = queue.every(20ms, 10s, [&] {
    tolerantFired = std::chrono::steady_clock::now() - start;
    wakeUpsAtFiring.push_back(wakeUps);
    order.push_back(1);
  });
  const auto exact = queue.after(60ms, [&] {
    wakeUpsAtFiring.push_back(wakeUps);
    order.push_back(2);
    tolerant.cancel();
  });
  ASSERT_TRUE(waitForCount(2));
  EXPECT_THAT(order, ElementsAre(1, 2));
  EXPECT_GE(tolerantFired, 60ms);
  EXPECT_EQ(wakeUpsAtFiring[0], wakeUpsAtFiring[1]);
}

// More milliseconds than the toolkit's timers count to, and more nanoseconds than the clock does.
TEST_F(MainQueueTest, aTimerFarAwayWaitsAndLeavesTheOthersInPeace) {
  static int complaints = 0;
  complaints = 0;
  const QtMessageHandler before =
      qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) { ++complaints; });
  const auto inAMonth = queue.after(24h * 30, noting(1));
  const auto inCenturies = queue.after(Seconds(1e300), noting(1));
  const auto everyCentury = queue.every(Seconds(1e300), Seconds(1e300), noting(1));
  const auto soon = queue.after(20ms, noting(2));
  const bool hasFired = waitForCount(1);
  const auto later = queue.after(20ms, noting(3));  // armed anew, with only the far ones beside it
  const bool hasFiredAgain = hasFired && waitForCount(2);
  qInstallMessageHandler(before);
  EXPECT_TRUE(hasFiredAgain);
  EXPECT_THAT(order, ElementsAre(2, 3));
  EXPECT_EQ(complaints, 0);
}

TEST_F(MainQueueTest, timersFireInsideATimersOwnLoop) {
  NestedLoop nested;
  bool wasLeft = false;
  const auto outer = queue.after(1ms, [&] {
    order.push_back(1);
    wasLeft = nested.run();
    order.push_back(4);
  });
  const auto armedBefore = queue.after(5ms, noting(2));
  const auto leaving = queue.after(10ms, [&] {
    order.push_back(3);
    nested.leave();
  });
  ASSERT_TRUE(waitForCount(4));
  EXPECT_TRUE(wasLeft);
  EXPECT_THAT(order, ElementsAre(1, 2, 3, 4));
}

TEST_F(MainQueueTest, aRepeatingTimerDoesNotFireInsideItsOwnTask) {
  NestedLoop nested;
  bool wasLeft = false;
  ScheduledTask leaving;
  const auto timer = queue.every(1ms, 0ms, [&] {
    order.push_back(1);
    if (order.size() == 1) {
      leaving = queue.after(30ms, [&] { nested.leave(); });
      wasLeft = nested.run();
      order.push_back(2);
    }
  });
  ASSERT_TRUE(waitForCount(3));
  EXPECT_TRUE(wasLeft);
  order.resize(3);
  EXPECT_THAT(order, ElementsAre(1, 2, 1));  // and goes on after it
}

TEST_F(MainQueueTest, detachedWorkRunsElsewhereAndPostsBack) {
  std::atomic<bool> isElsewhere = false;
  const auto main = std::this_thread::get_id();
  queue.detached(QualityOfService::utility, [&, main] {
    isElsewhere = std::this_thread::get_id() != main;
    queue.post(noting(1));
  });
  ASSERT_TRUE(waitForCount(1));
  EXPECT_TRUE(isElsewhere);
}

// Work that holds a thread until it is let go.
struct Gate {
  std::promise<void> entered;
  std::promise<void> open;
  [[nodiscard]] Task task() {
    return [this] {
      entered.set_value();
      open.get_future().wait();
    };
  }
};

TEST_F(MainQueueTest, onlyWorkAtBackgroundWaitsForWorkAtBackground) {
  Gate first;
  Gate second;
  auto begun = second.entered.get_future();
  for (Gate* gate : {&first, &second}) {
    queue.detached(QualityOfService::background, gate->task());
  }
  first.entered.get_future().wait();
  for (const auto priority : {QualityOfService::utility, QualityOfService::utility, QualityOfService::userInitiated}) {
    queue.detached(priority, [this] { queue.post(noting(1)); });
  }
  EXPECT_TRUE(waitForCount(3));
  EXPECT_EQ(begun.wait_for(20ms), std::future_status::timeout) << "one at a time";
  first.open.set_value();
  begun.wait();
  queue.detached(QualityOfService::background, [this] { queue.post(noting(2)); });
  second.open.set_value();
  ASSERT_TRUE(waitForCount(4));
  EXPECT_THAT(order, ElementsAre(1, 1, 1, 2));
}

// What is handed on by then runs or is dropped, and is let go of either way.
TEST_F(MainQueueTest, workThatRunsAtTheEndMayHandOnToBackground) {
  std::array<Gate, 2> gates;
  const auto held = std::make_shared<int>(0);
  {
    MainQueue ending;
    for (Gate& gate : gates) {
      ending.detached(QualityOfService::utility, [&ending, wait = gate.task(), held] {
        wait();
        ending.detached(QualityOfService::background, [held] {});
      });
      gate.entered.get_future().wait();
    }
    // What waits is dropped first: letting go of what it holds opens the gates.
    const std::shared_ptr<void> opener(nullptr, [&gates](void*) {
      for (Gate& gate : gates) {
        gate.open.set_value();
      }
    });
    ending.detached(QualityOfService::utility, [opener] {});
  }
  EXPECT_EQ(held.use_count(), 1);
}

}  // namespace
}  // namespace quenlio
