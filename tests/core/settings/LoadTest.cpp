// What a start makes of the stored settings: most of them fall back, which the order of reading decides.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <string>
#include <vector>

#include "core/base/SharedBinding.h"

#include "tests/core/settings/SettingsBench.h"
#include "tests/harness/TestPlatform.h"

namespace quenlio {
namespace {

class Load : public testing::Test, public SettingsBench {};

TEST_F(Load, anEmptyStoreGivesTheDefaults) {
  const AppSettings& loaded = start();
  EXPECT_TRUE(loaded.islandEnabled.get());
  EXPECT_EQ(loaded.islandDurationMode.get(), IslandDurationMode::timed);
  EXPECT_EQ(loaded.islandDurationSeconds.get(), 30.0);
  EXPECT_EQ(loaded.maxHistory.get(), 10);
  EXPECT_EQ(loaded.islandSize.get(), IslandSize::extraSmall);
  EXPECT_EQ(loaded.islandSide.get(), IslandSide::right);
  EXPECT_TRUE(loaded.pinnedKeepsVisible.get());
  EXPECT_EQ(loaded.detectLocationMode.get(), ScreenshotLocationMode::automatic);
  EXPECT_EQ(loaded.manualScreenshotFolderBookmark.get(), std::nullopt);
  EXPECT_FALSE(loaded.launchAtLogin.get());
  EXPECT_TRUE(loaded.displayPositions.empty());
}

TEST_F(Load, savesAllNineAfterEachOfTheFirstNineAndTheLoginSettingOnce) {
  start();
  std::vector<std::string> expected;
  for (int i = 0; i < 9; ++i) {
    const auto keys = keysOfOneStore();
    expected.insert(expected.end(), keys.begin(), keys.end());
  }
  expected.emplace_back("settings.launchAtLogin");
  EXPECT_EQ(writes(), expected) << "and the positions are not written at all";
}

TEST_F(Load, onlyThreeSettingsOutliveARestart) {
  AppSettings& first = start();
  first.islandEnabled.set(false);
  first.islandDurationMode.set(IslandDurationMode::neverHide);
  first.islandDurationSeconds.set(5.0);
  first.maxHistory.set(50);
  first.islandSize.set(IslandSize::large);
  first.islandSide.set(IslandSide::left);
  first.pinnedKeepsVisible.set(false);
  first.manualScreenshotFolderBookmark.set(FakeBookmarks::bytesFor("/shots"));
  first.detectLocationMode.set(ScreenshotLocationMode::manual);
  first.launchAtLogin.set(true);
  first.displayPositions["2"] = {1, 2};
  first.storePositions();

  const AppSettings& second = start();
  EXPECT_FALSE(second.islandEnabled.get());
  EXPECT_TRUE(second.launchAtLogin.get());
  EXPECT_EQ(second.displayPositions.at("2"), (DisplayPosition{1, 2}));

  EXPECT_EQ(second.islandDurationMode.get(), IslandDurationMode::timed);
  EXPECT_EQ(second.islandDurationSeconds.get(), 30.0);
  EXPECT_EQ(second.maxHistory.get(), 10);
  EXPECT_EQ(second.islandSize.get(), IslandSize::extraSmall);
  EXPECT_EQ(second.islandSide.get(), IslandSide::right);
  EXPECT_TRUE(second.pinnedKeepsVisible.get());
  EXPECT_EQ(second.detectLocationMode.get(), ScreenshotLocationMode::automatic);
  EXPECT_EQ(second.manualScreenshotFolderBookmark.get(), std::nullopt);
}

TEST_F(Load, afterARestartTheChosenFolderIsGoneFromTheStoreToo) {
  openPanel.answer = FileURL("/shots");
  start().chooseManualFolder();
  EXPECT_TRUE(stored<Bytes>("manualScreenshotFolderBookmark"));
  start();
  EXPECT_EQ(stored<std::string>("detectLocationMode"), "auto");
  EXPECT_EQ(defaults.objectForKey("settings.manualScreenshotFolderBookmark"), std::nullopt);
}

TEST_F(Load, aStoredHistoryOfNoneIsTheDefaultAfterTheStart) {
  defaults.setObject("settings.maxHistory", std::int64_t{0});
  EXPECT_EQ(start().maxHistory.get(), 10);
  EXPECT_EQ(stored<std::int64_t>("maxHistory"), 10);
}

TEST_F(Load, anUnknownSizeIsTheSmallestOne) {
  defaults.setObject("settings.islandSize", std::string("huge"));
  EXPECT_EQ(start().islandSize.get(), IslandSize::extraSmall);
  EXPECT_EQ(stored<std::string>("islandSize"), "extraSmall");
}

TEST_F(Load, aValueOfAnotherTypeCountsAsMissing) {
  defaults.setObject("settings.islandEnabled", std::int64_t{0});
  defaults.setObject("settings.launchAtLogin", std::string("true"));
  defaults.setObject("settings.displayPositions", std::string(R"({"1":{"x":1,"y":2}})"));
  const AppSettings& loaded = start();
  EXPECT_TRUE(loaded.islandEnabled.get());
  EXPECT_FALSE(loaded.launchAtLogin.get());
  EXPECT_TRUE(loaded.displayPositions.empty());
}

TEST_F(Load, positionsAreReadFromTheirJSON) {
  defaults.setObject("settings.displayPositions",
                     FakeBookmarks::bytesFor(R"({"2":{"x":1204.5,"y":880},"4294967295":{"x":-3,"y":0.25}})"));
  EXPECT_EQ(start().displayPositions,
            (std::map<std::string, DisplayPosition>{{"2", {1204.5, 880}}, {"4294967295", {-3, 0.25}}}));
}

TEST_F(Load, positionsThatCannotBeDecodedLeaveTheMapEmptySilently) {
  for (const char* text : {"", "{", "[]", "1", R"({"2":{"x":1}})", R"({"2":{"x":1,"y":"2"}})", R"({"2":3})",
                           R"({"2":{"x":null,"y":1}})", R"({"1":{"x":1,"y":2},"2":{}})"}) {
    defaults.setObject("settings.displayPositions", FakeBookmarks::bytesFor(text));
    EXPECT_TRUE(start().displayPositions.empty()) << text;
    EXPECT_EQ(systemLog.lines, std::vector<std::string>{});
  }
}

TEST_F(Load, anEarlierNamesIslandSwitchArrivesAndHolds) {
  previous.setObject("settings.islandEnabled", false);
  EXPECT_FALSE(start().islandEnabled.get());
  EXPECT_EQ(stored<bool>("islandEnabled"), false);
}

TEST_F(Load, theOtherTakenOverSettingsFallBackLikeStoredOnes) {
  previous.setObject("settings.islandSize", std::string("large"));
  EXPECT_EQ(start().islandSize.get(), IslandSize::extraSmall);
}

TEST_F(Load, onlyKeysOfSettingsAreTakenOver) {
  previous.setObject("settings.other", std::string("value"));
  previous.setObject("onboarding.state", std::string("done"));
  previous.setObject("mysettings.x", true);
  previous.setObject("settings", true);
  start();
  EXPECT_EQ(defaults.objectForKey("settings.other"), DefaultsObject(std::string("value")));
  EXPECT_EQ(defaults.objectForKey("onboarding.state"), std::nullopt);
  EXPECT_EQ(defaults.objectForKey("mysettings.x"), std::nullopt);
  EXPECT_EQ(defaults.objectForKey("settings"), std::nullopt);
}

TEST_F(Load, ofAKeyInBothStoresTheNewOneWins) {
  previous.setObject("settings.islandEnabled", true);
  defaults.setObject("settings.islandEnabled", false);
  previous.setObject("settings.custom", std::string("old"));
  defaults.setObject("settings.custom", std::int64_t{1});
  EXPECT_FALSE(start().islandEnabled.get());
  EXPECT_EQ(defaults.objectForKey("settings.custom"), DefaultsObject(std::int64_t{1}))
      << "an object of any type counts as one";
}

TEST_F(Load, theTakeoverCopiesEveryTypeBeforeAnythingIsRead) {
  previous.setObject("settings.a", true);
  previous.setObject("settings.b", 1.5);
  previous.setObject("settings.c", FakeBookmarks::bytesFor("x"));
  start();
  EXPECT_EQ(defaults.objectForKey("settings.a"), DefaultsObject(true));
  EXPECT_EQ(defaults.objectForKey("settings.b"), DefaultsObject(1.5));
  EXPECT_EQ(defaults.objectForKey("settings.c"), DefaultsObject(FakeBookmarks::bytesFor("x")));
  const auto all = writes();
  EXPECT_EQ(std::vector<std::string>(all.begin(), all.begin() + 4),
            (std::vector<std::string>{"settings.a", "settings.b", "settings.c", "settings.islandEnabled"}));
}

TEST_F(Load, theTakeoverIsRepeatedAtEachStartAndLeavesTheOldStoreAlone) {
  previous.setObject("settings.custom", std::string("old"));
  previous.writes().clear();
  start();
  defaults.removeObjectForKey("settings.custom");
  start();
  EXPECT_EQ(defaults.objectForKey("settings.custom"), DefaultsObject(std::string("old")));
  EXPECT_EQ(previous.writes().calls(), std::vector<std::string>{});
}

TEST_F(Load, withoutAnEarlierStoreNothingIsTakenOver) {
  previous.setObject("settings.custom", true);
  hasPrevious = false;
  start();
  EXPECT_EQ(defaults.objectForKey("settings.custom"), std::nullopt);
}

TEST_F(Load, theSharedSettingsAreTheBoundOnes) {
  AppSettings& running = start();
  const SharedBinding<AppSettings> binding(running);
  EXPECT_EQ(&AppSettings::shared(), &running);
}

RC_GTEST_PROP(LoadProperty, whateverTheStoreHeldEightSettingsStartAtTheirDefaults,
              (const std::string& text, std::int64_t integer, double number, bool flag)) {
  SettingsBench bench;
  for (const std::string& key : keysOfOneStore()) {
    const auto kind = *rc::gen::inRange(0, 5);
    const DefaultsObject object = kind == 0   ? DefaultsObject(text)
                                  : kind == 1 ? DefaultsObject(integer)
                                  : kind == 2 ? DefaultsObject(number)
                                  : kind == 3 ? DefaultsObject(flag)
                                              : DefaultsObject(FakeBookmarks::bytesFor(text));
    bench.defaults.setObject(key.starts_with("remove ") ? key.substr(7) : key, object);
  }
  const auto enabled = bench.stored<bool>("islandEnabled");
  const AppSettings& loaded = bench.start();
  RC_ASSERT(loaded.islandEnabled.get() == enabled.value_or(true));
  RC_ASSERT(loaded.islandDurationMode.get() == IslandDurationMode::timed);
  RC_ASSERT(loaded.islandDurationSeconds.get() == 30.0);
  RC_ASSERT(loaded.maxHistory.get() == 10);
  RC_ASSERT(loaded.islandSize.get() == IslandSize::extraSmall);
  RC_ASSERT(loaded.islandSide.get() == IslandSide::right);
  RC_ASSERT(loaded.pinnedKeepsVisible.get());
  RC_ASSERT(loaded.detectLocationMode.get() == ScreenshotLocationMode::automatic);
  RC_ASSERT(!loaded.manualScreenshotFolderBookmark.get());
}

TEST(SettingsOfTheApplication, areTheStandardStoresAndTakeOverTheEarlierName) {
  TestPlatform platform;
  platform.defaults.initWithSuiteName("com.velmarin.app")->setObject("settings.islandEnabled", false);
  const auto app = platform.makeApp();
  EXPECT_FALSE(app->settings().islandEnabled.get());
  EXPECT_EQ(platform.defaults.standardUserDefaults().object<bool>("settings.islandEnabled"), false);
}

TEST(SettingsOfTheApplication, areThoseOfTheScriptedRunsSuiteWhereOneIsNamed) {
  TestPlatform platform;
  platform.configuration.defaultsSuiteName = "run";
  platform.defaults.initWithSuiteName("run")->setObject("settings.islandEnabled", false);
  const auto app = platform.makeApp();
  EXPECT_FALSE(app->settings().islandEnabled.get());
  EXPECT_EQ(platform.defaults.standardUserDefaults().writes().calls(), std::vector<std::string>{});
}

TEST(SettingsOfTheApplication, doWithoutAnEarlierStoreThatThePlatformRefuses) {
  TestPlatform platform;
  platform.defaults.refused.insert("com.velmarin.app");
  EXPECT_TRUE(platform.makeApp()->settings().islandEnabled.get());
}

}  // namespace
}  // namespace quenlio
