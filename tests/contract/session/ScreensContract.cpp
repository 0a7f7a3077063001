// What every desktop tells of its screens and of the pointer.
#include <algorithm>
#include <gtest/gtest.h>
#include <optional>
#include <set>

#include "desktop/linux/session/QtScreens.h"

#include "tests/desktop/session/Desk.h"
#include "tests/fakes/FakeDesktop.h"

namespace quenlio {
namespace {

// One screen; the arrangements are of the fake's own making.
struct FakeKind {
  FakeScreens fake;
  const Screens& screens() { return fake; }
  static bool waitFor(const std::function<bool()>& condition) { return condition(); }
  // The desktop that it starts with has one.
  [[nodiscard]] static bool showBar() { return true; }
  void addScreen() {
    const Rect<Screen> right{{1280, 0}, {1280, 800}};
    fake.list.push_back({right, right, 2});
  }
  void removeScreen() { fake.list.pop_back(); }
  void putPointer(double fromLeft, double fromTop) {
    fake.pointer = {fromLeft, fake.list.front().frame.maxY() - fromTop};
  }
};

struct RealKind {
  QtScreens real;
  std::optional<OtherProgram> bar;
  std::optional<TwoMonitors> monitors;
  const Screens& screens() { return real; }
  static bool waitFor(const std::function<bool()>& condition) { return waitUntil(condition); }
  [[nodiscard]] bool showBar() {
    bar.emplace();
    return bar->showAsBar(kBarHeight);
  }
  void addScreen() { monitors.emplace(); }
  void removeScreen() { monitors.reset(); }
  static void putPointer(int fromLeft, int fromTop) { movePointer(fromLeft, fromTop); }

  static constexpr int kBarHeight = 30;
};

template <class Kind>
class ScreensContract : public testing::Test {
 protected:
  [[nodiscard]] std::vector<ScreenInfo> all() { return kind.screens().screens(); }
  [[nodiscard]] std::set<std::optional<std::uint64_t>> numbers() {
    std::set<std::optional<std::uint64_t>> found;
    for (const ScreenInfo& screen : all()) {
      found.insert(screen.screenNumber);
    }
    return found;
  }
  void expectVisibleFramesInside() {
    for (const ScreenInfo& screen : all()) {
      EXPECT_GE(screen.visibleFrame.minX(), screen.frame.minX());
      EXPECT_GE(screen.visibleFrame.minY(), screen.frame.minY());
      EXPECT_LE(screen.visibleFrame.maxX(), screen.frame.maxX());
      EXPECT_LE(screen.visibleFrame.maxY(), screen.frame.maxY());
      EXPECT_GT(screen.visibleFrame.size.width, 0);
      EXPECT_GT(screen.visibleFrame.size.height, 0);
    }
  }

  Kind kind;
};

using Kinds = testing::Types<FakeKind, RealKind>;
TYPED_TEST_SUITE(ScreensContract, Kinds);

TYPED_TEST(ScreensContract, theMainScreenIsOneOfThemAndBeginsAtTheOrigin) {
  for (const bool hasTwo : {false, true}) {
    if (hasTwo) {
      this->kind.addScreen();
    }
    const auto main = this->kind.screens().mainScreen();
    ASSERT_TRUE(main);
    EXPECT_EQ(std::ranges::count(this->all(), *main), 1);
    EXPECT_EQ(main->frame.origin, (Point<Screen>{0, 0}));
  }
}

TYPED_TEST(ScreensContract, aBarAtTheBottomTakesFromTheSmallEndOfY) {
  ASSERT_TRUE(this->kind.showBar());
  ASSERT_TRUE(this->kind.waitFor([this] { return this->all().front().visibleFrame != this->all().front().frame; }));
  const ScreenInfo screen = this->all().front();
  EXPECT_EQ(screen.visibleFrame, (Rect<Screen>{{screen.frame.minX(), screen.frame.minY() + 30},
                                               {screen.frame.size.width, screen.frame.size.height - 30}}));
}

TYPED_TEST(ScreensContract, visibleFramesLieInsideTheScreens) {
  ASSERT_TRUE(this->kind.showBar());
  this->expectVisibleFramesInside();
  this->kind.addScreen();
  this->expectVisibleFramesInside();
}

TYPED_TEST(ScreensContract, screensHaveNumbersOfTheirOwnThatStay) {
  const auto one = this->numbers();
  ASSERT_EQ(one.size(), 1U);
  EXPECT_NE(*one.begin(), std::nullopt);
  EXPECT_EQ(this->numbers(), one);
  this->kind.addScreen();
  const auto two = this->numbers();
  EXPECT_EQ(two.size(), 2U);
  EXPECT_FALSE(two.contains(std::nullopt));
  this->kind.removeScreen();
  EXPECT_EQ(this->numbers(), one);
  this->kind.addScreen();
  EXPECT_EQ(this->numbers(), two);
}

TYPED_TEST(ScreensContract, screensDoNotOverlap) {
  this->kind.addScreen();
  const auto all = this->all();
  ASSERT_EQ(all.size(), 2U);
  const Rect<Screen>& a = all[0].frame;
  const Rect<Screen>& b = all[1].frame;
  EXPECT_TRUE(a.maxX() <= b.minX() || b.maxX() <= a.minX() || a.maxY() <= b.minY() || b.maxY() <= a.minY());
}

TYPED_TEST(ScreensContract, thePointersPlaceGrowsUpward) {
  const Rect<Screen> frame = this->kind.screens().mainScreen()->frame;
  this->kind.putPointer(100, 200);
  const Point<Screen> pointer = this->kind.screens().mouseLocation();
  EXPECT_TRUE(frame.contains(pointer));
  EXPECT_NEAR(pointer.x, frame.minX() + 100, 1);
  EXPECT_NEAR(pointer.y, frame.maxY() - 200, 1);
  this->kind.putPointer(100, 300);
  EXPECT_LT(this->kind.screens().mouseLocation().y, pointer.y);
}

}  // namespace
}  // namespace quenlio
