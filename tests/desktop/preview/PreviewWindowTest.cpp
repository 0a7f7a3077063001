#include <QtCore/QCoreApplication>
#include <QtGui/QMouseEvent>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QAbstractButton>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/linux/session/QtScreens.h"

#include "tests/desktop/preview/Preview.h"

namespace quenlio {
namespace {

using testing::Each;
using testing::ElementsAre;

// What is painted, as often as it is: the title and the colour in the middle.
class PaintLog final : private QObject {
 public:
  explicit PaintLog(const Preview& preview) : preview_(preview) { preview.view()->installEventFilter(this); }
  std::vector<std::string> names;

 private:
  bool eventFilter(QObject* /*object*/, QEvent* event) override {
    if (event->type() == QEvent::Paint) {
      names.push_back(preview_.view()->accessibleName().toStdString());
    }
    return false;
  }
  const Preview& preview_;
};

class PreviewWindowTest : public testing::Test {
 protected:
  PreviewWindowTest() {
    for (int number = 0; number < 6; ++number) {
      preview.list.push_back(
          preview.files.add("shot " + std::to_string(number) + ".png", {400, 300}, QColor(255, number * 40, 0)));
    }
  }
  [[nodiscard]] QColor colourOf(int number) const { return {255, number * 40, 0}; }
  void open(std::size_t index) {
    preview.open(index);
    preview.settle();
  }

  Preview preview;
};

TEST_F(PreviewWindowTest, thereIsNoneUntilItIsAskedFor) {
  EXPECT_FALSE(preview.panel.sharedPreviewPanelExists());
  EXPECT_FALSE(preview.panel.isVisible());
  EXPECT_EQ(preview.window(), nullptr);
  EXPECT_TRUE(preview.panel.sharedPreviewPanel());
  EXPECT_TRUE(preview.panel.sharedPreviewPanelExists());
  EXPECT_FALSE(preview.panel.isVisible());
}

TEST_F(PreviewWindowTest, opensAtTheItemWithItsNameAndPlaceInTheList) {
  open(2);
  EXPECT_TRUE(preview.panel.isVisible());
  ASSERT_TRUE(preview.isUp());
  EXPECT_EQ(preview.title(), "shot 2.png");
  EXPECT_EQ(preview.window()->accessibleName(), "shot 2.png");
  EXPECT_THAT(preview.texts(), ElementsAre("shot 2.png", "3 of 6"));
  EXPECT_EQ(preview.middle(), colourOf(2));
}

TEST_F(PreviewWindowTest, theFirstThatIsPaintedIsTheRightItemAndItsPicture) {
  preview.open(2);
  preview.work.time.runReady();
  EXPECT_FALSE(preview.isUp()) << "not before there is something to see";
  preview.work.finishOne();
  PaintLog log(preview);
  preview.settle();
  EXPECT_THAT(log.names, testing::Not(testing::IsEmpty()));
  EXPECT_THAT(log.names, Each("shot 2.png"));
  EXPECT_THAT(preview.files.decoded.front(), preview.list[2]);
}

TEST_F(PreviewWindowTest, whatMayBeOpenedIsDecodedBeforeItIs) {
  preview.panel.prepareItem(preview.list[2]);
  EXPECT_EQ(preview.work.running(), 1U);
  EXPECT_FALSE(preview.panel.isVisible());
  preview.settle();
  EXPECT_THAT(preview.files.decoded, ElementsAre(preview.list[2])) << "alone";
  EXPECT_FALSE(preview.isUp());
  preview.open(2);
  preview.paint();
  EXPECT_TRUE(preview.isUp()) << "at once";
  EXPECT_EQ(preview.middle(), colourOf(2));
  preview.settle();
  EXPECT_THAT(preview.files.decoded, ElementsAre(preview.list[2], preview.list[3], preview.list[1]));
}

TEST_F(PreviewWindowTest, whatIsStillBeingDecodedWhenItIsOpenedIsNotBegunAgain) {
  preview.panel.prepareItem(preview.list[2]);
  preview.open(2);
  preview.paint();
  EXPECT_EQ(preview.work.running(), 1U);
  EXPECT_FALSE(preview.isUp());
  preview.work.finishOne();
  EXPECT_TRUE(preview.isUp());
  EXPECT_THAT(preview.files.decoded, ElementsAre(preview.list[2]));
}

TEST_F(PreviewWindowTest, nothingIsKeptOfWhatIsNotOpenedAfterAll) {
  preview.panel.prepareItem(preview.list[2]);
  preview.settle();
  ASSERT_EQ(preview.files.inMemory(), 1);
  preview.panel.dropPreparedItem();
  EXPECT_EQ(preview.files.inMemory(), 0);
  EXPECT_EQ(preview.window(), nullptr);
  preview.panel.prepareItem(preview.list[3]);
  preview.panel.dropPreparedItem();
  preview.settle();
  EXPECT_THAT(preview.files.decoded, ElementsAre(preview.list[2])) << "what was begun is not decoded any more";
  EXPECT_EQ(preview.files.inMemory(), 0);
}

TEST_F(PreviewWindowTest, anotherItemTakesThePlaceOfWhatWasPrepared) {
  preview.panel.prepareItem(preview.list[2]);
  preview.settle();
  preview.panel.prepareItem(preview.list[5]);
  preview.settle();
  EXPECT_EQ(preview.files.inMemory(), 1);
  open(0);
  EXPECT_EQ(preview.middle(), colourOf(0));
  EXPECT_EQ(preview.files.inMemory(), 2) << "the first and the second";
}

TEST_F(PreviewWindowTest, whatIsShownKeepsItsNeighboursWhateverMayBeOpened) {
  open(0);
  preview.files.decoded.clear();
  preview.panel.prepareItem(preview.list[5]);
  preview.settle();
  preview.panel.dropPreparedItem();
  EXPECT_THAT(preview.files.decoded, testing::IsEmpty());
  EXPECT_EQ(preview.middle(), colourOf(0));
  EXPECT_EQ(preview.files.inMemory(), 2);
}

TEST_F(PreviewWindowTest, followsTheSelectionWithOneItemAndNoOther) {
  open(2);
  PaintLog log(preview);
  preview.list.erase(preview.list.begin());  // what was the fourth is the third now
  preview.sync(2);
  preview.settle();
  EXPECT_THAT(log.names, ElementsAre("shot 3.png"));
  EXPECT_THAT(preview.texts(), ElementsAre("shot 3.png", "3 of 5"));
  EXPECT_EQ(preview.middle(), colourOf(3));
}

TEST_F(PreviewWindowTest, arrowsStepThroughTheListAndStopAtItsEnds) {
  open(1);
  const auto after = [&](int key) {
    preview.press(key);
    preview.settle();
    return preview.title();
  };
  EXPECT_EQ(after(Qt::Key_Right), "shot 2.png");
  EXPECT_EQ(after(Qt::Key_Down), "shot 3.png");
  EXPECT_EQ(after(Qt::Key_Left), "shot 2.png");
  EXPECT_EQ(after(Qt::Key_Up), "shot 1.png");
  EXPECT_EQ(after(Qt::Key_End), "shot 5.png");
  EXPECT_EQ(after(Qt::Key_Right), "shot 5.png");
  EXPECT_EQ(after(Qt::Key_Home), "shot 0.png");
  EXPECT_EQ(after(Qt::Key_Left), "shot 0.png");
  EXPECT_EQ(preview.middle(), colourOf(0));
}

TEST_F(PreviewWindowTest, aStepToANeighbourIsPaintedOnceAndAtOnce) {
  open(1);
  PaintLog log(preview);
  preview.press(Qt::Key_Right);
  preview.paint();
  EXPECT_THAT(log.names, ElementsAre("shot 2.png"));
  EXPECT_EQ(preview.middle(), colourOf(2));
}

TEST_F(PreviewWindowTest, whatWasSteppedToIsWhereAReloadLeavesIt) {
  open(1);
  preview.press(Qt::Key_Right);
  preview.settle();
  preview.panel.reloadData();
  preview.settle();
  EXPECT_EQ(preview.title(), "shot 2.png");
}

TEST_F(PreviewWindowTest, spaceAndEscapeCloseIt) {
  for (const int key : {Qt::Key_Space, Qt::Key_Escape}) {
    open(1);
    ASSERT_TRUE(preview.panel.isVisible());
    preview.press(key);
    EXPECT_FALSE(preview.panel.isVisible());
    EXPECT_FALSE(preview.isUp());
    preview.settle();
    EXPECT_EQ(preview.window(), nullptr);
    EXPECT_TRUE(preview.panel.sharedPreviewPanelExists());
  }
}

TEST_F(PreviewWindowTest, theKeyThatOpensDoesNotCloseWhileItIsHeld) {
  open(1);
  preview.press(Qt::Key_Space, Qt::NoModifier, true);
  EXPECT_TRUE(preview.panel.isVisible());
}

TEST_F(PreviewWindowTest, otherKeysTheWheelAndDoubleClicksDoNothing) {
  open(1);
  const QImage before = preview.image();
  for (const int key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_A}) {
    preview.press(key);
  }
  preview.press(Qt::Key_Right, Qt::ControlModifier);
  preview.press(Qt::Key_Space, Qt::ShiftModifier);
  QWheelEvent wheel({50, 50}, {50, 50}, {}, {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(preview.view(), &wheel);
  QMouseEvent twice(QEvent::MouseButtonDblClick, {50, 90}, {50, 90}, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(preview.view(), &twice);
  preview.settle();
  EXPECT_TRUE(preview.panel.isVisible());
  EXPECT_EQ(preview.title(), "shot 1.png");
  EXPECT_EQ(preview.image(), before);
}

TEST_F(PreviewWindowTest, theCloseButtonAndTheWindowManagerCloseIt) {
  open(1);
  auto* button = preview.view()->findChild<QAbstractButton*>();
  ASSERT_NE(button, nullptr);
  EXPECT_EQ(button->accessibleName(), "Close");
  button->click();
  EXPECT_FALSE(preview.panel.isVisible());
  open(1);
  EXPECT_FALSE(preview.window()->close()) << "the panel lets go of it by itself";
  EXPECT_FALSE(preview.panel.isVisible());
  preview.settle();
  EXPECT_EQ(preview.window(), nullptr);
}

TEST_F(PreviewWindowTest, opensAgainAtAnotherItem) {
  open(1);
  preview.panel.orderOut();
  open(4);
  EXPECT_TRUE(preview.isUp());
  EXPECT_EQ(preview.title(), "shot 4.png");
}

TEST_F(PreviewWindowTest, closedBeforeItIsThereItNeverComes) {
  preview.open(1);
  preview.panel.orderOut();
  preview.settle();
  preview.work.time.advanceBy(Seconds(5));
  EXPECT_EQ(preview.window(), nullptr);
  EXPECT_TRUE(preview.files.decoded.empty());
}

TEST_F(PreviewWindowTest, nothingIsKeptOnceItIsClosed) {
  open(2);
  EXPECT_EQ(preview.files.inMemory(), 3);
  preview.press(Qt::Key_Escape);
  preview.settle();
  EXPECT_EQ(preview.files.inMemory(), 0);
  EXPECT_EQ(preview.work.time.pending(), 0U);
}

TEST_F(PreviewWindowTest, aSlowPictureLeavesTheOldOneForAMomentThatNobodyNotices) {
  open(1);
  preview.press(Qt::Key_End);
  preview.paint();
  EXPECT_EQ(preview.title(), "shot 1.png");
  EXPECT_EQ(preview.middle(), colourOf(1));
  preview.work.time.advanceBy(PreviewWindow::kUnnoticed);
  preview.paint();
  EXPECT_THAT(preview.texts(), ElementsAre("shot 5.png", "6 of 6"));
  EXPECT_NE(preview.middle(), colourOf(1)) << "never the old picture under the new name";
  preview.work.time.advanceBy(PreviewWindow::kWorthAWord);
  EXPECT_THAT(preview.texts(), ElementsAre("shot 5.png", "6 of 6", "Loading…"));
  preview.settle();
  EXPECT_THAT(preview.texts(), ElementsAre("shot 5.png", "6 of 6"));
  EXPECT_EQ(preview.middle(), colourOf(5));
}

TEST_F(PreviewWindowTest, steppingOnDoesNotPutTheMomentOff) {
  open(0);
  preview.press(Qt::Key_End);
  preview.work.time.advanceBy(PreviewWindow::kUnnoticed / 2);
  preview.press(Qt::Key_Left);
  preview.work.time.advanceBy(PreviewWindow::kUnnoticed / 2);
  EXPECT_EQ(preview.title(), "shot 4.png");
}

TEST_F(PreviewWindowTest, aHeldArrowWaitsForThePictures) {
  open(0);
  preview.press(Qt::Key_Right);
  EXPECT_EQ(preview.title(), "shot 1.png");
  preview.press(Qt::Key_Right, Qt::NoModifier, true);  // the next one is not there yet
  preview.press(Qt::Key_Right, Qt::NoModifier, true);
  preview.press(Qt::Key_Right, Qt::NoModifier, true);
  preview.settle();
  EXPECT_EQ(preview.title(), "shot 2.png");
  preview.press(Qt::Key_Right, Qt::NoModifier, true);
  preview.settle();
  EXPECT_EQ(preview.title(), "shot 3.png");
}

TEST_F(PreviewWindowTest, slowFilesDoNotHoldAHeldArrowUp) {
  open(0);
  preview.press(Qt::Key_End);
  preview.work.time.advanceBy(PreviewWindow::kUnnoticed);
  preview.press(Qt::Key_Left, Qt::NoModifier, true);
  EXPECT_EQ(preview.title(), "shot 4.png");
}

TEST_F(PreviewWindowTest, fastStepsDecodeWhatTheyEndAtAndItsNeighbours) {
  open(0);
  preview.files.decoded.clear();
  preview.press(Qt::Key_End);
  preview.press(Qt::Key_Home);
  preview.press(Qt::Key_End);
  preview.settle();
  EXPECT_THAT(preview.files.decoded, ElementsAre(preview.list[5], preview.list[4]));
}

TEST_F(PreviewWindowTest, theWindowIsAsLargeAsThePictureAndAroundTheSameMiddle) {
  preview.list = {preview.files.add("small.png", {200, 100}, Qt::red),
                  preview.files.add("own.png", {440, 300}, Qt::green),
                  preview.files.add("large.png", {4000, 3000}, Qt::blue)};
  open(0);
  const QPoint middle = preview.frame().center();
  const QSize screen = preview.window()->screen()->availableSize();
  EXPECT_EQ(preview.size(), preview::kSmallestWindow);
  preview.press(Qt::Key_Right);
  preview.settle();
  EXPECT_EQ(preview.size(), QSize(440 + 16, 300 + 48));
  EXPECT_LE((preview.frame().center() - middle).manhattanLength(), 2);
  preview.press(Qt::Key_Right);
  preview.settle();
  EXPECT_EQ(preview.size().width(), static_cast<int>(screen.width() * preview::kShareOfWorkArea));
  EXPECT_LE((preview.frame().center() - middle).manhattanLength(), 2);
}

// Also when the island has gone meanwhile: a window that jumps is worse than one that is not in the middle.
TEST_F(PreviewWindowTest, keepsFromUnderTheIslandThatWasUpWhenItOpened) {
  open(0);
  const QRect alone = preview.frame();
  preview.panel.orderOut();
  const Rect<Screen> under = QtScreens().screens().front().visibleFrame;
  const Rect<Screen> island{{under.maxX() - 232, under.minY()}, {232, under.size.height}};
  preview.windows.list = {{.id = 1, .frame = under}, {.id = 2, .frame = island, .level = kStatusWindowLevel}};
  open(0);
  const auto covered = [&](const QRect& frame) { return frame.right() + 1 > static_cast<int>(island.minX()); };
  ASSERT_TRUE(covered(alone));
  EXPECT_FALSE(covered(preview.frame()));
  EXPECT_EQ(preview.frame().size(), alone.size());
  const QRect beside = preview.frame();
  preview.windows.list.clear();
  preview.press(Qt::Key_Right);
  preview.settle();
  EXPECT_EQ(preview.frame(), beside);
}

TEST_F(PreviewWindowTest, theWindowHasThePicturesSizeBeforeThePictureIsThere) {
  QSize size;
  preview.files.whileDecoding = [&] {
    preview.files.whileDecoding = nullptr;
    preview.work.time.advanceBy(PreviewWindow::kUnnoticed);
    ASSERT_TRUE(preview.isUp());
    size = preview.size();
    EXPECT_THAT(preview.texts(), ElementsAre("shot 1.png", "2 of 6"));
  };
  open(1);
  EXPECT_EQ(size, QSize(400 + 16, 300 + 48));
  EXPECT_EQ(preview.size(), size);
}

TEST_F(PreviewWindowTest, aWindowThatOpensBeforeAnythingIsKnownGrowsAroundThePicture) {
  preview.open(1);
  preview.work.time.runReady();
  preview.work.time.advanceBy(PreviewWindow::kUnnoticed);
  ASSERT_TRUE(preview.isUp());
  EXPECT_EQ(preview.size(), preview::kWindowWithoutPicture) << "nothing is known yet";
  preview.settle();
  EXPECT_EQ(preview.size(), QSize(400 + 16, 300 + 48));
}

TEST_F(PreviewWindowTest, aBrokenFileAndOneThatIsGoneSaySoInTheSameWindow) {
  preview.list[2] = preview.files.folder().write("broken.png", "no picture");
  preview.list[3] = preview.files.folder().url("gone.png");
  open(1);
  const QSize size = preview.size();
  preview.press(Qt::Key_Right);
  preview.settle();
  EXPECT_THAT(preview.texts(), ElementsAre("broken.png", "3 of 6", "This file can’t be shown."));
  EXPECT_EQ(preview.size(), size);
  preview.press(Qt::Key_Right);
  preview.settle();
  EXPECT_THAT(preview.texts(), ElementsAre("gone.png", "4 of 6", "This file is no longer there."));
  preview.press(Qt::Key_Right);
  preview.settle();
  EXPECT_EQ(preview.middle(), colourOf(4));
}

TEST_F(PreviewWindowTest, anEmptyListClosesIt) {
  open(1);
  preview.list.clear();
  preview.panel.reloadData();
  preview.settle();
  EXPECT_FALSE(preview.panel.isVisible());
}

TEST_F(PreviewWindowTest, anIndexBeyondTheListIsItsEnd) {
  open(40);
  EXPECT_EQ(preview.title(), "shot 5.png");
}

TEST_F(PreviewWindowTest, aCheckerShowsThroughWhereAPictureIsClear) {
  preview.list.push_back(preview.files.add("clear.png", {400, 300}, Qt::transparent));
  open(6);
  for (const bool isDark : {false, true}) {
    preview.appearance.setDark(isDark);
    preview.settle();
    const Checker wanted = Checker::forAppearance(isDark);
    QRect place(0, 0, 400, 300);
    place.moveCenter(preview::pictureArea(preview.size()).toRect().center());
    const QImage image = preview.image();
    // Squares of six points, from the picture's corner on.
    const auto square = [&](int column, int row) {
      return image.pixel(place.topLeft() + QPoint(6 * column + 3, 6 * row + 3));
    };
    for (const QPoint at : {QPoint(2, 2), QPoint(7, 5), QPoint(40, 30)}) {
      EXPECT_EQ(square(at.x(), at.y()), wanted.light) << isDark;
      EXPECT_EQ(square(at.x() + 1, at.y()), wanted.dark) << isDark;
    }
  }
}

TEST_F(PreviewWindowTest, followsTheAppearanceLive) {
  open(1);
  const auto caption = [&] { return preview.image().pixelColor(preview.view()->width() / 2, 20).lightness(); };
  const int light = caption();
  preview.appearance.setDark(true);
  const int dark = caption();
  EXPECT_GT(light, 200);
  EXPECT_LT(dark, 80);
  const QImage before = preview.image();
  preview.appearance.setIncreasesContrast(true);
  EXPECT_NE(preview.image(), before);
  preview.appearance.setDark(false);
  EXPECT_GT(caption(), 200);
}

TEST_F(PreviewWindowTest, thePointerMovesItAndItStaysThere) {
  open(1);
  const QPoint before = preview.frame().topLeft();
  const auto mouse = [&](QEvent::Type type, QPoint at, Qt::MouseButtons held) {
    QMouseEvent event(type, at, preview.frame().topLeft() + at, Qt::LeftButton, held, Qt::NoModifier);
    QCoreApplication::sendEvent(preview.view(), &event);
  };
  mouse(QEvent::MouseButtonPress, {60, 20}, Qt::LeftButton);
  mouse(QEvent::MouseMove, {90, 60}, Qt::LeftButton);
  mouse(QEvent::MouseButtonRelease, {60, 20}, Qt::NoButton);
  EXPECT_EQ(preview.frame().topLeft(), before + QPoint(30, 40));
  mouse(QEvent::MouseMove, {120, 90}, Qt::NoButton);
  preview.press(Qt::Key_Right);
  preview.settle();
  EXPECT_EQ(preview.frame().topLeft(), before + QPoint(30, 40));
}

TEST_F(PreviewWindowTest, namesThatAreNoTextAreShownAsFarAsTheyAre) {
  preview.list = {preview.files.add("two\nlines.png", {400, 300}, Qt::red),
                  preview.files.add("\xff\xfe.png", {400, 300}, Qt::red),
                  preview.files.add(std::string(251, 'x') + ".png", {400, 300}, Qt::red)};
  open(0);
  EXPECT_EQ(preview.title(), "two\nlines.png");
  preview.press(Qt::Key_Right);
  preview.settle();
  EXPECT_EQ(preview.middle(), QColor(Qt::red));
  preview.press(Qt::Key_Right);
  preview.settle();
  EXPECT_EQ(preview.size(), QSize(400 + 16, 300 + 48)) << "a long name is cut, and widens nothing";
}

}  // namespace
}  // namespace quenlio
