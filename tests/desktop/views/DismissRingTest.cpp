#include <cmath>
#include <numbers>

#include "tests/desktop/views/ToolbarRowTest.h"

namespace quenlio {
namespace {

class PaintCounter : public QObject {
 public:
  explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }
  int paints = 0;

 protected:
  bool eventFilter(QObject* object, QEvent* event) override {
    paints += event->type() == QEvent::Paint ? 1 : 0;
    return QObject::eventFilter(object, event);
  }
};

class DismissRing : public ToolbarRowTest {
 protected:
  // How dark the ring is at so many degrees clockwise from the top.
  [[nodiscard]] int ringAt(double degrees) {
    const double angle = degrees * std::numbers::pi / 180;
    const double radius = 18 * 0.62;
    const QPointF centre = QRectF(control("Close").geometry()).center();
    return darkness(picture(), centre + radius * QPointF(std::sin(angle), -std::cos(angle)) - QPointF(0.25, 0.25));
  }
};

TEST_F(DismissRing, thereIsNoneUntilTimeIsCounted) {
  for (const double degrees : {5.0, 90.0, 180.0, 270.0}) {
    EXPECT_EQ(ringAt(degrees), 0);
  }
}

TEST_F(DismissRing, showsTheTimeThatIsLeftFromTheTopClockwise) {
  for (const double progress : {1.0, 0.6, 0.1}) {
    row_.showDismissProgress(progress);
    pass(kSettled);
    for (const double degrees : {10.0, 30.0, 100.0, 200.0, 230.0, 300.0, 345.0}) {
      if (degrees < progress * 360 - 8) {
        EXPECT_GT(ringAt(degrees), 120) << progress << " " << degrees;
      } else if (degrees > progress * 360 + 12) {
        EXPECT_LT(ringAt(degrees), 50) << progress << " " << degrees;
        EXPECT_GT(ringAt(degrees), 10) << "the way that it has gone is still to be seen";
      }
    }
  }
  EXPECT_EQ(time_.pending(), 0U);
}

TEST_F(DismissRing, comesAndGoesSoftlyAndGoesAsItStood) {
  row_.showDismissProgress(0.5);
  EXPECT_EQ(ringAt(90), 0);
  pass(Seconds(0.05));
  const int coming = ringAt(90);
  pass(kSettled);
  const int whole = ringAt(90);
  EXPECT_GT(coming, 0);
  EXPECT_LT(coming, whole);
  row_.showDismissProgress(std::nullopt);
  pass(Seconds(0.05));
  EXPECT_GT(ringAt(90), 0);
  EXPECT_LT(ringAt(90), whole);
  EXPECT_LT(ringAt(270), 50);  // what was gone does not come back
  pass(kSettled);
  EXPECT_EQ(ringAt(90), 0);
  EXPECT_EQ(time_.pending(), 0U);
}

TEST_F(DismissRing, repaintsNothingButItself) {
  row_.showDismissProgress(1);
  pass(kSettled);
  PaintCounter close(control("Close"));
  PaintCounter trash(control("Move to Trash"));
  PaintCounter copy(control("Copy"));
  for (int step = 1; step <= 30; ++step) {
    row_.showDismissProgress(1 - step / 30.0);
    QCoreApplication::processEvents();
  }
  EXPECT_EQ(close.paints, 30);
  EXPECT_EQ(trash.paints, 0);
  EXPECT_EQ(copy.paints, 0);
}

// Half a minute at thirty steps a second moves the ring's end by less than anybody can see each time.
TEST_F(DismissRing, doesNotDrawWhatNobodyCouldSee) {
  row_.showDismissProgress(1);
  pass(kSettled);
  PaintCounter close(control("Close"));
  for (int step = 1; step <= 900; ++step) {
    row_.showDismissProgress(1 - step / 900.0);
    QCoreApplication::processEvents();
  }
  EXPECT_LT(close.paints, 400);
  EXPECT_GT(close.paints, 100);
  EXPECT_LT(ringAt(20), 50);  // and it ends empty all the same
}

}  // namespace
}  // namespace quenlio
