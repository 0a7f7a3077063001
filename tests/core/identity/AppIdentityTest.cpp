// What the application is called, which version it is, and which screen is meant.
#include <gtest/gtest.h>
#include <string>

#include "core/identity/AppIdentity.h"
#include "core/identity/ScreenUtilities.h"

#include "tests/fakes/FakeDesktop.h"

namespace quenlio {
namespace {

class Identity : public testing::Test {
 protected:
  [[nodiscard]] std::string name() const { return AppDisplayName::current(process, bundle); }

  FakeProcessInfo process;
  FakeMainBundle bundle;
};

TEST_F(Identity, theNameIsQuenlioWhereNobodySaysOtherwise) {
  EXPECT_EQ(name(), "Quenlio");
}

TEST_F(Identity, theEnvironmentNamesItBeforeTheBundle) {
  process.variables["QUENLIO_APP_DISPLAY_NAME"] = " \n Quenlio Beta\t\n";
  bundle.info = {{"CFBundleDisplayName", "Displayed"}, {"CFBundleName", "Named"}};
  EXPECT_EQ(name(), "Quenlio Beta");
}

TEST_F(Identity, aNameOfBlanksInTheEnvironmentIsIgnored) {
  process.variables["QUENLIO_APP_DISPLAY_NAME"] = " \n\t ";
  EXPECT_EQ(name(), "Quenlio");
  bundle.info["CFBundleName"] = "Named";
  EXPECT_EQ(name(), "Named");
}

TEST_F(Identity, theDisplayedNameOfTheBundleComesBeforeItsPlainOne) {
  bundle.info = {{"CFBundleDisplayName", " Displayed "}, {"CFBundleName", "Named"}};
  EXPECT_EQ(name(), "Displayed");
  bundle.info["CFBundleDisplayName"] = "  ";
  EXPECT_EQ(name(), "Named");
  bundle.info["CFBundleName"] = "\n";
  EXPECT_EQ(name(), "Quenlio");
}

TEST_F(Identity, theVersionIsTheBundlesOr010) {
  EXPECT_EQ(AppVersion::current(bundle), "0.1.0");
  bundle.info["CFBundleShortVersionString"] = "2.7.1";
  EXPECT_EQ(AppVersion::current(bundle), "2.7.1");
}

class ActiveScreen : public testing::Test {
 protected:
  [[nodiscard]] std::optional<DisplayID> displayAt(Point<Screen> pointer) {
    screens.pointer = pointer;
    return ScreenUtilities::activeDisplayID(screens);
  }

  FakeScreens screens;
};

TEST_F(ActiveScreen, isTheFirstWhoseFrameHoldsThePointer) {
  screens.list = {{{{0, 0}, {1280, 800}}, {{0, 0}, {1280, 800}}, 1},
                  {{{1280, 0}, {1920, 1080}}, {{1280, 0}, {1920, 1080}}, 2},
                  {{{0, 0}, {1280, 800}}, {{0, 0}, {1280, 800}}, 3}};
  EXPECT_EQ(displayAt({100, 100}), 1U) << "also where another mirrors it";
  EXPECT_EQ(displayAt({1279.5, 100}), 1U);
  EXPECT_EQ(displayAt({1280, 100}), 2U) << "the left edge belongs to its screen, the right edge does not";
  EXPECT_EQ(displayAt({3199, 1079}), 2U);
}

TEST_F(ActiveScreen, ofScreensAboveOneAnotherTheEdgeBetweenBelongsToTheLowerOne) {
  screens.list = {{{{0, 800}, {1280, 800}}, {{0, 800}, {1280, 800}}, 1},
                  {{{0, 0}, {1280, 800}}, {{0, 0}, {1280, 800}}, 2}};
  EXPECT_EQ(displayAt({100, 800}), 2U);
  EXPECT_EQ(displayAt({100, 800.5}), 1U);
  EXPECT_EQ(displayAt({100, 1600}), 1U);
}

TEST_F(ActiveScreen, countsTheWholeFrameWithTheDesktopsBars) {
  screens.list = {{{{0, 0}, {1280, 800}}, {{0, 30}, {1280, 770}}, 1},
                  {{{0, 800}, {1280, 800}}, {{0, 800}, {1280, 770}}, 2}};
  EXPECT_EQ(displayAt({100, 10}), 1U);
  EXPECT_EQ(displayAt({100, 1590}), 2U);
}

TEST_F(ActiveScreen, isTheMainScreenWhenThePointerIsOnNone) {
  screens.list.push_back({{{1280, 0}, {1920, 1080}}, {{1280, 0}, {1920, 1080}}, 2});
  EXPECT_EQ(displayAt({-5, 100}), 1U);
  EXPECT_EQ(displayAt({100, 900}), 1U);
}

TEST_F(ActiveScreen, isNoneWhereThereIsNoScreen) {
  screens.list.clear();
  EXPECT_EQ(ScreenUtilities::activeScreen(screens), std::nullopt);
  EXPECT_EQ(displayAt({0, 0}), std::nullopt);
}

TEST(DisplayIdentity, isTheScreensNumberCutTo32Bits) {
  EXPECT_EQ(ScreenUtilities::displayID({{}, {}, 7}), 7U);
  EXPECT_EQ(ScreenUtilities::displayID({{}, {}, 0x1'0000'0005ULL}), 5U);
  EXPECT_EQ(ScreenUtilities::displayID({{}, {}, 0xFFFF'FFFFULL}), 0xFFFF'FFFFU);
}

TEST(DisplayIdentity, isNoneForAScreenWithoutANumber) {
  EXPECT_EQ(ScreenUtilities::displayID({{}, {}, std::nullopt}), std::nullopt);
}

}  // namespace
}  // namespace quenlio
