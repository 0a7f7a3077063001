// The island's body over what is behind it.
#include <QtGui/QPainter>
#include <gtest/gtest.h>

#include "tests/desktop/views/Island.h"

namespace quenlio {
namespace {

class GlassSurfaceTest : public testing::Test {
 protected:
  void use(GlassBacking backing) {
    island_.compositor.isThere().set(backing != GlassBacking::opaque);
    island_.compositor.blursBehind().set(backing == GlassBacking::blurred);
    still();
  }
  void still() { island_.platform.time.advanceBy(Seconds(1)); }
  // Where there is nothing but glass.
  [[nodiscard]] QColor glass() { return island_.picture().pixelColor(116, 228); }
  [[nodiscard]] QColor corner() { return island_.picture().pixelColor(0, 0); }

  Island island_;
};

TEST_F(GlassSurfaceTest, isOpaqueWhereNothingCanShineThrough) {
  use(GlassBacking::opaque);
  EXPECT_EQ(glass().alpha(), 255);
  island_.root().isExportDragging.set(true);
  still();
  EXPECT_EQ(glass().alpha(), 255);
}

TEST_F(GlassSurfaceTest, isNearlyOpaqueOverASharpBackground) {
  use(GlassBacking::composited);
  EXPECT_GE(glass().alpha(), 0.96 * 255);
  EXPECT_LT(glass().alpha(), 255);
}

TEST_F(GlassSurfaceTest, letsABlurredBackgroundThrough) {
  use(GlassBacking::blurred);
  // The two materials, and 0.88 of it all.
  const double materials = 1 - (1 - 0.62) * (1 - 0.56);
  EXPECT_NEAR(glass().alphaF(), materials * 0.88, 0.03);
}

TEST_F(GlassSurfaceTest, letsMoreThroughWhileSomethingIsHeldOrDraggedOut) {
  use(GlassBacking::blurred);
  const double atRest = glass().alphaF();
  island_.root().isPreviewHolding.set(true);
  still();
  EXPECT_NEAR(glass().alphaF(), atRest * 0.85 / 0.88, 0.01);
  island_.root().isExportDragging.set(true);
  still();
  EXPECT_NEAR(glass().alphaF(), atRest * 0.83 / 0.88, 0.01);
  island_.root().isExportDragging.set(false);
  island_.root().isPreviewHolding.set(false);
  still();
  EXPECT_NEAR(glass().alphaF(), atRest, 0.01);
}

TEST_F(GlassSurfaceTest, growsFainterOverItsTimeAndNotAtOnce) {
  use(GlassBacking::blurred);
  const double atRest = glass().alphaF();
  island_.root().isExportDragging.set(true);
  island_.platform.time.advanceBy(Seconds(0.06));
  const double half = glass().alphaF();
  EXPECT_LT(half, atRest);
  island_.platform.time.advanceBy(Seconds(0.07));
  EXPECT_LT(glass().alphaF(), half);
}

TEST_F(GlassSurfaceTest, hasNoCornersWhereTheyCanBeClear) {
  use(GlassBacking::blurred);
  EXPECT_EQ(corner().alpha(), 0);
  use(GlassBacking::composited);
  EXPECT_EQ(corner().alpha(), 0);
}

TEST_F(GlassSurfaceTest, isLighterAtItsTopThanBelow) {
  use(GlassBacking::opaque);
  for (const IslandAppearanceStyle style : {IslandAppearanceStyle::light, IslandAppearanceStyle::dark}) {
    island_.state.appearanceStyle.set(style);
    still();
    EXPECT_GT(island_.picture().pixelColor(116, 3).lightness(), glass().lightness());
  }
}

// Of a shape that has no smooth edge, all pixels at the edge have one tone, between the body's and what may be around.
TEST_F(GlassSurfaceTest, standsInALineOfItsOwnWhereItHasNoShadow) {
  use(GlassBacking::opaque);
  const QImage picture = island_.picture();
  const QColor edge = picture.pixelColor(116, 0);
  EXPECT_EQ(picture.pixelColor(116, 231), edge);
  EXPECT_EQ(picture.pixelColor(0, 116), edge);
  EXPECT_EQ(picture.pixelColor(231, 116), edge);
  EXPECT_LT(edge.lightness(), glass().lightness() - 40);
  EXPECT_GT(edge.lightness(), 120);
}

TEST_F(GlassSurfaceTest, tellsThePanelItsShapeToneAndShadow) {
  island_.state.appearanceStyle.set(IslandAppearanceStyle::dark);
  still();
  const PanelSurface& surface = island_.surfaces.back();
  EXPECT_EQ(surface.cornerRadius, 22);
  EXPECT_EQ(surface.tone.alpha(), 255);
  EXPECT_EQ(surface.shadow, (std::vector<ShadowLayer>{{.opacity = 0.12, .radius = 30, .y = 16},
                                                      {.opacity = 0.22, .radius = 20, .y = 12}}));
}

}  // namespace
}  // namespace quenlio
