// Where the panel sits, and on which screen.
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tests/core/island/IslandTest.h"

namespace quenlio {
namespace {

constexpr std::array kSizes{IslandSize::extraSmall, IslandSize::small, IslandSize::medium, IslandSize::large,
                            IslandSize::xLarge};

ScreenInfo screenWith(const Rect<Screen>& visibleFrame) {
  return {visibleFrame, visibleFrame, 1};
}

TEST(DesiredFrame, isASquareTwelvePointsFromTheBottomRightOfTheVisibleFrame) {
  const ScreenInfo screen{{{0, 0}, {1280, 800}}, {{50, 30}, {1200, 700}}, 1};
  constexpr std::array sides{232.0, 266.0, 340.0, 420.0, 500.0};
  for (std::size_t i = 0; i < kSizes.size(); ++i) {
    EXPECT_EQ(IslandPlacement::desiredFrame(screen, kSizes.at(i)),
              (Rect<Screen>{{1250 - sides.at(i) - 12, 42}, {sides.at(i), sides.at(i)}}));
  }
}

TEST(DesiredFrame, touchesBothSidesOfAVisibleFrameOfItsOwnWidth) {
  const Rect<Screen> frame = IslandPlacement::desiredFrame(screenWith({{100, 0}, {232, 800}}), IslandSize::extraSmall);
  EXPECT_EQ(frame, (Rect<Screen>{{100, 12}, {232, 232}}));
}

TEST(DesiredFrame, givesUpItsMarginBeforeItLeavesTheVisibleFrame) {
  const Rect<Screen> frame = IslandPlacement::desiredFrame(screenWith({{100, 0}, {240, 240}}), IslandSize::extraSmall);
  EXPECT_EQ(frame, (Rect<Screen>{{100, 8}, {232, 232}}));
}

TEST(DesiredFrame, inATooNarrowVisibleFrameKeepsItsRightEdgeInside) {
  const Rect<Screen> frame = IslandPlacement::desiredFrame(screenWith({{100, 50}, {200, 100}}), IslandSize::extraSmall);
  EXPECT_EQ(frame.maxX(), 300);
  EXPECT_EQ(frame.minX(), 68);
  EXPECT_EQ(frame.maxY(), 150);
}

double anyCoordinate() {
  return *rc::gen::inRange(-4000, 4000);
}

RC_GTEST_PROP(DesiredFrameProperty, liesInsideTheVisibleFrameOrAtLeastItsRightAndTopEdgesDo, ()) {
  const Rect<Screen> visible{
      {anyCoordinate(), anyCoordinate()},
      {static_cast<double>(*rc::gen::inRange(0, 3000)), static_cast<double>(*rc::gen::inRange(0, 3000))}};
  const IslandSize size = *rc::gen::elementOf(kSizes);
  const double side = IslandLayoutMetrics::panelSide(size);
  const Rect<Screen> frame = IslandPlacement::desiredFrame(screenWith(visible), size);
  RC_ASSERT(frame.size == (Size{side, side}));
  RC_ASSERT(frame.maxX() <= visible.maxX());
  RC_ASSERT(frame.maxY() <= visible.maxY());
  RC_ASSERT(frame.minX() >= visible.minX() || visible.size.width < side);
  RC_ASSERT(frame.minY() >= visible.minY() || visible.size.height < side);
  // Where there is room it keeps its distance.
  RC_ASSERT(visible.size.width < side + 12 || frame.maxX() == visible.maxX() - 12);
  RC_ASSERT(visible.size.height < side + 12 || frame.minY() == visible.minY() + 12);
}

class TargetScreen : public IslandTest {
 protected:
  [[nodiscard]] Rect<Screen> cornerOf(std::size_t screen) const {
    return IslandPlacement::desiredFrame(platform.screens.list.at(screen), settings.islandSize.get());
  }
  // Shows the panel and tells where it came up.
  Rect<Screen> shownAt(std::optional<DisplayID> preferred) {
    island->hide({});
    island->show(preferred);
    platform.time.advanceBy(200ms);
    return panel().frame();
  }
};

TEST_F(TargetScreen, isThePreferredDisplay) {
  addSecondScreen();
  openHidden();
  EXPECT_EQ(shownAt(1), cornerOf(0));
  EXPECT_EQ(island->lastPresentedDisplayID(), 1U);
  EXPECT_EQ(shownAt(2), cornerOf(1));
  EXPECT_EQ(island->lastPresentedDisplayID(), 2U);
}

TEST_F(TargetScreen, isTheFirstOfSeveralWithThatNumber) {
  addSecondScreen();
  platform.screens.list[1].screenNumber = 1;
  openHidden();
  EXPECT_EQ(shownAt(1), cornerOf(0));
}

TEST_F(TargetScreen, isTheScreenUnderThePointerWithoutAPreference) {
  addSecondScreen();
  openHidden();
  EXPECT_EQ(shownAt(std::nullopt), cornerOf(1));
}

TEST_F(TargetScreen, ofAnUnpluggedDisplayIsTheScreenUnderThePointerThenTheMainScreen) {
  addSecondScreen();
  openHidden();
  EXPECT_EQ(shownAt(77), cornerOf(1));
  EXPECT_EQ(island->lastPresentedDisplayID(), 2U);
  platform.screens.pointer = {-5000, -5000};
  EXPECT_EQ(shownAt(77), cornerOf(0));
  EXPECT_EQ(island->lastPresentedDisplayID(), 1U);
}

TEST_F(TargetScreen, isFoundByTheLow32BitsOfItsNumber) {
  addSecondScreen();
  platform.screens.list[1].screenNumber = (std::uint64_t{5} << 32) + 9;
  platform.screens.pointer = {100, 700};
  openHidden();
  EXPECT_EQ(shownAt(9), cornerOf(1));
  EXPECT_EQ(island->lastPresentedDisplayID(), 9U);
}

TEST_F(TargetScreen, withoutANumberIsRememberedAsNone) {
  openShown();
  ASSERT_EQ(island->lastPresentedDisplayID(), 1U);
  platform.screens.list[0].screenNumber.reset();
  island->show(std::nullopt);
  EXPECT_EQ(island->lastPresentedDisplayID(), std::nullopt);
}

TEST_F(TargetScreen, theSideSettingChangesNothing) {
  openHidden();
  const Rect<Screen> right = shownAt(1);
  settings.islandSide.set(IslandSide::left);
  EXPECT_EQ(panel().frame(), right);
  EXPECT_EQ(shownAt(1), right);
}

TEST_F(TargetScreen, aStoredPositionIsNotReadForPlacement) {
  settings.displayPositions["1"] = {10, 200};
  openHidden();
  EXPECT_EQ(shownAt(1), cornerOf(0));
}

TEST_F(TargetScreen, aNewSizeStaysOnTheDisplayOfTheLastShow) {
  addSecondScreen();
  openHidden();
  (void)shownAt(1);
  settings.islandSize.set(IslandSize::medium);
  EXPECT_EQ(panel().frame(), cornerOf(0));
  EXPECT_EQ(island->lastPresentedDisplayID(), 1U);
}

TEST_F(TargetScreen, aNewSizeAfterThatDisplayWasUnpluggedGoesToTheScreenUnderThePointer) {
  addSecondScreen();
  openHidden();
  (void)shownAt(2);
  platform.screens.list.pop_back();
  settings.islandSize.set(IslandSize::medium);
  EXPECT_EQ(panel().frame(), cornerOf(0));
  EXPECT_EQ(island->lastPresentedDisplayID(), 1U);
}

TEST_F(TargetScreen, aNewSizeWithNoDisplayRememberedStaysOnThePanelsOwnScreen) {
  addSecondScreen();
  openHidden();
  platform.screens.list[0].screenNumber.reset();
  platform.screens.pointer = {100, 700};
  (void)shownAt(std::nullopt);
  ASSERT_EQ(island->lastPresentedDisplayID(), std::nullopt);
  platform.screens.pointer = {1300, 500};
  settings.islandSize.set(IslandSize::medium);
  EXPECT_EQ(panel().frame(), cornerOf(0));
  EXPECT_EQ(island->lastPresentedDisplayID(), std::nullopt);
}

TEST_F(TargetScreen, aNewSizeOfAPanelOnNoScreenGoesToTheSelectedScreenshotsDisplayThenToThePointers) {
  for (const bool hasDisplay : {true, false}) {
    platform.screens.list = {{{{0, 0}, {1280, 800}}, {{0, 30}, {1280, 770}}, std::nullopt}};
    platform.screens.pointer = {100, 700};
    open();
    ASSERT_EQ(island->lastPresentedDisplayID(), std::nullopt);
    addItem("a.png", false, hasDisplay ? std::optional<DisplayID>(3) : std::nullopt);
    // Other screens, none of which holds the panel; the pointer is on the first.
    platform.screens.list = {{{{5000, 0}, {1000, 800}}, {{5000, 0}, {1000, 800}}, 2},
                             {{{6000, 0}, {1000, 800}}, {{6000, 0}, {1000, 800}}, 3}};
    platform.screens.pointer = {5100, 100};
    settings.islandSize.set(IslandSize::small);
    EXPECT_EQ(panel().frame(), cornerOf(hasDisplay ? 1 : 0));
    EXPECT_EQ(island->lastPresentedDisplayID(), hasDisplay ? 3U : 2U);
  }
}

}  // namespace
}  // namespace quenlio
