// The parts of showing a panel that need no display: the timing curve and the user's intent.
#include <gtest/gtest.h>

#include "desktop/linux/session/CubicBezier.h"
#include "desktop/linux/session/UserIntent.h"

namespace quenlio {
namespace {

TEST(CubicBezier, startsAndEndsWhereItShould) {
  for (const TimingCurve& curve : {kEaseIn, TimingCurve{{0.22, 1, 0.36, 1}}}) {
    EXPECT_EQ(progress(curve, 0), 0);
    EXPECT_EQ(progress(curve, 1), 1);
    EXPECT_EQ(progress(curve, -1), 0);
    EXPECT_EQ(progress(curve, 2), 1);
  }
}

TEST(CubicBezier, isTheTimeItselfOnTheDiagonal) {
  for (const double time : {0.1, 0.25, 0.5, 0.9}) {
    EXPECT_NEAR(progress({{0.3, 0.3, 0.7, 0.7}}, time), time, 1e-9);
  }
}

TEST(CubicBezier, bendsAsItsControlPointsSay) {
  // At the parameter 1/2: x = 0.375 a + 0.375 b + 0.125 and the same for y.
  EXPECT_NEAR(progress(kEaseIn, 0.375 * 0.42 + 0.375 + 0.125), 0.5, 1e-9);
  EXPECT_NEAR(progress({{0.22, 1, 0.36, 1}}, 0.375 * (0.22 + 0.36) + 0.125), 0.875, 1e-9);
}

TEST(CubicBezier, neverGoesBack) {
  double last = 0;
  for (int step = 1; step <= 1000; ++step) {
    const double next = progress({{0.22, 1, 0.36, 1}}, step / 1000.0);
    EXPECT_GE(next, last);
    last = next;
  }
}

TEST(UserIntent, lastsForASecond) {
  UserIntent intent;
  const UserIntent::Time start;
  EXPECT_FALSE(intent.recent(start));
  intent.note(start);
  EXPECT_TRUE(intent.recent(start));
  EXPECT_TRUE(intent.recent(start + std::chrono::milliseconds(999)));
  EXPECT_FALSE(intent.recent(start + std::chrono::milliseconds(1000)));
}

}  // namespace
}  // namespace quenlio
