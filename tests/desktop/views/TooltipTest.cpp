#include <QtCore/QCoreApplication>
#include <QtGui/QEnterEvent>
#include <QtGui/QPainterPath>
#include <QtWidgets/QPushButton>
#include <gtest/gtest.h>

#include "desktop/views/common/AppTooltipModifier.h"
#include "desktop/views/common/Shapes.h"

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
  [[nodiscard]] std::string shown() const {
    return host_.bubble().isVisible() ? host_.bubble().text().toStdString() : "";
  }
  // The bubble alone, on nothing.
  [[nodiscard]] QImage picture(double scale = 1) const {
    auto& bubble = const_cast<TooltipBubbleView&>(host_.bubble());
    QImage picture(bubble.size() * scale, QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    bubble.render(&picture, QPoint(), QRegion(), QWidget::DrawChildren);
    return picture;
  }

  // How opaque it is where it is most so.
  [[nodiscard]] static int inkOf(const QImage& picture) {
    int most = 0;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        most = std::max(most, picture.pixelColor(x, y).alpha());
      }
    }
    return most;
  }

  VirtualTime time_;
  QWidget root_;
  AppTooltipHostModifier host_{&root_, time_, time_};
  QPushButton left_{&root_};
  QPushButton right_{&root_};
  AppTooltipModifier leftTip_{host_, left_, QStringLiteral("Left"), kDelay};
  AppTooltipModifier rightTip_{host_, right_, QStringLiteral("Right"), kDelay};
};

TEST_F(TooltipTest, showsAfterItsDelayAndNotBefore) {
  send(left_, QEvent::Enter);
  pass(Seconds(0.49));
  EXPECT_EQ(shown(), "");
  pass(Seconds(0.02));
  EXPECT_EQ(shown(), "Left");
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

TEST_F(TooltipTest, comesSoftlyAndGoesAtOnce) {
  for (const QEvent::Type type : {QEvent::Leave, QEvent::MouseButtonPress}) {
    send(left_, QEvent::Enter);
    pass(kDelay + Seconds(0.05));
    ASSERT_EQ(shown(), "Left");
    const int coming = inkOf(picture());
    pass(Seconds(2));
    EXPECT_LT(coming, inkOf(picture()));
    send(left_, type);
    EXPECT_EQ(shown(), "");
    EXPECT_EQ(host_.bubble().accessibleName().toStdString(), "");
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
  EXPECT_EQ(time_.pending(), 0U);
}

TEST_F(TooltipTest, goesWhenItIsDestroyed) {
  auto tip = std::make_unique<AppTooltipModifier>(host_, root_, QStringLiteral("Root"), kDelay);
  send(root_, QEvent::Enter);
  pass(Seconds(1));
  ASSERT_EQ(shown(), "Root");
  tip.reset();
  EXPECT_EQ(shown(), "");
  send(root_, QEvent::Enter);
  EXPECT_EQ(time_.pending(), 0U);
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
  const TooltipBubbleView& bubble = host_.bubble();
  const Size size{bubble.body().width(), bubble.body().height()};
  EXPECT_EQ(bubble.placement(), TooltipPlacement::placement({{100, 150}, {30, 30}}, size, {400, 300}));
  EXPECT_EQ(bubble.body().center(), QPointF(bubble.placement().center.x, bubble.placement().center.y));
  EXPECT_TRUE(QRectF(bubble.geometry()).contains(bubble.body().adjusted(-8, -8, 8, 8)));  // with pointer and shadow
}

TEST_F(TooltipTest, followsItsControl) {
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  const QRectF before = host_.bubble().body();
  left_.move(140, 180);
  EXPECT_EQ(host_.bubble().body(), before.translated(40, 30));
}

TEST_F(TooltipTest, isLostWithTheSizeOfItsRoot) {
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  root_.resize(500, 300);
  settle();
  EXPECT_EQ(shown(), "");
}

TEST_F(TooltipTest, isNeverInThePointersWay) {
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  const QPoint inBubble = host_.bubble().body().center().toPoint();
  EXPECT_EQ(root_.childAt(inBubble), nullptr);
  EXPECT_EQ(host_.bubble().focusPolicy(), Qt::NoFocus);
}

TEST_F(TooltipTest, isDrawnAboveViewsThatCameLater) {
  QWidget later(&root_);
  later.setAutoFillBackground(true);
  later.setGeometry(root_.rect());
  later.show();
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  EXPECT_EQ(root_.children().last(), &host_.bubble());
}

TEST_F(TooltipTest, aLongTextWrapsWithinTheMargins) {
  root_.resize(232, 232);
  left_.setGeometry(0, 10, 24, 24);
  settle();
  leftTip_.setText(QStringLiteral("Screenshot from 2026-11-15 21-04-33 of a rather long window title.png"));
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  const QRectF wrapped = host_.bubble().body();
  EXPECT_GE(wrapped.left(), 24);
  EXPECT_LE(wrapped.right(), 232 - 24);
  leftTip_.setText(QStringLiteral("Short"));
  EXPECT_LT(host_.bubble().body().height(), wrapped.height() * 0.7);
  // A name need not have a space to be broken at.
  leftTip_.setText(QString(60, QLatin1Char('m')));
  EXPECT_LE(host_.bubble().body().right(), 232 - 24);
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
  const QImage drawn = picture();
  const QRectF body = host_.bubble().body().translated(-host_.bubble().pos());
  const QColor fill = drawn.pixelColor(body.topLeft().toPoint() + QPoint(5, static_cast<int>(body.height()) / 2));
  EXPECT_GT(fill.alpha(), 200);
  EXPECT_LT(fill.lightness(), 10);
  int brightest = 0;
  for (int x = static_cast<int>(body.left()) + 9; x < body.right() - 9; ++x) {
    for (int y = static_cast<int>(body.top()) + 5; y < body.bottom() - 5; ++y) {
      brightest = std::max(brightest, drawn.pixelColor(x, y).lightness());
    }
  }
  EXPECT_GT(brightest, 230);
  EXPECT_EQ(drawn.pixelColor(0, 0).alpha(), 0);
  // The pointer reaches towards the control below.
  const QPoint tip(static_cast<int>(body.center().x()), static_cast<int>(body.bottom()) + 3);
  EXPECT_GT(drawn.pixelColor(tip).alpha(), 200);
}

TEST_F(TooltipTest, typeAndPaddingsAreGiven) {
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  EXPECT_EQ(host_.bubble().font().pixelSize(), 12);
  EXPECT_EQ(host_.bubble().font().weight(), QFont::Medium);
  QFont type;
  type.setPixelSize(12);
  type.setWeight(QFont::Medium);
  const QFontMetricsF metrics(type);
  EXPECT_NEAR(host_.bubble().body().width(), metrics.horizontalAdvance(QStringLiteral("Left")) + 2 * 9, 1);
  EXPECT_NEAR(host_.bubble().body().height(), metrics.height() + 2 * 5, 1);
}

// At eight pixels a point: the shape that is filled, against a rectangle of the radius with circles for its corners.
TEST_F(TooltipTest, cornersAreContinuous) {
  constexpr double scale = 8;
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  const QImage drawn = picture(scale);
  const QRectF body = host_.bubble().body().translated(-host_.bubble().pos());
  const auto differing = [&](const QPainterPath& shape) {
    int pixels = 0;
    // The upper left corner: the pointer is below.
    for (int y = 0; y < 14 * scale; ++y) {
      for (int x = 0; x < 14 * scale; ++x) {
        const QPoint pixel = (body.topLeft() * scale).toPoint() + QPoint(x, y);
        const QPointF point = (QPointF(pixel) + QPointF(0.5, 0.5)) / scale;
        const bool isFilled = drawn.pixelColor(pixel).alpha() > 170;
        pixels += isFilled != shape.contains(point) ? 1 : 0;
      }
    }
    return pixels;
  };
  QPainterPath circles;
  circles.addRoundedRect(body, 8, 8);
  EXPECT_GT(differing(circles), 100);
  EXPECT_LT(differing(continuousRectanglePath(body, 8)), differing(circles) / 4);
}

TEST_F(TooltipTest, whatIsUrgentIsTheOneBubbleForAsLongAsItStands) {
  const Uuid id = Uuid::random();
  host_.report({.id = id, .text = "No", .rect = {{100, 100}, {80, 30}}, .isUrgent = true});
  EXPECT_EQ(shown(), "No");
  send(left_, QEvent::Enter);
  pass(Seconds(1));
  EXPECT_EQ(shown(), "No");
  EXPECT_EQ(root_.findChildren<QWidget*>().count(), 3);  // two buttons, one bubble
  host_.withdraw(id);
  EXPECT_EQ(shown(), "Left");  // the pointer is still there
  send(left_, QEvent::Leave);
  EXPECT_EQ(shown(), "");
}

}  // namespace
}  // namespace quenlio
