// What every desktop tells of its appearance.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <vector>

#include "desktop/linux/session/QtAppearance.h"

#include "tests/desktop/session/Desk.h"
#include "tests/desktop/session/FakePortal.h"
#include "tests/fakes/FakeDesktop.h"

namespace quenlio {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Light and with the usual contrast, until the user sets it otherwise.
struct FakeKind {
  std::unique_ptr<FakeAppearance> fake = std::make_unique<FakeAppearance>();
  Appearance& appearance() { return *fake; }
  void end() { fake.reset(); }
  void setDark(bool dark) { fake->setDark(dark); }
  void setIncreasesContrast(bool increases) { fake->setIncreasesContrast(increases); }
  static bool waitFor(const std::function<bool()>& condition) { return condition(); }
};

struct RealKind {
  FakePortal portal;
  std::unique_ptr<QtAppearance> real;
  RealKind() {
    portal.colorScheme = 2;
    real = std::make_unique<QtAppearance>();
    if (!waitUntil([this] { return portal.answered == 2; })) {
      throw std::runtime_error("The portal was not asked.");
    }
  }
  Appearance& appearance() { return *real; }
  void end() { real.reset(); }
  void setDark(bool dark) { portal.change("color-scheme", dark ? 1 : 2); }
  void setIncreasesContrast(bool increases) { portal.change("contrast", increases ? 1 : 0); }
  static bool waitFor(const std::function<bool()>& condition) { return waitUntil(condition); }
};

template <class Kind>
class AppearanceContract : public testing::Test {
 protected:
  Appearance& appearance() { return kind.appearance(); }
  // Everything that was set before has been told, once this last change has.
  [[nodiscard]] bool settle() {
    bool isTold = false;
    const Subscription last = appearance().observeAccessibilityDisplayOptions([&isTold] { isTold = true; });
    kind.setIncreasesContrast(!appearance().accessibilityDisplayShouldIncreaseContrast());
    return kind.waitFor([&isTold] { return isTold; });
  }
  [[nodiscard]] std::function<void()> noting(int who) {
    return [this, who] { told.push_back(who); };
  }

  std::vector<int> told;
  Kind kind;
};

using Kinds = testing::Types<FakeKind, RealKind>;
TYPED_TEST_SUITE(AppearanceContract, Kinds);

TYPED_TEST(AppearanceContract, aChangeIsToldOnceItIsMade) {
  std::vector<bool> dark;
  const Subscription observer =
      this->appearance().observeEffectiveAppearance([&] { dark.push_back(this->appearance().isDarkAqua()); });
  EXPECT_FALSE(this->appearance().isDarkAqua());
  EXPECT_THAT(dark, IsEmpty()) << "the state that was there is not told";
  this->kind.setDark(true);
  ASSERT_TRUE(this->kind.waitFor([&dark] { return !dark.empty(); }));
  EXPECT_TRUE(this->appearance().isDarkAqua());
  this->kind.setDark(false);
  ASSERT_TRUE(this->settle());
  EXPECT_THAT(dark, ElementsAre(true, false));
}

TYPED_TEST(AppearanceContract, aChangeOfContrastIsToldOnceItIsMade) {
  std::vector<bool> increases;
  const Subscription observer = this->appearance().observeAccessibilityDisplayOptions(
      [&] { increases.push_back(this->appearance().accessibilityDisplayShouldIncreaseContrast()); });
  EXPECT_FALSE(this->appearance().accessibilityDisplayShouldIncreaseContrast());
  this->kind.setIncreasesContrast(true);
  ASSERT_TRUE(this->kind.waitFor([&increases] { return !increases.empty(); }));
  this->kind.setIncreasesContrast(false);
  ASSERT_TRUE(this->kind.waitFor([&increases] { return increases.size() >= 2; }));
  EXPECT_THAT(increases, ElementsAre(true, false));
}

TYPED_TEST(AppearanceContract, whatStaysAsItWasIsNotTold) {
  const Subscription dark = this->appearance().observeEffectiveAppearance(this->noting(1));
  this->kind.setDark(false);
  ASSERT_TRUE(this->settle());
  EXPECT_THAT(this->told, IsEmpty());
  this->kind.setDark(true);
  this->kind.setDark(true);
  ASSERT_TRUE(this->settle());
  EXPECT_THAT(this->told, ElementsAre(1));
}

TYPED_TEST(AppearanceContract, eachObserverHearsOfItsOwnKindOfChange) {
  const Subscription dark = this->appearance().observeEffectiveAppearance(this->noting(1));
  const Subscription contrast = this->appearance().observeAccessibilityDisplayOptions(this->noting(2));
  this->kind.setIncreasesContrast(true);
  this->kind.setDark(true);
  ASSERT_TRUE(this->kind.waitFor([this] { return this->told.size() >= 2; }));
  EXPECT_THAT(this->told, ElementsAre(2, 1));
}

TYPED_TEST(AppearanceContract, observersAreToldInTheirOrderUntilTheirSubscriptionEnds) {
  const Subscription first = this->appearance().observeEffectiveAppearance(this->noting(1));
  Subscription second = this->appearance().observeEffectiveAppearance(this->noting(2));
  const Subscription third = this->appearance().observeEffectiveAppearance(this->noting(3));
  this->kind.setDark(true);
  ASSERT_TRUE(this->settle());
  EXPECT_THAT(this->told, ElementsAre(1, 2, 3));
  second.cancel();
  this->kind.setDark(false);
  ASSERT_TRUE(this->settle());
  EXPECT_THAT(this->told, ElementsAre(1, 2, 3, 1, 3));
}

TYPED_TEST(AppearanceContract, anObserverThatIsEndedByAnotherIsNotToldAnyMore) {
  Subscription second;
  const Subscription first = this->appearance().observeEffectiveAppearance([&] {
    this->told.push_back(1);
    second.cancel();
  });
  second = this->appearance().observeEffectiveAppearance(this->noting(2));
  this->kind.setDark(true);
  ASSERT_TRUE(this->settle());
  EXPECT_THAT(this->told, ElementsAre(1));
}

TYPED_TEST(AppearanceContract, anObserverMayEndItself) {
  Subscription only;
  only = this->appearance().observeEffectiveAppearance([&] {
    this->told.push_back(1);
    only.cancel();
  });
  this->kind.setDark(true);
  this->kind.setDark(false);
  ASSERT_TRUE(this->settle());
  EXPECT_THAT(this->told, ElementsAre(1));
}

TYPED_TEST(AppearanceContract, aSubscriptionMayOutliveTheAppearance) {
  const auto held = std::make_shared<int>(0);
  Subscription observer = this->appearance().observeEffectiveAppearance([held] {});
  EXPECT_EQ(held.use_count(), 2);
  this->kind.end();
  observer.cancel();
  EXPECT_EQ(held.use_count(), 1);
}

}  // namespace
}  // namespace quenlio
