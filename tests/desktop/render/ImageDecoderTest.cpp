// Pictures of all kinds come out with the right pixels.
#include <QColorSpace>
#include <QPainter>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <png.h>
#include <sys/stat.h>
#include <thread>

#include "desktop/render/ImageDecoder.h"

#include "tests/desktop/render/Pictures.h"

namespace quenlio::test {
namespace {

constexpr int kLossless = 0;

// Each channel within the tolerance.
void expectNear(QRgb actual, QColor expected, int tolerance = kLossless) {
  EXPECT_NEAR(qRed(actual), expected.red(), tolerance);
  EXPECT_NEAR(qGreen(actual), expected.green(), tolerance);
  EXPECT_NEAR(qBlue(actual), expected.blue(), tolerance);
  EXPECT_NEAR(qAlpha(actual), expected.alpha(), tolerance);
}

void expectQuarters(const QImage& image, int tolerance) {
  const int right = image.width() * 3 / 4;
  const int left = image.width() / 4;
  const int top = image.height() / 4;
  const int bottom = image.height() * 3 / 4;
  expectNear(image.pixel(left, top), QColor(255, 0, 0), tolerance);
  expectNear(image.pixel(right, top), QColor(0, 255, 0), tolerance);
  expectNear(image.pixel(left, bottom), QColor(0, 0, 255), tolerance);
  expectNear(image.pixel(right, bottom), QColor(255, 255, 255), tolerance);
}

class ImageDecoderTest : public testing::Test {
 protected:
  [[nodiscard]] std::optional<DecodedImage> decode(const FileURL& url, QSize within = {64, 64},
                                                   bool mayEnlarge = false) const {
    return decoder_.decode(url, within, mayEnlarge);
  }
  // The picture, which must be there.
  [[nodiscard]] QImage image(const FileURL& url, QSize within = {64, 64}, bool mayEnlarge = false) const {
    const auto decoded = decode(url, within, mayEnlarge);
    EXPECT_TRUE(decoded.has_value());
    return decoded ? decoded->image : QImage(1, 1, QImage::Format_ARGB32_Premultiplied);
  }

  PictureFolder folder_;
  ImageDecoder decoder_ = realDecoder();
};

TEST_F(ImageDecoderTest, keepsAPictureThatFitsAsItIs) {
  const QImage shown = image(folder_.save("a.png", quarters({40, 20}), "png"));
  EXPECT_EQ(shown.size(), QSize(40, 20));
  EXPECT_EQ(shown.format(), QImage::Format_ARGB32_Premultiplied);
  EXPECT_EQ(shown.convertToFormat(QImage::Format_RGB888), quarters({40, 20}));
}

TEST_F(ImageDecoderTest, keepsTheShapeOfAPictureThatShrinks) {
  const FileURL url = folder_.save("a.png", quarters({400, 200}), "png");
  EXPECT_EQ(image(url, {64, 64}).size(), QSize(64, 32));
  EXPECT_EQ(image(url, {300, 10}).size(), QSize(20, 10));
  expectQuarters(image(url, {64, 64}), kLossless);
}

TEST_F(ImageDecoderTest, enlargesOnlyWhenItMay) {
  const FileURL url = folder_.save("a.png", quarters({10, 5}), "png");
  EXPECT_EQ(image(url, {80, 80}, false).size(), QSize(10, 5));
  const QImage large = image(url, {80, 80}, true);
  EXPECT_EQ(large.size(), QSize(80, 40));
  expectQuarters(large, kLossless);
  expectNear(large.pixel(0, 0), QColor(255, 0, 0));
  expectNear(large.pixel(79, 39), Qt::white);
}

TEST_F(ImageDecoderTest, givesTheThinnestPictureOnePixel) {
  EXPECT_EQ(image(folder_.save("a.png", filled({4000, 1}, Qt::red), "png")).size(), QSize(64, 1));
  EXPECT_EQ(image(folder_.save("b.png", filled({2, 4000}, Qt::red), "png")).size(), QSize(1, 64));
  const auto centred = decoder_.decodeCentred(folder_.url("a.png"), {64, 64});
  ASSERT_TRUE(centred);
  EXPECT_EQ(centred->image.size(), QSize(64, 64));
}

TEST_F(ImageDecoderTest, averagesExactly) {
  // Two black columns and one white one to a pixel: a third of 255.
  QImage stripes = filled({90, 30}, Qt::black);
  for (int x = 0; x < 90; x += 3) {
    QPainter(&stripes).fillRect(x, 0, 1, 30, Qt::white);
  }
  const QImage shown = image(folder_.save("a.png", stripes, "png"), {30, 30});
  for (int x = 0; x < 30; ++x) {
    expectNear(shown.pixel(x, 5), QColor(85, 85, 85));
  }
}

TEST_F(ImageDecoderTest, keepsAnEvenColourAtEverySize) {
  const FileURL url = folder_.save("a.png", filled({997, 613}, QColor(201, 7, 93)), "png");
  for (const int side : {1, 3, 64, 333, 996}) {
    const QImage shown = image(url, {side, side});
    QImage even(shown.size(), QImage::Format_ARGB32_Premultiplied);
    even.fill(QColor(201, 7, 93));
    EXPECT_EQ(shown, even) << side;
  }
}

int contrastOf(const QImage& image) {
  int lowest = 255;
  int highest = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      lowest = std::min(lowest, qRed(image.pixel(x, y)));
      highest = std::max(highest, qRed(image.pixel(x, y)));
    }
  }
  return highest - lowest;
}

// The finest pattern there is shows whether each pixel of the source has its share.
TEST_F(ImageDecoderTest, makesAnEvenGreyOfTheFinestPattern) {
  const QImage board = checkerboard({3840, 2160});
  const QImage shown = image(folder_.save("a.png", board, "png"), {560, 440});
  EXPECT_EQ(shown.size(), QSize(560, 315));
  EXPECT_LE(contrastOf(shown), 6);
  EXPECT_NEAR(qRed(shown.pixel(280, 157)), 127, 3);
  const QImage jpeg = image(folder_.write("a.jpg", jpegBytes(board, 100)), {560, 440});
  EXPECT_LE(contrastOf(jpeg), 6);

  QImage oneStep(560, 315, QImage::Format_RGB32);  // what the test is able to tell apart
  QPainter painter(&oneStep);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(oneStep.rect(), board);
  painter.end();
  EXPECT_GT(contrastOf(oneStep), 60);
}

TEST_F(ImageDecoderTest, bleedsNoColourOutOfTransparentPixels) {
  QImage half(64, 64, QImage::Format_RGBA8888);
  half.fill(QColor(255, 0, 0, 255));
  for (int y = 0; y < 64; ++y) {
    for (int x = 1; x < 64; x += 2) {
      half.setPixelColor(x, y, QColor(0, 255, 0, 0));  // green, but wholly transparent
    }
  }
  const QImage shown = image(folder_.save("a.png", half, "png"), {32, 32});
  const QRgb pixel = *reinterpret_cast<const QRgb*>(shown.constScanLine(10));
  EXPECT_EQ(qAlpha(pixel), 128);
  EXPECT_EQ(qRed(pixel), 128);  // premultiplied
  EXPECT_EQ(qGreen(pixel), 0);
}

TEST_F(ImageDecoderTest, readsEveryFormOfPng) {
  QImage wide = filled({32, 32}, QColor(200, 100, 50)).convertToFormat(QImage::Format_RGBX64);
  expectNear(image(folder_.save("deep.png", wide, "png"), {16, 16}).pixel(8, 8), QColor(200, 100, 50));
  QImage palette = quarters({32, 32}).convertToFormat(QImage::Format_Indexed8);
  expectQuarters(image(folder_.save("palette.png", palette, "png"), {16, 16}), kLossless);
  QImage grey = filled({32, 32}, QColor(90, 90, 90)).convertToFormat(QImage::Format_Grayscale8);
  expectNear(image(folder_.save("grey.png", grey, "png"), {16, 16}).pixel(8, 8), QColor(90, 90, 90));
  QImage ink = checkerboard({32, 32}).convertToFormat(QImage::Format_Mono);
  expectNear(image(folder_.save("ink.png", ink, "png"), {16, 16}).pixel(8, 8), QColor(128, 128, 128));
  QImage clear = filled({32, 32}, QColor(0, 0, 0, 0));
  expectNear(image(folder_.save("clear.png", clear, "png"), {16, 16}).pixel(8, 8), QColor(0, 0, 0, 0));
  QImage deepAlpha(32, 32, QImage::Format_RGBA64);
  deepAlpha.fill(QColor(255, 255, 255, 64));
  const QImage shown = image(folder_.save("deepalpha.png", deepAlpha, "png"), {16, 16});
  EXPECT_EQ(qAlpha(shown.pixel(3, 3)), 64);
}

TEST_F(ImageDecoderTest, readsInterlacedPngLikeAnyOther) {
  const QImage picture = quarters({301, 177}).convertToFormat(QImage::Format_RGB888);
  std::vector<std::vector<std::uint8_t>> rows;
  for (int y = 0; y < picture.height(); ++y) {
    rows.emplace_back(picture.constScanLine(y), picture.constScanLine(y) + picture.width() * 3);
  }
  const PngForm plain{.size = picture.size()};
  const PngForm woven{.size = picture.size(), .interlaced = true};
  EXPECT_EQ(image(folder_.write("w.png", pngBytes(woven, rows))), image(folder_.write("p.png", pngBytes(plain, rows))));
}

// Above the size that this program holds whole, the child does it.
TEST_F(ImageDecoderTest, readsALargeInterlacedPngAndALargeProgressiveJpeg) {
  const QSize size(5000, 3300);
  std::vector<std::vector<std::uint8_t>> rows(static_cast<std::size_t>(size.height()),
                                              std::vector<std::uint8_t>(static_cast<std::size_t>(size.width()), 77));
  const PngForm woven{.size = size, .colorType = PNG_COLOR_TYPE_GRAY, .interlaced = true};
  expectNear(image(folder_.write("w.png", pngBytes(woven, rows))).pixel(30, 20), QColor(77, 77, 77));
  const QImage large = filled(size, QColor(77, 77, 77));
  expectNear(image(folder_.write("p.jpg", jpegBytes(large, 90, true))).pixel(30, 20), QColor(77, 77, 77), 1);
}

TEST_F(ImageDecoderTest, turnsAProfilesColoursIntoThoseOfTheScreen) {
  QImage wide = filled({32, 32}, QColor(200, 100, 50));
  wide.setColorSpace(QColorSpace(QColorSpace::DisplayP3));
  const QRgb expected = wide.convertedToColorSpace(QColorSpace(QColorSpace::SRgb)).pixel(0, 0);
  ASSERT_GT(std::abs(qRed(expected) - 200), 5);
  expectNear(image(folder_.save("wide.png", wide, "png"), {16, 16}).pixel(8, 8), QColor(expected), 1);
  expectNear(image(folder_.write("wide.jpg", jpegBytes(wide)), {16, 16}).pixel(8, 8), QColor(expected), 3);
}

TEST_F(ImageDecoderTest, readsJpegAtEveryScale) {
  const FileURL url = folder_.write("a.jpg", jpegBytes(quarters({1601, 901})));
  for (const int side : {1601, 900, 400, 150, 64, 16}) {
    const QImage shown = image(url, {side, side});
    EXPECT_EQ(shown.width(), side);
    expectQuarters(shown, 6);
  }
}

TEST_F(ImageDecoderTest, readsGreyAndProgressiveJpeg) {
  const QImage grey = filled({64, 64}, QColor(90, 90, 90)).convertToFormat(QImage::Format_Grayscale8);
  expectNear(image(folder_.write("g.jpg", jpegBytes(grey))).pixel(8, 8), QColor(90, 90, 90), 2);
  expectQuarters(image(folder_.write("p.jpg", jpegBytes(quarters({200, 100}), 95, true))), 6);
}

TEST_F(ImageDecoderTest, standsACameraPictureUprightOnce) {
  const std::string jpeg = jpegBytes(quarters({320, 160}), 100);
  const QColor red(255, 0, 0), green(0, 255, 0), blue(0, 0, 255), white(255, 255, 255);
  struct Corners {
    QColor topLeft, topRight;
  };
  const std::array<Corners, 8> expected{{{red, green},
                                         {green, red},
                                         {white, blue},
                                         {blue, white},
                                         {red, blue},
                                         {blue, red},
                                         {white, green},
                                         {green, white}}};
  for (std::uint8_t orientation = 1; orientation <= 8; ++orientation) {
    const auto& corners = expected[orientation - 1U];
    const auto decoded = decode(folder_.write("a.jpg", jpegTurned(jpeg, orientation)), {80, 80});
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->image.size(), orientation < 5 ? QSize(80, 40) : QSize(40, 80)) << int{orientation};
    EXPECT_EQ(decoded->pointSize, orientation < 5 ? QSizeF(320, 160) : QSizeF(160, 320));
    expectNear(decoded->image.pixel(5, 5), corners.topLeft, 6);
    expectNear(decoded->image.pixel(decoded->image.width() - 6, 5), corners.topRight, 6);
  }
}

TEST_F(ImageDecoderTest, readsTiffAndHeic) {
  expectQuarters(image(folder_.write("a.tiff", tiffBytes(quarters({200, 100})))), kLossless);
  expectQuarters(image(folder_.write("a.heic", heicBytes(folder_, quarters({256, 128})))), 12);
}

TEST_F(ImageDecoderTest, paintsTheFirstPageOfAPdfOnWhitePaper) {
  const auto decoded = decode(folder_.write("a.pdf", pdfBytes(200, 100)));
  ASSERT_TRUE(decoded);
  EXPECT_EQ(decoded->image.size(), QSize(64, 32));
  EXPECT_EQ(decoded->pointSize, QSizeF(200, 100));
  expectNear(decoded->image.pixel(10, 16), QColor(255, 0, 0));
  expectNear(decoded->image.pixel(50, 16), Qt::white);
}

TEST_F(ImageDecoderTest, countsTwoOrThreePixelsToAPointAtTheirDensities) {
  const auto points = [&](int dotsAnInch) {
    QImage picture = filled({300, 150}, Qt::red);
    picture.setDotsPerMeterX(static_cast<int>(std::lround(dotsAnInch / 0.0254)));
    picture.setDotsPerMeterY(picture.dotsPerMeterX());
    const auto png = decode(folder_.save("a.png", picture, "png"));
    const auto jpeg = decode(folder_.write("a.jpg", jpegBytes(picture)));
    EXPECT_TRUE(png && jpeg);
    EXPECT_EQ(png->pointSize, jpeg->pointSize);
    return png->pointSize;
  };
  EXPECT_EQ(points(144), QSizeF(150, 75));
  EXPECT_EQ(points(216), QSizeF(100, 50));
  EXPECT_EQ(points(96), QSizeF(300, 150));
  EXPECT_EQ(points(72), QSizeF(300, 150));
  EXPECT_EQ(points(288), QSizeF(300, 150));
}

TEST_F(ImageDecoderTest, goesByTheContentsAndNotByTheName) {
  expectQuarters(image(folder_.save("a.jpg", quarters({40, 40}), "png")), kLossless);
  EXPECT_FALSE(decode(folder_.write("text.png", "Only some words.")));
  EXPECT_FALSE(decode(folder_.write("empty.png", "")));
  EXPECT_FALSE(decode(folder_.save("a.png", quarters({40, 40}), "bmp")));
}

TEST_F(ImageDecoderTest, opensNothingButRegularFiles) {
  EXPECT_FALSE(decode(folder_.url("missing.png")));
  EXPECT_FALSE(decode(folder_.url("")));
  ASSERT_EQ(::mkfifo(folder_.url("pipe.png").path().c_str(), 0600), 0);
  EXPECT_FALSE(decode(folder_.url("pipe.png")));
}

TEST_F(ImageDecoderTest, opensAPathThatIsNoText) {
  EXPECT_EQ(image(folder_.save("caf\xE9 \xFF.png", quarters({40, 20}), "png")).size(), QSize(40, 20));
  EXPECT_EQ(image(folder_.write("\xFF.tiff", tiffBytes(quarters({40, 20})))).size(), QSize(40, 20));
}

TEST_F(ImageDecoderTest, decodesOnSeveralThreadsAtOnce) {
  const FileURL url = folder_.save("a.png", quarters({1000, 500}), "png");
  const QImage expected = image(url);
  std::array<QImage, 4> results;
  {
    std::vector<std::jthread> threads;
    for (auto& result : results) {
      threads.emplace_back([&] { result = decoder_.decode(url, {64, 64}, false)->image; });
    }
  }
  for (const auto& result : results) {
    EXPECT_EQ(result, expected);
  }
}

}  // namespace
}  // namespace quenlio::test
