#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <regex>
#include <set>

#include "desktop/views/common/Icon.h"

namespace quenlio {
namespace {

constexpr std::array kSymbols{"doc.on.doc", "highlighter", "square.and.arrow.up", "folder",    "trash",
                              "xmark",      "photo",       "lock.shield",         "checkmark", "arrow.up.right.square",
                              "pencil"};

// The icon in the middle of a clear square of 40 points.
QImage drawn(const char* symbol, const IconLook& look, double density) {
  const int side = static_cast<int>(std::lround(40 * density));
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(density);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  paintIcon(painter, symbol, {side / density / 2, side / density / 2}, look);
  return image;
}

// What is painted at all, in pixels.
QRect extent(const QImage& image) {
  QRect covered;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixelColor(x, y).alpha() > 40) {
        covered |= QRect(x, y, 1, 1);
      }
    }
  }
  return covered;
}

class EverySymbol : public testing::TestWithParam<std::tuple<const char*, double, double>> {};

TEST_P(EverySymbol, isDrawnInTheColourThatItIsGiven) {
  const auto [symbol, size, density] = GetParam();
  const QColor colour(200, 40, 90);
  const QImage image = drawn(symbol, {.size = size, .colour = colour}, density);
  int inked = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QColor pixel = image.pixelColor(x, y);
      if (pixel.alpha() > 100) {
        ++inked;
        EXPECT_NEAR(pixel.red(), colour.red(), 3);
        EXPECT_NEAR(pixel.green(), colour.green(), 3);
        EXPECT_NEAR(pixel.blue(), colour.blue(), 3);
      }
    }
  }
  EXPECT_GE(inked, size * density);  // a line across, at the least
}

// All are of one size to the eye: none leaves its square, none is lost in it, and none stands aside.
TEST_P(EverySymbol, fillsTheMiddleOfItsSquare) {
  const auto [symbol, size, density] = GetParam();
  const QImage image = drawn(symbol, {.size = size, .colour = Qt::black}, density);
  const QRectF covered = extent(image);
  const double side = size * density;
  EXPECT_LE(covered.width(), side + 1);
  EXPECT_LE(covered.height(), side + 1);
  EXPECT_GE(std::max(covered.width(), covered.height()), 0.5 * side);
  const QPointF aside = covered.center() - QRectF(image.rect()).center();
  // The pixel that lines are moved by to be sharp, and the little that balances an uneven shape.
  EXPECT_LE(std::abs(aside.x()), 1 + side * 0.05);
  EXPECT_LE(std::abs(aside.y()), 1 + side * 0.05);
}

INSTANTIATE_TEST_SUITE_P(Sizes, EverySymbol,
                         testing::Combine(testing::ValuesIn(kSymbols), testing::Values(16.0, 18.0, 24.0, 32.0),
                                          testing::Values(1.0, 1.25, 1.5, 2.0)));

class Sharpness : public testing::TestWithParam<std::tuple<double, double>> {};

// How far the middle of the first line that this way crosses is from where a line of its width is sharp: in the middle
// of a pixel, when it is an odd number of them wide, and otherwise on the boundary between two.
double blur(const QImage& image, QPoint start, QPoint step, double linePixels) {
  double ink = 0;
  double weighted = 0;
  int pixels = 0;
  for (QPoint at = start; image.rect().contains(at); at += step, ++pixels) {
    const double alpha = image.pixelColor(at).alphaF();
    if (alpha < 0.01 && ink > 0.5) {
      break;
    }
    ink += alpha;
    weighted += alpha * (pixels + 0.5);
  }
  const double middle = weighted / ink + (std::lround(linePixels) % 2 == 1 ? 0.5 : 0);
  return std::abs(middle - std::round(middle));
}

TEST_P(Sharpness, outerLinesLieOnWholePixels) {
  const auto [size, density] = GetParam();
  const double line = 1.75 / 24 * size * density;
  for (const char* symbol : {"folder", "arrow.up.right.square", "doc.on.doc"}) {
    const QImage image = drawn(symbol, {.size = size, .colour = Qt::black}, density);
    const QRect covered = extent(image);
    // Where nothing but the frame is: away from the round corners, and from the folder's tab.
    const int row = covered.top() + covered.height() * 45 / 100;
    const int column = covered.left() + covered.width() / 2;
    EXPECT_LT(blur(image, {image.width() - 1, row}, {-1, 0}, line), 0.1) << symbol << " right";
    EXPECT_LT(blur(image, {column, image.height() - 1}, {0, -1}, line), 0.1) << symbol << " bottom";
  }
}

INSTANTIATE_TEST_SUITE_P(Sizes, Sharpness,
                         testing::Combine(testing::Values(16.0, 18.0), testing::Values(1.0, 1.25, 1.5, 2.0)));

TEST(Icon, growsAroundItsMiddle) {
  const QRectF resting = extent(drawn("xmark", {.size = 24, .colour = Qt::black}, 2));
  const QRectF grown = extent(drawn("xmark", {.size = 24, .colour = Qt::black, .scale = 1.25}, 2));
  EXPECT_NEAR(grown.width(), resting.width() * 1.25, 1.5);
  EXPECT_EQ(grown.center(), resting.center());
}

TEST(Icon, isPaintedOnWholePixelsWhereverItStands) {
  const QImage whole = drawn("folder", {.size = 16, .colour = Qt::black}, 1);
  QImage shifted(40, 40, QImage::Format_ARGB32_Premultiplied);
  shifted.fill(Qt::transparent);
  QPainter painter(&shifted);
  paintIcon(painter, "folder", {20.3, 19.8}, {.size = 16, .colour = Qt::black});
  painter.end();
  EXPECT_EQ(shifted, whole);
}

TEST(Icon, drawingsAreOfOneHand) {
  std::set<std::string> names;
  for (QDirIterator files(QStringLiteral(":/icons")); files.hasNext();) {
    QFile file(files.next());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const std::string text = file.readAll().toStdString();
    names.insert(files.fileName().toStdString());
    EXPECT_NE(text.find(R"(viewBox="0 0 24 24")"), std::string::npos) << files.fileName().toStdString();
    EXPECT_NE(text.find(R"(stroke-linecap="round" stroke-linejoin="round")"), std::string::npos);
    const std::regex width(R"re(stroke-width="([^"]*)")re");
    for (auto found = std::sregex_iterator(text.begin(), text.end(), width); found != std::sregex_iterator(); ++found) {
      EXPECT_EQ((*found)[1], "1.75") << files.fileName().toStdString();
    }
  }
  std::set<std::string> expected;
  for (const char* symbol : kSymbols) {
    expected.insert(std::string(symbol) + ".svg");
  }
  EXPECT_EQ(names, expected);
}

}  // namespace
}  // namespace quenlio
