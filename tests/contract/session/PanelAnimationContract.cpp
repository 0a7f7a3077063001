// What every panel's animations do.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

#include "tests/contract/session/PanelContract.h"

namespace quenlio {
namespace {

using namespace std::chrono_literals;

template <class Kind>
class PanelAnimationContract : public testing::Test {
 protected:
  void SetUp() override { panel->orderFrontRegardless(); }

  [[nodiscard]] static PanelAnimation to(const Rect<Screen>& frame, Seconds duration, double alpha = 1) {
    return {.duration = duration, .curve = kEaseIn, .alpha = alpha, .frame = frame};
  }
  // A completion that counts.
  [[nodiscard]] static std::function<void()> counting(int& count) {
    return [&count] { ++count; };
  }
  // Until another panel's animation of this length has ended: by then all that began before it and was shorter has.
  [[nodiscard]] bool settle(Seconds duration) {
    const auto other = kind.make(kStart);
    int ended = 0;
    other->runAnimationGroup(to(kStart, duration), counting(ended));
    return kind.waitFor([&ended] { return ended == 1; });
  }

  static constexpr Rect<Screen> kStart{{700, 300}, {232, 232}};
  static constexpr Rect<Screen> kEnd{{700, 292}, {340, 232}};
  static constexpr Rect<Screen> kElsewhere{{300, 300}, {232, 232}};
  Kind kind;
  std::unique_ptr<Panel> panel = kind.make(kStart);
};

using Kinds = testing::Types<FakePanels, RealPanels>;
TYPED_TEST_SUITE(PanelAnimationContract, Kinds);

TYPED_TEST(PanelAnimationContract, endsExactlyWhereItWasToldAndTellsOnceAndNotBefore) {
  ASSERT_TRUE(this->kind.blend());
  const auto began = this->kind.clock().monotonic();
  int ended = 0;
  this->panel->runAnimationGroup(this->to(this->kEnd, 120ms, 0.5), [&] {
    ++ended;
    EXPECT_EQ(this->panel->frame(), this->kEnd) << "it is there before that is told";
  });
  EXPECT_EQ(ended, 0);
  ASSERT_TRUE(this->kind.waitFor([&ended] { return ended > 0; }));
  EXPECT_GE(this->kind.clock().monotonic() - began, 120ms);
  EXPECT_EQ(this->panel->frame(), this->kEnd);
  EXPECT_NEAR(this->kind.alpha(), 0.5, 0.01);
  ASSERT_TRUE(this->settle(150ms));
  EXPECT_EQ(ended, 1);
}

TYPED_TEST(PanelAnimationContract, isNeverOutsideOfItsStartAndItsEnd) {
  int ended = 0;
  this->panel->runAnimationGroup(this->to(this->kEnd, 120ms), this->counting(ended));
  ASSERT_TRUE(this->kind.waitFor([&] {
    const Rect<Screen> now = this->panel->frame();
    EXPECT_EQ(now.minX(), this->kStart.minX());
    EXPECT_GE(now.minY(), this->kEnd.minY());
    EXPECT_LE(now.minY(), this->kStart.minY());
    EXPECT_GE(now.size.width, this->kStart.size.width);
    EXPECT_LE(now.size.width, this->kEnd.size.width);
    EXPECT_EQ(now.size.height, this->kStart.size.height);
    return ended > 0;
  }));
}

TYPED_TEST(PanelAnimationContract, anOvertakenOneMovesNothingAnyMoreAndBothTellOnce) {
  ASSERT_TRUE(this->kind.blend());
  int first = 0;
  int second = 0;
  this->panel->runAnimationGroup(this->to(this->kElsewhere, 300ms, 0), this->counting(first));
  this->panel->runAnimationGroup(this->to(this->kEnd, 60ms, 0.5), this->counting(second));
  ASSERT_TRUE(this->kind.waitFor([&] { return second > 0; }));
  EXPECT_EQ(this->panel->frame(), this->kEnd);
  ASSERT_TRUE(this->kind.waitFor([&] { return first > 0; }));
  EXPECT_EQ(this->panel->frame(), this->kEnd);
  EXPECT_NEAR(this->kind.alpha(), 0.5, 0.01);
  ASSERT_TRUE(this->settle(300ms));
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 1);
}

TYPED_TEST(PanelAnimationContract, aFrameSetByHandStaysAndTheAlphaGoesOn) {
  ASSERT_TRUE(this->kind.blend());
  int ended = 0;
  this->panel->runAnimationGroup(this->to(this->kEnd, 120ms, 0.5), this->counting(ended));
  this->panel->setFrame(this->kElsewhere);
  ASSERT_TRUE(this->kind.waitFor([&ended] { return ended > 0; }));
  EXPECT_EQ(this->panel->frame(), this->kElsewhere);
  EXPECT_NEAR(this->kind.alpha(), 0.5, 0.01);
  EXPECT_EQ(ended, 1);
}

TYPED_TEST(PanelAnimationContract, anOriginSetByHandStaysToo) {
  int ended = 0;
  this->panel->runAnimationGroup(this->to({{700, 292}, this->kStart.size}, 120ms), this->counting(ended));
  this->panel->setFrameOrigin(this->kElsewhere.origin);
  ASSERT_TRUE(this->kind.waitFor([&ended] { return ended > 0; }));
  EXPECT_EQ(this->panel->frame(), this->kElsewhere);
}

TYPED_TEST(PanelAnimationContract, anAlphaSetByHandStaysAndTheFrameGoesOn) {
  ASSERT_TRUE(this->kind.blend());
  int ended = 0;
  this->panel->runAnimationGroup(this->to(this->kEnd, 120ms, 0), this->counting(ended));
  this->panel->setAlphaValue(1);
  ASSERT_TRUE(this->kind.waitFor([&ended] { return ended > 0; }));
  EXPECT_NEAR(this->kind.alpha(), 1, 0.01);
  EXPECT_EQ(this->panel->frame(), this->kEnd);
}

TYPED_TEST(PanelAnimationContract, tellsAlsoWhenThePanelWentOutMeanwhile) {
  int ended = 0;
  this->panel->runAnimationGroup(this->to(this->kEnd, 60ms), this->counting(ended));
  this->panel->orderOut();
  ASSERT_TRUE(this->kind.waitFor([&ended] { return ended > 0; }));
  EXPECT_FALSE(this->panel->isVisible());
  EXPECT_EQ(this->panel->frame(), this->kEnd);
}

TYPED_TEST(PanelAnimationContract, theCompletionIsDroppedWithThePanel) {
  int ended = 0;
  const auto held = std::make_shared<int>(0);
  this->panel->runAnimationGroup(this->to(this->kEnd, 60ms), [&ended, held] { ++ended; });
  this->panel.reset();
  EXPECT_EQ(held.use_count(), 1) << "a dropped completion must not be kept";
  ASSERT_TRUE(this->settle(100ms));
  EXPECT_EQ(ended, 0);
}

TYPED_TEST(PanelAnimationContract, aCompletionMayBeginTheNextAnimation) {
  int ended = 0;
  this->panel->runAnimationGroup(this->to(this->kEnd, 40ms), [&] {
    this->panel->runAnimationGroup(this->to(this->kElsewhere, 40ms), this->counting(ended));
  });
  ASSERT_TRUE(this->kind.waitFor([&ended] { return ended > 0; }));
  EXPECT_EQ(this->panel->frame(), this->kElsewhere);
}

TYPED_TEST(PanelAnimationContract, aCompletionMayEndThePanel) {
  int next = 0;
  this->panel->runAnimationGroup(this->to(this->kEnd, 40ms), [this] { this->panel.reset(); });
  this->panel->runAnimationGroup(this->to(this->kEnd, 80ms), this->counting(next));
  ASSERT_TRUE(this->kind.waitFor([this] { return this->panel == nullptr; }));
  ASSERT_TRUE(this->settle(100ms));
  EXPECT_EQ(next, 0);
}

TYPED_TEST(PanelAnimationContract, oneOfNoLengthAndWithNobodyToTellEndsToo) {
  this->panel->runAnimationGroup(this->to(this->kEnd, 0ms), {});
  ASSERT_TRUE(this->kind.waitFor([this] { return this->panel->frame() == this->kEnd; }));
  int ended = 0;
  this->panel->runAnimationGroup(this->to(this->kStart, 0ms), this->counting(ended));
  EXPECT_EQ(ended, 0);
  ASSERT_TRUE(this->kind.waitFor([&ended] { return ended > 0; }));
  EXPECT_EQ(this->panel->frame(), this->kStart);
}

}  // namespace
}  // namespace quenlio
