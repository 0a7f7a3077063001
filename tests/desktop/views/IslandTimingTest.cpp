// What is seen of the island on its way from one state to the next, at moments of that way.
#include <QtCore/QCoreApplication>
#include <QtGui/QMouseEvent>
#include <cmath>
#include <gtest/gtest.h>

#include "desktop/views/island/EmptyStateDetails.h"
#include "desktop/views/island/MainPreview.h"

#include "tests/desktop/views/Island.h"

namespace quenlio {
namespace {

constexpr QPoint kMiddle{116, 99};  // of the preview in the smallest island
constexpr int kSteps[] = {1, 3, 5, 7, 9, 11};

class IslandTiming : public testing::Test {
 protected:
  IslandTiming() {
    island_.ingest("one.png");
    island_.ingest("two.png");
    island_.giveThumbnails(Qt::red);
    still();
  }

  void still() {
    island_.settle();
    island_.platform.time.advanceBy(Seconds(1));
    (void)island_.picture();
  }
  // What moves is drawn sixty times a second. Between two of these, so that nothing hangs on rounding.
  void takeStep() { island_.platform.time.advanceBy(Seconds(1.0 / 60)); }
  void advanceTo(int step) {
    for (; step_ < step; ++step_) {
      takeStep();
    }
  }
  void begin() {
    island_.settle();
    step_ = 0;
    island_.platform.time.advanceBy(Seconds(0.5 / 60));
  }
  [[nodiscard]] Seconds elapsed() const { return Seconds(step_ / 60.0); }

  template <class View>
  [[nodiscard]] View& find() const {
    for (QWidget* widget : island_.view->findChildren<QWidget*>()) {
      if (auto* view = dynamic_cast<View*>(widget)) {
        return *view;
      }
    }
    throw std::out_of_range("no such view");
  }
  void mouse(QEvent::Type type) {
    QWidget& preview = find<MainPreview>();
    const QPointF at = QRectF(preview.rect()).center();
    QMouseEvent event(type, at, preview.mapToGlobal(at), Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&preview, &event);
  }

  Island island_;
  int step_ = 0;
};

class ContainerTiming : public IslandTiming {
 protected:
  ContainerTiming() {
    island_.compositor.blursBehind().set(true);  // then nothing is held back behind what the content lets through
    still();
  }
  // With more than eight bits a channel: the ways are short.
  [[nodiscard]] double opacity() {
    QImage image(island_.view->size(), QImage::Format_RGBA64_Premultiplied);
    image.fill(Qt::transparent);
    island_.view->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return static_cast<double>(image.pixelColor(kMiddle).alphaF());
  }
  void expectWay(double from, double to, const TimedCurve& curve) {
    begin();
    for (const int step : kSteps) {
      advanceTo(step);
      EXPECT_NEAR(opacity(), std::lerp(from, to, progress(curve.curve, elapsed() / curve.duration)), 0.001) << step;
    }
  }
};

TEST_F(ContainerTiming, holdingThePreviewTakesItsCurveAndATimeOfTwelveHundredths) {
  const TimedCurve curve{{{0.22, 1, 0.36, 1}}, Seconds(0.12)};
  EXPECT_NEAR(opacity(), 0.88, 0.001);
  mouse(QEvent::MouseButtonPress);
  expectWay(0.88, 0.85, curve);
  mouse(QEvent::MouseButtonRelease);
  expectWay(0.85, 0.88, curve);
}

TEST_F(ContainerTiming, draggingOutEasesInAndOutInAsMuchTime) {
  const TimedCurve curve{{{0.42, 0, 0.58, 1}}, Seconds(0.12)};
  island_.root().isExportDragging.set(true);
  expectWay(0.88, 0.83, curve);
  island_.root().isExportDragging.set(false);
  expectWay(0.83, 0.88, curve);
}

TEST_F(ContainerTiming, whateverElseChangesItEasesOutInSixteenHundredths) {
  const TimedCurve curve{{{0, 0, 0.58, 1}}, Seconds(0.16)};
  const auto setPinned = [this](bool isPinned) {
    island_.store.items.mutate([isPinned](std::vector<ScreenshotItem>& items) { items.front().isPinned = isPinned; });
  };
  setPinned(true);
  expectWay(0.88, 0.90, curve);
  setPinned(false);
  expectWay(0.90, 0.88, curve);
}

class RevealTiming : public IslandTiming {
 protected:
  RevealTiming() {
    island_.compositor.isThere().set(false);
    still();
  }
  void selectOther() {
    const bool isOne = island_.store.selectedItem()->fileURL.lastPathComponent() == "one.png";
    island_.store.select(island_.item(isOne ? "two.png" : "one.png").id);
  }
  // Of the picture, which is red: how little there is left of the well.
  [[nodiscard]] double green() { return island_.picture().pixelColor(kMiddle).greenF(); }
  // Nothing of the picture is seen yet.
  [[nodiscard]] bool isHidden() { return green() > 0.75; }
  // Where the picture begins, in points: where the colour turns the most.
  [[nodiscard]] double top() {
    constexpr int scale = 4;
    const QImage image = island_.picture(scale);
    const auto at = [&image](int y) { return image.pixelColor(kMiddle.x() * scale, y).green(); };
    int best = 0;
    int most = 0;
    for (int y = 42 * scale; y < kMiddle.y() * scale; ++y) {
      if (const int turn = at(y - 2) - at(y + 2); turn > most) {
        most = turn;
        best = y;
      }
    }
    return static_cast<double>(best) / scale;
  }
};

TEST_F(RevealTiming, thePictureComesInOverEighteenHundredthsEasingOut) {
  ASSERT_LT(green(), 0.01);
  selectOther();
  begin();
  const double well = green();
  ASSERT_GT(well, 0.75);
  for (const int step : kSteps) {
    advanceTo(step);
    const double opacity = step == 11 ? 1 : progress(kEaseOut, elapsed() / Seconds(0.18));
    EXPECT_NEAR(green(), well * (1 - opacity), 0.02) << step;
  }
}

TEST_F(RevealTiming, thePictureComesToItsPlaceOnASpringOfItsOwn) {
  const Spring spring{.mass = 1, .stiffness = 280, .damping = 30};
  (void)top();  // a sharper picture is asked for at this scale
  const double place = top();
  selectOther();
  begin();
  for (const int step : {3, 5, 7, 9, 12}) {
    advanceTo(step);
    EXPECT_NEAR(top(), place + 6 * (1 - progress(spring, elapsed())), 0.4) << step;
  }
  still();
  EXPECT_EQ(top(), place);
}

TEST_F(RevealTiming, everyOtherItemIsRevealedWhateverBringsItWhileTheIslandIsUp) {
  const auto expectRevealed = [this](const char* what) {
    island_.settle();
    EXPECT_TRUE(isHidden()) << what;
    still();
    EXPECT_LT(green(), 0.01) << what;
  };
  selectOther();
  expectRevealed("a click in the strip");
  ASSERT_TRUE(island_.store.moveSelection(-1, false));
  expectRevealed("an arrow key");
  island_.ingest("three.png");
  island_.giveThumbnails(Qt::red);
  expectRevealed("a capture");
  island_.store.moveSelectedToTrash();
  expectRevealed("a deletion");
  ASSERT_TRUE(island_.store.undoLastDeletion());
  expectRevealed("its undoing");
  selectOther();
  island_.settle();
  island_.platform.time.advanceBy(Seconds(0.05));
  selectOther();
  expectRevealed("one in the middle of another's coming");
}

TEST_F(RevealTiming, theSameItemIsNotRevealedAgain) {
  ASSERT_TRUE(island_.store.rename(*island_.store.selectedItem(), "renamed"));
  island_.settle();
  EXPECT_LT(green(), 0.01);
}

// The panel's own entry shows it.
TEST_F(RevealTiming, aCaptureThatBringsTheIslandUpIsThereAtOnce) {
  island_.view->hide();
  island_.settle();
  island_.ingest("three.png");
  island_.view->show();  // and only then do the views hear of what has arrived
  island_.giveThumbnails(Qt::red);
  island_.settle();
  EXPECT_LT(green(), 0.01);
  selectOther();
  island_.settle();
  EXPECT_TRUE(isHidden()) << "the next one is revealed";
}

TEST(EmptyState, itsWordsGrowWithTheIsland) {
  Island island;
  int last = 0;
  for (const IslandSize size :
       {IslandSize::extraSmall, IslandSize::small, IslandSize::medium, IslandSize::large, IslandSize::xLarge}) {
    island.setSize(size);
    island.settle();
    const auto labels = island.view->findChildren<QLabel*>();
    const auto found =
        std::ranges::find_if(labels, [](QLabel* label) { return dynamic_cast<EmptyStateDetails*>(label) != nullptr; });
    ASSERT_NE(found, labels.end());
    EXPECT_GT((*found)->font().pixelSize(), last);
    last = (*found)->font().pixelSize();
    EXPECT_LE((*found)->heightForWidth((*found)->width()), (*found)->height()) << "and they have room";
  }
}

}  // namespace
}  // namespace quenlio
