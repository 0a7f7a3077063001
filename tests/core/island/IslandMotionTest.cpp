#include <gtest/gtest.h>

#include "core/island/IslandMotion.h"

namespace quenlio {
namespace {

constexpr IslandMotion::Container kRest{};
constexpr IslandMotion::Container kHolding{.isPreviewHolding = true};
constexpr IslandMotion::Container kDragging{.isExportDragging = true};
constexpr IslandMotion::Container kBoth{.isExportDragging = true, .isPreviewHolding = true};

TEST(IslandMotion, draggingOutEasesInAndOut) {
  const TimedCurve wanted{{{0.42, 0, 0.58, 1}}, Seconds(0.12)};
  EXPECT_EQ(IslandMotion::ofContainer(kRest, kDragging), wanted);
  EXPECT_EQ(IslandMotion::ofContainer(kDragging, kRest), wanted);
  EXPECT_EQ(IslandMotion::ofContainer(kHolding, kBoth), wanted);
  EXPECT_EQ(IslandMotion::ofContainer(kHolding, kDragging), wanted);
}

TEST(IslandMotion, holdingThePreviewHasACurveOfItsOwn) {
  const TimedCurve wanted{{{0.22, 1, 0.36, 1}}, Seconds(0.12)};
  EXPECT_EQ(IslandMotion::ofContainer(kRest, kHolding), wanted);
  EXPECT_EQ(IslandMotion::ofContainer(kHolding, kRest), wanted);
  EXPECT_EQ(IslandMotion::ofContainer(kBoth, kDragging), wanted);
}

TEST(IslandMotion, theRestEasesOut) {
  const TimedCurve wanted{{{0, 0, 0.58, 1}}, Seconds(0.16)};
  EXPECT_EQ(IslandMotion::ofContainer(kRest, kRest), wanted);
  EXPECT_EQ(IslandMotion::ofContainer(kDragging, kDragging), wanted);
  EXPECT_EQ(IslandMotion::kEase, wanted);
}

TEST(IslandMotion, whatMovesIsOnASpring) {
  EXPECT_EQ(IslandMotion::kSpring, Spring::withResponse(Seconds(0.22), 0.84));
}

}  // namespace
}  // namespace quenlio
