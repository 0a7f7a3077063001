// Settings outlive the program, and damage.
#include "tests/desktop/system/JsonUserDefaultsTest.h"

#include <array>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <sys/stat.h>

#include "desktop/linux/system/RegularFile.h"

#include "tests/desktop/system/FullDisk.h"

namespace quenlio {
namespace {

TEST_F(JsonUserDefaultsTest, readsEveryTypeBackAsItWas) {
  const std::string oddText("a/\"\\\n\0\xFF\xC3\x28 \xF4\x8F\xBF\xBF é", 18);
  const std::map<std::string, DefaultsObject> objects{
      {"yes", true},
      {"no", false},
      {"one", std::int64_t{1}},
      {"least", std::numeric_limits<std::int64_t>::min()},
      {"most", std::numeric_limits<std::int64_t>::max()},
      {"one point", 1.0},
      {"fraction", 0.1},
      {"large", 1e300},
      {"endless", std::numeric_limits<double>::infinity()},
      {"text", std::string("word")},
      {"odd text", oddText},
      {"empty text", std::string()},
      {std::string("odd key \xFF/\0", 11), std::string("x")},
      {"", std::string("key without letters")},
      {"no bytes", Bytes{}},
      {"a byte", Bytes{std::byte{0xFF}}},
      {"bytes", Bytes{std::byte{0}, std::byte{1}, std::byte{254}, std::byte{62}, std::byte{63}}}};
  auto store = opened();
  for (const auto& [key, object] : objects) {
    store.setObject(key, object);
    EXPECT_EQ(store.objectForKey(key), object) << key;
  }
  const auto next = opened();
  for (const auto& [key, object] : objects) {
    EXPECT_EQ(next.objectForKey(key), object) << key;
  }
  EXPECT_EQ(next.dictionaryRepresentation(), objects);
}

TEST_F(JsonUserDefaultsTest, keepsTheTypesApart) {
  auto store = opened();
  store.setObject("value", std::int64_t{1});
  EXPECT_EQ(opened().object<std::int64_t>("value"), 1);
  EXPECT_EQ(opened().object<double>("value"), std::nullopt);
  EXPECT_FALSE(opened().boolForKey("value"));
  store.setObject("value", 1.0);
  EXPECT_EQ(opened().object<double>("value"), 1.0);
  EXPECT_EQ(opened().object<std::int64_t>("value"), std::nullopt);
  store.setObject("value", true);
  EXPECT_TRUE(opened().boolForKey("value"));
  EXPECT_EQ(opened().object<std::string>("value"), std::nullopt);
}

TEST_F(JsonUserDefaultsTest, forgetsWhatIsRemoved) {
  auto store = opened();
  store.setObject("value", true);
  store.removeObjectForKey("value");
  store.removeObjectForKey("never there");
  EXPECT_EQ(store.objectForKey("value"), std::nullopt);
  EXPECT_TRUE(opened().dictionaryRepresentation().empty());
}

TEST_F(JsonUserDefaultsTest, leavesNoTraceWhenNothingIsSet) {
  auto store = opened();
  store.removeObjectForKey("value");
  EXPECT_EQ(store.objectForKey("value"), std::nullopt);
  EXPECT_FALSE(fs::exists(root_ / "config"));
}

TEST_F(JsonUserDefaultsTest, touchesNoFileWhenNothingChanges) {
  auto store = opened();
  store.setObject("value", 3.0);
  struct stat before {};
  ASSERT_EQ(::stat(file().c_str(), &before), 0);
  store.setObject("value", 3.0);
  store.removeObjectForKey("other");
  auto other = opened();
  other.setObject("value", 3.0);
  struct stat after {};
  ASSERT_EQ(::stat(file().c_str(), &after), 0);
  EXPECT_EQ(stampOf(before), stampOf(after));
  store.setObject("value", std::int64_t{3});
  ASSERT_EQ(::stat(file().c_str(), &after), 0);
  EXPECT_NE(stampOf(before), stampOf(after));
}

TEST_F(JsonUserDefaultsTest, isForTheUserAlone) {
  opened().setObject("value", true);
  struct stat status {};
  ASSERT_EQ(::stat(file().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & ALLPERMS, 0600U);
  ASSERT_EQ(::stat(folder_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & ALLPERMS, 0700U);
}

TEST_F(JsonUserDefaultsTest, writesThroughALink) {
  fs::create_directories(folder_);
  fs::create_symlink(root_ / "elsewhere.json", file());
  std::ofstream(root_ / "elsewhere.json") << R"({"old": {"bool": true}})";
  auto store = opened();
  store.setObject("value", std::int64_t{3});
  EXPECT_TRUE(fs::is_symlink(file()));
  EXPECT_EQ(JsonUserDefaults(FileURL(root_.string()), "elsewhere").dictionaryRepresentation().size(), 2U);
}

TEST_F(JsonUserDefaultsTest, countsADamagedFileAsEmptyAndKeepsIt) {
  const std::array<std::string, 4> damaged{"{\"half\": {\"bo", "[1, 2]", "", std::string("\0\0\0", 3)};
  for (const auto& text : damaged) {
    writeFile(text);
    auto store = opened();
    EXPECT_TRUE(store.dictionaryRepresentation().empty());
    EXPECT_FALSE(fs::exists(file()));
    store.setObject("value", true);
    EXPECT_TRUE(opened().boolForKey("value"));
  }
  EXPECT_EQ(contents(file(".json.damaged")), damaged[0]);
  EXPECT_EQ(contents(file(".json.damaged-2")), damaged[1]);
  EXPECT_EQ(contents(file(".json.damaged-3")), damaged[2]);
  EXPECT_EQ(contents(file(".json.damaged-4")), damaged[3]);
}

TEST_F(JsonUserDefaultsTest, keepsADamagedFileBeforeItsFirstWrite) {
  writeFile("damaged");
  opened().setObject("value", true);
  EXPECT_EQ(contents(file(".json.damaged")), "damaged");
  EXPECT_TRUE(opened().boolForKey("value"));
}

TEST_F(JsonUserDefaultsTest, noticesDamageWhileItRuns) {
  auto store = opened();
  store.setObject("value", true);
  writeFile("damaged");
  EXPECT_FALSE(store.boolForKey("value"));
  EXPECT_EQ(contents(file(".json.damaged")), "damaged");
}

TEST_F(JsonUserDefaultsTest, leavesOutEntriesThatItDoesNotKnowAndKeepsThemInTheFile) {
  writeFile(R"({"future": {"date": "2026-11-15"}, "bare": 3, "two": {"bool": true, "integer": 1},
               "wrong": {"bool": 1}, "large": {"integer": 18446744073709551615}, "half": {"integer": 1.5},
               "data": {"data": "a?=="}, "nothing": null, "good": {"string": "yes"}})");
  auto store = opened();
  EXPECT_EQ(store.dictionaryRepresentation(), (std::map<std::string, DefaultsObject>{{"good", std::string("yes")}}));
  EXPECT_EQ(store.objectForKey("future"), std::nullopt);
  store.setObject("good", std::string("no"));
  store.setObject("wrong", false);
  const auto kept = json::read(contents(file()));
  ASSERT_TRUE(kept);
  EXPECT_EQ(kept->size(), 9U);
  EXPECT_EQ((*kept)["future"], json::Value({{"date", "2026-11-15"}}));
  EXPECT_EQ((*kept)["large"]["integer"], 18446744073709551615U);
  EXPECT_EQ((*kept)["nothing"], nullptr);
  EXPECT_EQ((*kept)["good"]["string"], "no");
  EXPECT_EQ(opened().object<bool>("wrong"), false);
}

TEST_F(JsonUserDefaultsTest, livesInMemoryWhereNoFolderCanBe) {
  std::ofstream(root_ / "config") << "a file where the folder would be";
  auto store = opened();
  store.setObject("value", std::int64_t{3});
  store.setObject("gone", true);
  store.removeObjectForKey("gone");
  EXPECT_EQ(store.object<std::int64_t>("value"), 3);
  EXPECT_EQ(store.dictionaryRepresentation().size(), 1U);
  fs::remove(root_ / "config");
  store.setObject("later", true);
  EXPECT_EQ(opened().object<std::int64_t>("value"), 3);
  EXPECT_TRUE(opened().boolForKey("later"));
}

TEST_F(JsonUserDefaultsTest, livesInMemoryWhereNothingCanBeWritten) {
  opened().setObject("old", true);
  opened().setObject("removed", true);
  const std::string before = contents(file());
  fs::remove(file(".lock"));
  fs::create_directory(file(".lock"));  // no lock can be had, whoever asks
  auto store = opened();
  store.setObject("value", std::int64_t{3});
  store.removeObjectForKey("removed");
  EXPECT_TRUE(store.boolForKey("old"));
  EXPECT_EQ(store.object<std::int64_t>("value"), 3);
  EXPECT_EQ(store.objectForKey("removed"), std::nullopt);
  EXPECT_EQ(store.dictionaryRepresentation().size(), 2U);
  EXPECT_EQ(contents(file()), before);
}

TEST_F(JsonUserDefaultsTest, keepsTheOldSettingsWholeWhereThereIsNoRoomForTheNewOnes) {
  const std::string longText(5000, 'x');
  auto store = opened();
  store.setObject("old", std::int64_t{3});
  const std::string before = contents(file());
  {
    const FullDisk disk(1000);
    store.setObject("long", longText);
    store.removeObjectForKey("old");
    EXPECT_EQ(contents(file()), before);
    EXPECT_EQ(opened().object<std::int64_t>("old"), 3) << "the next run finds what was there";
    EXPECT_EQ(store.object<std::string>("long"), longText) << "this one lives on with its own values";
    EXPECT_EQ(store.objectForKey("old"), std::nullopt);
  }
  store.setObject("later", true);
  EXPECT_EQ(opened().dictionaryRepresentation(),
            (std::map<std::string, DefaultsObject>{{"long", longText}, {"later", true}}));
}

TEST_F(JsonUserDefaultsTest, neverReplacesWhatItCannotRead) {
  fs::create_directories(file());  // a folder has the file's name
  auto store = opened();
  store.setObject("value", true);
  EXPECT_TRUE(store.boolForKey("value"));
  EXPECT_TRUE(fs::is_directory(file()));
}

TEST_F(JsonUserDefaultsTest, givesOneStoreForOneName) {
  JsonUserDefaultsSuites suites(FileURL(folder_.string()), std::string(kStandardSuiteName));
  UserDefaults* const suite = suites.initWithSuiteName("suite");
  ASSERT_NE(suite, nullptr);
  EXPECT_EQ(suites.initWithSuiteName("suite"), suite);
  EXPECT_NE(suite, &suites.standardUserDefaults());
  EXPECT_EQ(suites.initWithSuiteName(kStandardSuiteName), &suites.standardUserDefaults());
  suites.standardUserDefaults().setObject("value", true);
  EXPECT_EQ(suite->objectForKey("value"), std::nullopt);
  EXPECT_TRUE(fs::exists(folder_ / "com.quenlio.app.json"));
}

TEST_F(JsonUserDefaultsTest, refusesNamesThatAreNoFileNames) {
  JsonUserDefaultsSuites suites(FileURL(folder_.string()), "standard");
  for (const std::string& name : {std::string(), std::string("."), std::string(".."), std::string("a/b"),
                                  std::string("/"), std::string("a\0b", 3), std::string(300, 'a')}) {
    EXPECT_EQ(suites.initWithSuiteName(name), nullptr) << name;
  }
  EXPECT_NE(suites.initWithSuiteName("a b.\xFF"), nullptr);
}

}  // namespace
}  // namespace quenlio
