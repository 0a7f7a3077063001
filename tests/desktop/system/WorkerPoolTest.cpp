// Detached work: so many threads at most, in order, and no thread counted that was never made.
#include <algorithm>
#include <array>
#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <pthread.h>
#include <sys/resource.h>
#include <system_error>
#include <thread>
#include <vector>

#include "desktop/linux/system/WorkerPool.h"

namespace quenlio {
namespace {

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

// While this lives every new thread asks for a stack that no machine has.
class NoNewThreads {
 public:
  NoNewThreads() {
    pthread_getattr_default_np(&before_);
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, std::size_t{1} << 60U);
    isSet_ = pthread_setattr_default_np(&attributes) == 0;
    pthread_attr_destroy(&attributes);
  }
  NoNewThreads(const NoNewThreads&) = delete;
  NoNewThreads& operator=(const NoNewThreads&) = delete;
  ~NoNewThreads() {
    pthread_setattr_default_np(&before_);
    pthread_attr_destroy(&before_);
  }
  [[nodiscard]] bool isSet() const { return isSet_; }

 private:
  pthread_attr_t before_{};
  bool isSet_ = false;
};

TEST(WorkerPool, beginsWorkInTheOrderInWhichItCame) {
  std::array<Gate, 2> gates;
  std::vector<int> order;
  std::promise<void> done;
  WorkerPool pool{WorkerPool::Priority::normal, 2};
  for (Gate& gate : gates) {
    pool.run(gate.task());
    gate.entered.get_future().wait();
  }
  for (int number = 1; number <= 3; ++number) {
    pool.run([&, number] {
      order.push_back(number);
      if (number == 3) {
        done.set_value();
      }
    });
  }
  gates[0].open.set_value();  // one thread alone, so that the order can be seen
  done.get_future().wait();
  gates[1].open.set_value();
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TEST(WorkerPool, standsBackInTheBackgroundOnly) {
  const int own = getpriority(PRIO_PROCESS, 0);
  for (const auto priority : {WorkerPool::Priority::normal, WorkerPool::Priority::background}) {
    std::promise<int> niceness;
    auto told = niceness.get_future();
    WorkerPool pool{priority, 2};
    pool.run([&niceness] { niceness.set_value(getpriority(PRIO_PROCESS, 0)); });
    const int expected = priority == WorkerPool::Priority::normal ? own : std::max(own, 10);
    EXPECT_EQ(told.get(), expected);
  }
}

class WorkerPoolOf : public testing::TestWithParam<int> {};

TEST_P(WorkerPoolOf, runsSoManyAtATime) {
  std::vector<Gate> gates(static_cast<std::size_t>(GetParam()));
  WorkerPool pool{WorkerPool::Priority::normal, GetParam()};
  std::promise<void> oneMore;
  for (Gate& gate : gates) {
    pool.run(gate.task());
  }
  for (Gate& gate : gates) {
    gate.entered.get_future().wait();  // all have begun, and none is done
  }
  auto ran = oneMore.get_future();
  pool.run([&oneMore] { oneMore.set_value(); });
  EXPECT_EQ(ran.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
  gates.front().open.set_value();
  ran.wait();
  for (std::size_t i = 1; i < gates.size(); ++i) {
    gates[i].open.set_value();
  }
}

INSTANTIATE_TEST_SUITE_P(OneAndTwo, WorkerPoolOf, testing::Values(1, 2));

TEST(WorkerPool, dropsWhatWaitsAndWaitsForWhatRuns) {
  std::array<Gate, 2> gates;
  std::atomic<int> finished = 0;
  bool hasRun = false;
  {
    WorkerPool pool{WorkerPool::Priority::normal, 2};
    for (Gate& gate : gates) {
      pool.run([&finished, task = gate.task()] {
        task();
        ++finished;
      });
      gate.entered.get_future().wait();
    }
    // What waits is dropped first: letting go of what it holds opens the gates.
    const std::shared_ptr<void> opener(nullptr, [&gates](void*) {
      for (Gate& gate : gates) {
        gate.open.set_value();
      }
    });
    pool.run([&hasRun, opener] { hasRun = true; });
  }
  EXPECT_EQ(finished, 2);
  EXPECT_FALSE(hasRun);
}

TEST(WorkerPool, countsNoThreadThatCouldNotBeMade) {
  std::promise<void> done;
  WorkerPool pool{WorkerPool::Priority::normal, 2};
  {
    const NoNewThreads none;
    ASSERT_TRUE(none.isSet());
    EXPECT_THROW(pool.run([] { FAIL() << "nobody was to run this"; }), std::system_error);
  }
  pool.run([&done] { done.set_value(); });
  done.get_future().wait();
}  // and its end waits for no thread that never was

TEST(WorkerPool, leavesWorkToTheThreadThatIsThereWhenNoSecondOneCanBeMade) {
  Gate gate;
  std::promise<void> done;
  WorkerPool pool{WorkerPool::Priority::normal, 2};
  pool.run(gate.task());
  gate.entered.get_future().wait();
  {
    const NoNewThreads none;
    ASSERT_TRUE(none.isSet());
    pool.run([&done] { done.set_value(); });
  }
  gate.open.set_value();
  done.get_future().wait();
}

}  // namespace
}  // namespace quenlio
