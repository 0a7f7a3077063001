#include <gtest/gtest.h>
#include <unistd.h>
#include <vector>

#include "desktop/render/ImageDecoder.h"
#include "desktop/views/preview/PreviewPicture.h"

#include "tests/desktop/render/Pictures.h"

namespace quenlio {
namespace {

using State = PreviewPicture::State;
using test::filled;
using test::PictureFolder;
using test::quarters;

const preview::Room kDesk{{1280, 800}, 1};
const preview::Room kDenseDesk{{1280, 800}, 2};

class PreviewPictureTest : public testing::Test {
 protected:
  PreviewPicture load(const FileURL& url, const preview::Room& room, const std::stop_token& stop = {}) {
    measured.clear();
    return loadPreviewPicture(PictureSource::from(decoder), url, room, stop,
                              [this](QSizeF points) { measured.push_back(points); });
  }

  ImageDecoder decoder = test::realDecoder();
  PictureFolder folder;
  std::vector<QSizeF> measured;
  std::stop_source stopping;
};

TEST_F(PreviewPictureTest, aSmallOneHasItsOwnPixels) {
  const QImage original = quarters({200, 120});
  const PreviewPicture picture = load(folder.save("a.png", original, "PNG"), kDesk);
  ASSERT_EQ(picture.state, State::ready);
  EXPECT_EQ(picture.points, QSizeF(200, 120));
  ASSERT_EQ(picture.image.size(), QSize(200, 120));
  for (const QPoint at : {QPoint(10, 10), QPoint(99, 59), QPoint(100, 60), QPoint(99, 60), QPoint(100, 59)}) {
    EXPECT_EQ(picture.image.pixelColor(at), original.pixelColor(at)) << at.x() << "," << at.y();
  }
}

TEST_F(PreviewPictureTest, aLargeOneComesAtThePixelsThatItIsShownIn) {
  const FileURL url = folder.save("a.png", quarters({3840, 2160}), "PNG");
  for (const double scale : {1.0, 1.25, 2.0}) {
    const preview::Room room{{1280, 800}, scale};
    const PreviewPicture picture = load(url, room);
    ASSERT_EQ(picture.state, State::ready);
    EXPECT_EQ(picture.image.size(), preview::shownPixels({3840, 2160}, room)) << scale;
  }
}

TEST_F(PreviewPictureTest, theSizeIsToldBeforeThePixelsWhereTheHeaderDoes) {
  (void)load(folder.save("a.png", quarters({300, 200}), "PNG"), kDesk);
  EXPECT_EQ(measured, std::vector{QSizeF(300, 200)});
  (void)load(folder.write("turned.jpg", test::jpegTurned(test::jpegBytes(quarters({320, 160})), 6)), kDesk);
  EXPECT_EQ(measured, std::vector{QSizeF(160, 320)});
  (void)load(folder.write("a.pdf", test::pdfBytes(200, 100)), kDesk);
  EXPECT_TRUE(measured.empty());
}

TEST_F(PreviewPictureTest, aPictureOfADenseScreenIsShownAtItsPoints) {
  QImage dense = quarters({400, 240});
  dense.setDotsPerMeterX(5669);  // 144 dots an inch
  dense.setDotsPerMeterY(5669);
  const FileURL url = folder.save("a.png", dense, "PNG");
  EXPECT_EQ(load(url, kDesk).image.size(), QSize(200, 120));
  EXPECT_EQ(load(url, kDenseDesk).image.size(), QSize(400, 240));
  const PreviewPicture tiff = load(folder.write("b.tiff", test::tiffBytes(quarters({400, 240}))), kDenseDesk);
  EXPECT_EQ(tiff.image.size(), QSize(800, 480)) << "one that has to be enlarged";
}

TEST_F(PreviewPictureTest, aPageIsDrawnForThePixelsOfTheScreen) {
  const PreviewPicture picture = load(folder.write("a.pdf", test::pdfBytes(300, 200)), kDenseDesk);
  ASSERT_EQ(picture.state, State::ready);
  EXPECT_EQ(picture.points, QSizeF(300, 200));
  ASSERT_EQ(picture.image.size(), QSize(600, 400));
  // Drawn anew, and not a small page made larger: the edge in the middle is sharp.
  EXPECT_EQ(picture.image.pixelColor(298, 200), QColor(Qt::red));
  EXPECT_EQ(picture.image.pixelColor(301, 200), QColor(Qt::white));
}

TEST_F(PreviewPictureTest, aHeicPictureIsShown) {
  const FileURL url = folder.write("a.heic", test::heicBytes(folder, quarters({2400, 1600})));
  const PreviewPicture picture = load(url, kDesk);
  ASSERT_EQ(picture.state, State::ready);
  EXPECT_EQ(picture.image.size(), preview::shownPixels({2400, 1600}, kDesk));
}

TEST_F(PreviewPictureTest, theCornersAreRoundedAndNothingElse) {
  const PreviewPicture picture = load(folder.save("a.png", filled({200, 160}, Qt::blue), "PNG"), kDesk);
  const QImage& image = picture.image;
  for (const QPoint corner : {QPoint(0, 0), QPoint(199, 0), QPoint(0, 159), QPoint(199, 159)}) {
    EXPECT_LT(image.pixelColor(corner).alpha(), 40);
  }
  EXPECT_EQ(image.pixelColor(100, 0), QColor(Qt::blue));
  EXPECT_EQ(image.pixelColor(0, 80), QColor(Qt::blue));
  EXPECT_EQ(image.pixelColor(7, 7), QColor(Qt::blue));
  const PreviewPicture one = load(folder.save("b.png", filled({1, 1}, Qt::red), "PNG"), kDesk);
  EXPECT_EQ(one.image.pixelColor(0, 0), QColor(Qt::red));
}

TEST_F(PreviewPictureTest, aBrokenFileIsToldFromOneThatIsGone) {
  const FileURL whole = folder.save("a.png", quarters({600, 400}), "PNG");
  const std::string bytes = test::contents(whole);
  EXPECT_EQ(load(folder.write("cut.png", bytes.substr(0, bytes.size() / 2)), kDesk).state, State::unreadable);
  EXPECT_EQ(load(folder.write("text.png", "no picture"), kDesk).state, State::unreadable);
  EXPECT_EQ(load(folder.write("empty.png", ""), kDesk).state, State::unreadable);
  EXPECT_EQ(load(folder.url("none.png"), kDesk).state, State::gone);
}

// Not by the corners that are taken away here.
TEST_F(PreviewPictureTest, tellsWhetherItIsClearInPlaces) {
  EXPECT_FALSE(load(folder.save("a.png", filled({200, 160}, Qt::blue), "PNG"), kDesk).isClearInPlaces);
  QImage image(200, 160, QImage::Format_ARGB32);
  image.fill(Qt::blue);
  image.setPixelColor(199, 159, QColor(0, 0, 255, 128));
  EXPECT_TRUE(load(folder.save("b.png", image, "PNG"), kDesk).isClearInPlaces);
}

// One that leads into itself stands for a folder that is locked, which it never is to who may do everything.
TEST_F(PreviewPictureTest, aFileInAFolderThatCannotBeEnteredIsNotSaidToBeGone) {
  const std::string loop = folder.url("loop").path();
  ASSERT_EQ(::symlink(loop.c_str(), loop.c_str()), 0);
  EXPECT_EQ(load(FileURL(loop + "/a.png"), kDesk).state, State::unreadable);
  const FileURL file = folder.write("file", "no folder");
  EXPECT_EQ(load(FileURL(file.path() + "/a.png"), kDesk).state, State::gone);
}

TEST_F(PreviewPictureTest, aStoppedOneHasNoPicture) {
  stopping.request_stop();
  const PreviewPicture picture = load(folder.save("a.png", quarters({600, 400}), "PNG"), kDesk, stopping.get_token());
  EXPECT_TRUE(picture.image.isNull());
}

TEST_F(PreviewPictureTest, aFileIsToldFromItselfAfterAChange) {
  const FileURL url = folder.write("a.png", "one");
  const auto before = PreviewStamp::of(url);
  ASSERT_TRUE(before);
  EXPECT_EQ(PreviewStamp::of(url), before);
  folder.write("a.png", "longer");
  EXPECT_NE(PreviewStamp::of(url), before);
  EXPECT_FALSE(PreviewStamp::of(folder.url("none.png")));
}

}  // namespace
}  // namespace quenlio
