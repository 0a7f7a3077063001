// What a thumbnail is: a canvas, and the picture in the middle of it.
#include <gtest/gtest.h>

#include "desktop/render/QtImage.h"
#include "desktop/render/QtThumbnailRenderer.h"

#include "tests/desktop/render/Pictures.h"

namespace quenlio::test {
namespace {

constexpr Size kCanvas{280, 220};

class QtThumbnailRendererTest : public testing::Test {
 protected:
  [[nodiscard]] QImage pixels(const FileURL& url) {
    const ImageRef thumbnail = renderer_.render(url, kCanvas);
    EXPECT_NE(thumbnail, nullptr);
    if (thumbnail == nullptr) {
      return {};
    }
    EXPECT_EQ(thumbnail->size(), kCanvas);
    return static_cast<const QtImage&>(*thumbnail).image();
  }

  double scale_ = 1;
  PictureFolder folder_;
  QtThumbnailRenderer renderer_{realDecoder(), [this] { return scale_; }};
};

// The rows of the picture in one column: nothing above and below, all between.
void expectRows(const QImage& image, int first, int last) {
  const int x = image.width() / 2;
  EXPECT_EQ(image.pixel(x, first - 1), 0U);
  EXPECT_EQ(image.pixel(x, first), qRgb(255, 0, 0));
  EXPECT_EQ(image.pixel(x, last), qRgb(255, 0, 0));
  EXPECT_EQ(image.pixel(x, last + 1), 0U);
}

TEST_F(QtThumbnailRendererTest, centresAWidePictureBetweenTransparentMargins) {
  const QImage image = pixels(folder_.save("a.png", filled({560, 280}, Qt::red), "png"));
  EXPECT_EQ(image.size(), QSize(280, 220));
  expectRows(image, 40, 179);
  EXPECT_EQ(image.pixel(0, 40), qRgb(255, 0, 0));
  EXPECT_EQ(image.pixel(279, 179), qRgb(255, 0, 0));
}

TEST_F(QtThumbnailRendererTest, centresATallPicture) {
  const QImage image = pixels(folder_.save("a.png", filled({440, 880}, Qt::red), "png"));
  EXPECT_EQ(image.pixel(84, 110), 0U);
  EXPECT_EQ(image.pixel(85, 110), qRgb(255, 0, 0));
  EXPECT_EQ(image.pixel(194, 110), qRgb(255, 0, 0));
  EXPECT_EQ(image.pixel(195, 110), 0U);
}

TEST_F(QtThumbnailRendererTest, enlargesASmallPicture) {
  const FileURL url = folder_.save("a.png", filled({40, 20}, Qt::red), "png");
  const QImage image = pixels(url);
  EXPECT_EQ(static_cast<const QtImage&>(*renderer_.render(url, kCanvas)).ownSize(), (Size{40, 20}));
  expectRows(image, 40, 179);
  EXPECT_EQ(image.pixel(0, 110), qRgb(255, 0, 0));
  EXPECT_EQ(image.pixel(279, 110), qRgb(255, 0, 0));
}

// 3840 by 2160 is drawn 157.5 points high from 31.25 on: three quarters of the row at 31.
TEST_F(QtThumbnailRendererTest, centresToTheFractionOfAPixel) {
  const QImage image = pixels(folder_.save("a.png", filled({3840, 2160}, Qt::red), "png"));
  EXPECT_EQ(qAlpha(image.pixel(140, 30)), 0);
  EXPECT_NEAR(qAlpha(image.pixel(140, 31)), 191, 1);
  EXPECT_EQ(qAlpha(image.pixel(140, 32)), 255);
  EXPECT_EQ(qAlpha(image.pixel(140, 187)), 255);
  EXPECT_NEAR(qAlpha(image.pixel(140, 188)), 191, 1);
  EXPECT_EQ(qAlpha(image.pixel(140, 189)), 0);
}

TEST_F(QtThumbnailRendererTest, isSharpOnADenseScreenAndKeepsItsSizeInPoints) {
  scale_ = 2;
  const QImage image = pixels(folder_.save("a.png", filled({560, 280}, Qt::red), "png"));
  EXPECT_EQ(image.size(), QSize(560, 440));
  EXPECT_EQ(image.devicePixelRatio(), 2);
  expectRows(image, 80, 359);
}

// Not by its pixels: a capture that is clear at its own edges is as large as any other.
TEST_F(QtThumbnailRendererTest, tellsWhereOnTheCanvasThePictureStands) {
  QImage bordered = filled({560, 280}, Qt::transparent);
  bordered.setPixelColor(280, 140, Qt::red);
  for (const double scale : {1.0, 2.0}) {
    scale_ = scale;
    const ImageRef thumbnail = renderer_.render(folder_.save("a.png", bordered, "png"), kCanvas);
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_EQ(static_cast<const QtImage&>(*thumbnail).picture(), QRectF(0, 40 * scale, 280 * scale, 140 * scale));
  }
}

TEST_F(QtThumbnailRendererTest, treatsEveryKindAlike) {
  const QImage red = filled({560, 280}, QColor(255, 0, 0));
  expectRows(pixels(folder_.write("a.tiff", tiffBytes(red))), 40, 179);
  const QImage page = pixels(folder_.write("a.pdf", pdfBytes(560, 280)));
  EXPECT_EQ(page.pixel(70, 39), 0U);
  EXPECT_EQ(page.pixel(70, 40), qRgb(255, 0, 0));
  EXPECT_EQ(page.pixel(210, 179), qRgb(255, 255, 255));
  EXPECT_EQ(page.pixel(210, 180), 0U);
  const QImage heic = pixels(folder_.write("a.heic", heicBytes(folder_, red)));
  EXPECT_EQ(heic.pixel(140, 39), 0U);
  EXPECT_GT(qRed(heic.pixel(140, 40)), 240);
}

TEST_F(QtThumbnailRendererTest, rendersHereWhatThisProgramDecodesAndNothingElse) {
  const QImage red = filled({560, 280}, QColor(255, 0, 0));
  for (const FileURL& url : {folder_.save("a.png", red, "png"), folder_.write("a.jpg", jpegBytes(red, 100)),
                             folder_.write("progressive.jpg", jpegBytes(red, 100, true))}) {
    const auto here = renderer_.renderHere(url, kCanvas);
    ASSERT_TRUE(here && *here) << url.path();
    EXPECT_EQ(static_cast<const QtImage&>(**here).image(), pixels(url)) << url.path();
  }
  const QImage large = filled({5000, 3300}, Qt::red);
  for (const FileURL& url : {folder_.write("a.tiff", tiffBytes(red)), folder_.write("a.pdf", pdfBytes(560, 280)),
                             folder_.write("a.heic", heicBytes(folder_, red)),
                             folder_.write("pdf.png", pdfBytes(560, 280)),  // by its contents, not by its name
                             folder_.write("large.jpg", jpegBytes(large, 50, true))}) {
    EXPECT_FALSE(renderer_.renderHere(url, kCanvas)) << url.path();
  }
}

TEST_F(QtThumbnailRendererTest, hasNothingForWhatIsNoPicture) {
  EXPECT_EQ(renderer_.render(folder_.write("text.png", "Only some words."), kCanvas), nullptr);
  EXPECT_EQ(renderer_.render(folder_.url("missing.png"), kCanvas), nullptr);
  EXPECT_EQ(renderer_.renderHere(folder_.url("text.png"), kCanvas), std::optional<ImageRef>(nullptr));
  EXPECT_EQ(renderer_.renderHere(folder_.url("missing.png"), kCanvas), std::optional<ImageRef>(nullptr));
}

}  // namespace
}  // namespace quenlio::test
