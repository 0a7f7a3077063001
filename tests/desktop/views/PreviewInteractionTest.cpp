// What presses, clicks and drags on the large preview do.
#include <QtCore/QCoreApplication>
#include <QtGui/QAccessible>
#include <QtGui/QEnterEvent>
#include <QtGui/QMouseEvent>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/views/island/FolderAccessRecoveryView.h"
#include "desktop/views/island/MainPreview.h"

#include "tests/desktop/views/Island.h"

namespace quenlio {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PreviewInteraction : public testing::Test {
 protected:
  PreviewInteraction() {
    island_.ingest("one.png");
    island_.giveThumbnails(Qt::red);
    still();
  }

  void still() { island_.platform.time.advanceBy(Seconds(1)); }

  [[nodiscard]] MainPreview& preview() const {
    for (QWidget* widget : island_.view->findChildren<QWidget*>()) {
      if (auto* view = dynamic_cast<MainPreview*>(widget)) {
        return *view;
      }
    }
    throw std::out_of_range("no preview");
  }

  void mouse(QEvent::Type type, QPointF moved = {}, Qt::MouseButton button = Qt::LeftButton) {
    const QPointF at = QRectF(preview().rect()).center() + moved;
    QMouseEvent event(type, at, preview().mapToGlobal(at), type == QEvent::MouseMove ? Qt::NoButton : button,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : button, Qt::NoModifier);
    QCoreApplication::sendEvent(&preview(), &event);
    island_.platform.time.runReady();
  }
  void click() {
    mouse(QEvent::MouseButtonPress);
    mouse(QEvent::MouseButtonRelease);
  }
  void doubleClick() {
    click();
    mouse(QEvent::MouseButtonDblClick);
    mouse(QEvent::MouseButtonRelease);
  }
  void enter() {
    QEnterEvent event({50, 50}, {50, 50}, {50, 50});
    QCoreApplication::sendEvent(&preview(), &event);
  }
  void leave() {
    QEvent event(QEvent::Leave);
    QCoreApplication::sendEvent(&preview(), &event);
  }
  [[nodiscard]] Qt::CursorShape cursor() const { return preview().cursor().shape(); }

  Island island_;
};

TEST_F(PreviewInteraction, aClickOpensThePreviewWindowOnceItCannotBecomeADoubleClick) {
  click();
  EXPECT_THAT(island_.quickLooks, IsEmpty());
  still();
  EXPECT_THAT(island_.quickLooks, ElementsAre("one.png"));
  EXPECT_THAT(island_.editors, IsEmpty());
}

TEST_F(PreviewInteraction, whatAClickWillOpenIsPreparedFromTheReleaseOn) {
  mouse(QEvent::MouseButtonPress);
  EXPECT_EQ(island_.prepared, std::nullopt);
  mouse(QEvent::MouseButtonRelease);
  EXPECT_EQ(island_.prepared, "one.png");
  still();
  EXPECT_THAT(island_.quickLooks, ElementsAre("one.png"));
  EXPECT_EQ(island_.prepared, "one.png") << "to be opened, not dropped";
}

TEST_F(PreviewInteraction, nothingStaysPreparedAfterADoubleClickOrADrag) {
  click();
  ASSERT_EQ(island_.prepared, "one.png");
  mouse(QEvent::MouseButtonDblClick);
  EXPECT_EQ(island_.prepared, std::nullopt);
  mouse(QEvent::MouseButtonRelease);
  EXPECT_EQ(island_.prepared, std::nullopt);
  click();
  mouse(QEvent::MouseButtonPress);
  mouse(QEvent::MouseMove, {30, 20});
  EXPECT_EQ(island_.prepared, std::nullopt);
  mouse(QEvent::MouseButtonRelease, {30, 20});
  still();
  EXPECT_EQ(island_.prepared, std::nullopt);
  EXPECT_THAT(island_.quickLooks, IsEmpty());
}

TEST_F(PreviewInteraction, nothingStaysPreparedOfAnItemThatIsNoLongerShown) {
  island_.ingest("two.png");
  still();
  click();
  ASSERT_EQ(island_.prepared, "two.png");
  island_.store.select(island_.item("one.png").id);
  island_.settle();
  EXPECT_EQ(island_.prepared, std::nullopt);
  click();
  ASSERT_EQ(island_.prepared, "one.png");
  island_.view->hide();
  EXPECT_EQ(island_.prepared, std::nullopt);
}

TEST_F(PreviewInteraction, aDoubleClickOpensTheEditorAndNothingElse) {
  doubleClick();
  EXPECT_THAT(island_.editors, ElementsAre("one.png"));
  still();
  EXPECT_THAT(island_.quickLooks, IsEmpty());
}

TEST_F(PreviewInteraction, anotherButtonDoesNothing) {
  mouse(QEvent::MouseButtonPress, {}, Qt::RightButton);
  mouse(QEvent::MouseButtonRelease, {}, Qt::RightButton);
  still();
  EXPECT_THAT(island_.quickLooks, IsEmpty());
}

TEST_F(PreviewInteraction, withoutAnItemNothingHappens) {
  island_.platform.files.remove("/home/user/Desktop/one.png");
  island_.store.removeMissingFiles();
  still();
  enter();
  EXPECT_EQ(cursor(), Qt::ArrowCursor);
  doubleClick();
  mouse(QEvent::MouseButtonPress);
  mouse(QEvent::MouseMove, {20, 0});
  mouse(QEvent::MouseButtonRelease, {20, 0});
  still();
  EXPECT_THAT(island_.quickLooks, IsEmpty());
  EXPECT_THAT(island_.editors, IsEmpty());
  EXPECT_THAT(island_.itemDrags, IsEmpty());
  EXPECT_FALSE(island_.root().isPreviewHolding.get());
}

TEST_F(PreviewInteraction, aMoveOfThreePointsIsStillAClick) {
  mouse(QEvent::MouseButtonPress);
  mouse(QEvent::MouseMove, {3, 0});
  mouse(QEvent::MouseButtonRelease, {3, 0});
  still();
  EXPECT_THAT(island_.itemDrags, IsEmpty());
  EXPECT_THAT(island_.quickLooks, ElementsAre("one.png"));
}

TEST_F(PreviewInteraction, aMoveOfMoreDragsTheItemOutOnceAndIsNoClick) {
  mouse(QEvent::MouseButtonPress);
  mouse(QEvent::MouseMove, {3, 2});
  mouse(QEvent::MouseMove, {30, 20});
  ASSERT_FALSE(island_.itemDrags.empty());
  EXPECT_EQ(std::ranges::count(island_.itemDrags, true), 1);
  mouse(QEvent::MouseButtonRelease, {30, 20});
  still();
  EXPECT_THAT(island_.quickLooks, IsEmpty());
}

TEST_F(PreviewInteraction, isHeldFromThePressToTheRelease) {
  EXPECT_FALSE(island_.root().isPreviewHolding.get());
  mouse(QEvent::MouseButtonPress);
  EXPECT_TRUE(island_.root().isPreviewHolding.get());
  mouse(QEvent::MouseButtonRelease);
  EXPECT_FALSE(island_.root().isPreviewHolding.get());
}

// The desktop takes the pointer for the drag, and the release with it.
TEST_F(PreviewInteraction, isLetGoWhenADragEnds) {
  mouse(QEvent::MouseButtonPress);
  island_.root().isExportDragging.set(true);
  island_.settle();
  EXPECT_TRUE(island_.root().isPreviewHolding.get());
  island_.root().isExportDragging.set(false);
  island_.settle();
  EXPECT_FALSE(island_.root().isPreviewHolding.get());
  EXPECT_NE(cursor(), Qt::ClosedHandCursor);
}

TEST_F(PreviewInteraction, isLetGoWhenTheIslandGoes) {
  mouse(QEvent::MouseButtonPress);
  island_.view->hide();
  EXPECT_FALSE(island_.root().isPreviewHolding.get());
  still();
  EXPECT_THAT(island_.quickLooks, IsEmpty());
}

TEST_F(PreviewInteraction, aClickOnAnItemThatGoesOpensNothing) {
  island_.ingest("two.png");
  still();
  click();
  island_.store.select(island_.item("one.png").id);
  still();
  EXPECT_THAT(island_.quickLooks, IsEmpty());
}

TEST_F(PreviewInteraction, theHandPointsGrabsAndPointsAgain) {
  EXPECT_EQ(cursor(), Qt::ArrowCursor);
  enter();
  EXPECT_EQ(cursor(), Qt::PointingHandCursor);
  mouse(QEvent::MouseButtonPress);
  EXPECT_EQ(cursor(), Qt::ClosedHandCursor);
  mouse(QEvent::MouseButtonRelease);
  EXPECT_EQ(cursor(), Qt::PointingHandCursor);
  leave();
  EXPECT_EQ(cursor(), Qt::ArrowCursor);
}

TEST_F(PreviewInteraction, aHandThatLeavesWhileItGrabsHasNothingToGoBackTo) {
  enter();
  mouse(QEvent::MouseButtonPress);
  leave();
  EXPECT_EQ(cursor(), Qt::ClosedHandCursor);
  mouse(QEvent::MouseButtonRelease);
  EXPECT_EQ(cursor(), Qt::ArrowCursor);
}

TEST_F(PreviewInteraction, comesForwardUnderThePointerAndGoesBack) {
  island_.compositor.isThere().set(false);
  still();
  // Just outside of the well, at the middle of its left side.
  const auto outside = [this] { return island_.picture().pixelColor(9, 99); };
  const QColor before = outside();
  enter();
  still();
  EXPECT_LT(outside().lightness(), before.lightness());
  leave();
  still();
  EXPECT_EQ(outside(), before);
}

TEST_F(PreviewInteraction, comesForwardWithoutAPictureToo) {
  island_.platform.files.remove("/home/user/Desktop/one.png");
  island_.store.removeMissingFiles();
  island_.compositor.isThere().set(false);
  still();
  const auto outside = [this] { return island_.picture().pixelColor(9, 99); };
  const QColor before = outside();
  enter();
  still();
  EXPECT_LT(outside().lightness(), before.lightness());
}

TEST_F(PreviewInteraction, anotherItemsPictureIsRevealed) {
  island_.compositor.isThere().set(false);
  still();
  const auto red = [this] {
    const QColor middle = island_.picture().pixelColor(116, 99);
    return middle.red() - middle.green();
  };
  EXPECT_EQ(red(), 255);
  island_.ingest("two.png");
  island_.giveThumbnails(Qt::red);
  EXPECT_LT(red(), 200);
  const int early = red();
  island_.platform.time.advanceBy(Seconds(0.06));
  EXPECT_GT(red(), early);
  still();
  EXPECT_EQ(red(), 255);
}

// The panel's own entry brings it along.
TEST_F(PreviewInteraction, whatCameWhileTheIslandWasAwayIsThereAtOnce) {
  island_.compositor.isThere().set(false);
  still();
  island_.view->hide();
  island_.ingest("two.png");
  island_.giveThumbnails(Qt::blue);
  island_.view->show();
  EXPECT_EQ(island_.picture().pixelColor(116, 99), QColor(Qt::blue));
}

TEST_F(PreviewInteraction, aFileThatIsNoPictureIsToldApartFromOneThatIsStillToCome) {
  island_.compositor.isThere().set(false);
  island_.ingest("two.png");
  island_.settle();
  island_.store.items.mutate([](std::vector<ScreenshotItem>& items) { items.front().thumbnail = nullptr; });
  island_.settle();
  const QImage loading = island_.picture();
  still();
  ASSERT_FALSE(island_.requests.empty());
  EXPECT_EQ(island_.requests.back().url.lastPathComponent(), "two.png");
  island_.requests.back().completion(nullptr);
  const QImage broken = island_.picture();
  const auto well = [](const QImage& picture) { return picture.copy(20, 40, 190, 115); };
  EXPECT_NE(well(loading), well(broken));
  // And nobody asks again and again.
  const auto asked = island_.requests.size();
  still();
  EXPECT_EQ(island_.requests.size(), asked);
}

TEST_F(PreviewInteraction, isAButtonForScreenReadersThatOpensThePreviewWindowAtOnce) {
  QAccessibleInterface* button = QAccessible::queryAccessibleInterface(&preview());
  ASSERT_NE(button, nullptr);
  EXPECT_EQ(button->role(), QAccessible::Button);
  EXPECT_EQ(button->text(QAccessible::Name), QStringLiteral("one.png preview"));
  EXPECT_FALSE(button->state().disabled);
  ASSERT_NE(button->actionInterface(), nullptr);
  EXPECT_EQ(button->actionInterface()->actionNames(), QStringList{QAccessibleActionInterface::pressAction()});
  button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_THAT(island_.quickLooks, ElementsAre("one.png"));
  still();
  EXPECT_THAT(island_.quickLooks, ElementsAre("one.png"));
}

TEST_F(PreviewInteraction, withoutAnItemThereIsNothingToPress) {
  island_.platform.files.remove("/home/user/Desktop/one.png");
  island_.store.removeMissingFiles();
  still();
  QAccessibleInterface* button = QAccessible::queryAccessibleInterface(&preview());
  EXPECT_EQ(button->text(QAccessible::Name), QStringLiteral("No preview"));
  EXPECT_TRUE(button->state().disabled);
  EXPECT_TRUE(button->actionInterface()->actionNames().isEmpty());
  button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_THAT(island_.quickLooks, IsEmpty());
}

TEST_F(PreviewInteraction, isOneStopOfTheTabKey) {
  EXPECT_EQ(preview().focusPolicy(), Qt::TabFocus);
  EXPECT_EQ(preview().accessibleName(), QStringLiteral("one.png preview"));
}

}  // namespace
}  // namespace quenlio
