#include <QtCore/QCoreApplication>
#include <QtGui/QEnterEvent>
#include <QtWidgets/QPushButton>
#include <gtest/gtest.h>

#include "desktop/views/common/Tooltip.h"

#include "tests/harness/VirtualTime.h"

namespace quenlio {
namespace {

constexpr Seconds kDelay{0.5};

class TooltipTest : public testing::Test {
 protected:
  TooltipTest() {
    root_.resize(400, 300);
    for (QPushButton* button : {&left_, &right_}) {
      button->show();
    }
    left_.setGeometry(100, 150, 30, 30);
    right_.setGeometry(300, 150, 30, 30);
    root_.show();
    settle();
  }

  void settle() {
    time_.runReady();
    QCoreApplication::processEvents();
  }
  void pass(Seconds duration) {
    time_.advanceBy(duration);
    QCoreApplication::processEvents();
  }
  static void send(QWidget& widget, QEvent::Type type) {
    if (type == QEvent::Enter) {
      QEnterEvent event({5, 5}, {5, 5}, {5, 5});
      QCoreApplication::sendEvent(&widget, &event);
    } else if (type == QEvent::MouseButtonPress) {
      QMouseEvent event(type, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
      QCoreApplication::sendEvent(&widget, &event);
    } else {
      QEvent event(type);
      QCoreApplication::sendEvent(&widget, &event);
    }
  }
  [[nodiscard]] std::string shown() const { return host_.bubble() ? host_.bubble()->text.toStdString() : ""; }

  VirtualTime time_;
  QWidget root_;
  TooltipHost host_{&root_, time_, time_};
  QPushButton left_{&root_};
  QPushButton right_{&root_};
  AppTooltip leftTip_{host_, left_, QStringLiteral("Left"), kDelay};
  AppTooltip rightTip_{host_, right_, QStringLiteral("Right"), kDelay};
};

TEST_F(TooltipTest, showsAfterItsDelayAndNotBefore) {
  send(left_, QEvent::Enter);
  pass(Seconds(0.49));
  EXPECT_EQ(shown(), "");
  EXPECT_TRUE(host_.isHidden());
  pass(Seconds(0.02));
  EXPECT_EQ(shown(), "Left");
  EXPECT_TRUE(host_.isVisible());
}

TEST_F(TooltipTest, movingOutBeforeTheDelayShowsNothing) {
  send(left_, QEvent::Enter);
  pass(Seconds(0.3));
  send(left_, QEvent::Leave);
  EXPECT_EQ(time_.pending(), 0U);
  pass(Seconds(5));
  EXPECT_EQ(shown(), "");
}

TEST_F(TooltipTest, comingBackBeginsTheDelayAnew) {
  send(left_, QEvent::Enter);
  pass(Seconds(0.4));
  send(left_, QEvent::Enter);
  pass(Seconds(0.4));
  EXPECT_EQ(shown(), "");
  pass(Seconds(0.2));
  EXPECT_EQ(shown(), "Left");
}

TEST_F(TooltipTest, goesAtOnceAndFades) {
  for (const QEvent::Type type : {QEvent::Leave, QEvent::MouseButtonPress}) {
    send(left_, QEvent::Enter);
    pass(Seconds(2));
    ASSERT_EQ(shown(), "Left");
    send(left_, type);
    EXPECT_EQ(shown(), "");
    EXPECT_EQ(host_.accessibleName().toStdString(), "");
    pass(Seconds(1));
    EXPECT_TRUE(host_.isHidden());
    EXPECT_EQ(time_.pending(), 0U);
  }
}

TEST_F(TooltipTest, aPressKeepsItAwayUntilThePointerComesAgain) {
  send(left_, QEvent::Enter);
  send(left_, QEvent::MouseButtonPress);
  pass(Seconds(5));
  EXPECT_EQ(shown(), "");
  send(left_, QEvent::Leave);
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  EXPECT_EQ(shown(), "Left");
}

TEST_F(TooltipTest, goesWithItsControlAndWithItsRoot) {
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  left_.hide();
  EXPECT_EQ(shown(), "");
  send(right_, QEvent::Enter);
  pass(Seconds(1));
  ASSERT_EQ(shown(), "Right");
  root_.hide();
  EXPECT_EQ(shown(), "");
  EXPECT_TRUE(host_.isHidden());
  EXPECT_EQ(time_.pending(), 0U);
}

TEST_F(TooltipTest, goesWhenItIsDestroyed) {
  auto tip = std::make_unique<AppTooltip>(host_, root_, QStringLiteral("Root"), kDelay);
  send(root_, QEvent::Enter);
  pass(Seconds(1));
  ASSERT_EQ(shown(), "Root");
  tip.reset();
  EXPECT_EQ(shown(), "");
  send(root_, QEvent::Enter);
  EXPECT_EQ(time_.pending(), 1U);  // nothing but the fading
}

TEST_F(TooltipTest, thereIsOneBubble) {
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  send(left_, QEvent::Leave);
  send(right_, QEvent::Enter);
  pass(Seconds(1));
  EXPECT_EQ(shown(), "Right");
  send(left_, QEvent::Leave);  // it is none of the left one's any more
  EXPECT_EQ(shown(), "Right");
}

TEST_F(TooltipTest, standsWhereThePlacementSays) {
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  const TooltipHost::Bubble& bubble = *host_.bubble();
  const Size size{bubble.body.width(), bubble.body.height()};
  EXPECT_EQ(bubble.placement, tooltipPlacement({{100, 150}, {30, 30}}, size, {400, 300}));
  EXPECT_EQ(bubble.body.center(), QPointF(bubble.placement.center.x, bubble.placement.center.y));
  EXPECT_TRUE(QRectF(host_.geometry()).contains(bubble.body.adjusted(-8, -8, 8, 8)));  // with pointer and shadow
}

TEST_F(TooltipTest, followsItsControl) {
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  const QRectF before = host_.bubble()->body;
  left_.move(140, 180);
  EXPECT_EQ(host_.bubble()->body, before.translated(40, 30));
}

TEST_F(TooltipTest, isLostWithTheSizeOfItsRoot) {
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  root_.resize(500, 300);
  settle();
  EXPECT_EQ(shown(), "");
  EXPECT_TRUE(host_.isHidden());
}

TEST_F(TooltipTest, isNeverInThePointersWay) {
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  const QPoint inBubble = host_.bubble()->body.center().toPoint();
  EXPECT_EQ(root_.childAt(inBubble), nullptr);
  EXPECT_EQ(host_.focusPolicy(), Qt::NoFocus);
}

TEST_F(TooltipTest, isDrawnAboveViewsThatCameLater) {
  QWidget later(&root_);
  later.setAutoFillBackground(true);
  later.setGeometry(root_.rect());
  later.show();
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  EXPECT_EQ(root_.children().last(), &host_);
}

TEST_F(TooltipTest, aLongTextWrapsWithinTheMargins) {
  root_.resize(232, 232);
  left_.setGeometry(0, 10, 24, 24);
  settle();
  leftTip_.setText(QStringLiteral("Screenshot from 2026-11-15 21-04-33 of a rather long window title.png"));
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  const QRectF wrapped = host_.bubble()->body;
  EXPECT_GE(wrapped.left(), 24);
  EXPECT_LE(wrapped.right(), 232 - 24);
  leftTip_.setText(QStringLiteral("Short"));
  EXPECT_LT(host_.bubble()->body.height(), wrapped.height() * 0.7);
  // A name need not have a space to be broken at.
  leftTip_.setText(QString(60, QLatin1Char('m')));
  EXPECT_LE(host_.bubble()->body.right(), 232 - 24);
}

TEST_F(TooltipTest, textThatChangesIsShownAnewAndNoTextIsNoBubble) {
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  leftTip_.setText(QStringLiteral("Other"));
  EXPECT_EQ(shown(), "Other");
  leftTip_.setText({});
  EXPECT_EQ(shown(), "");
  send(left_, QEvent::Leave);
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  EXPECT_EQ(shown(), "");
}

TEST_F(TooltipTest, aControlThatIsOfNoUseJustNowStillTellsWhatItWouldDo) {
  left_.setEnabled(false);
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  EXPECT_EQ(shown(), "Left");
}

TEST_F(TooltipTest, isWhiteOnNearlyBlackAndClearAround) {
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  QImage picture(host_.size(), QImage::Format_ARGB32_Premultiplied);
  picture.fill(Qt::transparent);
  host_.render(&picture, QPoint(), QRegion(), QWidget::DrawChildren);
  const QPoint corner = host_.pos();
  const QRectF body = host_.bubble()->body.translated(-corner);
  const QColor fill = picture.pixelColor(body.topLeft().toPoint() + QPoint(5, static_cast<int>(body.height()) / 2));
  EXPECT_GT(fill.alpha(), 200);
  EXPECT_LT(fill.lightness(), 10);
  int brightest = 0;
  for (int x = static_cast<int>(body.left()) + 9; x < body.right() - 9; ++x) {
    for (int y = static_cast<int>(body.top()) + 5; y < body.bottom() - 5; ++y) {
      brightest = std::max(brightest, picture.pixelColor(x, y).lightness());
    }
  }
  EXPECT_GT(brightest, 230);
  EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0);
  // The pointer reaches towards the control below.
  const QPoint tip(static_cast<int>(body.center().x()), static_cast<int>(body.bottom()) + 3);
  EXPECT_GT(picture.pixelColor(tip).alpha(), 200);
}

}  // namespace
}  // namespace quenlio
