// How a file comes into the library.
#include "tests/core/library/LibraryTest.h"

namespace quenlio {
namespace {

class Ingest : public LibraryTest {
 protected:
  void SetUp() override { open(); }

  // Takes the file in and expects that nothing notices.
  void expectRefused(const FileURL& url) {
    const Uuid before = add("before.png");
    platform.time.runReady();
    platform.log.clear();
    const Announcements announcements(*store);
    store->ingestScreenshot(url, 1);
    platform.time.runReady();
    EXPECT_EQ(announcements.list, Names{});
    EXPECT_EQ(platform.log.calls(), Names{});
    EXPECT_EQ(names(), Names{"before.png"});
    EXPECT_EQ(store->selectedItemID.get(), before);
    EXPECT_EQ(platform.thumbnails.rendered, Names{"/shots/before.png"});
  }
};

TEST_F(Ingest, aPathWithNoFileChangesNothingNotEvenTheSelection) {
  expectRefused(FileURL("/shots/missing.png"));
}

TEST_F(Ingest, aFileOfAnotherKindChangesNothingNotEvenTheSelection) {
  expectRefused(file("a.gif"));
}

TEST_F(Ingest, aFileWithoutAnExtensionChangesNothing) {
  expectRefused(file("png"));
}

TEST_F(Ingest, theSixKindsOfPicturesAreTakenInAnyCaseOfLetters) {
  for (const char* name : {"a.png", "b.jpg", "c.jpeg", "d.heic", "e.tiff", "f.pdf", "SHOT.PNG", "g.HeIc"}) {
    store->ingestScreenshot(file(name), std::nullopt);
    EXPECT_EQ(store->items.get().front().fileURL.lastPathComponent(), name);
  }
}

TEST_F(Ingest, theItemHoldsTheFilesDateAndSizeAndTheDisplayItCameFrom) {
  const FileURL url = file("a.png", -100);
  platform.files.write(url.path(), "12345");
  store->ingestScreenshot(url, 7);
  EXPECT_EQ(item("a.png").fileURL, url);
  EXPECT_EQ(item("a.png").createdAt, start - std::chrono::seconds(100));
  EXPECT_EQ(item("a.png").fileSize, 5);
  EXPECT_EQ(item("a.png").sourceDisplayID, 7U);
  EXPECT_FALSE(item("a.png").isPinned);
}

TEST_F(Ingest, anUnknownDisplayStaysUnknown) {
  add("a.png");
  EXPECT_EQ(item("a.png").sourceDisplayID, std::nullopt);
}

TEST_F(Ingest, withoutACreationDateTheMomentOfTheIngestCounts) {
  const FileURL url = file("a.png");
  platform.files.setCreationDate(url.path(), std::nullopt);
  platform.time.advanceBy(Seconds(5));
  store->ingestScreenshot(url, std::nullopt);
  EXPECT_EQ(item("a.png").createdAt, start + std::chrono::seconds(5));
  EXPECT_EQ(item("a.png").fileSize, 7);
}

TEST_F(Ingest, aSizeThatCannotBeReadIsZero) {
  const FileURL url = file("a.png", -1);
  platform.files.setSizeUnreadable(url.path(), true);
  store->ingestScreenshot(url, std::nullopt);
  EXPECT_EQ(item("a.png").fileSize, 0);
  EXPECT_EQ(item("a.png").createdAt, start - std::chrono::seconds(1));
}

TEST_F(Ingest, attributesThatCannotBeReadAreNoObstacle) {
  const FileURL url = file("a.png", -1);
  platform.files.setUnreadable(url.path(), true);
  store->ingestScreenshot(url, std::nullopt);
  EXPECT_EQ(item("a.png").createdAt, start);
  EXPECT_EQ(item("a.png").fileSize, 0);
  EXPECT_TRUE(platform.systemLog.lines.empty());
}

TEST_F(Ingest, theNewItemIsSelectedAloneAndIsTheAnchor) {
  const Uuid first = add("a.png", 1);
  const Uuid second = add("b.png", 2);
  store->selectedItemIDs.set({first, second});
  const Uuid third = add("c.png", 3);
  EXPECT_EQ(store->selectedItemID.get(), third);
  EXPECT_EQ(store->selectedItemIDs.get(), std::set<Uuid>{third});
  EXPECT_EQ(store->selectionAnchorID, third);
}

TEST_F(Ingest, newestIsFirst) {
  add("a.png", 1);
  add("b.png", 2);
  add("c.png", 3);
  EXPECT_EQ(names(), (Names{"c.png", "b.png", "a.png"}));
}

TEST_F(Ingest, anOlderFileThatArrivesLateLandsAtItsPlaceByDateAndStaysSelected) {
  add("a.png", 1);
  add("c.png", 3);
  const Uuid late = add("b.png", 2);
  EXPECT_EQ(names(), (Names{"c.png", "b.png", "a.png"}));
  EXPECT_EQ(store->selectedItemID.get(), late);
}

TEST_F(Ingest, theSameFileTwiceLeavesOneEntryWithANewIdentitySelectedAlone) {
  const Uuid first = add("a.png");
  const Uuid second = add("a.png");
  EXPECT_NE(first, second);
  EXPECT_EQ(names(), Names{"a.png"});
  EXPECT_EQ(store->selectedItemID.get(), second);
  EXPECT_EQ(store->selectedItemIDs.get(), std::set<Uuid>{second});
}

TEST_F(Ingest, aPinSurvivesThatItsFileArrivesAgain) {
  pin({"a.png"});
  open();
  add("a.png");
  add("a.png");
  EXPECT_TRUE(item("a.png").isPinned);
  EXPECT_EQ(pinnedOnDisk(), std::set<std::string>{"a.png"});
}

TEST_F(Ingest, theOldEntryGoesFirstThenTheNewOneComesThenItIsSelected) {
  add("a.png", 1);
  add("b.png", 2);
  const Announcements announcements(*store);
  const Uuid again = add("a.png", 1);
  ASSERT_GE(announcements.list.size(), 4U);
  EXPECT_EQ((Names(announcements.list.begin(), announcements.list.begin() + 4)),
            (Names{"items b.png", "items a.png b.png", "primary " + again.string(), "selected 1"}));
  EXPECT_EQ(names(), (Names{"b.png", "a.png"}));
}

TEST_F(Ingest, theReportNamesTheCountTheNewestAndTheSelectedScreenshot) {
  add("b.png", 2);
  add("a.png", 1);
  const auto state = platform.state();
  EXPECT_EQ(state.screenshotCount, 2);
  EXPECT_EQ(state.latestScreenshotPath, "/shots/b.png");
  EXPECT_EQ(state.selectedScreenshotPath, "/shots/a.png");
}

TEST_F(Ingest, afterTheSelectionTheListIsCutToTheLimitThenSortedThenThePinsAreSavedThenItIsReported) {
  settings.maxHistory.set(2);
  open();
  add("a.png", 1);
  add("c.png", 3);
  const FileURL late = file("b.png", 2);
  const AnnouncementsInTheLog announcements(*this);
  store->ingestScreenshot(late, std::nullopt);
  EXPECT_EQ(platform.log.calls(), (Names{"items c.png a.png", "items b.png c.png a.png", "primary b.png",
                                         "selected b.png", "items b.png c.png", "items c.png b.png", "selected b.png",
                                         "selected b.png", std::string("writeAtomically ") + kPinnedFile,
                                         "createDirectory /run", "writeAtomically /run/state.json"}));
}

TEST_F(Ingest, pinsAreWrittenBeforeTheStateIsReported) {
  platform.log.clear();
  add("a.png");
  const auto pins = platform.log.indexOf(std::string("writeAtomically ") + kPinnedFile);
  ASSERT_GE(pins, 0);
  EXPECT_LT(pins, platform.log.indexOf("writeAtomically /run/state.json"));
  EXPECT_EQ(stateWrites(), 1);
}

}  // namespace
}  // namespace quenlio
