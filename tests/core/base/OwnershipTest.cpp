// The small helpers that tell who owns what and for how long.
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>

#include "core/base/Result.h"
#include "core/base/SharedBinding.h"
#include "core/base/Subscription.h"
#include "core/base/WeakOwner.h"

namespace quenlio {
namespace {

struct Owner {
  int calls = 0;
  int sum = 0;
  WeakOwner<Owner> weak{this};
};

TEST(WeakOwner, callsTheFunctionWithTheOwnerAndTheArgumentsWhileTheOwnerLives) {
  Owner owner;
  const std::function<void(int, int)> add = owner.weak.bind([](Owner& self, int a, int b) {
    ++self.calls;
    self.sum += a + b;
  });
  add(1, 2);
  add(3, 4);
  EXPECT_EQ(owner.calls, 2);
  EXPECT_EQ(owner.sum, 10);
}

TEST(WeakOwner, theCallbackDoesNothingOnceTheOwnerIsGone) {
  auto owner = std::make_unique<Owner>();
  int calls = 0;
  const std::function<void()> callback = owner->weak.bind([&](Owner&) { ++calls; });
  const auto copy = callback;
  callback();
  owner.reset();
  callback();
  copy();
  EXPECT_EQ(calls, 1);
}

TEST(WeakOwner, theCallbackDoesNothingOnceTheOwnerHasLetGo) {
  Owner owner;
  const std::function<void()> count = owner.weak.bind([](Owner& self) { ++self.calls; });
  const std::function<bool()> lives = owner.weak.bindOr(false, [](Owner&) { return true; });
  count();
  EXPECT_TRUE(lives());
  owner.weak.letGo();
  count();
  EXPECT_EQ(owner.calls, 1);
  EXPECT_FALSE(lives());
}

TEST(WeakOwner, givesTheFallbackOnceTheOwnerIsGone) {
  auto owner = std::make_unique<Owner>();
  const std::function<bool(int)> isPositive = owner->weak.bindOr(false, [](Owner&, int number) { return number > 0; });
  EXPECT_TRUE(isPositive(1));
  EXPECT_FALSE(isPositive(-1));
  owner.reset();
  EXPECT_FALSE(isPositive(1));
}

TEST(WeakOwner, passesReferencesOnAsReferences) {
  Owner owner;
  const std::function<void(std::string&)> fill = owner.weak.bind([](Owner&, std::string& text) { text = "filled"; });
  std::string text;
  fill(text);
  EXPECT_EQ(text, "filled");
}

TEST(WeakOwner, theCallbackMayDestroyItsOwner) {
  auto owner = std::make_unique<Owner>();
  int calls = 0;
  const std::function<void()> callback = owner->weak.bind([&](Owner&) {
    ++calls;
    owner.reset();
  });
  callback();
  callback();
  EXPECT_EQ(calls, 1);
}

struct Service {
  int number = 0;
};

TEST(SharedBinding, theBoundInstanceIsTheSharedOneWhileTheBindingLives) {
  Service service;
  const SharedBinding<Service> binding(service);
  EXPECT_EQ(&SharedBinding<Service>::shared(), &service);
}

TEST(SharedBinding, anInnerBindingWinsAndTheOuterOneComesBack) {
  Service outer;
  Service inner;
  const SharedBinding<Service> outerBinding(outer);
  {
    const SharedBinding<Service> innerBinding(inner);
    EXPECT_EQ(&SharedBinding<Service>::shared(), &inner);
  }
  EXPECT_EQ(&SharedBinding<Service>::shared(), &outer);
}

TEST(SharedBindingDeathTest, sharedAssertsWhenNothingIsBound) {
  EXPECT_DEATH((void)SharedBinding<Service>::shared(), "nothing is bound");
  {
    Service service;
    const SharedBinding<Service> binding(service);
  }
  EXPECT_DEATH((void)SharedBinding<Service>::shared(), "nothing is bound") << "nor after the last binding has gone";
}

TEST(Subscription, endsOnceWhenItIsLetGo) {
  int ends = 0;
  {
    Subscription subscription([&] { ++ends; });
    EXPECT_TRUE(subscription);
    subscription.cancel();
    EXPECT_EQ(ends, 1);
    EXPECT_FALSE(subscription);
    subscription.cancel();
  }
  EXPECT_EQ(ends, 1);
}

TEST(Subscription, movesTheRegistrationAlong) {
  int ends = 0;
  Subscription first([&] { ++ends; });
  Subscription second(std::move(first));
  EXPECT_TRUE(second);
  first = Subscription();
  EXPECT_EQ(ends, 0);
  second = Subscription();
  EXPECT_EQ(ends, 1);
}

TEST(Subscription, assigningAnotherEndsTheOneHeldBefore) {
  std::string ended;
  Subscription subscription([&] { ended += 'a'; });
  subscription = Subscription([&] { ended += 'b'; });
  EXPECT_EQ(ended, "a");
  subscription.cancel();
  EXPECT_EQ(ended, "ab");
}

TEST(Subscription, assigningToItselfKeepsTheRegistration) {
  int ends = 0;
  Subscription subscription([&] { ++ends; });
  Subscription& same = subscription;
  subscription = std::move(same);
  EXPECT_TRUE(subscription);
  EXPECT_EQ(ends, 0);
}

TEST(Subscription, mayBeCancelledFromItsOwnEnd) {
  int ends = 0;
  std::optional<Subscription> subscription;
  subscription.emplace([&] {
    ++ends;
    subscription->cancel();
  });
  subscription->cancel();
  EXPECT_EQ(ends, 1);
}

TEST(Result, holdsAValueOrAnErrorOfTheSameTypeApart) {
  struct Failure {
    int code;
  };
  const Result<int, Failure> value = 4;
  const Result<int, Failure> failure = Failure{5};
  ASSERT_TRUE(value.ok());
  EXPECT_EQ(value.value(), 4);
  ASSERT_FALSE(failure);
  EXPECT_EQ(failure.error().code, 5);
}

}  // namespace
}  // namespace quenlio
