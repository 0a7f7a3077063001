// The island's controller, its panel and its views, joined as in the program.
#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtGui/QMouseEvent>
#include <gtest/gtest.h>

#include "core/detection/ScreenshotLocationResolver.h"
#include "core/identity/AppPaths.h"
#include "core/island/IslandOverlayController.h"
#include "core/library/ScreenshotStore.h"

#include "desktop/linux/session/QtPanel.h"
#include "desktop/linux/session/QtScreens.h"
#include "desktop/views/island/HandleRow.h"
#include "desktop/views/island/MainPreview.h"
#include "desktop/views/island/QtIslandShell.h"

#include "tests/harness/TestPlatform.h"

namespace quenlio {
namespace {

class IslandOnPanel : public testing::Test {
 protected:
  IslandOnPanel() {
    island_.show(std::nullopt);
    settle();
  }

  void settle() {
    platform_.time.runReady();
    QCoreApplication::processEvents();
  }
  // The panel's animations run in real time.
  [[nodiscard]] static bool waitUntil(const std::function<bool()>& condition) {
    const QDeadlineTimer end(10'000);
    QTimer wake;
    wake.start(5);
    while (!condition() && !end.hasExpired()) {
      QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return condition();
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
    auto& handle = find<HandleRow>();
    QMouseEvent event(type, handle.mapFromGlobal(onScreen), onScreen,
                      type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&handle, &event);
  }

  TestPlatform platform_;
  UserIntent intent_;
  CompositorWatch compositor_;
  QtScreens screens_;
  QtIslandShell shell_{
      {.scheduler = platform_.time, .intent = intent_, .compositor = compositor_, .sharpRendition = {}}};
  AppSettings settings_{platform_.settingsDependencies()};
  AppPaths paths_{platform_.configuration, platform_.files, platform_.directories};
  QuenlioReleaseTestDiagnostics diagnostics_{platform_.configuration, platform_.time, platform_.time, platform_.files,
                                             platform_.files};
  ScreenshotStore store_{{.settings = settings_,
                          .diagnostics = diagnostics_,
                          .paths = paths_,
                          .files = platform_.files,
                          .contents = platform_.files,
                          .clock = platform_.time,
                          .scheduler = platform_.time,
                          .thumbnails = platform_.thumbnails,
                          .log = platform_.systemLog}};
  ScreenshotLocationResolver locations_{platform_.locationDependencies()};
  IslandOverlayController island_{{.settings = settings_,
                                   .store = store_,
                                   .shell = shell_,
                                   .screens = screens_,
                                   .scheduler = platform_.time,
                                   .clock = platform_.time,
                                   .application = platform_.application,
                                   .appearance = platform_.appearance,
                                   .eventMonitors = platform_.eventMonitors,
                                   .files = platform_.files,
                                   .locations = locations_,
                                   .onRequestNewScreenshot = [] {},
                                   .onRequestFolderAccess = [] {}}};
};

TEST_F(IslandOnPanel, aMoveThatIsHeldWhileThePanelGoesEndsWithIt) {
  ASSERT_TRUE(panel().isVisible());
  mouse(QEvent::MouseButtonPress, {300, 300});
  mouse(QEvent::MouseMove, {280, 290});
  ASSERT_TRUE(settings_.displayPositions.empty());
  island_.hide({});
  EXPECT_FALSE(panel().isVisible());
  EXPECT_EQ(settings_.displayPositions.size(), 1U);  // kept at the end of a move
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
  ASSERT_EQ(settings_.islandSize.get(), IslandSize::extraSmall);
  settings_.islandSize.set(IslandSize::large);
  // Nothing has run since: this is what the next painting would find.
  EXPECT_EQ(window().size(), QSize(420, 420));
  EXPECT_EQ(find<MainPreview>().height(),
            static_cast<int>(IslandLayoutMetrics::forSize(IslandSize::large).previewHeight));
  EXPECT_EQ(find<MainPreview>().width(), 420 - 2 * 12);
}

}  // namespace
}  // namespace quenlio
