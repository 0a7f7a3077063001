// Lists of callbacks: who is called, in which order, and what may happen during a call.
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "core/base/Observers.h"

namespace quenlio {
namespace {

class ObserversTest : public testing::Test {
 protected:
  // One that notes its name and what it was told.
  [[nodiscard]] Subscription add(const std::string& name) {
    return observers.add([this, name](int number) { told += name + std::to_string(number) + ' '; });
  }

  std::string told;
  Observers<int> observers;
};

TEST_F(ObserversTest, areCalledInTheOrderInWhichTheyJoined) {
  const auto b = add("b");
  const auto a = add("a");
  EXPECT_EQ(told, "");
  observers.call(1);
  observers.call(2);
  EXPECT_EQ(told, "b1 a1 b2 a2 ");
  EXPECT_EQ(observers.size(), 2U);
}

TEST_F(ObserversTest, oneThatIsCalledAtOnceHearsOfItAloneAndThenOfEachCall) {
  const auto a = add("a");
  const auto b = observers.addAndCall([this](int number) { told += "b" + std::to_string(number) + ' '; }, 7);
  EXPECT_EQ(told, "b7 ");
  observers.call(1);
  EXPECT_EQ(told, "b7 a1 b1 ");
}

TEST_F(ObserversTest, oneThatIsCalledAtOnceKeepsItsStateForTheCallsToCome) {
  const auto counting = observers.addAndCall([this, count = 0](int) mutable { told += std::to_string(++count); }, 0);
  observers.call(0);
  observers.call(0);
  EXPECT_EQ(told, "123");
}

TEST_F(ObserversTest, lettingGoOfTheSubscriptionIsLeaving) {
  const auto stays = add("s");
  {
    const auto leaves = add("l");
    EXPECT_EQ(observers.size(), 2U);
  }
  EXPECT_EQ(observers.size(), 1U);
  observers.call(1);
  EXPECT_EQ(told, "s1 ");
}

TEST_F(ObserversTest, oneThatLeavesDuringACallIsNotCalledAgainAndTheOthersAre) {
  std::optional<Subscription> leaving;
  const auto first = observers.add([&](int) { leaving.reset(); });
  leaving = add("l");
  const auto last = add("a");
  observers.call(1);
  EXPECT_EQ(told, "a1 ");
}

TEST_F(ObserversTest, oneMayLeaveFromInsideItsOwnCall) {
  std::optional<Subscription> own;
  own = observers.add([this, &own, kept = std::string(100, 'x')](int) {
    own.reset();
    told += std::to_string(kept.size());
  });
  observers.call(1);
  observers.call(2);
  EXPECT_EQ(told, "100");
}

TEST_F(ObserversTest, oneThatJoinsDuringACallHearsOfTheNextOne) {
  std::optional<Subscription> joined;
  const auto first = observers.add([&](int) {
    if (!joined) {
      joined = add("j");
    }
  });
  observers.call(1);
  EXPECT_EQ(told, "");
  observers.call(2);
  EXPECT_EQ(told, "j2 ");
}

TEST_F(ObserversTest, aCallFromInsideACallRunsToItsEndFirst) {
  const auto first = observers.add([this](int number) {
    if (number == 1) {
      observers.call(2);
    }
  });
  const auto second = add("s");
  observers.call(1);
  EXPECT_EQ(told, "s2 s1 ");
}

TEST(Observers, theSubscriptionMayOutliveTheList) {
  auto kept = std::make_shared<int>(0);
  Subscription subscription;
  {
    Observers<> observers;
    subscription = observers.add([kept] { ++*kept; });
    observers.call();
  }
  subscription.cancel();
  EXPECT_EQ(*kept, 1);
  EXPECT_EQ(kept.use_count(), 1) << "whoever has left is let go of";
}

TEST(Observers, mayAnswerThroughWhatTheyAreGiven) {
  Observers<int, bool&> observers;
  const auto odd = observers.add([](int number, bool& isTaken) { isTaken = isTaken || number % 2 == 1; });
  const auto large = observers.add([](int number, bool& isTaken) { isTaken = isTaken || number > 10; });
  for (const auto& [number, expected] : {std::pair(3, true), std::pair(4, false), std::pair(12, true)}) {
    bool isTaken = false;
    observers.call(number, isTaken);
    EXPECT_EQ(isTaken, expected) << number;
  }
}

// What a call holds on to is its own copy: the list itself may go in the middle of it.
TEST(Observers, theListMayGoDuringACall) {
  int calls = 0;
  auto observers = std::make_unique<Observers<>>();
  const auto first = observers->add([&] {
    ++calls;
    observers.reset();
  });
  const auto second = observers->add([&] { ++calls; });
  observers->call();
  EXPECT_EQ(calls, 2);
}

}  // namespace
}  // namespace quenlio
