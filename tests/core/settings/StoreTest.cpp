// What a change of a setting announces and writes, and what it does to the login item and the folder.
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <rapidcheck/gtest.h>
#include <string>
#include <vector>

#include "tests/core/settings/SettingsBench.h"

namespace quenlio {
namespace {

class Store : public testing::Test, public SettingsBench {
 protected:
  void SetUp() override {
    start();
    defaults.writes().clear();
  }
};

TEST_F(Store, aWriteAnnouncesThenStoresThenSaves) {
  std::vector<std::string> order;
  const auto subscription = settings->islandSize.subscribe([&](IslandSize next) {
    order.push_back("told " + std::string(rawValue(next)));
    order.push_back("holds " + std::string(rawValue(settings->islandSize.get())));
    order.push_back("stored " + stored<std::string>("islandSize").value_or(""));
  });
  order.clear();
  settings->islandSize.set(IslandSize::medium);
  EXPECT_EQ(order, (std::vector<std::string>{"told medium", "holds extraSmall", "stored extraSmall"}));
  EXPECT_EQ(settings->islandSize.get(), IslandSize::medium);
  EXPECT_EQ(stored<std::string>("islandSize"), "medium");
}

TEST_F(Store, eachOfTheFirstNineSettingsSavesAllNineInOrder) {
  const std::vector<std::function<void(AppSettings&)>> changes{
      [](AppSettings& s) { s.islandEnabled.set(false); },
      [](AppSettings& s) { s.islandDurationMode.set(IslandDurationMode::neverHide); },
      [](AppSettings& s) { s.islandDurationSeconds.set(4); },
      [](AppSettings& s) { s.maxHistory.set(3); },
      [](AppSettings& s) { s.islandSize.set(IslandSize::small); },
      [](AppSettings& s) { s.islandSide.set(IslandSide::left); },
      [](AppSettings& s) { s.pinnedKeepsVisible.set(false); },
      [](AppSettings& s) { s.detectLocationMode.set(ScreenshotLocationMode::manual); },
      [](AppSettings& s) { s.manualScreenshotFolderBookmark.set(std::nullopt); },
  };
  for (const auto& change : changes) {
    defaults.writes().clear();
    change(*settings);
    EXPECT_EQ(writes(), keysOfOneStore());
  }
}

TEST_F(Store, valuesAreWrittenInTheirTypes) {
  settings->islandEnabled.set(false);
  settings->islandDurationMode.set(IslandDurationMode::hideWhenInactive);
  settings->islandDurationSeconds.set(12.5);
  settings->maxHistory.set(25);
  settings->islandSide.set(IslandSide::left);
  settings->pinnedKeepsVisible.set(false);
  settings->detectLocationMode.set(ScreenshotLocationMode::manual);
  settings->manualScreenshotFolderBookmark.set(FakeBookmarks::bytesFor("/x"));
  EXPECT_EQ(stored<bool>("islandEnabled"), false);
  EXPECT_EQ(stored<std::string>("islandDurationMode"), "hideWhenInactive");
  EXPECT_EQ(stored<double>("islandDurationSeconds"), 12.5);
  EXPECT_EQ(stored<std::int64_t>("maxHistory"), 25);
  EXPECT_EQ(stored<std::string>("islandSide"), "left");
  EXPECT_EQ(stored<bool>("pinnedKeepsVisible"), false);
  EXPECT_EQ(stored<std::string>("detectLocationMode"), "manual");
  EXPECT_EQ(stored<Bytes>("manualScreenshotFolderBookmark"), FakeBookmarks::bytesFor("/x"));
}

TEST_F(Store, anAbsentFolderRemovesItsKey) {
  settings->manualScreenshotFolderBookmark.set(FakeBookmarks::bytesFor("/x"));
  settings->manualScreenshotFolderBookmark.set(std::nullopt);
  EXPECT_EQ(defaults.objectForKey("settings.manualScreenshotFolderBookmark"), std::nullopt);
}

TEST_F(Store, aHistoryBelowOneStaysInMemoryAndIsWrittenAsOne) {
  settings->maxHistory.set(0);
  EXPECT_EQ(settings->maxHistory.get(), 0);
  EXPECT_EQ(stored<std::int64_t>("maxHistory"), 1);
  settings->maxHistory.set(-7);
  EXPECT_EQ(settings->maxHistory.get(), -7);
  EXPECT_EQ(stored<std::int64_t>("maxHistory"), 1);
}

TEST_F(Store, anEqualValueIsAnnouncedAndSavedToo) {
  int told = 0;
  const auto subscription = settings->islandEnabled.subscribe([&](bool) { ++told; });
  settings->islandEnabled.set(true);
  EXPECT_EQ(told, 2);
  EXPECT_EQ(writes(), keysOfOneStore());
}

TEST_F(Store, anEditOfASettingSavesLikeAWrite) {
  settings->maxHistory.mutate([](std::int64_t& number) { ++number; });
  EXPECT_EQ(settings->maxHistory.get(), 11);
  EXPECT_EQ(writes(), keysOfOneStore());
  EXPECT_EQ(stored<std::int64_t>("maxHistory"), 11);
}

TEST_F(Store, theLoginSettingWritesItsOwnKeyAlone) {
  settings->launchAtLogin.set(true);
  EXPECT_EQ(writes(), std::vector<std::string>{"settings.launchAtLogin"});
  EXPECT_EQ(stored<bool>("launchAtLogin"), true);
}

TEST_F(Store, positionsAreWrittenOnlyWhenAskedAsCompactJSON) {
  settings->displayPositions["2"] = {1204.5, 880};
  EXPECT_EQ(writes(), std::vector<std::string>{});
  settings->storePositions();
  EXPECT_EQ(writes(), std::vector<std::string>{"settings.displayPositions"});
  EXPECT_EQ(stored<Bytes>("displayPositions"), FakeBookmarks::bytesFor(R"({"2":{"x":1204.5,"y":880}})"));
}

TEST_F(Store, positionsThatJSONCannotHoldAreNotWritten) {
  settings->displayPositions["1"] = {1, 2};
  settings->storePositions();
  const auto before = stored<Bytes>("displayPositions");
  for (const double bad : {std::numeric_limits<double>::infinity(), std::nan("")}) {
    settings->displayPositions["2"] = {0, bad};
    settings->storePositions();
    EXPECT_EQ(stored<Bytes>("displayPositions"), before);
  }
  EXPECT_EQ(systemLog.lines, std::vector<std::string>{});
}

RC_GTEST_PROP(StoreProperty, anyPositionsComeBackAtTheNextStart, ()) {
  SettingsBench bench;
  AppSettings& first = bench.start();
  const auto finite = rc::gen::arbitrary<double>();
  for (const auto id : *rc::gen::arbitrary<std::vector<std::uint32_t>>()) {
    first.displayPositions[std::to_string(id)] = {*finite, *finite};
  }
  first.storePositions();
  const auto expected = first.displayPositions;
  RC_ASSERT(bench.start().displayPositions == expected);
}

// The raw values of all cases in order, each of which leads back to its case.
template <class Enumeration>
std::vector<std::string_view> rawValues() {
  std::vector<std::string_view> names;
  for (const Enumeration value : allCases<Enumeration>()) {
    names.push_back(rawValue(value));
    EXPECT_EQ(fromRawValue<Enumeration>(names.back()), value);
  }
  return names;
}

TEST(RawValues, areTheCasesNamesInOrder) {
  using Names = std::vector<std::string_view>;
  EXPECT_EQ(rawValues<IslandDurationMode>(), (Names{"timed", "neverHide", "hideWhenInactive"}));
  EXPECT_EQ(rawValues<IslandSize>(), (Names{"extraSmall", "small", "medium", "large", "xLarge"}));
  EXPECT_EQ(rawValues<IslandSide>(), (Names{"right", "left"}));
  EXPECT_EQ(rawValues<ScreenshotLocationMode>(), (Names{"auto", "manual"}));
}

TEST(RawValues, anyOtherTextIsNoCase) {
  for (const char* text : {"", "Left", "LEFT", " left", "automatic", "huge"}) {
    EXPECT_EQ(fromRawValue<IslandSide>(text), std::nullopt) << text;
    EXPECT_EQ(fromRawValue<ScreenshotLocationMode>(text), std::nullopt) << text;
    EXPECT_EQ(fromRawValue<IslandSize>(text), std::nullopt) << text;
    EXPECT_EQ(fromRawValue<IslandDurationMode>(text), std::nullopt) << text;
  }
}

class LoginItemSetting : public Store {
 protected:
  void SetUp() override {
    bundle.url = FileURL("/opt/Quenlio.app");
    Store::SetUp();
    loginItem.changes = 0;
    loginItem.questions = 0;
  }
};

TEST_F(LoginItemSetting, isAskedForTwiceAtEachStart) {
  start();
  EXPECT_EQ(loginItem.questions, 2);
}

TEST_F(LoginItemSetting, outsideABundleItIsStoredAndTheLoginItemIsNeverAsked) {
  bundle.url = FileURL("/opt/quenlio/bin");
  start();
  settings->launchAtLogin.set(true);
  EXPECT_EQ(stored<bool>("launchAtLogin"), true);
  EXPECT_EQ(loginItem.questions, 0);
  EXPECT_EQ(loginItem.changes, 0);
}

TEST_F(LoginItemSetting, switchingItOnRegistersUnlessThatIsDoneOrAwaitsApproval) {
  for (const auto& [status, changes] : {std::pair(LoginItemStatus::notRegistered, 1),
                                        {LoginItemStatus::notFound, 1},
                                        {LoginItemStatus::enabled, 0},
                                        {LoginItemStatus::requiresApproval, 0}}) {
    loginItem.current = status;
    loginItem.changes = 0;
    settings->launchAtLogin.set(true);
    EXPECT_EQ(loginItem.changes, changes) << static_cast<int>(status);
    EXPECT_EQ(loginItem.current, changes == 1 ? LoginItemStatus::enabled : status);
  }
}

TEST_F(LoginItemSetting, switchingItOffUnregistersWhatIsRegistered) {
  for (const auto& [status, changes] : {std::pair(LoginItemStatus::notRegistered, 0),
                                        {LoginItemStatus::notFound, 0},
                                        {LoginItemStatus::enabled, 1},
                                        {LoginItemStatus::requiresApproval, 1}}) {
    loginItem.current = status;
    loginItem.changes = 0;
    settings->launchAtLogin.set(false);
    EXPECT_EQ(loginItem.changes, changes) << static_cast<int>(status);
    EXPECT_EQ(loginItem.current, changes == 1 ? LoginItemStatus::notRegistered : status);
  }
}

TEST_F(LoginItemSetting, aFailureIsLoggedAndTheSettingStays) {
  loginItem.fails = true;
  settings->launchAtLogin.set(true);
  EXPECT_EQ(systemLog.lines, std::vector<std::string>{"Failed to set launch-at-login: not allowed"});
  EXPECT_TRUE(settings->launchAtLogin.get());
  EXPECT_EQ(stored<bool>("launchAtLogin"), true);
}

class ManualFolder : public Store {};

TEST_F(ManualFolder, asksWithTheGivenDialog) {
  settings->chooseManualFolder();
  ASSERT_EQ(openPanel.requests.size(), 1U);
  const OpenPanelRequest& request = openPanel.requests.front();
  EXPECT_EQ(request.prompt, "Select");
  EXPECT_EQ(request.message, "Choose the folder where screenshots are saved.");
  EXPECT_TRUE(request.canChooseDirectories);
  EXPECT_FALSE(request.canChooseFiles);
  EXPECT_FALSE(request.allowsMultipleSelection);
  EXPECT_TRUE(request.canCreateDirectories);
}

TEST_F(ManualFolder, anUnconfirmedDialogChangesNothing) {
  settings->chooseManualFolder();
  EXPECT_EQ(writes(), std::vector<std::string>{});
  EXPECT_EQ(settings->detectLocationMode.get(), ScreenshotLocationMode::automatic);
}

TEST_F(ManualFolder, aConfirmedOneSetsTheFolderFirstAndThenTheModeSavingTwice) {
  openPanel.answer = FileURL("/shots");
  std::vector<std::string> order;
  const auto folder =
      settings->manualScreenshotFolderBookmark.subscribe([&](const auto&) { order.push_back("folder"); });
  const auto mode = settings->detectLocationMode.subscribe([&](const auto&) {
    order.push_back(settings->manualScreenshotFolderBookmark.get() ? "mode with folder" : "mode");
  });
  order.clear();
  settings->chooseManualFolder();
  EXPECT_EQ(order, (std::vector<std::string>{"folder", "mode with folder"}));
  EXPECT_EQ(settings->manualScreenshotFolderBookmark.get(), FakeBookmarks::bytesFor("/shots"));
  EXPECT_EQ(settings->detectLocationMode.get(), ScreenshotLocationMode::manual);
  EXPECT_EQ(defaults.writes().count("settings.manualScreenshotFolderBookmark"), 2);
  EXPECT_EQ(defaults.writes().count("settings.islandEnabled"), 2);
}

TEST_F(ManualFolder, aBookmarkThatCannotBeMadeIsLoggedAndChangesNothing) {
  openPanel.answer = FileURL("/shots");
  bookmarks.makingFails = true;
  settings->chooseManualFolder();
  EXPECT_EQ(systemLog.lines,
            std::vector<std::string>{"Failed to create security-scoped bookmark: no bookmark for this folder"});
  EXPECT_EQ(writes(), std::vector<std::string>{});
  EXPECT_EQ(settings->detectLocationMode.get(), ScreenshotLocationMode::automatic);
  EXPECT_EQ(settings->manualScreenshotFolderBookmark.get(), std::nullopt);
}

}  // namespace
}  // namespace quenlio
