// In which folder new screenshots land.
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/core/detection/WatcherBench.h"

namespace quenlio {
namespace {

class Location : public testing::Test, public WatcherBench {
 protected:
  void choose(const std::string& bookmark) {
    settings.manualScreenshotFolderBookmark.set(FakeBookmarks::bytesFor(bookmark));
    settings.detectLocationMode.set(ScreenshotLocationMode::manual);
  }
  [[nodiscard]] std::string folder() const { return locations.resolveFolder(settings).path(); }
};

TEST_F(Location, isTheDesktopWhereNothingSaysOtherwise) {
  EXPECT_EQ(folder(), kFolder);
  EXPECT_EQ(systemLog.lines, std::vector<std::string>{});
}

TEST_F(Location, isDesktopBelowHomeWhereTheDesktopHasNoFolderForIt) {
  directories.desktop.reset();
  EXPECT_EQ(folder(), "/home/user/Desktop");
  directories.desktop = FileURL("/home/user/Schreibtisch");
  EXPECT_EQ(folder(), "/home/user/Schreibtisch");
}

TEST_F(Location, isTheSystemsFolderWhenThatIsThere) {
  files.makeFolder("/shots");
  chooseFolder("/shots");
  EXPECT_EQ(folder(), "/shots");
}

TEST_F(Location, expandsALeadingTilde) {
  files.makeFolder("/home/user/Pictures/Shots");
  chooseFolder("~/Pictures/Shots");
  EXPECT_EQ(folder(), "/home/user/Pictures/Shots");
  chooseFolder("~");
  EXPECT_EQ(folder(), "/home/user");
  files.makeFolder("/a~/b");
  chooseFolder("/a~/b");
  EXPECT_EQ(folder(), "/a~/b") << "a tilde elsewhere is a character";
}

TEST_F(Location, ignoresASystemsFolderThatIsNotThereOrNoText) {
  for (const PreferenceValue& value : {PreferenceValue(std::string("/nowhere")), PreferenceValue(std::string()),
                                       PreferenceValue(std::int64_t{7}), PreferenceValue(true)}) {
    preferences.setLocation(value);
    EXPECT_EQ(folder(), kFolder);
  }
  EXPECT_EQ(systemLog.lines, std::vector<std::string>{}) << "without a word";
}

TEST_F(Location, takesASystemsPathThatIsAFile) {
  files.write("/shots.txt");
  chooseFolder("/shots.txt");
  EXPECT_EQ(folder(), "/shots.txt");
}

TEST_F(Location, asksTheSystemAnewEachTime) {
  files.makeFolder("/one");
  files.makeFolder("/two");
  chooseFolder("/one");
  EXPECT_EQ(folder(), "/one");
  chooseFolder("/two");
  EXPECT_EQ(folder(), "/two");
  files.remove("/two");
  EXPECT_EQ(folder(), kFolder);
}

TEST_F(Location, readsTheKeyOfTheScreenshotDomainAlone) {
  files.makeFolder("/shots");
  preferences.values["com.example location"] = std::string("/shots");
  preferences.values["com.apple.screencapture folder"] = std::string("/shots");
  EXPECT_EQ(folder(), kFolder);
  preferences.values["com.apple.screencapture location"] = std::string("/shots");
  EXPECT_EQ(folder(), "/shots");
}

TEST_F(Location, isTheUsersChoiceInTheManualMode) {
  choose("/chosen");
  files.makeFolder("/shots");
  chooseFolder("/shots");
  EXPECT_EQ(folder(), "/chosen");
}

TEST_F(Location, theManualModeWithoutAChoiceActsAutomatically) {
  settings.detectLocationMode.set(ScreenshotLocationMode::manual);
  EXPECT_EQ(folder(), kFolder);
  EXPECT_EQ(systemLog.lines, std::vector<std::string>{});
}

TEST_F(Location, anEmptyBookmarkIsNoChoiceAndIsNotLogged) {
  settings.manualScreenshotFolderBookmark.set(Bytes{});
  settings.detectLocationMode.set(ScreenshotLocationMode::manual);
  EXPECT_EQ(folder(), kFolder);
  EXPECT_EQ(systemLog.lines, std::vector<std::string>{});
  EXPECT_TRUE(bookmarks.accesses.empty());
}

TEST_F(Location, aChoiceWithoutTheManualModeIsNotUsed) {
  settings.manualScreenshotFolderBookmark.set(FakeBookmarks::bytesFor("/chosen"));
  EXPECT_EQ(folder(), kFolder);
  EXPECT_TRUE(bookmarks.accesses.empty());
}

TEST_F(Location, aChosenFolderIsUsedWithoutLookingWhetherItIsThere) {
  choose("/deleted");
  EXPECT_FALSE(files.fileExistsAtPath(FileURL("/deleted")));
  EXPECT_EQ(folder(), "/deleted");
}

TEST_F(Location, aDamagedBookmarkIsLoggedOnEachCallAndTheAutomaticWayTaken) {
  choose("damaged");
  EXPECT_EQ(folder(), kFolder);
  EXPECT_EQ(folder(), kFolder);
  const std::string line = "Failed to resolve screenshot folder bookmark: damaged bookmark";
  EXPECT_EQ(systemLog.lines, (std::vector<std::string>{line, line}));
  EXPECT_EQ(settings.detectLocationMode.get(), ScreenshotLocationMode::manual) << "the mode stays";
}

TEST_F(Location, theLineOfADamagedBookmarkRepeatsWithEachPoll) {
  choose("damaged");
  start();
  systemLog.lines.clear();
  time.advanceBy(Seconds(15));
  EXPECT_EQ(systemLog.lines.size(), 3U);
}

TEST_F(Location, aStaleBookmarkIsLoggedAndUsedAndNotRenewed) {
  choose("/chosen");
  bookmarks.stale.insert("/chosen");
  const auto before = settings.manualScreenshotFolderBookmark.get();
  EXPECT_EQ(folder(), "/chosen");
  EXPECT_EQ(systemLog.lines, std::vector<std::string>{"Screenshot folder bookmark is stale"});
  EXPECT_EQ(settings.manualScreenshotFolderBookmark.get(), before);
}

TEST_F(Location, accessToAChosenFolderIsOpenedOnEachCall) {
  choose("/chosen");
  (void)folder();
  (void)folder();
  EXPECT_EQ(bookmarks.accesses["/chosen"], 2);
}

}  // namespace
}  // namespace quenlio
