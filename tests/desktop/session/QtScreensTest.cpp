#include <gtest/gtest.h>

#include "desktop/linux/session/QtScreens.h"
#include "desktop/linux/session/ScreenGeometry.h"
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

}  // namespace
}  // namespace quenlio
