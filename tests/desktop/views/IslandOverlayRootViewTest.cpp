#include <QtCore/QCoreApplication>
#include <QtGui/QEnterEvent>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QLabel>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/views/island/IslandOverlayRootView.h"

#include "tests/desktop/views/Island.h"
#include "tests/desktop/views/SymbolIn.h"

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

TEST_F(IslandOverlayRootViewTest, anEmptyLibraryShowsTheSymbolOfAPicture) {
  const QRect preview = find<MainPreview>()->geometry();
  QRect middle(QPoint(), QSize(preview.height(), preview.height()) * 2 / 3);
  middle.moveCenter(preview.center());
  EXPECT_EQ(symbolIn(island_.picture(4), {middle.topLeft() * 4, middle.size() * 4}), "photo");
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

TEST_F(IslandOverlayRootViewTest, theWayOutHasItsSymbolsAndItsHelp) {
  island_.setSize(IslandSize::medium);
  island_.state.screenshotFolderReadable.set(false);
  island_.settle();
  const QImage picture = island_.picture(4);
  const auto seenIn = [&](const QWidget& view, const QRect& part) {
    return symbolIn(picture, {view.mapTo(island_.view.get(), part.topLeft()) * 4, part.size() * 4});
  };
  const auto& recovery = *find<FolderAccessRecoveryView>();
  const int titleTop = recovery.findChild<QLabel*>()->y();
  EXPECT_EQ(seenIn(recovery, {recovery.width() / 2 - 24, titleTop - 44, 48, 44}), "lock.shield");
  QAbstractButton& allow = *island_.button("Allow Access");
  const int half = allow.height() / 2;
  EXPECT_EQ(seenIn(allow, {allow.width() - 2 * half - 2, half / 2, half + 4, half}), "arrow.up.right.square");
  EXPECT_FALSE(island_.says("Open Privacy settings and re-check folder access"));
  QEnterEvent enter({5, 5}, {5, 5}, {5, 5});
  QCoreApplication::sendEvent(&allow, &enter);
  island_.platform.time.advanceBy(Seconds(1));
  EXPECT_TRUE(island_.says("Open Privacy settings and re-check folder access"));
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
  ToolbarRow* handle = find<ToolbarRow>();
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
  ToolbarRow* handle = find<ToolbarRow>();
  mouse(*handle, QEvent::MouseButtonPress, {100, 100});
  mouse(*handle, QEvent::MouseButtonRelease, {100, 100});
  EXPECT_THAT(island_.drags, IsEmpty());
}

TEST_F(IslandOverlayRootViewTest, aDragEndsWhenTheIslandGoes) {
  ToolbarRow* handle = find<ToolbarRow>();
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
    EXPECT_EQ(find<ToolbarRow>()->geometry(), QRect(left, toolbar, wide, static_cast<int>(m.toolbarHeight)));
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
  EXPECT_LT(dark.lightness(), 110);
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
  }
  island_.platform.time.advanceBy(Seconds(0.05));
  const int dark = lightness();
  EXPECT_LT(dark, last);
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

TEST_F(IslandOverlayRootViewTest, anotherSizeIsLaidOutByItsOwnMetricsAtOnce) {
  island_.setSize(IslandSize::xLarge);  // no turn of the main queue comes between this and the next painting
  const IslandLayoutMetrics& m = IslandLayoutMetrics::forSize(IslandSize::xLarge);
  EXPECT_EQ(find<MainPreview>()->geometry(), QRect(12, 9 + 34 + 5, 476, static_cast<int>(m.previewHeight)));
  EXPECT_EQ(island_.surfaces.back().cornerRadius, m.cornerRadius);
}

TEST_F(IslandOverlayRootViewTest, moreContrastChangesTheColoursAndNoLengths) {
  island_.ingest("one.png");
  island_.settle();
  const auto frames = [this] {
    std::vector<QRect> all{island_.view->geometry()};
    for (const QWidget* widget : island_.view->findChildren<QWidget*>()) {
      all.push_back(widget->geometry());
    }
    return all;
  };
  for (const IslandAppearanceStyle style : {IslandAppearanceStyle::light, IslandAppearanceStyle::dark}) {
    island_.state.appearanceStyle.set(style);
    island_.state.increaseContrast.set(false);
    const QImage before = island_.picture();
    const auto framesBefore = frames();
    island_.state.appearanceTransition = Seconds(0.16);
    island_.state.increaseContrast.set(true);
    island_.settle();
    island_.platform.time.advanceBy(Seconds(0.08));
    EXPECT_EQ(frames(), framesBefore);  // nor on the way
    island_.platform.time.advanceBy(Seconds(1));
    const QImage after = island_.picture();
    EXPECT_EQ(frames(), framesBefore);
    EXPECT_EQ(island_.surfaces.back().cornerRadius, 22);
    const auto [lighter, darker] =
        style == IslandAppearanceStyle::light ? std::pair(after, before) : std::pair(before, after);
    EXPECT_GT(lighter.pixelColor(116, 228).lightness(), darker.pixelColor(116, 228).lightness() + 3);
    island_.state.appearanceTransition = Seconds::zero();
  }
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
