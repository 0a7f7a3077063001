// The island's body over what is behind it.
#include <QtGui/QPainter>
#include <cmath>
#include <gtest/gtest.h>

#include "tests/desktop/views/Island.h"

namespace quenlio {
namespace {

Color over(const Color& ground, const Color& paint) {
  return Color::between(ground, {paint.red, paint.green, paint.blue, 1}, paint.alpha);
}

// What lies at this share of the height, between two stops that the given share of the height is from each other.
Color blended(const Color& from, const Color& to, double share) {
  const double alpha = std::lerp(from.alpha, to.alpha, share);
  const auto channel = [&](double a, double b) {
    return alpha > 0 ? std::lerp(a * from.alpha, b * to.alpha, share) / alpha : 0;
  };
  return {channel(from.red, to.red), channel(from.green, to.green), channel(from.blue, to.blue), alpha};
}

// The body over a sharp background, by its four layers, at rest: the materials let nothing through there, what the
// opacity of it all does is filled with the first one's tone.
Color expectedGlass(const IslandTheme& theme, double share, bool isEdge) {
  const IslandThemeTokens& tokens = theme.tokens;
  Color body = over(theme.material.hudWindow, theme.material.underWindowBackground.opacity(0.56));
  body = over(body, tokens.containerTint);
  body = over(body, share < 0.5 ? blended(tokens.containerTopHighlight, Color::white(0.03), share * 2)
                                : blended(Color::white(0.03), Color::black(0.02), share * 2 - 1));
  if (isEdge) {
    body = over(body, blended(tokens.containerTopHighlight.opacity(0.78), tokens.edgeStrokeColor.opacity(0.75), share));
  }
  return Color::between(theme.material.hudWindow, body, 0.88 / 0.97);
}

class GlassSurfaceModifierTest : public testing::Test {
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

TEST_F(GlassSurfaceModifierTest, isOpaqueWhereNothingCanShineThrough) {
  use(GlassBacking::opaque);
  EXPECT_EQ(glass().alpha(), 255);
  island_.root().isExportDragging.set(true);
  still();
  EXPECT_EQ(glass().alpha(), 255);
}

TEST_F(GlassSurfaceModifierTest, isNearlyOpaqueOverASharpBackground) {
  use(GlassBacking::composited);
  EXPECT_GE(glass().alpha(), 0.96 * 255);
  EXPECT_LT(glass().alpha(), 255);
}

TEST_F(GlassSurfaceModifierTest, fadesByAsMuchOverASharpBackgroundAsItsContentDoes) {
  use(GlassBacking::composited);
  const double atRest = glass().alphaF();
  EXPECT_NEAR(atRest, 0.97, 0.005);
  island_.root().isPreviewHolding.set(true);
  still();
  EXPECT_NEAR(glass().alphaF(), atRest - 0.03, 0.005);
  island_.root().isExportDragging.set(true);
  still();
  EXPECT_NEAR(glass().alphaF(), atRest - 0.05, 0.005);
}

TEST_F(GlassSurfaceModifierTest, letsABlurredBackgroundThrough) {
  use(GlassBacking::blurred);
  // The two materials, and 0.88 of it all.
  const double materials = 1 - (1 - 0.62) * (1 - 0.56);
  EXPECT_NEAR(glass().alphaF(), materials * 0.88, 0.03);
}

TEST_F(GlassSurfaceModifierTest, letsMoreThroughWhileSomethingIsHeldOrDraggedOut) {
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

TEST_F(GlassSurfaceModifierTest, growsFainterOverItsTimeAndNotAtOnce) {
  use(GlassBacking::blurred);
  const double atRest = glass().alphaF();
  island_.root().isExportDragging.set(true);
  island_.platform.time.advanceBy(Seconds(0.06));
  const double half = glass().alphaF();
  EXPECT_LT(half, atRest);
  island_.platform.time.advanceBy(Seconds(0.07));
  EXPECT_LT(glass().alphaF(), half);
}

TEST_F(GlassSurfaceModifierTest, hasNoCornersWhereTheyCanBeClear) {
  use(GlassBacking::blurred);
  EXPECT_EQ(corner().alpha(), 0);
  use(GlassBacking::composited);
  EXPECT_EQ(corner().alpha(), 0);
}

TEST_F(GlassSurfaceModifierTest, isOfItsLayersAndInItsLine) {
  use(GlassBacking::composited);
  for (const IslandAppearanceStyle style : {IslandAppearanceStyle::light, IslandAppearanceStyle::dark}) {
    for (const bool contrast : {false, true}) {
      island_.state.appearanceStyle.set(style);
      island_.state.increaseContrast.set(contrast);
      still();
      const QImage picture = island_.picture();
      const IslandTheme theme = IslandTheme::forAppearance(style, contrast, GlassBacking::composited);
      // Down the left side, and at the ends in the line too: away from the preview and its shadow.
      for (const int y : {0, 1, 30, 116, 200, 230, 231}) {
        const bool isEdge = y == 0 || y == 231;
        const Color wanted = expectedGlass(theme, (y + 0.5) / 232, isEdge);
        const QColor seen = picture.pixelColor(y < 2 || y > 229 ? 116 : 1, y);
        EXPECT_NEAR(seen.redF(), wanted.red, 2.0 / 255) << y;
        EXPECT_NEAR(seen.blueF(), wanted.blue, 2.0 / 255) << y;
      }
    }
  }
}

TEST_F(GlassSurfaceModifierTest, isLighterAtItsTopThanBelow) {
  use(GlassBacking::opaque);
  for (const IslandAppearanceStyle style : {IslandAppearanceStyle::light, IslandAppearanceStyle::dark}) {
    island_.state.appearanceStyle.set(style);
    still();
    EXPECT_GT(island_.picture().pixelColor(116, 3).lightness(), glass().lightness());
  }
}

// Of a shape that has no smooth edge, all pixels at the edge have one tone, between the body's and what may be around.
TEST_F(GlassSurfaceModifierTest, standsInALineOfItsOwnWhereItHasNoShadow) {
  use(GlassBacking::opaque);
  const QImage picture = island_.picture();
  const QColor edge = picture.pixelColor(116, 0);
  EXPECT_EQ(picture.pixelColor(116, 231), edge);
  EXPECT_EQ(picture.pixelColor(0, 116), edge);
  EXPECT_EQ(picture.pixelColor(231, 116), edge);
  EXPECT_LT(edge.lightness(), glass().lightness() - 40);
  EXPECT_GT(edge.lightness(), 120);
}

TEST_F(GlassSurfaceModifierTest, tellsThePanelItsShapeToneAndShadow) {
  island_.state.appearanceStyle.set(IslandAppearanceStyle::dark);
  still();
  const PanelSurface& surface = island_.surfaces.back();
  EXPECT_EQ(surface.cornerRadius, 22);
  EXPECT_EQ(surface.tone.alpha(), 255);
  EXPECT_EQ(surface.shadow, (std::vector<ShadowLayer>{{.opacity = 0.12, .radius = 30, .y = 16},
                                                      {.opacity = 0.22, .radius = 20, .y = 12},
                                                      {.opacity = 0.24, .radius = 3, .y = 0}}));
}

}  // namespace
}  // namespace quenlio
