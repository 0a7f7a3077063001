#include <gtest/gtest.h>

#include "core/island/PreviewEmphasis.h"

namespace quenlio {
namespace {

TEST(PreviewEmphasis, isThatOfTheTable) {
  const PreviewEmphasis neither{0.10, 6, 0, 0.08, 8, 1, 1.0};
  const PreviewEmphasis hovering{0.14, 8, 2, 0.10, 9, 1, 1.015};
  const PreviewEmphasis holding{0.18, 10, 2, 0.12, 10, 2, 1.025};
  EXPECT_EQ(PreviewEmphasis::of(false, false), neither);
  EXPECT_EQ(PreviewEmphasis::of(false, true), hovering);
  EXPECT_EQ(PreviewEmphasis::of(true, true), holding);
  // A drag takes the pointer away while it is held.
  EXPECT_EQ(PreviewEmphasis::of(true, false), holding);
}

TEST(PreviewEmphasis, goesFromOneToTheOtherInEachOfItsNumbers) {
  const PreviewEmphasis from{0, 1, 2, 3, 4, 5, 6};
  const PreviewEmphasis to{1, 3, 5, 7, 9, 11, 13};
  EXPECT_EQ(PreviewEmphasis::between(from, to, 0), from);
  EXPECT_EQ(PreviewEmphasis::between(from, to, 1), to);
  EXPECT_EQ(PreviewEmphasis::between(from, to, 0.5), (PreviewEmphasis{0.5, 2, 3.5, 5, 6.5, 8, 9.5}));
}

TEST(PreviewEmphasis, aHandThatHoldsHasACurveOfItsOwn) {
  using Motion = std::variant<TimedCurve, Spring>;
  const Motion holding = TimedCurve{{{0.22, 1, 0.36, 1}}, Seconds(0.12)};
  EXPECT_EQ(PreviewEmphasis::motion(false, true), holding);
  EXPECT_EQ(PreviewEmphasis::motion(true, false), holding);
  EXPECT_EQ(PreviewEmphasis::motion(false, false), Motion(Spring::withResponse(Seconds(0.22), 0.84)));
}

}  // namespace
}  // namespace quenlio
