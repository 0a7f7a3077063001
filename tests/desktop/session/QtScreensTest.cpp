#include <gtest/gtest.h>

#include "desktop/linux/session/QtScreens.h"
#include "desktop/linux/session/ScreenGeometry.h"
#include "desktop/linux/session/WorkArea.h"
#include "desktop/linux/session/X11.h"

#include "tests/desktop/session/Desk.h"

namespace quenlio {
namespace {

TEST(ScreenGeometry, turnsTheScreenUpward) {
  const ScreenGeometry geometry({0, 0, 1280, 800});
  EXPECT_EQ(geometry.fromQt(QRect(10, 20, 100, 50)), (Rect<Screen>{{10, 730}, {100, 50}}));
  EXPECT_EQ(geometry.toQt({{10, 730}, {100, 50}}), QRect(10, 20, 100, 50));
  // On a second screen above the first.
  EXPECT_EQ(geometry.fromQt(QRect(0, -600, 1000, 600)), (Rect<Screen>{{0, 800}, {1000, 600}}));
}

// As with a second screen that stands to the left and begins above.
TEST(ScreenGeometry, countsFromTheBottomLeftOfAPrimaryScreenThatIsNotInTheCorner) {
  const ScreenGeometry geometry({1920, 100, 1280, 800});
  EXPECT_EQ(geometry.fromQt(QRect(1920, 100, 1280, 800)), (Rect<Screen>{{0, 0}, {1280, 800}}));
  EXPECT_EQ(geometry.fromQt(QRect(0, 0, 1920, 1080)), (Rect<Screen>{{-1920, -180}, {1920, 1080}}));
  EXPECT_EQ(geometry.fromQt(QPoint(1920, 100)), (Point<Screen>{0.5, 799.5}));
  EXPECT_EQ(geometry.toQt({{-1920, -180}, {1920, 1080}}), QRect(0, 0, 1920, 1080));
}

// Whichever edges of a rectangle count as inside, a pixel on one side of an edge is on that side.
TEST(ScreenGeometry, aPixelIsItsCentreSoThatNoEdgeRunsThroughIt) {
  const ScreenGeometry geometry({0, 0, 1280, 800});
  EXPECT_EQ(geometry.fromQt(QPoint(100, 200)), (Point<Screen>{100.5, 599.5}));
  const QRect area(10, 20, 30, 40);
  const Rect<Screen> frame = geometry.fromQt(area);
  for (const int x : {9, 10, 39, 40}) {
    for (const int y : {19, 20, 59, 60}) {
      const Point<Screen> pixel = geometry.fromQt(QPoint(x, y));
      const bool withLowerEdges = frame.contains(pixel);
      const bool withUpperEdges =
          pixel.x > frame.minX() && pixel.x <= frame.maxX() && pixel.y > frame.minY() && pixel.y <= frame.maxY();
      EXPECT_EQ(withLowerEdges, area.contains(x, y)) << x << ' ' << y;
      EXPECT_EQ(withUpperEdges, area.contains(x, y)) << x << ' ' << y;
    }
  }
}

TEST(ScreenGeometry, roundsToWholePointsWithoutChangingTheSize) {
  EXPECT_EQ(ScreenGeometry({0, 0, 1280, 800}).toQt({{10.4, 100.4}, {232, 232}}), QRect(10, 468, 232, 232));
  EXPECT_EQ(ScreenGeometry({0, 0, 1280, 800}).toQt({{10.6, 100.6}, {232, 232}}), QRect(11, 467, 232, 232));
}

TEST(QtScreens, numberIsAHashOfConnectorAndSerial) {
  // FNV-1a of the bytes, computed by another program.
  EXPECT_EQ(QtScreens::screenNumber("", ""), 0x050c5d1fU);
  EXPECT_EQ(QtScreens::screenNumber("HDMI-1", "S1"), 0xc1fe5e8fU);
  EXPECT_NE(QtScreens::screenNumber("HDMI-1", "S1"), QtScreens::screenNumber("HDMI-1", "S2"));
  EXPECT_NE(QtScreens::screenNumber("HDMI-1", "S1"), QtScreens::screenNumber("HDMI-2", "S1"));
  EXPECT_NE(QtScreens::screenNumber("HDMI-1", "S"), QtScreens::screenNumber("HDMI-1S", ""));
}

TEST(QtScreens, tellsTheScreenAndThePointer) {
  const QtScreens screens;
  const auto all = screens.screens();
  ASSERT_EQ(all.size(), 1U);
  EXPECT_EQ(all.front().frame, (Rect<Screen>{{0, 0}, {1280, 800}}));
  EXPECT_EQ(screens.mainScreen(), all.front());
  EXPECT_TRUE(all.front().screenNumber);
  movePointer(100, 200);
  EXPECT_EQ(screens.mouseLocation(), (Point<Screen>{100.5, 599.5}));
}

// A bar along the bottom takes its share of the work area.
TEST(QtScreens, visibleFrameLeavesOutTheDesktopsBars) {
  const QtScreens screens;
  ASSERT_EQ(screens.mainScreen()->visibleFrame, (Rect<Screen>{{0, 0}, {1280, 800}}));
  {
    OtherProgram bar;
    ASSERT_TRUE(bar.showAsBar(30));
    EXPECT_TRUE(waitUntil([&screens] {
      return screens.mainScreen()->visibleFrame == Rect<Screen>{{0, 30}, {1280, 770}};
    }));
  }
  EXPECT_TRUE(waitUntil([&screens] {
    return screens.mainScreen()->visibleFrame == Rect<Screen>{{0, 0}, {1280, 800}};
  }));
}

// The window manager tells one work area for all screens together, which says nothing of a single one.
class SeveralScreens : public testing::Test {
 protected:
  [[nodiscard]] std::vector<Rect<Screen>> visible() const {
    std::vector<Rect<Screen>> frames;
    for (const ScreenInfo& screen : screens_.screens()) {
      frames.push_back(screen.visibleFrame);
    }
    return frames;
  }
  [[nodiscard]] bool waitForVisible(const std::vector<Rect<Screen>>& frames) const {
    return waitUntil([&] { return visible() == frames; });
  }

  static constexpr Rect<Screen> kLeft{{0, 0}, {640, 800}};
  static constexpr Rect<Screen> kRight{{640, 0}, {640, 800}};
  QtScreens screens_;
  TwoMonitors monitors_;
};

TEST_F(SeveralScreens, visibleFrameOfEachLeavesOutItsOwnBars) {
  ASSERT_EQ(visible(), (std::vector{kLeft, kRight}));
  {
    OtherProgram bar;
    ASSERT_TRUE(bar.showAsBar(30, 640, 1279));
    EXPECT_TRUE(waitForVisible({kLeft, {{640, 30}, {640, 770}}}));
  }
  EXPECT_TRUE(waitForVisible({kLeft, kRight}));
}

// It counts along the whole edge of the desktop, whatever the bar itself covers.
TEST_F(SeveralScreens, aBarThatTellsOnlyItsThicknessTakesFromEachAlongItsEdge) {
  {
    OtherProgram bar;
    ASSERT_TRUE(bar.showAsOlderBar(30, 640, 1279));
    EXPECT_TRUE(waitForVisible({{{0, 30}, {640, 770}}, {{640, 30}, {640, 770}}}));
  }
  EXPECT_TRUE(waitForVisible({kLeft, kRight}));
}

constexpr QSize kDesktop{3200, 1080};
constexpr QRect kLeftScreen{0, 0, 1920, 1080};
constexpr QRect kRightScreen{1920, 100, 1280, 800};  // neither at the top nor at the bottom of the desktop

TEST(WorkArea, aStrutTakesFromTheScreenAlongWhoseEdgeItRuns) {
  const std::vector<Strut> bar{{Strut::Edge::bottom, 40, 0, 1919}};
  EXPECT_EQ(workArea(kLeftScreen, kDesktop, bar), QRect(0, 0, 1920, 1040));
  EXPECT_EQ(workArea(kRightScreen, kDesktop, bar), kRightScreen);
}

TEST(WorkArea, thicknessCountsFromTheDesktopsEdgeAndNotFromTheScreens) {
  EXPECT_EQ(workArea(kRightScreen, kDesktop, {{Strut::Edge::bottom, 180 + 40, 1920, 3199}}),
            QRect(1920, 100, 1280, 760));
  EXPECT_EQ(workArea(kRightScreen, kDesktop, {{Strut::Edge::bottom, 40, 1920, 3199}}), kRightScreen);
  EXPECT_EQ(workArea(kRightScreen, kDesktop, {{Strut::Edge::top, 100 + 25, 1920, 3199}}), QRect(1920, 125, 1280, 775));
  EXPECT_EQ(workArea(kRightScreen, kDesktop, {{Strut::Edge::right, 60, 100, 899}}), QRect(1920, 100, 1220, 800));
}

TEST(WorkArea, aBarAtTheEdgeBetweenTwoScreensTakesNothingFromTheFarOne) {
  const std::vector<Strut> bar{{Strut::Edge::left, 1920 + 60, 100, 899}};
  EXPECT_EQ(workArea(kRightScreen, kDesktop, bar), QRect(1980, 100, 1220, 800));
  EXPECT_EQ(workArea(kLeftScreen, kDesktop, bar), kLeftScreen);
}

TEST(WorkArea, barsOnSeveralEdgesAddUpAndOnOneTheThickestCounts) {
  EXPECT_EQ(workArea(kLeftScreen, kDesktop,
                     {{Strut::Edge::top, 30, 0, 1919},
                      {Strut::Edge::top, 20, 0, 1919},
                      {Strut::Edge::left, 50, 0, 1079},
                      {Strut::Edge::bottom, 0, 0, 0}}),
            QRect(50, 30, 1870, 1050));
}

}  // namespace
}  // namespace quenlio
