#include <QtGui/QPainter>
#include <cmath>
#include <gtest/gtest.h>

#include "desktop/views/common/QtColor.h"
#include "desktop/views/island/PreviewWell.h"

namespace quenlio {
namespace {

constexpr QRgb kGround = 0xff8090a0;
constexpr int kSide = 100;
constexpr int kTolerance = 2;  // of 255

class PreviewWellTest : public testing::TestWithParam<std::tuple<IslandAppearanceStyle, bool>> {
 protected:
  [[nodiscard]] QImage painted(WellContent content, bool hasLine = false) const {
    QImage image(kSide, kSide, QImage::Format_ARGB32_Premultiplied);
    image.fill(kGround);
    QPainter painter(&image);
    paintPreviewWell(painter, image.rect(), 18, theme_, content);
    if (hasLine) {
      strokePreviewWell(painter, image.rect(), 18, theme_);
    }
    return image;
  }
  // Laid over it.
  [[nodiscard]] static QColor over(const QColor& below, const Color& colour) {
    const auto channel = [&colour](float from, double to) {
      return static_cast<int>(std::lround(255 * std::lerp(static_cast<double>(from), to, colour.alpha)));
    };
    return {channel(below.redF(), colour.red), channel(below.greenF(), colour.green),
            channel(below.blueF(), colour.blue)};
  }
  [[nodiscard]] QColor body(WellContent content) const {
    QColor colour = over(QColor(kGround), theme_.material.preview.opacity(theme_.tokens.previewMaterialOpacity));
    if (content == WellContent::picture) {
      colour = over(colour, theme_.tokens.previewReadabilityWash);
    }
    return over(colour, theme_.tokens.previewWellFill);
  }
  static void expectColour(const QColor& seen, const QColor& wanted) {
    EXPECT_NEAR(seen.red(), wanted.red(), kTolerance);
    EXPECT_NEAR(seen.green(), wanted.green(), kTolerance);
    EXPECT_NEAR(seen.blue(), wanted.blue(), kTolerance);
  }

  const IslandTheme theme_ =
      IslandTheme::forAppearance(std::get<0>(GetParam()), std::get<1>(GetParam()), GlassBacking::composited);
};

TEST_P(PreviewWellTest, hasTheMaterialAtItsOpacityTheWashAndTheFill) {
  expectColour(painted(WellContent::picture).pixelColor(50, 50), body(WellContent::picture));
}

TEST_P(PreviewWellTest, wordsStandInItWithoutTheWash) {
  expectColour(painted(WellContent::words).pixelColor(50, 50), body(WellContent::words));
}

TEST_P(PreviewWellTest, theLowerInnerEdgeCatchesTheLight) {
  const QImage well = painted(WellContent::picture);
  const QColor inside = body(WellContent::picture);
  const Color& light = theme_.tokens.previewWellHighlightStroke;
  expectColour(well.pixelColor(50, kSide - 2), over(inside, light));
  expectColour(well.pixelColor(50, 1), over(inside, light.opacity(0.25)));
  expectColour(well.pixelColor(50, kSide - 3), inside);
}

TEST_P(PreviewWellTest, theLineAroundItIsTheOutermost) {
  const QColor before = painted(WellContent::picture).pixelColor(50, 0);
  expectColour(painted(WellContent::picture, true).pixelColor(50, 0), over(before, theme_.tokens.previewWellStroke));
}

INSTANTIATE_TEST_SUITE_P(Appearances, PreviewWellTest,
                         testing::Combine(testing::Values(IslandAppearanceStyle::light, IslandAppearanceStyle::dark),
                                          testing::Bool()));

}  // namespace
}  // namespace quenlio
