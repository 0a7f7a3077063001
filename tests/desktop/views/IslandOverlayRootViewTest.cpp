#include <QtCore/QCoreApplication>
#include <QtGui/QAccessible>
#include <QtGui/QEnterEvent>
#include <QtGui/QMouseEvent>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/views/island/IslandOverlayRootView.h"

#include "tests/desktop/views/Island.h"

namespace quenlio {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

class IslandOverlayRootViewTest : public testing::Test {
 protected:
  template <class View>
  [[nodiscard]] View* find() const {
    for (QWidget* widget : island_.view->findChildren<QWidget*>()) {
      if (auto* view = dynamic_cast<View*>(widget)) {
        return view;
      }
    }
    return nullptr;
  }

  static void mouse(QWidget& widget, QEvent::Type type, QPointF onScreen) {
    QMouseEvent event(type, widget.mapFromGlobal(onScreen), onScreen,
                      type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
  }

  Island island_;
};

TEST_F(IslandOverlayRootViewTest, anEmptyLibrarySaysWhatToDo) {
  EXPECT_TRUE(island_.says("Take a screenshot to see it here, then rename, edit, copy, save, or share it."));
  EXPECT_TRUE(island_.says("No preview"));
  EXPECT_FALSE(island_.says("No screenshot yet"));  // the words above stand in the name's place
}

TEST_F(IslandOverlayRootViewTest, aNewScreenshotIsNamedOnTheNextTurn) {
  island_.ingest("one.png");
  EXPECT_FALSE(island_.says("one.png"));
  island_.settle();
  EXPECT_TRUE(island_.says("one.png"));
  EXPECT_TRUE(island_.says("one.png preview"));
  EXPECT_NE(island_.button("one.png"), nullptr);
  EXPECT_FALSE(island_.says("Take a screenshot to see it here, then rename, edit, copy, save, or share it."));
}

TEST_F(IslandOverlayRootViewTest, theNameIsThatOfTheSelectedItem) {
  island_.ingest("one.png");
  island_.ingest("two.png");
  island_.settle();
  EXPECT_TRUE(island_.says("two.png preview"));
  island_.store.select(island_.item("one.png").id);
  island_.settle();
  EXPECT_TRUE(island_.says("one.png preview"));
}

TEST_F(IslandOverlayRootViewTest, severalSelectedAreCounted) {
  island_.ingest("one.png");
  island_.ingest("two.png");
  island_.store.selectedItemIDs.set({island_.item("one.png").id, island_.item("two.png").id});
  island_.settle();
  EXPECT_TRUE(island_.says("2 selected"));
  EXPECT_TRUE(island_.says("two.png preview"));
}

TEST_F(IslandOverlayRootViewTest, aClickInTheStripSelectsThatItemAlone) {
  island_.ingest("one.png");
  island_.ingest("two.png");
  island_.settle();
  island_.button("one.png")->click();
  const Uuid one = island_.item("one.png").id;
  EXPECT_EQ(island_.store.selectedItemID.get(), one);
  EXPECT_EQ(island_.store.selectedItemIDs.get(), std::set{one});
  EXPECT_EQ(island_.store.selectionAnchorID, one);
  island_.settle();
  EXPECT_TRUE(island_.says("one.png preview"));
}

TEST_F(IslandOverlayRootViewTest, theStripShowsTheNewestFirst) {
  island_.ingest("one.png");
  island_.ingest("two.png");
  island_.ingest("three.png");
  island_.settle();
  EXPECT_LT(island_.button("three.png")->x(), island_.button("two.png")->x());
  EXPECT_LT(island_.button("two.png")->x(), island_.button("one.png")->x());
}

TEST_F(IslandOverlayRootViewTest, anItemThatIsGoneLeavesTheStrip) {
  island_.ingest("one.png");
  island_.ingest("two.png");
  island_.settle();
  island_.platform.files.remove("/home/user/Desktop/two.png");
  island_.store.removeMissingFiles();
  island_.settle();
  EXPECT_EQ(island_.button("two.png"), nullptr);
  EXPECT_NE(island_.button("one.png"), nullptr);
  EXPECT_TRUE(island_.says("one.png preview"));
}

TEST_F(IslandOverlayRootViewTest, theStripScrollsToWhatIsSelected) {
  for (int number = 0; number < 10; ++number) {
    island_.ingest("shot" + std::to_string(number) + ".png");
  }
  island_.settle();
  const auto* strip = find<ThumbnailStrip>();
  ASSERT_NE(strip, nullptr);
  EXPECT_GE(island_.button("shot9.png")->x(), 0);
  EXPECT_GT(island_.button("shot0.png")->geometry().right(), strip->width());
  island_.store.select(island_.item("shot0.png").id);
  island_.settle();
  EXPECT_LE(island_.button("shot0.png")->geometry().right(), strip->width());
  EXPECT_LT(island_.button("shot9.png")->x(), 0);
}

TEST_F(IslandOverlayRootViewTest, theCloseButtonCloses) {
  ASSERT_NE(island_.button("Close"), nullptr);
  island_.button("Close")->click();
  EXPECT_EQ(island_.closes, 1);
}

TEST_F(IslandOverlayRootViewTest, anUnreadableFolderOffersTheWayOutInThePreviewsPlace) {
  EXPECT_FALSE(island_.says("Folder Access Needed"));
  island_.ingest("one.png");
  island_.state.screenshotFolderReadable.set(false);
  island_.settle();
  EXPECT_TRUE(island_.says("Folder Access Needed"));
  EXPECT_TRUE(island_.says("Allow access to your screenshot folder so the island can display captures."));
  EXPECT_FALSE(island_.says("one.png preview"));
  EXPECT_NE(island_.button("Close"), nullptr);
  island_.button("Allow Access")->click();
  EXPECT_EQ(island_.folderRequests, 1);
  island_.state.screenshotFolderReadable.set(true);
  island_.settle();
  EXPECT_FALSE(island_.says("Folder Access Needed"));
  EXPECT_TRUE(island_.says("one.png preview"));
}

TEST_F(IslandOverlayRootViewTest, tellsWhenThePointerComesAndGoes) {
  island_.hovers.clear();  // it may have come up under the pointer
  QEnterEvent enter({10, 10}, {10, 10}, {10, 10});
  QCoreApplication::sendEvent(island_.view.get(), &enter);
  QEvent leave(QEvent::Leave);
  QCoreApplication::sendEvent(island_.view.get(), &leave);
  EXPECT_THAT(island_.hovers, ElementsAre(true, false));
}

TEST_F(IslandOverlayRootViewTest, theHandleTellsTheDistanceOnTheScreen) {
  HandleRow* handle = find<HandleRow>();
  ASSERT_NE(handle, nullptr);
  mouse(*handle, QEvent::MouseButtonPress, {100, 100});
  mouse(*handle, QEvent::MouseMove, {100, 100});
  EXPECT_THAT(island_.drags, IsEmpty());
  mouse(*handle, QEvent::MouseMove, {101, 100});
  // The panel has followed meanwhile; the distance still counts from the press.
  island_.view->move(island_.view->pos() + QPoint(1, 0));
  mouse(*handle, QEvent::MouseMove, {110, 95});
  mouse(*handle, QEvent::MouseButtonRelease, {110, 95});
  EXPECT_THAT(island_.drags, ElementsAre(Pair(Size{1, 0}, false), Pair(Size{10, -5}, false), Pair(Size{10, -5}, true)));
}

TEST_F(IslandOverlayRootViewTest, aPressOnTheHandleAloneIsNoDrag) {
  HandleRow* handle = find<HandleRow>();
  mouse(*handle, QEvent::MouseButtonPress, {100, 100});
  mouse(*handle, QEvent::MouseButtonRelease, {100, 100});
  EXPECT_THAT(island_.drags, IsEmpty());
}

TEST_F(IslandOverlayRootViewTest, aDragEndsWhenTheIslandGoes) {
  HandleRow* handle = find<HandleRow>();
  mouse(*handle, QEvent::MouseButtonPress, {100, 100});
  mouse(*handle, QEvent::MouseMove, {120, 100});
  island_.view->hide();
  EXPECT_THAT(island_.drags, ElementsAre(Pair(Size{20, 0}, false), Pair(Size{20, 0}, true)));
}

TEST_F(IslandOverlayRootViewTest, standsByTheMetricsOfItsSize) {
  for (const IslandSize size :
       {IslandSize::extraSmall, IslandSize::small, IslandSize::medium, IslandSize::large, IslandSize::xLarge}) {
    island_.setSize(size);
    island_.settle();
    const IslandLayoutMetrics& m = IslandLayoutMetrics::forSize(size);
    const auto wide = static_cast<int>(IslandLayoutMetrics::panelSide(size) - 2 * m.horizontalPadding);
    const auto left = static_cast<int>(m.horizontalPadding);
    const auto toolbar = static_cast<int>(m.topPadding);
    EXPECT_EQ(find<HandleRow>()->geometry(), QRect(left, toolbar, wide, static_cast<int>(m.toolbarHeight)));
    const auto preview = static_cast<int>(m.topPadding + m.toolbarHeight + m.toolbarToPreviewSpacing);
    EXPECT_EQ(find<MainPreview>()->geometry(), QRect(left, preview, wide, static_cast<int>(m.previewHeight)));
    const auto meta = preview + static_cast<int>(m.previewHeight + m.previewToMetaSpacing);
    EXPECT_EQ(find<MetaRow>()->geometry(), QRect(left, meta, wide, static_cast<int>(m.metadataHeight)));
    const auto strip = meta + static_cast<int>(m.metadataHeight + m.metaToTraySpacing);
    EXPECT_EQ(find<ThumbnailStrip>()->geometry(), QRect(left, strip, wide, static_cast<int>(m.trayHeight)));
    EXPECT_EQ(island_.surfaces.back().cornerRadius, m.cornerRadius);
  }
}

TEST_F(IslandOverlayRootViewTest, followsTheAppearance) {
  const QColor light = island_.picture().pixelColor(116, 6);
  EXPECT_GT(light.lightness(), 200);
  island_.state.appearanceStyle.set(IslandAppearanceStyle::dark);
  const QColor dark = island_.picture().pixelColor(116, 6);
  EXPECT_LT(dark.lightness(), 80);
  ASSERT_THAT(island_.surfaces, SizeIs(2));
  EXPECT_LT(island_.surfaces.back().tone.lightness(), 80);
}

TEST_F(IslandOverlayRootViewTest, turnsToAnotherAppearanceOverTheTimeThatItIsGiven) {
  const int light = island_.picture().pixelColor(116, 6).lightness();
  island_.state.appearanceTransition = Seconds(0.16);
  island_.state.appearanceStyle.set(IslandAppearanceStyle::dark);
  int last = light;
  const auto lightness = [this] { return island_.picture().pixelColor(116, 6).lightness(); };
  EXPECT_EQ(lightness(), light);
  for (int step = 0; step < 4; ++step) {
    island_.platform.time.advanceBy(Seconds(0.032));
    EXPECT_LT(lightness(), last);
    last = lightness();
    EXPECT_GT(last, 48);
  }
  island_.platform.time.advanceBy(Seconds(0.05));
  const int dark = lightness();
  EXPECT_LT(dark, 80);
  const auto tellings = island_.surfaces.size();
  island_.platform.time.advanceBy(Seconds(1));
  EXPECT_EQ(lightness(), dark);
  EXPECT_THAT(island_.surfaces, SizeIs(tellings));  // no step is taken any more
}

TEST_F(IslandOverlayRootViewTest, aHiddenIslandTurnsAtOnce) {
  island_.view->hide();
  island_.state.appearanceTransition = Seconds(0.16);
  island_.state.appearanceStyle.set(IslandAppearanceStyle::dark);
  island_.settle();
  EXPECT_LT(island_.surfaces.back().tone.lightness(), 80);
}

TEST_F(IslandOverlayRootViewTest, anotherFrameIsLaidOutByItsOwnMetricsAtOnce) {
  island_.view->resize(500, 500);  // no turn of the main queue comes between this and the next painting
  const IslandLayoutMetrics& m = IslandLayoutMetrics::forSize(IslandSize::xLarge);
  EXPECT_EQ(find<MainPreview>()->geometry(), QRect(12, 9 + 34 + 5, 476, static_cast<int>(m.previewHeight)));
  EXPECT_EQ(island_.surfaces.back().cornerRadius, m.cornerRadius);
}

TEST_F(IslandOverlayRootViewTest, cellsStandBelowTheTraysInsetAsFarAsThereIsRoom) {
  island_.ingest("one.png");
  for (const auto& [size, top] : {std::pair{IslandSize::extraSmall, 0},
                                  {IslandSize::medium, 0},
                                  {IslandSize::large, 2},
                                  {IslandSize::xLarge, 2}}) {
    island_.setSize(size);
    island_.settle();
    EXPECT_EQ(island_.button("one.png")->y(), top) << static_cast<int>(size);
  }
}

TEST_F(IslandOverlayRootViewTest, theHandlesControlsStandInsideItsInset) {
  HandleRow row(nullptr, {});
  row.resize(200, 30);
  IslandLayoutMetrics metrics = IslandLayoutMetrics::forSize(IslandSize::extraSmall);
  metrics.toolbarContentInset = 7;
  row.apply(IslandPalette::forAppearance(IslandAppearanceStyle::light, false), metrics);
  EXPECT_EQ(row.findChild<QAbstractButton*>()->geometry(), QRect(200 - 7 - 24, 3, 24, 24));
}

// Newest first, as it is seen, for the keyboard and for screen readers.
TEST_F(IslandOverlayRootViewTest, theStripIsWalkedInTheOrderThatItIsSeenIn) {
  island_.ingest("one.png");
  island_.settle();
  island_.ingest("two.png");
  island_.settle();
  island_.ingest("three.png");
  island_.settle();
  std::vector<std::string> tabbed;
  const QWidget* start = island_.button("three.png");
  for (const QWidget* next = start; tabbed.size() < 3; next = next->nextInFocusChain()) {
    tabbed.push_back(next->accessibleName().toStdString());
  }
  EXPECT_THAT(tabbed, ElementsAre("three.png", "two.png", "one.png"));
  const QAccessibleInterface* strip = QAccessible::queryAccessibleInterface(find<ThumbnailStrip>());
  ASSERT_NE(strip, nullptr);
  std::vector<std::string> read;
  for (int index = 0; index < strip->childCount(); ++index) {
    read.push_back(strip->child(index)->text(QAccessible::Name).toStdString());
  }
  EXPECT_THAT(read, ElementsAre("three.png", "two.png", "one.png"));
}

TEST_F(IslandOverlayRootViewTest, cornersAreClear) {
  const QImage picture = island_.picture();
  EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0);
  EXPECT_EQ(picture.pixelColor(231, 0).alpha(), 0);
  EXPECT_EQ(picture.pixelColor(0, 231).alpha(), 0);
  EXPECT_EQ(picture.pixelColor(231, 231).alpha(), 0);
}

}  // namespace
}  // namespace quenlio
