// What the library keeps on disk: its folder and pinned.json.
#include "tests/core/library/LibraryTest.h"

namespace quenlio {
namespace {

class LibraryStorage : public LibraryTest {
 protected:
  // Whether a.png counts as pinned after pinned.json with this content was read.
  bool isPinnedBy(const std::string& content) {
    platform.files.write(kPinnedFile, content);
    file("a.png");
    open();
    add("a.png");
    return item("a.png").isPinned;
  }
};

TEST_F(LibraryStorage, aNewLibraryIsEmptyAndSelectsNothing) {
  open();
  EXPECT_TRUE(store->items.get().empty());
  EXPECT_FALSE(store->selectedItemID.get());
  EXPECT_TRUE(store->selectedItemIDs.get().empty());
  EXPECT_FALSE(store->selectionAnchorID);
}

TEST_F(LibraryStorage, theHistoryIsNotKeptFromRunToRun) {
  open();
  add("a.png");
  open();
  EXPECT_TRUE(store->items.get().empty());
}

TEST_F(LibraryStorage, theDataFolderIsMadeWithTheFoldersAboveIt) {
  open();
  EXPECT_TRUE(platform.files.isDirectory(FileURL("/home/user/support/Quenlio")));
}

TEST_F(LibraryStorage, aDataFolderThatCannotBeMadeIsLoggedAndTheLibraryWorksAllTheSame) {
  platform.files.setReadOnly("/home/user/support");
  open();
  EXPECT_EQ(platform.systemLog.lines, Names{"Failed to create app support directory: read-only"});
  add("a.png");
  EXPECT_EQ(names(), Names{"a.png"});
}

TEST_F(LibraryStorage, theFolderIsMadeFirstThenPinsAreReadOnceThenTheStateIsReported) {
  open();
  platform.log.clear();
  const int readsBefore = platform.files.readCount();
  store = std::make_unique<ScreenshotStore>(dependencies(platform.time, platform.thumbnails));
  EXPECT_EQ(platform.files.readCount(), readsBefore + 1);
  EXPECT_EQ(platform.log.indexOf("createDirectory /home/user/support/Quenlio"), 0);
  EXPECT_EQ(platform.log.calls().back(), "writeAtomically /run/state.json");
}

TEST_F(LibraryStorage, aNewLibraryReportsNoScreenshotAndNoPaths) {
  open();
  const auto state = platform.state();
  EXPECT_EQ(state.screenshotCount, 0);
  EXPECT_EQ(state.latestScreenshotPath, std::nullopt);
  EXPECT_EQ(state.selectedScreenshotPath, std::nullopt);
}

TEST_F(LibraryStorage, aPinnedPathIsTakenOverWhenItsFileIsThere) {
  pin({"a.png"});
  open();
  add("a.png");
  add("b.png");
  EXPECT_TRUE(item("a.png").isPinned);
  EXPECT_FALSE(item("b.png").isPinned);
}

TEST_F(LibraryStorage, aPinnedPathWithoutAFileIsNotTakenOverAndGoesFromTheFileAtTheNextWrite) {
  pin({"a.png", "gone.png"});
  platform.files.remove("/shots/gone.png");
  open();
  add("gone.png");  // the file is back, too late for its pin
  EXPECT_FALSE(item("gone.png").isPinned);
  EXPECT_EQ(pinnedOnDisk(), std::set<std::string>{"a.png"});
}

TEST_F(LibraryStorage, aRecordThatSaysNotPinnedIsNotTakenOverAndGoesFromTheFileAtTheNextWrite) {
  EXPECT_FALSE(isPinnedBy(R"([{"path":"/shots/a.png","isPinned":false}])"));
  EXPECT_EQ(platform.files.content(kPinnedFile), "[]");
}

TEST_F(LibraryStorage, keysAndWhiteSpaceOfTheFileMayComeInAnyOrder) {
  EXPECT_TRUE(isPinnedBy("\n[ {\"isPinned\" : true,\n\"path\":\"\\/shots\\/a.png\" } ]\n"));
}

TEST_F(LibraryStorage, aRecordMayHoldMoreThanTheTwoKeys) {
  EXPECT_TRUE(isPinnedBy(R"([{"path":"/shots/a.png","isPinned":true,"more":1}])"));
}

class DamagedPins : public LibraryStorage, public testing::WithParamInterface<const char*> {};

TEST_P(DamagedPins, aFileDamagedInAnyPlaceCountsAsEmptyWithNoReportAndIsReplacedAtTheNextWrite) {
  EXPECT_FALSE(isPinnedBy(GetParam()));
  EXPECT_TRUE(platform.systemLog.lines.empty());
  EXPECT_EQ(platform.files.content(kPinnedFile), "[]");
}

INSTANTIATE_TEST_SUITE_P(, DamagedPins,
                         testing::Values("", "[", "no JSON", "null", R"({"path":"/shots/a.png","isPinned":true})",
                                         R"([{"path":"/shots/a.png","isPinned":true}] more)",
                                         R"([{"path":"/shots/a.png","isPinned":true},{"isPinned":true}])",
                                         R"([{"path":"/shots/a.png","isPinned":true},{"path":"/shots/b.png"}])",
                                         R"([{"path":"/shots/a.png","isPinned":true},{"path":1,"isPinned":true}])",
                                         R"([{"path":"/shots/a.png","isPinned":true},{"path":"/b","isPinned":1}])",
                                         R"([{"path":"/shots/a.png","isPinned":"true"}])",
                                         R"([{"path":"/shots/a.png","isPinned":null}])",
                                         R"([{"path":"/shots/a.png","isPinned":true},"/shots/b.png"])"));

TEST_F(LibraryStorage, aMissingOrUnreadableFileLeavesNoPinsAndIsNotReported) {
  pin({"a.png"});
  platform.files.setUnreadable(kPinnedFile, true);
  open();
  add("a.png");
  EXPECT_FALSE(item("a.png").isPinned);
  platform.files.remove(kPinnedFile);
  open();
  add("a.png");
  EXPECT_FALSE(item("a.png").isPinned);
  EXPECT_TRUE(platform.systemLog.lines.empty());
}

TEST_F(LibraryStorage, pinsAreWrittenWithoutBlanksAndWithEscapedSlashes) {
  pin({"a.png"});
  open();
  add("a.png");
  EXPECT_EQ(platform.files.content(kPinnedFile), R"([{"isPinned":true,"path":"\/shots\/a.png"}])");
}

TEST_F(LibraryStorage, noPinsAreWrittenAsAnEmptyList) {
  open();
  add("a.png");
  EXPECT_EQ(platform.files.content(kPinnedFile), "[]");
}

TEST_F(LibraryStorage, aPathThatIsNotUTF8KeepsItsPinFromRunToRun) {
  const std::string name = "caf\xE9 \xFF.png";
  file(name);
  platform.files.write(kPinnedFile, R"([{"isPinned":true,"path":"\/shots\/)" + name + R"("}])");
  for (int run = 0; run < 2; ++run) {
    open();
    add(name);
    EXPECT_TRUE(item(name).isPinned) << "run " << run;
  }
}

TEST_F(LibraryStorage, aFailedWriteIsLoggedAndLeavesThePinsInMemory) {
  pin({"a.png"});
  open();
  platform.files.setReadOnly(kPinnedFile);
  add("b.png");
  EXPECT_EQ(platform.systemLog.lines, Names{"Failed to persist pinned items: the file cannot be written"});
  add("a.png");
  EXPECT_TRUE(item("a.png").isPinned);
}

TEST_F(LibraryStorage, pinsAreWrittenOnceAfterEachScreenshotThatIsTakenIn) {
  open();
  EXPECT_EQ(pinnedWrites(), 0);
  add("a.png");
  EXPECT_EQ(pinnedWrites(), 1);
  add("b.png");
  EXPECT_EQ(pinnedWrites(), 2);
}

}  // namespace
}  // namespace quenlio
