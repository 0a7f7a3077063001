// Deleted screenshots that come back.
#include "tests/core/library/LibraryTest.h"

namespace quenlio {
namespace {

class UndoDeletion : public LibraryTest {
 protected:
  void SetUp() override { open(); }
  void addAndTrash(const std::string& name, int createdAt = 0) {
    add(name, createdAt);
    store->moveToTrash(item(name));
  }
  void emptyTrash(const std::string& name) { platform.files.remove(FakeFileSystem::kTrash + ("/" + name)); }
};

TEST_F(UndoDeletion, bringsTheFileBackToItsPlace) {
  platform.files.write("/shots/a.png", "what it held");
  addAndTrash("a.png");
  EXPECT_TRUE(store->undoLastDeletion());
  EXPECT_EQ(names(), Names{"a.png"});
  EXPECT_EQ(item("a.png").fileURL, FileURL("/shots/a.png"));
  EXPECT_TRUE(platform.files.fileExistsAtPath(FileURL("/shots/a.png")));
  EXPECT_FALSE(platform.files.fileExistsAtPath(FileURL("/home/user/trash/a.png")));
}

TEST_F(UndoDeletion, theItemIsTheOldOneUnderANewIdentity) {
  store->ingestScreenshot(file("a.png", 5), 7);
  platform.time.runReady();
  const ScreenshotItem before = item("a.png");
  ASSERT_NE(before.thumbnail, nullptr);
  store->moveToTrash(before);
  ASSERT_TRUE(store->undoLastDeletion());
  ScreenshotItem expected = before;
  expected.id = item("a.png").id;
  EXPECT_NE(expected.id, before.id);
  EXPECT_EQ(item("a.png"), expected);
}

TEST_F(UndoDeletion, sizeAndDateAreReadAnew) {
  addAndTrash("a.png", 5);
  platform.files.write("/home/user/trash/a.png", "changed meanwhile");
  platform.files.setCreationDate("/home/user/trash/a.png", start + std::chrono::seconds(9));
  ASSERT_TRUE(store->undoLastDeletion());
  EXPECT_EQ(item("a.png").fileSize, 17);
  EXPECT_EQ(item("a.png").createdAt, start + std::chrono::seconds(9));
}

TEST_F(UndoDeletion, sizeAndDateThatCannotBeReadAreThoseOfBefore) {
  add("a.png", 5);
  const ScreenshotItem before = item("a.png");
  store->moveToTrash(before);
  platform.files.write("/home/user/trash/a.png", "changed meanwhile");
  platform.files.setSizeUnreadable("/home/user/trash/a.png", true);
  platform.files.setCreationDate("/home/user/trash/a.png", std::nullopt);
  ASSERT_TRUE(store->undoLastDeletion());
  EXPECT_EQ(item("a.png").fileSize, before.fileSize);
  EXPECT_EQ(item("a.png").createdAt, before.createdAt);
}

TEST_F(UndoDeletion, selectsTheRestoredItemAlone) {
  addAndTrash("a.png", 1);
  add("b.png", 2);
  add("c.png", 3);
  store->toggleSelection(item("b.png"));
  ASSERT_TRUE(store->undoLastDeletion());
  EXPECT_EQ(selection(), "a | a | a");
  EXPECT_EQ(names(), (Names{"c.png", "b.png", "a.png"}));
}

TEST_F(UndoDeletion, everythingHappensInItsOrder) {
  add("b.png", 1);
  addAndTrash("a.png", 2);
  const AnnouncementsInTheLog announcements(*this);
  ASSERT_TRUE(store->undoLastDeletion());
  EXPECT_EQ(platform.log.calls(), (Names{
                                      "moveItem /home/user/trash/a.png /shots/a.png",
                                      "items b.png",
                                      "items a.png b.png",
                                      "primary a.png",
                                      "selected a.png",
                                      "items a.png b.png",
                                      "items a.png b.png",
                                      "selected a.png",
                                      "selected a.png",
                                      "writeAtomically /home/user/support/Quenlio/pinned.json",
                                      "track 7",
                                  }));
}

TEST_F(UndoDeletion, isTrackedWithThePathOfTheRestoredFileAndNotReported) {
  addAndTrash("a.png");
  file("a.png");
  const auto reports = stateWrites();
  ASSERT_TRUE(store->undoLastDeletion());
  EXPECT_EQ(platform.analytics.events.back(),
            std::pair(AnalyticsEventName::screenshotRestored,
                      std::map<std::string, std::string>{{"path", "/shots/a (Restored 1).png"}}));
  EXPECT_EQ(stateWrites(), reports);
}

TEST_F(UndoDeletion, withNothingDeletedDoesNothing) {
  add("a.png");
  platform.log.clear();
  const Announcements announcements(*store);
  EXPECT_FALSE(store->undoLastDeletion());
  EXPECT_EQ(announcements.list, Names{});
  EXPECT_EQ(platform.log.calls(), Names{});
}

TEST_F(UndoDeletion, reachesBackThirtyDeletionsAndNoFurther) {
  for (int i = 1; i <= 31; ++i) {
    addAndTrash(std::to_string(i) + ".png", i);
  }
  for (int i = 31; i >= 2; --i) {
    ASSERT_TRUE(store->undoLastDeletion()) << i;
    ASSERT_EQ(store->selectedItem()->fileURL, FileURL("/shots/" + std::to_string(i) + ".png"));
  }
  EXPECT_FALSE(store->undoLastDeletion());
  EXPECT_TRUE(platform.files.fileExistsAtPath(FileURL("/home/user/trash/1.png")));
}

TEST_F(UndoDeletion, ofAFileThatHasLeftTheTrashIsUsedUpWithoutAWord) {
  addAndTrash("a.png", 1);
  addAndTrash("b.png", 2);
  emptyTrash("b.png");
  const Announcements announcements(*store);
  EXPECT_FALSE(store->undoLastDeletion());
  EXPECT_EQ(announcements.list, Names{});
  EXPECT_TRUE(platform.systemLog.lines.empty());
  EXPECT_TRUE(store->undoLastDeletion());
  EXPECT_EQ(names(), Names{"a.png"});
  EXPECT_FALSE(store->undoLastDeletion());
}

TEST_F(UndoDeletion, leavesAnotherFileThatHasTakenItsPlaceInTheTrash) {
  addAndTrash("a.png", 1);
  addAndTrash("b.png", 2);
  emptyTrash("b.png");
  platform.files.write("/home/user/trash/b.png", "somebody else's");
  const Announcements announcements(*store);
  EXPECT_FALSE(store->undoLastDeletion());
  EXPECT_EQ(announcements.list, Names{});
  EXPECT_EQ(platform.files.content("/home/user/trash/b.png"), "somebody else's");
  EXPECT_FALSE(platform.files.fileExistsAtPath(FileURL("/shots/b.png")));
  EXPECT_TRUE(store->undoLastDeletion());
  EXPECT_EQ(names(), Names{"a.png"});
}

TEST_F(UndoDeletion, findsAnotherNameWhenALinkThatLeadsNowhereHasItsOwn) {
  addAndTrash("Shot.png");
  platform.files.makeDanglingLink("/shots/Shot.png");
  EXPECT_TRUE(store->undoLastDeletion());
  EXPECT_EQ(names(), Names{"Shot (Restored 1).png"});
}

TEST_F(UndoDeletion, findsAnotherNameWhenItsOwnIsTaken) {
  addAndTrash("Shot.png");
  platform.files.write("/shots/Shot.png", "a newer one");
  EXPECT_TRUE(store->undoLastDeletion());
  EXPECT_EQ(names(), Names{"Shot (Restored 1).png"});
  EXPECT_EQ(platform.files.content("/shots/Shot.png"), "a newer one");
  EXPECT_EQ(platform.files.content("/shots/Shot (Restored 1).png"), "content");
}

TEST_F(UndoDeletion, anItemWhoseVanishedFileHadThePlaceGivesWay) {
  addAndTrash("a.png");
  const Uuid vanished = add("a.png", 1);
  platform.files.remove("/shots/a.png");
  ASSERT_TRUE(store->undoLastDeletion());
  EXPECT_EQ(names(), Names{"a.png"});
  EXPECT_NE(item("a.png").id, vanished);
}

TEST_F(UndoDeletion, aFileThatAppearsMeanwhileIsNotOverwritten) {
  addAndTrash("a.png", 1);
  addAndTrash("b.png", 2);
  platform.files.duringMove = [&](const FileURL&, const FileURL& to) {
    platform.files.write(to.path(), "somebody else's");
  };
  const Announcements announcements(*store);
  EXPECT_FALSE(store->undoLastDeletion());
  EXPECT_EQ(platform.files.content("/shots/b.png"), "somebody else's");
  EXPECT_EQ(platform.files.content("/home/user/trash/b.png"), "content");
  EXPECT_EQ(platform.systemLog.lines, Names{"Failed to restore screenshot from trash: a file is in the way"});
  EXPECT_EQ(announcements.list, Names{});
  EXPECT_EQ(platform.analytics.count(AnalyticsEventName::screenshotRestored), 0);

  platform.files.duringMove = nullptr;
  EXPECT_TRUE(store->undoLastDeletion());
  EXPECT_EQ(names(), Names{"a.png"});
}

TEST_F(UndoDeletion, failsWhenTheFolderIsGone) {
  addAndTrash("a.png");
  platform.files.remove("/shots");
  EXPECT_FALSE(store->undoLastDeletion());
  EXPECT_EQ(platform.systemLog.lines, Names{"Failed to restore screenshot from trash: no such file"});
  EXPECT_EQ(platform.files.content("/home/user/trash/a.png"), "content");
}

TEST_F(UndoDeletion, bringsAPinBackOnThePathThatTheFileReturnedTo) {
  pin({"a.png"});
  open();
  addAndTrash("a.png");
  EXPECT_EQ(platform.files.content(kPinnedFile), "[]");
  file("a.png");
  ASSERT_TRUE(store->undoLastDeletion());
  EXPECT_TRUE(item("a (Restored 1).png").isPinned);
  EXPECT_EQ(pinnedOnDisk(), std::set<std::string>{"a (Restored 1).png"});
}

TEST_F(UndoDeletion, anItemThatWasNotPinnedTakesAPinOffItsPlace) {
  pin({"pinned.png"});
  open();
  addAndTrash("a.png");
  add("pinned.png");
  ASSERT_TRUE(store->rename(item("pinned.png"), "a"));
  ASSERT_EQ(pinnedOnDisk(), std::set<std::string>{"a.png"});
  platform.files.remove("/shots/a.png");
  ASSERT_TRUE(store->undoLastDeletion());
  EXPECT_EQ(names(), Names{"a.png"});
  EXPECT_FALSE(item("a.png").isPinned);
  EXPECT_EQ(platform.files.content(kPinnedFile), "[]");
}

TEST_F(UndoDeletion, isWithinTheLimitOfTheList) {
  settings.maxHistory.set(2);
  open();
  addAndTrash("a.png", 1);
  add("b.png", 2);
  add("c.png", 3);
  ASSERT_TRUE(store->undoLastDeletion());
  EXPECT_EQ(names(), (Names{"c.png", "a.png"}));
}

TEST_F(UndoDeletion, anOlderItemThanTheListHasRoomForIsRestoredAndForgottenAtOnce) {
  pin({"p.png", "q.png"});
  settings.maxHistory.set(2);
  open();
  addAndTrash("a.png", 1);
  add("p.png", 2);
  add("q.png", 3);
  EXPECT_TRUE(store->undoLastDeletion());
  EXPECT_EQ(names(), (Names{"q.png", "p.png"}));
  EXPECT_EQ(selection(), "- | - | -");
  EXPECT_EQ(platform.files.content("/shots/a.png"), "content");
  EXPECT_EQ(platform.analytics.count(AnalyticsEventName::screenshotRestored), 1);
  EXPECT_FALSE(store->undoLastDeletion());
}

TEST_F(UndoDeletion, makesNoThumbnailWhereThereIsOne) {
  add("a.png");
  platform.time.runReady();
  store->moveToTrash(item("a.png"));
  const auto rendered = platform.thumbnails.rendered;
  ASSERT_TRUE(store->undoLastDeletion());
  platform.time.runReady();
  EXPECT_EQ(platform.thumbnails.rendered, rendered);
}

TEST_F(UndoDeletion, makesTheThumbnailThatAnItemWasDeletedTooSoonFor) {
  addAndTrash("a.png");
  platform.time.runReady();
  ASSERT_TRUE(store->undoLastDeletion());
  EXPECT_EQ(item("a.png").thumbnail, nullptr);
  platform.time.runReady();
  EXPECT_NE(item("a.png").thumbnail, nullptr);
}

TEST_F(UndoDeletion, doesNotOutliveTheRun) {
  addAndTrash("a.png");
  open();
  EXPECT_FALSE(store->undoLastDeletion());
}

}  // namespace
}  // namespace quenlio
