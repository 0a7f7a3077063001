#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/views/common/Picture.h"
#include "desktop/views/island/MainPreview.h"

#include "tests/desktop/views/Island.h"

namespace quenlio {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

constexpr QPoint kMiddle{116, 99};  // of the preview in the smallest island

TEST(MainPreview, showsTheThumbnailAtOnce) {
  Island island;
  island.ingest("one.png");
  island.giveThumbnails(Qt::red);
  EXPECT_EQ(island.picture().pixelColor(kMiddle), QColor(Qt::red));
}

TEST(MainPreview, thePictureFillsItsPlaceWhateverTheCanvasLeavesFree) {
  Island island;
  island.ingest("one.png");
  island.giveThumbnails(Qt::red, {280, 220}, {280, 100});  // clear above and below
  const QImage picture = island.picture();
  // 202 points are there for the width, from x = 15 to 217.
  EXPECT_EQ(picture.pixelColor(17, kMiddle.y()), QColor(Qt::red));
  EXPECT_EQ(picture.pixelColor(214, kMiddle.y()), QColor(Qt::red));
}

TEST(MainPreview, asksForNoMoreWhenTheThumbnailIsSharpEnough) {
  Island island;
  island.ingest("one.png");
  island.giveThumbnails(Qt::red);
  island.settle();
  EXPECT_THAT(island.requests, IsEmpty());
}

TEST(MainPreview, asksForASharperPictureOnceWhereTheThumbnailHasTooFewPixels) {
  Island island;
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
  Island island;
  island.setSize(IslandSize::xLarge);
  island.ingest("one.png");
  island.giveThumbnails(Qt::red);
  island.settle();
  ASSERT_THAT(island.requests, SizeIs(1));
  island.requests[0].completion(nullptr);
  EXPECT_EQ(island.picture().pixelColor(250, 220), QColor(Qt::red));
}

TEST(MainPreview, anAnswerForAnItemNoLongerShownIsDropped) {
  Island island;
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

TEST(MainPreview, anAnswerAfterTheIslandIsGoneIsHarmless) {
  Island island;
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

// What is not on the screen needs no memory, and nothing is decoded for it.
TEST(MainPreview, keepsTheSharperPictureForAsLongAsItIsShown) {
  Island island;
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

TEST(Picture, marginsOfTheCanvasAreFound) {
  QImage canvas(280, 220, QImage::Format_ARGB32_Premultiplied);
  canvas.fill(Qt::transparent);
  EXPECT_EQ(pictureOnCanvas(canvas).center(), canvas.rect().center());
  for (int y = 60; y < 160; ++y) {
    for (int x = 0; x < 280; ++x) {
      canvas.setPixelColor(x, y, Qt::red);
    }
  }
  EXPECT_EQ(pictureOnCanvas(canvas), QRect(0, 60, 280, 100));
}

TEST(Picture, aPictureThatReachesOneEdgeKeepsTheOther) {
  QImage canvas(10, 10, QImage::Format_ARGB32_Premultiplied);
  canvas.fill(Qt::transparent);
  canvas.setPixelColor(0, 5, Qt::red);
  EXPECT_EQ(pictureOnCanvas(canvas).width(), 10);
}

TEST(Picture, fitsAndCropsWithItsShapeKept) {
  EXPECT_EQ(fitted({1920, 1080}, {202, 118}), QSize(202, 113));
  EXPECT_EQ(fitted({100, 1000}, {202, 118}), QSize(11, 118));
  EXPECT_EQ(fitted({10000, 1}, {100, 100}), QSize(100, 1));
  EXPECT_EQ(croppedTo({0, 0, 100, 50}, {24, 24}), QRect(25, 0, 50, 50));
}

}  // namespace
}  // namespace quenlio
