#include <QtGui/QPainter>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tuple>

#include "desktop/views/common/Picture.h"
#include "desktop/views/island/MainPreview.h"
#include "desktop/views/island/ThumbnailCell.h"

#include "tests/desktop/views/Island.h"

namespace quenlio {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr QPoint kMiddle{116, 99};  // of the preview in the smallest island

// Without a compositor, and once everything stands still: what is painted is seen as it is.
class OpaqueIsland : public Island {
 public:
  OpaqueIsland() {
    compositor.isThere().set(false);
    settle();
  }
  [[nodiscard]] QImage picture(double scale = 1) {
    platform.time.advanceBy(Seconds(1));
    return Island::picture(scale);
  }
};

TEST(MainPreview, showsTheThumbnailAtOnce) {
  OpaqueIsland island;
  island.ingest("one.png");
  island.giveThumbnails(Qt::red);
  EXPECT_EQ(island.picture().pixelColor(kMiddle), QColor(Qt::red));
}

TEST(MainPreview, thePictureFillsItsPlaceWhateverTheCanvasLeavesFree) {
  OpaqueIsland island;
  island.ingest("one.png");
  island.giveThumbnails(Qt::red, {280, 220}, {280, 100});  // clear above and below
  const QImage picture = island.picture();
  // 202 points are there for the width, from x = 15 to 217.
  EXPECT_EQ(picture.pixelColor(17, kMiddle.y()), QColor(Qt::red));
  EXPECT_EQ(picture.pixelColor(214, kMiddle.y()), QColor(Qt::red));
}

TEST(MainPreview, asksForNoMoreWhenTheThumbnailIsSharpEnough) {
  OpaqueIsland island;
  island.ingest("one.png");
  island.giveThumbnails(Qt::red);
  island.settle();
  EXPECT_THAT(island.requests, IsEmpty());
}

TEST(MainPreview, asksForASharperPictureOnceWhereTheThumbnailHasTooFewPixels) {
  OpaqueIsland island;
  island.setSize(IslandSize::xLarge);
  island.ingest("one.png");
  island.giveThumbnails(Qt::red);
  island.settle();
  ASSERT_THAT(island.requests, SizeIs(1));
  EXPECT_EQ(island.requests[0].url, island.item("one.png").fileURL);
  EXPECT_EQ(island.requests[0].pixels, QSize(500 - 2 * 12 - 2 * 6, 345 - 2 * 6));
  EXPECT_EQ(island.picture().pixelColor(250, 220), QColor(Qt::red));
  island.requests[0].completion(plainImage({464, 262}, Qt::blue));
  EXPECT_EQ(island.picture().pixelColor(250, 220), QColor(Qt::blue));
  EXPECT_THAT(island.requests, SizeIs(1));
}

TEST(MainPreview, keepsTheThumbnailWhenThereIsNoSharperPicture) {
  OpaqueIsland island;
  island.setSize(IslandSize::xLarge);
  island.ingest("one.png");
  island.giveThumbnails(Qt::red);
  island.settle();
  ASSERT_THAT(island.requests, SizeIs(1));
  island.requests[0].completion(nullptr);
  EXPECT_EQ(island.picture().pixelColor(250, 220), QColor(Qt::red));
}

TEST(MainPreview, anAnswerForAnItemNoLongerShownIsDropped) {
  OpaqueIsland island;
  island.setSize(IslandSize::xLarge);
  island.ingest("one.png");
  island.ingest("two.png");
  island.giveThumbnails(Qt::red);
  island.settle();
  ASSERT_THAT(island.requests, SizeIs(1));
  island.store.select(island.item("one.png").id);
  island.settle();
  ASSERT_THAT(island.requests, SizeIs(2));
  island.requests[0].completion(plainImage({464, 262}, Qt::blue));
  EXPECT_EQ(island.picture().pixelColor(250, 220), QColor(Qt::red));
  island.requests[1].completion(plainImage({464, 262}, Qt::green));
  EXPECT_EQ(island.picture().pixelColor(250, 220), QColor(Qt::green));
}

// Its decoding would keep others waiting.
TEST(MainPreview, endsTheDecodingOfAPictureThatIsNoLongerWanted) {
  OpaqueIsland island;
  island.setSize(IslandSize::xLarge);
  island.ingest("one.png");
  island.ingest("two.png");
  island.giveThumbnails(Qt::red);
  const auto areEnded = [&island] {
    island.settle();
    std::vector<bool> ended;
    for (const auto& request : island.requests) {
      ended.push_back(request.isEnded);
    }
    return ended;
  };
  EXPECT_THAT(areEnded(), ElementsAre(false));
  island.store.select(island.item("one.png").id);
  EXPECT_THAT(areEnded(), ElementsAre(true, false));
  island.setSize(IslandSize::large);
  EXPECT_THAT(areEnded(), ElementsAre(true, true, false));
  island.view->hide();
  EXPECT_THAT(areEnded(), ElementsAre(true, true, true));
  island.view->show();
  EXPECT_THAT(areEnded(), ElementsAre(true, true, true, false));
  island.view.reset();
  EXPECT_THAT(areEnded(), ElementsAre(true, true, true, true));
}

TEST(MainPreview, anAnswerAfterTheIslandIsGoneIsHarmless) {
  OpaqueIsland island;
  island.setSize(IslandSize::xLarge);
  island.ingest("one.png");
  island.giveThumbnails(Qt::red);
  island.settle();
  ASSERT_THAT(island.requests, SizeIs(1));
  island.view.reset();
  const ImageRef late = plainImage({464, 262}, Qt::blue);
  island.requests[0].completion(late);
  EXPECT_EQ(late.use_count(), 1);  // nobody has kept it
}

// Nothing is seen of it but the name.
TEST(MainPreview, keepsTheSharperPictureOfAFileThatIsRenamed) {
  OpaqueIsland island;
  island.setSize(IslandSize::xLarge);
  island.ingest("one.png");
  island.giveThumbnails(Qt::red);
  island.settle();
  ASSERT_THAT(island.requests, SizeIs(1));
  island.requests[0].completion(plainImage({464, 262}, Qt::blue));
  ASSERT_TRUE(island.store.rename(island.item("one.png"), "two"));
  island.settle();
  EXPECT_EQ(island.picture().pixelColor(250, 220), QColor(Qt::blue));
  EXPECT_THAT(island.requests, SizeIs(1));
}

TEST(MainPreview, asksAgainUnderTheNewNameForAPictureThatHasNotCome) {
  OpaqueIsland island;
  island.setSize(IslandSize::xLarge);
  island.ingest("one.png");
  island.giveThumbnails(Qt::red);
  island.settle();
  ASSERT_TRUE(island.store.rename(island.item("one.png"), "two"));
  island.settle();
  ASSERT_THAT(island.requests, SizeIs(2));
  EXPECT_TRUE(island.requests[0].isEnded);
  EXPECT_EQ(island.requests[1].url.lastPathComponent(), "two.png");
  island.requests[1].completion(plainImage({464, 262}, Qt::blue));
  EXPECT_EQ(island.picture().pixelColor(250, 220), QColor(Qt::blue));
}

// There is nothing more to be seen of it, however much room there is.
TEST(MainPreview, enlargesATinyPictureToTwiceItsSizeAndNotMore) {
  OpaqueIsland island;
  island.setSize(IslandSize::xLarge);
  island.ingest("one.png");
  island.giveThumbnails(Qt::red, {280, 220}, {280, 140}, 1, {40, 20});
  const QPoint middle(250, 220);
  for (const int scale : {1, 2}) {
    const QImage picture = island.picture(scale);
    const auto at = [&](QPoint moved) { return picture.pixelColor((middle + moved) * scale); };
    EXPECT_EQ(at({0, 0}), QColor(Qt::red)) << scale;
    EXPECT_EQ(at({37, 0}), QColor(Qt::red)) << scale;
    EXPECT_NE(at({43, 0}), QColor(Qt::red)) << scale;
    EXPECT_EQ(at({0, 17}), QColor(Qt::red)) << scale;
    EXPECT_NE(at({0, 23}), QColor(Qt::red)) << scale;
  }
  EXPECT_THAT(island.requests, IsEmpty());
}

// What is not on the screen needs no memory, and nothing is decoded for it.
TEST(MainPreview, keepsTheSharperPictureForAsLongAsItIsShown) {
  OpaqueIsland island;
  island.setSize(IslandSize::xLarge);
  island.ingest("one.png");
  island.giveThumbnails(Qt::red);
  island.settle();
  ASSERT_THAT(island.requests, SizeIs(1));
  island.requests[0].completion(plainImage({464, 262}, Qt::blue));
  island.view->hide();
  island.ingest("two.png");
  island.giveThumbnails(Qt::yellow);
  island.settle();
  EXPECT_THAT(island.requests, SizeIs(1));
  island.view->show();
  island.settle();
  EXPECT_THAT(island.requests, SizeIs(2));
}

// The preview's and the cell's picture with the pixels that the screen has, whatever density the thumbnail was made
// for.
class Density : public testing::TestWithParam<std::tuple<double, double>> {
 protected:
  // Whether the corners of this rectangle, in points, are rounded alike: clear to so many pixels inward on the
  // diagonal, and full a good deal further in. What lies under the picture is not red.
  static void expectRoundCorners(const QImage& image, const QRectF& points, double scale, double radius) {
    const QRectF rect(points.topLeft() * scale, points.size() * scale);
    const double cut = radius * scale * (1 - std::sqrt(0.5));  // from the corner to the arc, along each axis
    for (const bool right : {false, true}) {
      for (const bool bottom : {false, true}) {
        const auto pixel = [&](double inward) {
          const double x = right ? rect.right() - 1 - inward : rect.left() + inward;
          const double y = bottom ? rect.bottom() - 1 - inward : rect.top() + inward;
          return image.pixelColor(static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y)));
        };
        const auto isRed = [](const QColor& color) { return color.red() > 240 && color.green() < 40; };
        EXPECT_FALSE(isRed(pixel(0))) << right << bottom;
        EXPECT_FALSE(isRed(pixel(std::max(0.0, std::floor(cut) - 2)))) << right << bottom;
        EXPECT_TRUE(isRed(pixel(std::ceil(cut) + 2 * scale))) << right << bottom;
      }
    }
  }
};

TEST_P(Density, allCornersOfThePreviewsPictureAreRoundAlike) {
  const auto [scale, density] = GetParam();
  OpaqueIsland island;
  island.setSize(IslandSize::xLarge);
  island.ingest("one.png");
  island.giveThumbnails(Qt::red, (QSizeF(280, 220) * density).toSize(), (QSizeF(280, 140) * density).toSize(), density);
  // The well is 476 by 345 points from (12, 48) on; the picture, two to one, has 464 by 232 of it. Its radius is the
  // well's 18 less the 6 between the two.
  expectRoundCorners(island.picture(scale), {18, 104.5, 464, 232}, scale, 12);
}

TEST_P(Density, allCornersOfACellsPictureAreRoundAlike) {
  const auto [scale, density] = GetParam();
  OpaqueIsland island;
  island.setSize(IslandSize::xLarge);
  island.ingest("one.png");
  island.ingest("two.png");
  island.giveThumbnails(Qt::red, (QSizeF(280, 220) * density).toSize(), (QSizeF(280, 140) * density).toSize(), density);
  (void)island.picture(scale);                                                // by then the cells have come up
  const auto* cell = dynamic_cast<ThumbnailCell*>(island.button("one.png"));  // not the selected one, which has a ring
  ASSERT_NE(cell, nullptr);
  const QRectF place = cell->square().translated(cell->parentWidget()->mapTo(island.view.get(), QPoint()));
  const QImage picture = island.picture(scale);
  const QPointF middle = place.center() * scale;
  EXPECT_GT(picture.pixelColor(middle.toPoint()).red(), 230);
  // Paler than the selected one's: what is looked at is where it begins and where it does not.
  const auto isPicture = [&](QPointF point) {
    const QColor color = picture.pixelColor((point * scale).toPoint());
    return color.red() > 200 && color.green() < 90;
  };
  for (const double dx : {-1.0, 1.0}) {
    for (const double dy : {-1.0, 1.0}) {
      const auto inward = [&, half = place.width() / 2](double points) {
        return place.center() + QPointF(dx, dy) * (half - points);
      };
      EXPECT_FALSE(isPicture(inward(1))) << dx << dy;
      EXPECT_TRUE(isPicture(inward(5.5))) << dx << dy;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Scales, Density,
                         testing::Combine(testing::Values(1.0, 1.5, 2.0), testing::Values(1.0, 1.5, 2.0)));

// The window keeps its size in points when it goes to a denser screen.
TEST(MainPreview, asksForASharperPictureWhenAPointHasMorePixels) {
  OpaqueIsland island;
  island.ingest("one.png");
  island.giveThumbnails(Qt::red);
  EXPECT_EQ(island.picture(1).pixelColor(kMiddle), QColor(Qt::red));
  EXPECT_THAT(island.requests, IsEmpty());
  EXPECT_EQ(island.picture(2).pixelColor(2 * kMiddle), QColor(Qt::red));
  ASSERT_THAT(island.requests, SizeIs(1));
  EXPECT_EQ(island.requests[0].pixels, 2 * QSize(202, 118));
  island.requests[0].completion(plainImage({404, 228}, Qt::blue));
  EXPECT_EQ(island.picture(2).pixelColor(2 * kMiddle), QColor(Qt::blue));
}

// A capture may itself be clear at its edges, as a window's is that was captured with its shadow.
TEST(MainPreview, aPictureWithClearBordersKeepsThem) {
  OpaqueIsland island;
  island.ingest("one.png");
  island.giveThumbnails(Qt::red, {280, 220}, {280, 158});
  QImage bordered(280, 220, QImage::Format_ARGB32_Premultiplied);
  bordered.fill(Qt::transparent);
  QPainter painter(&bordered);
  painter.fillRect(QRect(100, 90, 80, 40), Qt::red);
  painter.end();
  island.store.items.mutate([&](std::vector<ScreenshotItem>& items) {
    items.front().thumbnail =
        std::make_shared<QtImage>(bordered, Size{280, 220}, QRectF(0, 31, 280, 158), Size{1600, 900});
  });
  const QImage picture = island.picture();
  EXPECT_EQ(picture.pixelColor(kMiddle), QColor(Qt::red));
  // The red has 80 of 280 pixels of the picture's width, which is 202 points: it ends 29 from the middle.
  EXPECT_EQ(picture.pixelColor(kMiddle + QPoint(26, 0)), QColor(Qt::red));
  EXPECT_NE(picture.pixelColor(kMiddle + QPoint(32, 0)), QColor(Qt::red));
}

TEST(Picture, placeOnTheCanvasIsInWholePixels) {
  const QImage canvas(280, 220, QImage::Format_ARGB32_Premultiplied);
  const auto place = [&canvas](const QRectF& picture) {
    return pictureOnCanvas(std::make_shared<QtImage>(canvas, Size{280, 220}, picture, Size{1600, 900}));
  };
  EXPECT_EQ(place({0, 60, 280, 100}), QRect(0, 60, 280, 100));
  EXPECT_EQ(place({0, 31.25, 280, 157.5}), QRect(0, 31, 280, 158));
  EXPECT_EQ(place({0, 109.99, 280, 0.02}), QRect(0, 109, 280, 2));
  EXPECT_EQ(pictureOnCanvas(plainImage({10, 20}, Qt::red)), QRect(0, 0, 10, 20));
  EXPECT_TRUE(pictureOnCanvas(nullptr).isEmpty());
}

TEST(Picture, fitsAndCropsWithItsShapeKept) {
  EXPECT_EQ(fitted({1920, 1080}, {202, 118}), QSize(202, 113));
  EXPECT_EQ(fitted({100, 1000}, {202, 118}), QSize(11, 118));
  EXPECT_EQ(fitted({10000, 1}, {100, 100}), QSize(100, 1));
  EXPECT_EQ(croppedTo({0, 0, 100, 50}, {24, 24}), QRect(25, 0, 50, 50));
}

}  // namespace
}  // namespace quenlio
