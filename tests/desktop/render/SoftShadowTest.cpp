#include <QtGui/QPainter>
#include <gtest/gtest.h>

#include "desktop/render/SoftShadow.h"

namespace quenlio {
namespace {

// The shadow alone of a body at this place.
QImage cast(SoftShadow& shadow, const QSize& canvas, const QRectF& body, double scale = 1) {
  QImage image((QSizeF(canvas) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  shadow.paint(painter, body);
  painter.end();
  image.setDevicePixelRatio(1);
  return image;
}

TEST(SoftShadow, reachesAsFarAsItsLayersDo) {
  SoftShadow shadow;
  shadow.setLook({.cornerRadius = 10,
                  .layers = {{.opacity = 0.2, .radius = 30, .y = 16}, {.opacity = 0.2, .radius = 20, .y = 12}}});
  EXPECT_EQ(shadow.margins(), QMargins(30, 14, 30, 46));
  shadow.setLook({});
  EXPECT_TRUE(shadow.margins().isNull());
}

TEST(SoftShadow, growsFainterAwayFromTheBodyAndEndsInItsMargins) {
  SoftShadow shadow;
  shadow.setLook({.cornerRadius = 10, .layers = {{.opacity = 0.5, .radius = 20, .y = 0}}});
  const QImage image = cast(shadow, {300, 300}, {80, 80, 140, 140});
  // At the very edge of a straight side, half of it.
  EXPECT_NEAR(image.pixelColor(79, 150).alpha(), 0.5 * 255 / 2, 6);
  int last = 255;
  for (int x = 79; x >= 60; --x) {
    const int alpha = image.pixelColor(x, 150).alpha();
    EXPECT_LE(alpha, last) << x;
    last = alpha;
  }
  EXPECT_LE(last, 4);
  EXPECT_EQ(image.pixelColor(58, 150).alpha(), 0);
}

// The body may be translucent.
TEST(SoftShadow, isNotUnderTheBody) {
  SoftShadow shadow;
  shadow.setLook({.cornerRadius = 10, .layers = {{.opacity = 0.5, .radius = 20, .y = 8}}});
  const QImage image = cast(shadow, {300, 300}, {80, 80, 140, 140});
  for (const QPoint inside : {QPoint(150, 150), QPoint(82, 150), QPoint(150, 217), QPoint(86, 86), QPoint(213, 213)}) {
    EXPECT_EQ(image.pixelColor(inside).alpha(), 0) << inside.x();
  }
}

TEST(SoftShadow, falls) {
  SoftShadow shadow;
  shadow.setLook({.cornerRadius = 10, .layers = {{.opacity = 0.5, .radius = 20, .y = 10}}});
  const QImage image = cast(shadow, {300, 300}, {80, 80, 140, 140});
  EXPECT_GT(image.pixelColor(150, 222).alpha(), image.pixelColor(150, 77).alpha() + 40);
  EXPECT_EQ(image.pixelColor(70, 150).alpha(), image.pixelColor(229, 150).alpha());
}

// A body of any size has the same corners and sides.
TEST(SoftShadow, isStretchedWithoutASeam) {
  SoftShadow shadow;
  shadow.setLook({.cornerRadius = 10, .layers = {{.opacity = 0.5, .radius = 12, .y = 4}}});
  for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
    const QImage image = cast(shadow, {420, 320}, {40, 40, 340, 240}, scale);
    const int above = static_cast<int>(38 * scale);
    const int beside = static_cast<int>(38 * scale);
    for (int x = static_cast<int>(100 * scale); x < static_cast<int>(320 * scale); ++x) {
      EXPECT_EQ(image.pixelColor(x, above), image.pixelColor(static_cast<int>(200 * scale), above))
          << scale << " " << x;
    }
    for (int y = static_cast<int>(100 * scale); y < static_cast<int>(220 * scale); ++y) {
      EXPECT_EQ(image.pixelColor(beside, y), image.pixelColor(beside, static_cast<int>(160 * scale))) << scale;
    }
  }
}

TEST(SoftShadow, surroundsTheSmallestBody) {
  SoftShadow shadow;
  shadow.setLook({.cornerRadius = 2, .layers = {{.opacity = 0.5, .radius = 8, .y = 0}}});
  const QImage image = cast(shadow, {200, 60}, {30, 28, 140, 3});
  EXPECT_GT(image.pixelColor(100, 26).alpha(), 0);
  EXPECT_GT(image.pixelColor(100, 33).alpha(), 0);
  EXPECT_NEAR(image.pixelColor(100, 26).alpha(), image.pixelColor(100, 32).alpha(), 1);
}

}  // namespace
}  // namespace quenlio
