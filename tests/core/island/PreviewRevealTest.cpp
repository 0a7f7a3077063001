#include <gtest/gtest.h>

#include "core/island/PreviewReveal.h"

namespace quenlio {
namespace {

TEST(PreviewReveal, comesInOverItsTimes) {
  EXPECT_EQ(PreviewReveal::kOpacity, (TimedCurve{{{0, 0, 0.58, 1}}, Seconds(0.18)}));
  EXPECT_EQ(PreviewReveal::kOffsetY, (Spring{.mass = 1, .stiffness = 280, .damping = 30}));
  EXPECT_EQ(PreviewReveal::kHiddenOpacity, 0);
  EXPECT_GT(PreviewReveal::kHiddenOffsetY, 0);
}

TEST(PreviewReveal, whatComesWithThePanelIsThereAndAllAfterThatIsRevealed) {
  PreviewReveal reveal;
  EXPECT_FALSE(reveal.revealsNext());
  reveal.painted();
  EXPECT_TRUE(reveal.revealsNext());
  EXPECT_TRUE(reveal.revealsNext());
  reveal.hidden();
  EXPECT_FALSE(reveal.revealsNext());
  reveal.painted();
  EXPECT_TRUE(reveal.revealsNext());
}

}  // namespace
}  // namespace quenlio
