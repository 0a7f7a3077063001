// Observable values: who is told what, when, and what holds while they are being told.
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Published.h"

namespace quenlio {
namespace {

using Told = std::vector<int>;

TEST(Published, tellsANewObserverThePresentValueAtOnce) {
  Published<int> value(7);
  Told told;
  const auto subscription = value.subscribe([&](int next) { told.push_back(next); });
  EXPECT_EQ(told, Told{7});
}

TEST(Published, startsWithTheEmptyValueOfItsType) {
  const Published<std::string> value;
  EXPECT_EQ(value.get(), "");
}

TEST(Published, announcesTheNextValueBeforeItIsStored) {
  Published<int> value(1);
  Told stored;
  Told told;
  const auto subscription = value.subscribe([&](int next) {
    told.push_back(next);
    stored.push_back(value.get());
  });
  value.set(2);
  value.set(3);
  EXPECT_EQ(told, (Told{1, 2, 3}));
  EXPECT_EQ(stored, (Told{1, 1, 2}));
  EXPECT_EQ(value.get(), 3);
}

TEST(Published, announcesEqualValuesToo) {
  Published<int> value(5);
  Told told;
  const auto subscription = value.subscribe([&](int next) { told.push_back(next); });
  value.set(5);
  value.set(5);
  EXPECT_EQ(told, (Told{5, 5, 5}));
}

TEST(Published, tellsObserversInTheOrderInWhichTheyJoined) {
  Published<int> value(0);
  std::string order;
  const auto first = value.subscribe([&](int) { order += 'a'; });
  const auto second = value.subscribe([&](int) { order += 'b'; });
  const auto third = value.subscribe([&](int) { order += 'c'; });
  order.clear();
  value.set(1);
  EXPECT_EQ(order, "abc");
}

TEST(Published, announcesAnEditOnceHoweverMuchItChanges) {
  Published<std::vector<int>> value({1});
  std::vector<std::vector<int>> told;
  const auto subscription = value.subscribe([&](const auto& next) { told.push_back(next); });
  value.mutate([&](auto& list) {
    list.push_back(2);
    EXPECT_EQ(value.get(), std::vector<int>{1});
    list.push_back(3);
  });
  EXPECT_EQ(told, (std::vector<std::vector<int>>{{1}, {1, 2, 3}}));
  EXPECT_EQ(value.get(), (std::vector<int>{1, 2, 3}));
}

TEST(Published, doesNotTellAnObserverThatHasLeft) {
  Published<int> value(0);
  Told told;
  auto subscription = value.subscribe([&](int next) { told.push_back(next); });
  subscription.cancel();
  value.set(1);
  EXPECT_EQ(told, Told{0});
}

TEST(Published, lettingGoOfTheSubscriptionIsLeaving) {
  Published<int> value(0);
  Told told;
  {
    const auto subscription = value.subscribe([&](int next) { told.push_back(next); });
  }
  value.set(1);
  EXPECT_EQ(told, Told{0});
}

TEST(Published, anObserverThatLeavesDuringAnAnnouncementIsNotCalledAgain) {
  Published<int> value(0);
  Told told;
  std::optional<Subscription> later;
  const auto first = value.subscribe([&](int next) {
    if (next == 1) {
      later.reset();
    }
  });
  later = value.subscribe([&](int next) { told.push_back(next); });
  value.set(1);
  value.set(2);
  EXPECT_EQ(told, Told{0});
}

TEST(Published, anObserverMayLeaveFromInsideItsOwnCall) {
  Published<int> value(0);
  Told told;
  std::optional<Subscription> own;
  own = value.subscribe([&, keepsItsCapturesAlive = std::string(100, 'x')](int next) {
    if (next == 1) {
      own.reset();
    }
    told.push_back(next + static_cast<int>(keepsItsCapturesAlive.size()));
  });
  value.set(1);
  value.set(2);
  EXPECT_EQ(told, (Told{100, 101}));
}

TEST(Published, anObserverThatJoinsDuringAnAnnouncementHearsTheOldValueAtOnceAndOfTheNextOne) {
  Published<int> value(0);
  Told told;
  std::optional<Subscription> joined;
  const auto first = value.subscribe([&](int next) {
    if (next == 1 && !joined) {
      joined = value.subscribe([&](int other) { told.push_back(other); });
    }
  });
  value.set(1);
  EXPECT_EQ(told, Told{0}) << "the announcement under way is not for one who joined during it";
  value.set(2);
  EXPECT_EQ(told, (Told{0, 2}));
}

TEST(Published, aValueSetDuringAnAnnouncementIsAnnouncedInsideItAndTheOuterOneIsStoredLast) {
  Published<int> value(0);
  Told first;
  Told second;
  const auto one = value.subscribe([&](int next) {
    first.push_back(next);
    if (next == 1) {
      value.set(9);
    }
  });
  const auto two = value.subscribe([&](int next) { second.push_back(next); });
  value.set(1);
  EXPECT_EQ(first, (Told{0, 1, 9}));
  EXPECT_EQ(second, (Told{0, 9, 1}));
  EXPECT_EQ(value.get(), 1);
}

TEST(Published, theSubscriptionMayOutliveTheValue) {
  Subscription subscription;
  Told told;
  {
    Published<int> value(3);
    subscription = value.subscribe([&](int next) { told.push_back(next); });
  }
  subscription.cancel();
  EXPECT_FALSE(subscription);
  EXPECT_EQ(told, Told{3});
}

TEST(Published, leavingOneOfTwoKeepsTheOther) {
  Published<int> value(0);
  Told told;
  auto leaving = value.subscribe([&](int next) { told.push_back(next); });
  const auto staying = value.subscribe([&](int next) { told.push_back(10 + next); });
  leaving.cancel();
  value.set(1);
  EXPECT_EQ(told, (Told{0, 10, 11}));
}

}  // namespace
}  // namespace quenlio
