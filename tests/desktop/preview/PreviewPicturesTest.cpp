#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/views/preview/PreviewPictures.h"

#include "tests/desktop/preview/FakePictures.h"
#include "tests/desktop/preview/HeldWork.h"

namespace quenlio {
namespace {

using State = PreviewPicture::State;
using testing::ElementsAre;
using testing::IsEmpty;

const preview::Room kDesk{{1280, 800}, 1};

class PreviewPicturesTest : public testing::Test {
 protected:
  PreviewPicturesTest() {
    for (int number = 0; number < 9; ++number) {
      urls.push_back(files.add(std::to_string(number) + ".png", {400, 300}, QColor(number * 20, 0, 0)));
    }
  }
  void want(std::vector<std::size_t> indices, const preview::Room& room = kDesk) {
    std::vector<FileURL> wanted;
    for (const std::size_t index : indices) {
      wanted.push_back(urls[index]);
    }
    pictures->want(wanted, room);
  }
  void finishAll() { work.finishAll(PreviewPictures::kTimeToPaint); }
  // What is shown comes, and is painted.
  void finishShown() {
    work.finishOne();
    work.time.advanceBy(PreviewPictures::kTimeToPaint);
  }
  [[nodiscard]] QColor colour() const {
    const QImage& image = pictures->shown().image;
    return image.isNull() ? QColor() : image.pixelColor(image.rect().center());
  }

  FakePictures files;
  std::vector<FileURL> urls;
  HeldWork work;
  int news = 0;
  std::unique_ptr<PreviewPictures> pictures =
      std::make_unique<PreviewPictures>(work, files.source(), [this] { ++news; });
};

TEST_F(PreviewPicturesTest, whatIsShownComesFirstAndAlone) {
  want({3, 4, 2});
  EXPECT_EQ(work.running(), 1U);
  EXPECT_EQ(pictures->shown().state, State::loading);
  work.finishOne();
  EXPECT_EQ(pictures->shown().state, State::ready);
  EXPECT_EQ(colour(), QColor(60, 0, 0));
  EXPECT_THAT(files.decoded, ElementsAre(urls[3]));
}

TEST_F(PreviewPicturesTest, neighboursFollowOneByOneTheLikelierFirst) {
  want({3, 4, 2});
  work.finishOne();
  EXPECT_EQ(work.running(), 0U) << "not before the picture has been painted";
  work.time.advanceBy(PreviewPictures::kTimeToPaint);
  EXPECT_EQ(work.running(), 1U);
  work.finishOne();
  EXPECT_EQ(work.running(), 1U);
  work.finishOne();
  EXPECT_EQ(work.running(), 0U);
  EXPECT_THAT(files.decoded, ElementsAre(urls[3], urls[4], urls[2]));
}

TEST_F(PreviewPicturesTest, aNeighbourThatHasComeIsShownAtOnce) {
  want({3, 4, 2});
  finishAll();
  news = 0;
  want({4, 5, 3});
  EXPECT_EQ(pictures->shown().state, State::ready);
  EXPECT_EQ(colour(), QColor(80, 0, 0));
  EXPECT_EQ(news, 0) << "there is nothing to wait for";
}

TEST_F(PreviewPicturesTest, onlyTheShownOneAndItsNeighboursAreKept) {
  for (std::size_t at = 1; at < 8; ++at) {
    want({at, at + 1, at - 1});
    finishAll();
    EXPECT_EQ(files.inMemory(), 3);
  }
  pictures->clear();
  EXPECT_EQ(files.inMemory(), 0);
}

TEST_F(PreviewPicturesTest, anOldAnswerNeverReplacesANewerChoice) {
  want({1});
  want({2});
  EXPECT_EQ(work.running(), 2U);
  work.finishOne(1);  // the newer one first
  EXPECT_EQ(colour(), QColor(40, 0, 0));
  work.finishOne();
  EXPECT_EQ(colour(), QColor(40, 0, 0));
  EXPECT_EQ(files.inMemory(), 1);
}

TEST_F(PreviewPicturesTest, whatIsNoLongerWantedIsNotDecodedAnyMore) {
  for (std::size_t at = 1; at < 8; ++at) {
    want({at, at + 1, at - 1});  // one after the other, faster than any comes
  }
  finishAll();
  // All that was begun and is still next to the last choice, and nothing of what lies behind.
  EXPECT_THAT(files.decoded, ElementsAre(urls[6], urls[7], urls[8]));
  EXPECT_EQ(colour(), QColor(140, 0, 0));
}

TEST_F(PreviewPicturesTest, aNeighbourThatIsOnItsWayIsNotBegunAgain) {
  want({3, 4, 2});
  finishShown();
  want({4, 5, 3});  // while 4 is being decoded
  EXPECT_EQ(pictures->shown().state, State::loading);
  EXPECT_EQ(work.running(), 1U);
  work.finishOne();
  EXPECT_EQ(colour(), QColor(80, 0, 0));
  EXPECT_THAT(files.decoded, ElementsAre(urls[3], urls[4]));
}

TEST_F(PreviewPicturesTest, newsOfNeighboursIsNoNews) {
  want({3, 4, 2});
  work.finishOne();
  EXPECT_EQ(news, 2) << "the size, then the picture";
  finishAll();
  EXPECT_EQ(news, 2);
}

TEST_F(PreviewPicturesTest, aChangedFileIsReadAnew) {
  want({3, 4, 2});
  finishAll();
  files.change(urls[3], Qt::green);
  want({3, 4, 2});
  EXPECT_EQ(pictures->shown().state, State::loading);
  finishAll();
  EXPECT_EQ(colour(), QColor(Qt::green));
}

TEST_F(PreviewPicturesTest, aNeighbourThatHasChangedMeanwhileIsReadAnewWhenItIsShown) {
  want({3, 4, 2});
  finishAll();
  files.change(urls[4], Qt::green);
  want({4, 5, 3});
  finishAll();
  EXPECT_EQ(colour(), QColor(Qt::green));
}

TEST_F(PreviewPicturesTest, anUnchangedFileIsNotReadAgain) {
  want({3, 4, 2});
  finishAll();
  files.decoded.clear();
  want({3, 4, 2});
  finishAll();
  EXPECT_THAT(files.decoded, IsEmpty());
}

TEST_F(PreviewPicturesTest, aFileThatIsGoneIsToldAndComesBack) {
  const FileURL late = files.folder().url("late.png");
  pictures->want({late}, kDesk);
  finishAll();
  EXPECT_EQ(pictures->shown().state, State::gone);
  (void)files.add("late.png", {20, 20}, Qt::blue);
  pictures->want({late}, kDesk);
  finishAll();
  EXPECT_EQ(pictures->shown().state, State::ready);
}

TEST_F(PreviewPicturesTest, anotherScreenHasPicturesOfItsOwn) {
  want({3, 4, 2});
  finishAll();
  want({3, 4, 2}, {{1280, 800}, 2});
  EXPECT_EQ(pictures->shown().state, State::loading);
  finishAll();
  EXPECT_EQ(pictures->shown().image.size(), QSize(800, 600));
  EXPECT_EQ(files.inMemory(), 3);
}

TEST_F(PreviewPicturesTest, theSameFileTwiceIsOnePicture) {
  want({3, 3, 4});
  finishAll();
  EXPECT_THAT(files.decoded, ElementsAre(urls[3], urls[4]));
}

TEST_F(PreviewPicturesTest, whoLetsGoMeanwhileHearsNothing) {
  want({3, 4, 2});
  pictures.reset();
  finishAll();
  EXPECT_EQ(news, 0);
  EXPECT_THAT(files.decoded, IsEmpty());
  EXPECT_EQ(files.inMemory(), 0);
}

}  // namespace
}  // namespace quenlio
