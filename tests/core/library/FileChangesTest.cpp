// Files that vanish, and files that the editor has rewritten.
#include "tests/core/library/LibraryTest.h"

namespace quenlio {
namespace {

class MissingFiles : public LibraryTest {
 protected:
  void SetUp() override { open(); }
  void remove(const std::string& name) { platform.files.remove("/shots/" + name); }
};

TEST_F(MissingFiles, aVanishedFileStaysListedUntilItIsLookedFor) {
  add("a.png");
  remove("a.png");
  platform.time.advanceBy(Seconds(3600));
  EXPECT_EQ(names(), Names{"a.png"});
  store->removeMissingFiles();
  EXPECT_EQ(names(), Names{});
}

TEST_F(MissingFiles, allOfThemGoInOneChangeAndTheRestKeepsItsOrder) {
  for (int i = 1; i <= 5; ++i) {
    add(std::to_string(i) + ".png", i);
  }
  remove("4.png");
  remove("2.png");
  const Announcements announcements(*store);
  store->removeMissingFiles();
  EXPECT_EQ(std::ranges::count_if(announcements.list, [](const auto& text) { return text.starts_with("items"); }), 1);
  EXPECT_EQ(names(), (Names{"5.png", "3.png", "1.png"}));
}

TEST_F(MissingFiles, theListIsNotSortedAnew) {
  add("a.png", 1);
  add("b.png", 2);
  platform.files.setCreationDate("/shots/a.png", start + std::chrono::seconds(3));
  store->refreshEditedScreenshot(FileURL("/shots/a.png"));
  store->removeMissingFiles();
  EXPECT_EQ(names(), (Names{"b.png", "a.png"}));
}

TEST_F(MissingFiles, aSelectionOfTheVanishedAloneIsLeftEmpty) {
  add("a.png", 1);
  add("b.png", 2);
  remove("b.png");
  store->removeMissingFiles();
  EXPECT_FALSE(store->selectedItemID.get());
  EXPECT_TRUE(store->selectedItemIDs.get().empty());
  EXPECT_FALSE(store->selectionAnchorID);
  EXPECT_EQ(names(), Names{"a.png"});
}

TEST_F(MissingFiles, whatElseIsSelectedStaysAndItsFirstBecomesThePrimaryOne) {
  const Uuid a = add("a.png", 1);
  const Uuid b = add("b.png", 2);
  const Uuid c = add("c.png", 3);
  store->selectedItemIDs.set({a, b, c});
  remove("c.png");
  store->removeMissingFiles();
  EXPECT_EQ(store->selectedItemID.get(), b);
  EXPECT_EQ(store->selectedItemIDs.get(), (std::set<Uuid>{a, b}));
  EXPECT_EQ(store->selectionAnchorID, b);
}

TEST_F(MissingFiles, theSelectionOfFilesThatAreThereIsLeftAlone) {
  const Uuid a = add("a.png", 1);
  add("b.png", 2);
  store->select(a);
  store->removeMissingFiles();
  EXPECT_EQ(store->selectedItemID.get(), a);
  EXPECT_EQ(store->selectedItemIDs.get(), std::set<Uuid>{a});
}

TEST_F(MissingFiles, pinsAreWrittenEachTimeAlsoWhenNothingIsMissing) {
  add("a.png");
  const auto before = pinnedWrites();
  store->removeMissingFiles();
  store->removeMissingFiles();
  EXPECT_EQ(pinnedWrites(), before + 2);
}

TEST_F(MissingFiles, aPinWithoutAnItemGoesThoughItsFileIsThere) {
  pin({"a.png"});
  open();
  store->removeMissingFiles();
  EXPECT_EQ(platform.files.content(kPinnedFile), "[]");
  add("a.png");
  EXPECT_FALSE(item("a.png").isPinned);
}

TEST_F(MissingFiles, theyTakeTheirPinsWithThemAndOtherPinsStay) {
  pin({"a.png", "b.png"});
  open();
  add("a.png", 1);
  add("b.png", 2);
  remove("a.png");
  store->removeMissingFiles();
  EXPECT_EQ(pinnedOnDisk(), std::set<std::string>{"b.png"});
  add("a.png");
  EXPECT_FALSE(item("a.png").isPinned);
}

TEST_F(MissingFiles, aFileRenamedOutsideIsNotFollowed) {
  add("a.png");
  remove("a.png");
  file("renamed.png");
  store->removeMissingFiles();
  EXPECT_EQ(names(), Names{});
}

TEST_F(MissingFiles, nothingIsReported) {
  add("a.png");
  remove("a.png");
  const auto before = stateWrites();
  store->removeMissingFiles();
  EXPECT_EQ(stateWrites(), before);
  EXPECT_EQ(platform.state().screenshotCount, 1);
}

class EditedFile : public LibraryTest {
 protected:
  void SetUp() override {
    open();
    store->ingestScreenshot(file("a.png", 1), 7);
    add("b.png", 2);
    platform.time.runReady();
  }
  void refresh(const std::string& name) { store->refreshEditedScreenshot(FileURL("/shots/" + name)); }
  void edit() {
    platform.files.write("/shots/a.png", "longer than before");
    platform.files.setCreationDate("/shots/a.png", start + std::chrono::seconds(9));
  }
};

TEST_F(EditedFile, itsSizeAndDateAreTakenOverAndAllElseIsKept) {
  ScreenshotItem expected = item("a.png");
  edit();
  refresh("a.png");
  expected.fileSize = 18;
  expected.createdAt = start + std::chrono::seconds(9);
  EXPECT_EQ(item("a.png"), expected);
}

TEST_F(EditedFile, aPinnedItemStaysPinned) {
  pin({"a.png"});
  open();
  add("a.png", 1);
  edit();
  refresh("a.png");
  EXPECT_TRUE(item("a.png").isPinned);
}

TEST_F(EditedFile, theListIsNotSortedAgainAndTheSelectionIsNotTouched) {
  const Announcements announcements(*store);
  edit();
  refresh("a.png");
  EXPECT_EQ(announcements.list, Names{"items b.png a.png"});
  EXPECT_EQ(store->selectedItemID.get(), item("b.png").id);
}

TEST_F(EditedFile, theOldThumbnailStaysUntilTheNewOneIsReady) {
  const ImageRef old = item("a.png").thumbnail;
  ASSERT_NE(old, nullptr);
  refresh("a.png");
  EXPECT_EQ(item("a.png").thumbnail, old);
  platform.time.runReady();
  EXPECT_NE(item("a.png").thumbnail, nullptr);
  EXPECT_NE(item("a.png").thumbnail, old);
}

TEST_F(EditedFile, thatIsNoPictureAnyMoreLosesItsThumbnail) {
  platform.thumbnails.undecodable.insert("/shots/a.png");
  refresh("a.png");
  platform.time.runReady();
  EXPECT_EQ(item("a.png").thumbnail, nullptr);
}

TEST_F(EditedFile, attributesThatCannotBeReadLeaveSizeAndDate) {
  const ScreenshotItem before = item("a.png");
  edit();
  platform.files.setUnreadable("/shots/a.png", true);
  refresh("a.png");
  EXPECT_EQ(item("a.png"), before);
}

TEST_F(EditedFile, aMissingDateOrSizeLeavesTheOneThatWas) {
  const Date date = item("a.png").createdAt;
  edit();
  platform.files.setCreationDate("/shots/a.png", std::nullopt);
  refresh("a.png");
  EXPECT_EQ(item("a.png").createdAt, date);
  EXPECT_EQ(item("a.png").fileSize, 18);

  platform.files.write("/shots/a.png", "short");
  platform.files.setSizeUnreadable("/shots/a.png", true);
  platform.files.setCreationDate("/shots/a.png", start);
  refresh("a.png");
  EXPECT_EQ(item("a.png").createdAt, start);
  EXPECT_EQ(item("a.png").fileSize, 18);
}

TEST_F(EditedFile, thatIsNotInTheLibraryOrNotOnDiskChangesNothing) {
  file("unknown.png");
  platform.files.remove("/shots/a.png");
  platform.log.clear();
  const Announcements announcements(*store);
  refresh("unknown.png");
  refresh("a.png");
  platform.time.runReady();
  EXPECT_EQ(announcements.list, Names{});
  EXPECT_EQ(platform.log.calls(), Names{});
  EXPECT_EQ(platform.thumbnails.rendered.size(), 2U);
}

TEST_F(EditedFile, isReportedAndPinsAreNotWritten) {
  const auto pins = pinnedWrites();
  const auto states = stateWrites();
  refresh("a.png");
  EXPECT_EQ(stateWrites(), states + 1);
  EXPECT_EQ(pinnedWrites(), pins);
}

}  // namespace
}  // namespace quenlio
