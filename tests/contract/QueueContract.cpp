// What every serial queue does, on virtual time and on a real thread.
#include <atomic>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

#include "desktop/linux/system/ThreadQueue.h"

#include "tests/harness/VirtualTime.h"

namespace quenlio {
namespace {

using namespace std::chrono_literals;

struct VirtualQueues {
  VirtualTime time;
  std::unique_ptr<SerialQueue> make() { return time.makeSerialQueue("queue", QualityOfService::unspecified); }
  // Until everything that was due within a tenth of a second has run.
  void settle(SerialQueue&) { time.advanceBy(Seconds(0.1)); }
};

struct ThreadQueues {
  std::unique_ptr<SerialQueue> make() { return std::make_unique<ThreadQueue>("queue"); }
  void settle(SerialQueue& queue) {
    auto passed = std::make_shared<std::atomic<bool>>(false);
    queue.after(Seconds(0.1), [passed] {
      *passed = true;
      passed->notify_all();
    });
    passed->wait(false);
  }
};

template <class Queues>
class QueueContract : public testing::Test {
 protected:
  Queues queues;
  std::unique_ptr<SerialQueue> queue = queues.make();
};

using Kinds = testing::Types<VirtualQueues, ThreadQueues>;
TYPED_TEST_SUITE(QueueContract, Kinds);

TYPED_TEST(QueueContract, tasksRunInTheOrderOfPosting) {
  std::vector<int> order;
  for (int i = 0; i < 100; ++i) {
    this->queue->async([&order, i] { order.push_back(i); });
  }
  this->queues.settle(*this->queue);
  ASSERT_EQ(order.size(), 100U);
  EXPECT_TRUE(std::ranges::is_sorted(order));
}

TYPED_TEST(QueueContract, syncRunsAfterAllThatWasPostedBefore) {
  std::vector<int> order;
  this->queue->async([&] { order.push_back(1); });
  this->queue->async([&] { order.push_back(2); });
  this->queue->sync([&] { order.push_back(3); });
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TYPED_TEST(QueueContract, syncFromATaskOfTheQueueRunsAtOnce) {
  std::vector<int> order;
  this->queue->sync([&] {
    order.push_back(1);
    this->queue->async([&] { order.push_back(3); });
    this->queue->sync([&] { order.push_back(2); });
  });
  this->queues.settle(*this->queue);
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TYPED_TEST(QueueContract, whatIsDueAlreadyGoesBeforeWhatIsPostedLater) {
  std::vector<int> order;
  this->queue->sync([&] {  // nothing else can begin meanwhile
    this->queue->after(Seconds(0), [&] { order.push_back(1); });
    this->queue->async([&] { order.push_back(2); });
    this->queue->after(Seconds(0), [&] { order.push_back(3); });
  });
  this->queues.settle(*this->queue);
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TYPED_TEST(QueueContract, delayedTasksRunByTheirDueTimes) {
  std::vector<int> order;
  this->queue->after(Seconds(0.03), [&] { order.push_back(3); });
  this->queue->after(Seconds(0.02), [&] { order.push_back(2); });
  this->queue->async([&] { order.push_back(1); });
  this->queues.settle(*this->queue);
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TYPED_TEST(QueueContract, tasksThatAreDueTogetherRunInTheOrderOfPosting) {
  std::vector<int> order;
  for (int i = 0; i < 20; ++i) {
    this->queue->after(Seconds(0.01), [&order, i] { order.push_back(i); });
  }
  this->queues.settle(*this->queue);
  ASSERT_EQ(order.size(), 20U);
  EXPECT_TRUE(std::ranges::is_sorted(order));
}

TYPED_TEST(QueueContract, whatATaskPostsRunsAfterAllThatWaited) {
  std::vector<int> order;
  this->queue->sync([&] {
    this->queue->async([&] {
      order.push_back(1);
      this->queue->async([&] { order.push_back(3); });
    });
    this->queue->async([&] { order.push_back(2); });
  });
  this->queues.settle(*this->queue);
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TYPED_TEST(QueueContract, syncFromATaskOfAnotherQueueRunsAfterWhatWasPostedThere) {
  const auto other = this->queues.make();
  std::vector<int> order;
  this->queue->async([&] {
    other->async([&] { order.push_back(1); });
    other->sync([&] { order.push_back(2); });
    order.push_back(3);
  });
  this->queue->sync([] {});
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TYPED_TEST(QueueContract, tasksThatWaitWhenTheQueueGoesAreDropped) {
  auto ran = std::make_shared<std::atomic<bool>>(false);
  std::weak_ptr<std::atomic<bool>> held = ran;
  this->queue->after(Seconds(60), [ran] { *ran = true; });
  this->queue.reset();
  EXPECT_FALSE(*ran);
  ran.reset();
  EXPECT_TRUE(held.expired()) << "a dropped task must not be kept";
}

TYPED_TEST(QueueContract, itKeepsItsLabel) {
  EXPECT_EQ(this->queue->label(), "queue");
}

}  // namespace
}  // namespace quenlio
