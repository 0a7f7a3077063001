// Items that go to the trash.
#include "tests/core/library/LibraryTest.h"

namespace quenlio {
namespace {

class Trash : public LibraryTest {
 protected:
  using Metadata = std::map<std::string, std::string>;

  void SetUp() override { open(); }
  void trash(const std::string& name) { store->moveToTrash(item(name)); }
  [[nodiscard]] std::string inTrash(const std::string& name) const {
    return std::string(FakeFileSystem::kTrash) + "/" + name;
  }
};

TEST_F(Trash, takesTheFileAndTheItem) {
  add("a.png", 1);
  add("b.png", 2);
  platform.files.write("/shots/a.png", "the first");
  trash("a.png");
  EXPECT_EQ(names(), Names{"b.png"});
  EXPECT_FALSE(platform.files.fileExistsAtPath(FileURL("/shots/a.png")));
  EXPECT_EQ(platform.files.content(inTrash("a.png")), "the first");
}

TEST_F(Trash, anItemThatIsNotListedIsLeftAlone) {
  add("a.png");
  ScreenshotItem stranger = item("a.png");
  stranger.id = Uuid::random();
  platform.log.clear();
  const Announcements announcements(*store);
  store->moveToTrash(stranger);
  EXPECT_EQ(announcements.list, Names{});
  EXPECT_EQ(platform.log.calls(), Names{});
}

TEST_F(Trash, worksOnTheListedItemAndNotOnAnOlderCopyOfIt) {
  add("a.png");
  const ScreenshotItem before = item("a.png");
  ASSERT_TRUE(store->rename(before, "b"));
  store->moveToTrash(before);
  EXPECT_EQ(names(), Names{});
  EXPECT_TRUE(platform.files.fileExistsAtPath(FileURL(inTrash("b.png"))));
}

TEST_F(Trash, everythingHappensInItsOrder) {
  add("a.png", 1);
  const Uuid b = add("b.png", 2);
  add("c.png", 3);
  store->select(b);
  store->toggleSelection(item("a.png"));
  store->toggleSelection(item("c.png"));
  store->selectedItemID.set(b);
  const AnnouncementsInTheLog announcements(*this);
  trash("b.png");
  EXPECT_EQ(platform.log.calls(), (Names{
                                      "trashItem /shots/b.png",
                                      "items c.png a.png",
                                      "selected a.png c.png",
                                      "primary",
                                      "track 6",
                                      "writeAtomically /home/user/support/Quenlio/pinned.json",
                                      "selected a.png c.png",
                                      "primary c.png",
                                      "selected a.png c.png",
                                      "createDirectory /run",
                                      "writeAtomically /run/state.json",
                                  }));
}

TEST_F(Trash, thePrimaryItemIsNotTouchedWhenAnotherGoes) {
  add("a.png", 1);
  add("b.png", 2);
  const AnnouncementsInTheLog announcements(*this);
  trash("a.png");
  EXPECT_EQ(platform.log.count("primary"), 0);
  EXPECT_EQ(selection(), "b | b | b");
}

TEST_F(Trash, isTrackedWithThePathAndReported) {
  add("a.png", 1);
  add("b.png", 2);
  trash("b.png");
  ASSERT_EQ(platform.analytics.events.size(), 1U);
  EXPECT_EQ(platform.analytics.events.front(),
            std::pair(AnalyticsEventName::screenshotDeleted, Metadata{{"path", "/shots/b.png"}}));
  EXPECT_EQ(platform.state().screenshotCount, 1);
  EXPECT_EQ(platform.state().latestScreenshotPath, "/shots/a.png");
  EXPECT_EQ(platform.state().selectedScreenshotPath, "/shots/a.png");
}

TEST_F(Trash, aPinnedItemTakesItsPinWithItAndOtherPinsStay) {
  pin({"a.png", "b.png"});
  open();
  add("a.png");
  add("b.png");
  trash("a.png");
  EXPECT_EQ(pinnedOnDisk(), std::set<std::string>{"b.png"});
}

TEST_F(Trash, aFileThatCannotBeMovedStaysListedAndSelectedAndTheFailureIsLogged) {
  add("a.png", 1);
  add("b.png", 2);
  platform.files.setReadOnly("/shots");
  const Announcements announcements(*store);
  trash("b.png");
  EXPECT_EQ(announcements.list, Names{});
  EXPECT_EQ(names(), (Names{"b.png", "a.png"}));
  EXPECT_EQ(selection(), "b | b | b");
  EXPECT_EQ(platform.systemLog.lines, Names{"Failed to move file to trash: read-only"});
  EXPECT_TRUE(platform.analytics.events.empty());
  EXPECT_FALSE(store->undoLastDeletion());
}

TEST_F(Trash, ofAPlaceThatIsNotToldThereIsNoWayBack) {
  add("a.png", 1);
  add("b.png", 2);
  trash("a.png");
  platform.files.trashTellsPlaces = false;
  trash("b.png");
  EXPECT_EQ(names(), Names{});
  EXPECT_EQ(platform.analytics.count(AnalyticsEventName::screenshotDeleted), 2);
  EXPECT_TRUE(store->undoLastDeletion());
  EXPECT_EQ(names(), Names{"a.png"});
  EXPECT_FALSE(store->undoLastDeletion());
}

TEST_F(Trash, aThumbnailThatIsReadyTooLateIsDropped) {
  add("a.png");
  trash("a.png");
  platform.time.runReady();
  EXPECT_EQ(names(), Names{});
}

TEST_F(Trash, itemsCanBeTakenOutWhileAnObserverLooks) {
  add("a.png", 1);
  add("b.png", 2);
  // The list is announced before it is stored: looking at it from here sees the item that goes.
  Names seen;
  const Subscription watch = store->items.subscribe([&](const std::vector<ScreenshotItem>& next) {
    seen.push_back(std::to_string(next.size()) + " of " + std::to_string(store->items.get().size()));
  });
  store->moveToTrash(store->items.get().front());
  EXPECT_EQ(seen, (Names{"2 of 2", "1 of 2"}));
  EXPECT_EQ(names(), Names{"a.png"});
}

class TrashSelected : public Trash {};

TEST_F(TrashSelected, takesEachInListOrderAsADeletionOfItsOwn) {
  for (int i = 1; i <= 4; ++i) {
    add(std::to_string(i) + ".png", i);
  }
  store->select(item("1.png").id);
  store->toggleSelection(item("4.png"));
  store->toggleSelection(item("2.png"));
  platform.log.clear();
  store->moveSelectedToTrash();
  EXPECT_EQ(names(), Names{"3.png"});
  EXPECT_EQ(selection(), "- | - | -");
  Names trashed;
  std::ranges::copy_if(platform.log.calls(), std::back_inserter(trashed),
                       [](const std::string& call) { return call.starts_with("trashItem"); });
  EXPECT_EQ(trashed, (Names{"trashItem /shots/4.png", "trashItem /shots/2.png", "trashItem /shots/1.png"}));
  EXPECT_EQ(platform.analytics.count(AnalyticsEventName::screenshotDeleted), 3);
  EXPECT_TRUE(store->undoLastDeletion());
  EXPECT_EQ(names(), (Names{"3.png", "1.png"}));
}

TEST_F(TrashSelected, withNothingSelectedTakesTheFirstItem) {
  add("a.png", 1);
  const Uuid b = add("b.png", 2);
  store->select(b);
  store->toggleSelection(item("b.png"));
  store->moveSelectedToTrash();
  EXPECT_EQ(names(), Names{"a.png"});
}

TEST_F(TrashSelected, ofAnEmptyListDoesNothing) {
  const Announcements announcements(*store);
  store->moveSelectedToTrash();
  EXPECT_EQ(announcements.list, Names{});
}

TEST_F(TrashSelected, keepsThoseThatCannotBeMoved) {
  add("a.png", 1);
  add("b.png", 2);
  add("c.png", 3);
  for (const char* name : {"a.png", "b.png"}) {
    store->toggleSelection(item(name));
  }
  platform.files.setReadOnly("/shots/b.png");
  store->moveSelectedToTrash();
  EXPECT_EQ(names(), Names{"b.png"});
  EXPECT_EQ(selection(), "b | b | b");
}

TEST_F(TrashSelected, repairsTheSelectionOnceMoreAtTheEnd) {
  add("a.png");
  const AnnouncementsInTheLog announcements(*this);
  store->moveSelectedToTrash();
  const auto report = platform.log.indexOf("writeAtomically /run/state.json");
  EXPECT_EQ(Names(platform.log.calls().begin() + report + 1, platform.log.calls().end()), Names{"selected"});
}

}  // namespace
}  // namespace quenlio
