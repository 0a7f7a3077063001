// The island's controller, its panel and its views, joined as in the program.
#include <QtCore/QCoreApplication>
#include <QtGui/QMouseEvent>
#include <gtest/gtest.h>

#include "desktop/linux/session/QtPanel.h"
#include "desktop/linux/session/QtScreens.h"
#include "desktop/views/island/MainPreview.h"
#include "desktop/views/island/QtIslandShell.h"
#include "desktop/views/island/ToolbarRow.h"

#include "tests/desktop/WaitUntil.h"
#include "tests/harness/TestLibrary.h"

namespace quenlio {
namespace {

class IslandOnPanel : public testing::Test, protected TestLibrary {
 protected:
  IslandOnPanel() {
    island_.show(std::nullopt);
    settle();
  }

  void settle() {
    platform.time.runReady();
    QCoreApplication::processEvents();
  }

  [[nodiscard]] const QtPanel& panel() const { return static_cast<const QtPanel&>(island_.panel()); }
  [[nodiscard]] QWidget& window() const { return const_cast<QWidget&>(panel().window()); }
  template <class View>
  [[nodiscard]] View& find() const {
    for (QWidget* widget : window().findChildren<QWidget*>()) {
      if (auto* view = dynamic_cast<View*>(widget)) {
        return *view;
      }
    }
    throw std::out_of_range("no such view");
  }

  void mouse(QEvent::Type type, QPointF onScreen) {
    auto& handle = find<ToolbarRow>();
    QMouseEvent event(type, handle.mapFromGlobal(onScreen), onScreen,
                      type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&handle, &event);
  }

  UserIntent intent_;
  CompositorWatch compositor_;
  QtScreens screens_;
  QtIslandShell shell_{
      {.scheduler = platform.time, .intent = intent_, .compositor = compositor_, .sharpRendition = {}}};
  IslandOverlayController island_{islandDependencies(shell_, screens_)};
};

TEST_F(IslandOnPanel, aMoveThatIsHeldWhileThePanelGoesEndsWithIt) {
  ASSERT_TRUE(panel().isVisible());
  platform.time.advanceBy(Seconds(1));  // past the entry
  ASSERT_TRUE(island_.presentationState().showDismissProgress.get());
  mouse(QEvent::MouseButtonPress, {300, 300});
  mouse(QEvent::MouseMove, {280, 290});
  ASSERT_TRUE(settings.displayPositions.empty());
  island_.hide({});
  EXPECT_FALSE(panel().isVisible());
  EXPECT_EQ(settings.displayPositions.size(), 1U);  // kept at the end of a move
  // That end, too, would start a countdown.
  EXPECT_FALSE(island_.presentationState().showDismissProgress.get());
  platform.time.runReady();
  EXPECT_EQ(platform.time.pending(), 0U);
  // The next move begins where the panel is then.
  island_.show(std::nullopt);
  ASSERT_TRUE(waitUntil([this] { return window().isVisible(); }));
  const Point<Screen> before = panel().frame().origin;
  mouse(QEvent::MouseButtonPress, {500, 500});
  mouse(QEvent::MouseMove, {490, 500});
  EXPECT_EQ(panel().frame().origin, (Point<Screen>{before.x - 10, before.y}));
  mouse(QEvent::MouseButtonRelease, {490, 500});
}

TEST_F(IslandOnPanel, aCloseFromWithoutHidesTheIslandAndTheNextShowingBringsItBack) {
  window().close();
  ASSERT_TRUE(waitUntil([this] { return !panel().isVisible(); }));
  EXPECT_FALSE(window().isVisible());
  island_.show(std::nullopt);
  EXPECT_TRUE(panel().isVisible());
  EXPECT_TRUE(window().isVisible());
}

TEST_F(IslandOnPanel, aChangeOfSizeChangesTheFrameAndTheMetricsTogether) {
  ASSERT_EQ(settings.islandSize.get(), IslandSize::extraSmall);
  settings.islandSize.set(IslandSize::large);
  // Nothing has run since: this is what the next painting would find.
  EXPECT_EQ(window().contentsRect().size(), QSize(420, 420));
  EXPECT_EQ(find<MainPreview>().height(),
            static_cast<int>(IslandLayoutMetrics::forSize(IslandSize::large).previewHeight));
  EXPECT_EQ(find<MainPreview>().width(), 420 - 2 * 12);
}

TEST_F(IslandOnPanel, moreContrastLeavesTheFrameAsItIs) {
  platform.time.advanceBy(Seconds(1));  // past the entry
  const Rect<Screen> frame = panel().frame();
  const QRect preview = find<MainPreview>().geometry();
  platform.appearance.setIncreasesContrast(true);
  settle();
  ASSERT_TRUE(island_.presentationState().increaseContrast.get());
  platform.time.advanceBy(Seconds(0.08));
  EXPECT_EQ(panel().frame(), frame);
  platform.time.advanceBy(Seconds(1));
  EXPECT_EQ(panel().frame(), frame);
  EXPECT_EQ(find<MainPreview>().geometry(), preview);
}
}  // namespace
}  // namespace quenlio
