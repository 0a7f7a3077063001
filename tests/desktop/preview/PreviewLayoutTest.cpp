#include <cmath>
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "desktop/views/preview/PreviewLayout.h"

namespace quenlio::preview {
namespace {

const Room kDesk{{1280, 800}, 1};

TEST(PreviewLayout, aSmallPictureIsShownAtItsOwnSize) {
  EXPECT_EQ(shownSize({640, 400}, kDesk), QSizeF(640, 400));
  EXPECT_EQ(shownPixels({640, 400}, kDesk), QSize(640, 400));
  EXPECT_EQ(windowSize({640, 400}, kDesk), QSize(640 + 16, 400 + 48));
}

TEST(PreviewLayout, aLargePictureFillsTheShareOfTheWorkArea) {
  const QSizeF shown = shownSize({3840, 2160}, kDesk);
  EXPECT_EQ(windowSize(shown, kDesk).width(), 1088);
  EXPECT_NEAR(shown.width() / shown.height(), 16.0 / 9, 0.001);
  const QSizeF tall = shownSize({1000, 4000}, kDesk);
  EXPECT_EQ(windowSize(tall, kDesk).height(), 680);
}

TEST(PreviewLayout, theWindowHasRoomForItsCaptionWhateverThePicture) {
  EXPECT_EQ(windowSize({1, 1}, kDesk), kSmallestWindow);
  EXPECT_EQ(windowSize(shownSize({6000, 300}, kDesk), kDesk), QSize(1088, kSmallestWindow.height()));
  EXPECT_EQ(windowSize(shownSize({300, 6000}, kDesk), kDesk), QSize(kSmallestWindow.width(), 680));
}

TEST(PreviewLayout, aDenseScreenShowsTheSamePointsInMorePixels) {
  const Room dense{{1280, 800}, 2};
  EXPECT_EQ(shownSize({640, 400}, dense), QSizeF(640, 400));
  EXPECT_EQ(shownPixels({640, 400}, dense), QSize(1280, 800));
  EXPECT_EQ(mostPixels(dense), QSize(2 * (1088 - 16), 2 * (680 - 48)));
}

TEST(PreviewLayout, anythingFitsKeepsItsShapeAndIsNeverEnlarged) {
  EXPECT_TRUE(rc::check([] {
    const QSizeF picture(*rc::gen::inRange(1, 32'768), *rc::gen::inRange(1, 32'768));
    const Room room{QSizeF(*rc::gen::inRange(500, 8000), *rc::gen::inRange(400, 5000)),
                    *rc::gen::element(1.0, 1.25, 1.5, 2.0)};
    const QSizeF shown = shownSize(picture, room);
    RC_ASSERT(shown.width() <= picture.width() && shown.height() <= picture.height());
    RC_ASSERT(std::abs(shown.width() * picture.height() - shown.height() * picture.width()) <
              1e-6 * picture.width() * picture.height());
    const QSize window = windowSize(shown, room);
    RC_ASSERT(window.width() <= room.workArea.width() * kShareOfWorkArea);
    RC_ASSERT(window.height() <= room.workArea.height() * kShareOfWorkArea);
    const QRectF area = pictureArea(window);
    RC_ASSERT(shown.width() <= area.width() + 1e-6 && shown.height() <= area.height() + 1e-6);
    const QSize pixels = shownPixels(picture, room);
    RC_ASSERT(pixels.width() >= 1 && pixels.height() >= 1);
    RC_ASSERT(pixels.width() <= mostPixels(room).width() && pixels.height() <= mostPixels(room).height());
  }));
}

TEST(PreviewLayout, theWindowStaysAroundItsMiddleAndInTheWorkArea) {
  const Rect<Screen> workArea{{100, 40}, {1280, 760}};
  EXPECT_EQ(frameAround({740, 420}, {640, 400}, workArea), (Rect<Screen>{{420, 220}, {640, 400}}));
  EXPECT_EQ(frameAround({120, 60}, {640, 400}, workArea).origin, (Point<Screen>{100, 40}));
  EXPECT_EQ(frameAround({1370, 790}, {640, 400}, workArea).origin, (Point<Screen>{1380 - 640, 800 - 400}));
  EXPECT_EQ(frameAround({740.5, 420.5}, {641, 400}, workArea).origin, (Point<Screen>{420, 221})) << "whole points";
}

TEST(PreviewLayout, theWindowGoesSidewaysFromUnderAnother) {
  const Rect<Screen> workArea{{100, 40}, {1280, 760}};
  const Rect<Screen> island{{1136, 52}, {232, 232}};
  const Rect<Screen> frame{{420, 220}, {800, 400}};
  EXPECT_EQ(frameBeside(island, frame, workArea), frame.moved(-96, 0));  // 12 points beside it
  EXPECT_EQ(frameBeside({{100, 52}, {332, 232}}, frame, workArea), frame.moved(24, 0)) << "the other way round";
  EXPECT_EQ(frameBeside(island, frame.moved(0, 64), workArea), frame.moved(0, 64)) << "what is not covered stays";
  EXPECT_EQ(frameBeside(island, {{200, 220}, {1000, 400}}, workArea).minX(), 124);
  EXPECT_EQ(frameBeside(island, {{150, 220}, {1088, 400}}, workArea).minX(), 100) << "as far as the work area goes";
}

TEST(PreviewLayout, smallPicturesKeepTheirCorners) {
  EXPECT_EQ(pictureRadius({1000, 600}, 6), 6);
  EXPECT_LT(pictureRadius({1000, 50}, 6), 2.1);
  EXPECT_EQ(pictureRadius({1, 1}, 6), 0);
  EXPECT_EQ(pictureRadius({1000, 20}, 6), 0);
}

}  // namespace
}  // namespace quenlio::preview
