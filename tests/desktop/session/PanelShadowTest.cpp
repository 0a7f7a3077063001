// The panel's shadow: room for it around the panel, which nothing but the painting knows of.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xcb/shape.h>

#include "desktop/linux/session/PanelHints.h"
#include "desktop/linux/session/X11.h"

#include "tests/desktop/session/QtPanelTest.h"

namespace quenlio {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PanelShadow : public QtPanelTest {
 protected:
  PanelShadow() { panel_.setSurface({.cornerRadius = 22, .tone = Qt::white, .shadow = {{0.4, 30, 16}}}); }

  [[nodiscard]] bool showWithShadow() {
    panel_.setFrame(corner());
    panel_.orderFrontRegardless();
    return waitUntil([this] {
      return isMapped(id()) && geometryOnScreen(id()) == QRect(kLeft, kTop, 232, 232).adjusted(-30, -14, 30, 46);
    });
  }

  // Where a press is the panel's, in pixels of the window.
  [[nodiscard]] QRegion mouseRegion() const {
    const auto cookie = xcb_shape_get_rectangles(x11::connection(), id(), XCB_SHAPE_SK_INPUT);
    const x11::Reply<xcb_shape_get_rectangles_reply_t> reply(
        xcb_shape_get_rectangles_reply(x11::connection(), cookie, nullptr));
    const xcb_rectangle_t* rectangles = xcb_shape_get_rectangles_rectangles(reply.get());
    QRegion region;
    for (int index = 0; index < xcb_shape_get_rectangles_rectangles_length(reply.get()); ++index) {
      const xcb_rectangle_t& at = rectangles[index];
      region += QRect(at.x, at.y, at.width, at.height);
    }
    return region;
  }

  static bool isWhite(const QColor& color) { return color == QColor(Qt::white); }
};

TEST_F(PanelShadow, liesAroundThePanelAndLeavesItsPlaceAsItIs) {
  const Compositor compositor;
  ASSERT_TRUE(waitUntil([this] { return compositor_.isThere().get(); }));
  OtherProgram below;  // white
  ASSERT_TRUE(below.showAndTakeKeyboard({kLeft - 60, kTop - 60, 300, 300}));
  ASSERT_TRUE(showWithShadow());
  EXPECT_EQ(panel_.frame(), corner());
  ASSERT_TRUE(waitForPixel(kLeft + 100, kTop + 100, isRed));
  ASSERT_TRUE(waitForPixel(kLeft - 40, kTop + 130, isWhite));
  EXPECT_TRUE(isRed(screenPixel(kLeft, kTop + 100)));
  // A compositor that has only just come does not blend at once.
  ASSERT_TRUE(waitForPixel(kLeft - 2, kTop + 130, [](const QColor& color) { return color.lightness() > 128; }));
  const auto darkness = [](int x, int y) { return 255 - screenPixel(x, y).lightness(); };
  EXPECT_GT(darkness(kLeft - 2, kTop + 130), 20);
  EXPECT_LT(darkness(kLeft - 20, kTop + 130), darkness(kLeft - 2, kTop + 130));
  EXPECT_GT(darkness(kLeft + 100, kTop + 234), darkness(kLeft + 100, kTop - 3));
  EXPECT_EQ(darkness(kLeft - 32, kTop + 130), 0);
}

TEST_F(PanelShadow, takesTheMouseOnThePanelOnly) {
  const Compositor compositor;
  ASSERT_TRUE(waitUntil([this] { return compositor_.isThere().get(); }));
  ASSERT_TRUE(showWithShadow());
  panel_.setIgnoresMouseEvents(false);
  const QRect body(30, 14, 232, 232);
  // The window may hear of its size a moment after it has it.
  EXPECT_TRUE(waitUntil([&] { return mouseRegion().boundingRect() == body; }));
  for (const QPoint& middleOfEdge : {QPoint(146, 14), QPoint(30, 130), QPoint(261, 130), QPoint(146, 245)}) {
    EXPECT_TRUE(mouseRegion().contains(middleOfEdge));
  }
  for (const QPoint& corner : {body.topLeft(), body.topRight(), body.bottomLeft(), body.bottomRight()}) {
    EXPECT_FALSE(mouseRegion().contains(corner));
  }
  panel_.setIgnoresMouseEvents(true);
  EXPECT_TRUE(mouseRegion().isEmpty());
}

TEST_F(PanelShadow, isToldToTheWindowManager) {
  const Compositor compositor;
  ASSERT_TRUE(waitUntil([this] { return compositor_.isThere().get(); }));
  ASSERT_TRUE(showWithShadow());
  EXPECT_THAT(numbersOf(id(), "_GTK_FRAME_EXTENTS"), ElementsAre(30, 30, 14, 46));
}

TEST_F(PanelShadow, goesAndComesWithTheCompositor) {
  ASSERT_TRUE(waitUntil([this] { return !compositor_.isThere().get(); }));
  ASSERT_TRUE(show());
  EXPECT_THAT(numbersOf(id(), "_GTK_FRAME_EXTENTS"), IsEmpty());
  {
    const Compositor compositor;
    EXPECT_TRUE(waitUntil(
        [this] { return geometryOnScreen(id()) == QRect(kLeft, kTop, 232, 232).adjusted(-30, -14, 30, 46); }));
    EXPECT_EQ(panel_.frame(), corner());
  }
  EXPECT_TRUE(waitUntil([this] { return geometryOnScreen(id()) == QRect(kLeft, kTop, 232, 232); }));
  EXPECT_EQ(panel_.frame(), corner());
}

TEST_F(PanelShadow, movesWithThePanel) {
  const Compositor compositor;
  ASSERT_TRUE(waitUntil([this] { return compositor_.isThere().get(); }));
  ASSERT_TRUE(showWithShadow());
  panel_.setFrame({{50, 60}, {340, 340}});
  EXPECT_EQ(panel_.frame(), (Rect<Screen>{{50, 60}, {340, 340}}));
  EXPECT_TRUE(waitUntil(
      [this] { return geometryOnScreen(id()) == QRect(50, 800 - 60 - 340, 340, 340).adjusted(-30, -14, 30, 46); }));
}

// As a compositor says that can blur behind windows.
class BlurringCompositor {
 public:
  BlurringCompositor() {
    const std::uint32_t nothing = 0;
    xcb_change_property(x11::connection(), XCB_PROP_MODE_REPLACE, x11::rootWindow(), x11::atom(kBlurBehind),
                        XCB_ATOM_CARDINAL, 32, 1, &nothing);
    xcb_flush(x11::connection());
  }
  ~BlurringCompositor() {
    xcb_delete_property(x11::connection(), x11::rootWindow(), x11::atom(kBlurBehind));
    xcb_flush(x11::connection());
  }
  BlurringCompositor(const BlurringCompositor&) = delete;
  BlurringCompositor& operator=(const BlurringCompositor&) = delete;

 private:
  Compositor compositor_;
};

TEST_F(PanelShadow, blurIsAskedForBehindThePanelOnlyAndOnlyWhereThereIsSome) {
  {
    const BlurringCompositor compositor;
    ASSERT_TRUE(waitUntil([this] { return compositor_.isThere().get() && compositor_.blursBehind().get(); }));
    ASSERT_TRUE(showWithShadow());
    const std::vector<std::uint32_t> numbers = numbersOf(id(), kBlurBehind);
    ASSERT_FALSE(numbers.empty());
    ASSERT_EQ(numbers.size() % 4, 0U);
    QRegion region;
    for (std::size_t index = 0; index < numbers.size(); index += 4) {
      region += QRect(static_cast<int>(numbers[index]), static_cast<int>(numbers[index + 1]),
                      static_cast<int>(numbers[index + 2]), static_cast<int>(numbers[index + 3]));
    }
    EXPECT_EQ(region.boundingRect(), QRect(30, 14, 232, 232));
    EXPECT_FALSE(region.contains(QPoint(30, 14)));
  }
  EXPECT_TRUE(waitUntil([this] { return !compositor_.blursBehind().get(); }));
  EXPECT_THAT(numbersOf(id(), kBlurBehind), IsEmpty());
}

TEST_F(PanelShadow, aCompositorThatBlursAlreadyIsFoundAtOnce) {
  const BlurringCompositor compositor;
  CompositorWatch late;
  EXPECT_TRUE(late.blursBehind().get());
}

}  // namespace
}  // namespace quenlio
