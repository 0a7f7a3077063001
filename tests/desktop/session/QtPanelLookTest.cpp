// How the panel looks, with a compositor and without, and how it moves.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

#include "tests/desktop/session/QtPanelTest.h"

namespace quenlio {
namespace {

using testing::ElementsAre;

class QtPanelLook : public QtPanelTest {};

TEST_F(QtPanelLook, alphaIsBlendedByACompositor) {
  const Compositor compositor;
  ASSERT_TRUE(waitUntil([this] { return compositor_.isThere().get(); }));
  OtherProgram below;  // white
  ASSERT_TRUE(below.showAndTakeKeyboard({kLeft - 20, kTop - 20, 260, 260}));
  panel_.setAlphaValue(0.5);
  ASSERT_TRUE(show());
  EXPECT_TRUE(waitForPixel(kLeft + 100, kTop + 100, [](const QColor& color) {
    return color.red() > 250 && std::abs(color.green() - 128) < 4 && std::abs(color.blue() - 128) < 4;
  }));
  panel_.setAlphaValue(1);
  EXPECT_TRUE(waitForPixel(kLeft + 100, kTop + 100, isRed));
  panel_.setAlphaValue(0);
  EXPECT_TRUE(waitForPixel(kLeft + 100, kTop + 100, [](const QColor& color) { return color == QColor(Qt::white); }));
}

TEST_F(QtPanelLook, standsOpaqueAndRoundedWithoutACompositor) {
  ASSERT_TRUE(waitUntil([this] { return !compositor_.isThere().get(); }));
  OtherProgram below;
  ASSERT_TRUE(below.showAndTakeKeyboard({kLeft - 20, kTop - 20, 260, 260}));
  panel_.setSurface({.cornerRadius = 24, .tone = Qt::green});
  panel_.setAlphaValue(0.5);
  ASSERT_TRUE(show());
  EXPECT_TRUE(waitForPixel(kLeft + 100, kTop + 100, isRed));
  EXPECT_EQ(screenPixel(kLeft + 1, kTop + 1), QColor(Qt::white));
  EXPECT_EQ(screenPixel(kLeft + 230, kTop + 230), QColor(Qt::white));
}

TEST_F(QtPanelLook, followsACompositorThatComesAndGoes) {
  ASSERT_TRUE(waitUntil([this] { return !compositor_.isThere().get(); }));
  {
    const Compositor compositor;
    EXPECT_TRUE(waitUntil([this] { return compositor_.isThere().get(); }));
  }
  EXPECT_TRUE(waitUntil([this] { return !compositor_.isThere().get(); }));
}

TEST_F(QtPanelLook, animationEndsExactlyWhereItWasTold) {
  panel_.setFrame(corner().moved(0, -6));
  panel_.setAlphaValue(0);
  panel_.orderFrontRegardless();
  int completions = 0;
  panel_.runAnimationGroup({.duration = Seconds(0.12), .curve = {{0.22, 1, 0.36, 1}}, .alpha = 1, .frame = corner()},
                           [&completions] { ++completions; });
  EXPECT_EQ(completions, 0);
  ASSERT_TRUE(waitUntil([&completions] { return completions > 0; }));
  EXPECT_EQ(panel_.frame(), corner());
  EXPECT_TRUE(waitUntil([this] { return geometryOnScreen(id()) == QRect(kLeft, kTop, 232, 232); }));
  EXPECT_EQ(completions, 1);
}

TEST_F(QtPanelLook, completionRunsOnceAlsoWhenThePanelWasMovedMeanwhile) {
  ASSERT_TRUE(show());
  int completions = 0;
  panel_.runAnimationGroup({.duration = Seconds(0.12), .curve = kEaseIn, .alpha = 0, .frame = corner().moved(0, -8)},
                           [&completions] { ++completions; });
  const Rect<Screen> elsewhere{{300, 300}, {kSide, kSide}};
  panel_.setFrame(elsewhere);
  ASSERT_TRUE(waitUntil([&completions] { return completions > 0; }));
  EXPECT_EQ(panel_.frame(), elsewhere);
  EXPECT_EQ(completions, 1);
}

TEST_F(QtPanelLook, anAnimationReplacesARunningOneAndBothCompletionsRun) {
  ASSERT_TRUE(show());
  std::vector<int> completions;
  panel_.runAnimationGroup({.duration = Seconds(0.12), .curve = kEaseIn, .alpha = 0, .frame = corner().moved(0, -8)},
                           [&completions] { completions.push_back(1); });
  panel_.runAnimationGroup({.duration = Seconds(0.16), .curve = kEaseIn, .alpha = 1, .frame = corner()},
                           [&completions] { completions.push_back(2); });
  ASSERT_TRUE(waitUntil([&completions] { return completions.size() == 2; }));
  EXPECT_THAT(completions, ElementsAre(1, 2));
  EXPECT_EQ(panel_.frame(), corner());
}

TEST_F(QtPanelLook, firstFrameOfARisingPanelIsAlreadySeen) {
  const Compositor compositor;
  ASSERT_TRUE(waitUntil([this] { return compositor_.isThere().get(); }));
  panel_.setFrame(corner().moved(0, -6));
  panel_.setAlphaValue(0);
  panel_.orderFrontRegardless();
  panel_.runAnimationGroup({.duration = Seconds(0.12), .curve = {{0.22, 1, 0.36, 1}}, .alpha = 1, .frame = corner()},
                           [] {});
  // Without a compositor's help: what the view painted first, with the alpha of that moment.
  ASSERT_TRUE(waitUntil([this] { return view_->painted > 0; }));
  const QImage first = const_cast<QWidget&>(panel_.window()).grab().toImage();
  EXPECT_GT(first.pixelColor(100, 100).alphaF(), 0.2);
}

}  // namespace
}  // namespace quenlio
