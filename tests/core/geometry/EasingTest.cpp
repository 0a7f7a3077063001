#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

#include "core/geometry/Easing.h"

namespace quenlio {
namespace {

TEST(TimingCurve, startsAndEndsWhereItShould) {
  for (const TimingCurve& curve : {kEaseIn, kEaseOut, kEaseInOut, TimingCurve{{0.22, 1, 0.36, 1}}}) {
    EXPECT_EQ(progress(curve, 0), 0);
    EXPECT_EQ(progress(curve, 1), 1);
    EXPECT_EQ(progress(curve, -1), 0);
    EXPECT_EQ(progress(curve, 2), 1);
  }
}

TEST(TimingCurve, isTheTimeItselfOnTheDiagonal) {
  for (const double time : {0.1, 0.25, 0.5, 0.9}) {
    EXPECT_NEAR(progress(TimingCurve{{0.3, 0.3, 0.7, 0.7}}, time), time, 1e-9);
  }
}

TEST(TimingCurve, bendsAsItsControlPointsSay) {
  // At the parameter 1/2: x = 0.375 a + 0.375 b + 0.125 and the same for y.
  EXPECT_NEAR(progress(kEaseIn, 0.375 * 0.42 + 0.375 + 0.125), 0.5, 1e-9);
  EXPECT_NEAR(progress(TimingCurve{{0.22, 1, 0.36, 1}}, 0.375 * (0.22 + 0.36) + 0.125), 0.875, 1e-9);
}

TEST(TimingCurve, neverGoesBack) {
  double last = 0;
  for (int step = 1; step <= 1000; ++step) {
    const double next = progress(TimingCurve{{0.22, 1, 0.36, 1}}, step / 1000.0);
    EXPECT_GE(next, last);
    last = next;
  }
}

// A spring of each kind: below the critical damping, at it, and above.
class SpringKinds : public testing::TestWithParam<Spring> {};

// The equation of motion itself, with the derivatives taken as differences.
TEST_P(SpringKinds, obeysItsEquationOfMotion) {
  const Spring& spring = GetParam();
  const auto distance = [&](double t) { return 1 - progress(spring, Seconds(t)); };
  constexpr double h = 1e-4;
  for (double t = 0.01; t < 0.5; t += 0.01) {
    const double velocity = (distance(t + h) - distance(t - h)) / (2 * h);
    const double acceleration = (distance(t + h) - 2 * distance(t) + distance(t - h)) / (h * h);
    EXPECT_NEAR(spring.mass * acceleration, -spring.damping * velocity - spring.stiffness * distance(t),
                1e-3 * spring.stiffness);
  }
}

TEST_P(SpringKinds, startsAtRestAndSettles) {
  const Spring& spring = GetParam();
  EXPECT_EQ(progress(spring, Seconds(0)), 0);
  EXPECT_EQ(progress(spring, Seconds(-1)), 0);
  EXPECT_NEAR(progress(spring, Seconds(1e-5)), 0, 1e-6);
  const Seconds settled = settlingTime(spring);
  for (int step = 0; step < 100; ++step) {
    EXPECT_NEAR(progress(spring, settled * (1 + step / 50.0)), 1, 1e-3);
  }
  EXPECT_GT(std::abs(1 - progress(spring, settled / 4)), 1e-3);
}

INSTANTIATE_TEST_SUITE_P(Springs, SpringKinds,
                         testing::Values(Spring{1, 280, 30}, Spring{1, 100, 20}, Spring{2, 50, 60},
                                         Spring::withResponse(Seconds(0.22), 0.84)));

TEST(Spring, swingsInItsResponseTimeWithoutDamping) {
  const Spring spring = Spring::withResponse(Seconds(0.5), 0);
  EXPECT_NEAR(progress(spring, Seconds(0.25)), 2, 1e-9);
  EXPECT_NEAR(progress(spring, Seconds(0.5)), 0, 1e-9);
}

TEST(Spring, withLessThanCriticalDampingGoesPastAndComesBack) {
  const Spring spring = Spring::withResponse(Seconds(0.22), 0.5);
  double farthest = 0;
  for (int step = 0; step < 100; ++step) {
    farthest = std::max(farthest, progress(spring, Seconds(step / 100.0)));
  }
  EXPECT_GT(farthest, 1.1);
}

}  // namespace
}  // namespace quenlio
