// How long the list may be, and its order.
#include "tests/core/library/LibraryTest.h"

namespace quenlio {
namespace {

class Prune : public LibraryTest {
 protected:
  void openWithLimit(std::int64_t limit) {
    settings.maxHistory.set(limit);
    open();
  }
};

TEST_F(Prune, theListHoldsAtMostTheLimit) {
  openWithLimit(3);
  for (int i = 1; i <= 5; ++i) {
    add(std::to_string(i) + ".png", i);
  }
  EXPECT_EQ(names(), (Names{"5.png", "4.png", "3.png"}));
}

TEST_F(Prune, withALimitOfOneEveryIngestLeavesExactlyTheNewItemEvenAnOlderOne) {
  openWithLimit(1);
  add("new.png", 10);
  const Uuid old = add("old.png", 1);
  EXPECT_EQ(names(), Names{"old.png"});
  EXPECT_EQ(store->selectedItemID.get(), old);
}

TEST_F(Prune, aLimitOfZeroOrLessActsAsOne) {
  for (const std::int64_t limit : {0, -1, -1000}) {
    openWithLimit(limit);
    add("a.png", 1);
    add("b.png", 2);
    EXPECT_EQ(names(), Names{"b.png"}) << limit;
  }
}

TEST_F(Prune, pinnedItemsCountAgainstTheLimit) {
  pin({"p.png", "q.png"});
  openWithLimit(3);
  add("p.png", 1);
  add("q.png", 2);
  add("a.png", 3);
  add("b.png", 4);
  EXPECT_EQ(names(), (Names{"b.png", "q.png", "p.png"}));
}

TEST_F(Prune, withMorePinsThanTheLimitAllPinsStayAndNothingElse) {
  const Names pins{"1.png", "2.png", "3.png", "4.png", "5.png"};
  pin(pins);
  openWithLimit(3);
  for (std::size_t i = 0; i < pins.size(); ++i) {
    add(pins[i], static_cast<int>(i));
  }
  store->ingestScreenshot(file("a.png", 10), std::nullopt);
  EXPECT_EQ(names(), (Names{"5.png", "4.png", "3.png", "2.png", "1.png"}));
}

TEST_F(Prune, ofTwoWithTheSameDateThePinnedOneIsAhead) {
  pin({"pinned.png"});
  open();
  add("pinned.png", 1);
  add("later.png", 1);
  EXPECT_EQ(names(), (Names{"pinned.png", "later.png"}));
}

TEST_F(Prune, ofTwoUnpinnedWithTheSameDateTheOneThatWasAheadStaysAhead) {
  open();
  add("a.png", 1);
  add("b.png", 1);
  EXPECT_EQ(names(), (Names{"b.png", "a.png"}));
  add("c.png", 2);
  EXPECT_EQ(names(), (Names{"c.png", "b.png", "a.png"}));
}

TEST_F(Prune, pinnedItemsStandAtTheirPlaceByDate) {
  pin({"pinned.png"});
  open();
  add("pinned.png", 1);
  add("newer.png", 2);
  EXPECT_EQ(names(), (Names{"newer.png", "pinned.png"}));
}

TEST_F(Prune, itOnlyForgetsTheFilesAndPinsStay) {
  pin({"pinned.png"});
  openWithLimit(1);
  add("pinned.png", 3);
  store->ingestScreenshot(file("dropped.png", 4), std::nullopt);
  EXPECT_EQ(names(), Names{"pinned.png"});
  EXPECT_TRUE(platform.files.content("/shots/dropped.png"));
  EXPECT_EQ(pinnedOnDisk(), std::set<std::string>{"pinned.png"});
}

TEST_F(Prune, anItemDroppedAsItComesLeavesNoSelectionBehind) {
  pin({"pinned.png"});
  openWithLimit(1);
  add("pinned.png", 3);
  store->ingestScreenshot(file("dropped.png", 4), std::nullopt);
  EXPECT_FALSE(store->selectedItemID.get());
  EXPECT_TRUE(store->selectedItemIDs.get().empty());
  EXPECT_FALSE(store->selectionAnchorID);
}

TEST_F(Prune, aLoweredLimitTakesHoldAtTheNextIngest) {
  open();
  for (int i = 1; i <= 5; ++i) {
    add(std::to_string(i) + ".png", i);
  }
  settings.maxHistory.set(2);
  EXPECT_EQ(names().size(), 5U);
  add("6.png", 6);
  EXPECT_EQ(names(), (Names{"6.png", "5.png"}));
}

TEST_F(Prune, aLoweredLimitTakesHoldAtTheNextChangeOfTheSettingWhateverThatSays) {
  open();
  for (int i = 1; i <= 5; ++i) {
    add(std::to_string(i) + ".png", i);
  }
  settings.maxHistory.set(2);
  settings.maxHistory.set(100);
  EXPECT_EQ(names(), (Names{"5.png", "4.png"}));
}

TEST_F(Prune, aChangeOfTheSettingSortsTheListEvenBelowTheLimit) {
  open();
  add("a.png", 1);
  add("b.png", 2);
  platform.files.setCreationDate("/shots/a.png", start + std::chrono::seconds(3));
  store->refreshEditedScreenshot(FileURL("/shots/a.png"));
  ASSERT_EQ(names(), (Names{"b.png", "a.png"}));
  settings.maxHistory.set(50);
  EXPECT_EQ(names(), (Names{"a.png", "b.png"}));
}

TEST_F(Prune, whatIsDroppedLeavesTheSelectionAndTheSelectionMayStayEmpty) {
  open();
  const Uuid oldest = add("a.png", 1);
  add("b.png", 2);
  store->select(oldest);
  settings.maxHistory.set(1);
  settings.maxHistory.set(1);
  ASSERT_EQ(names(), Names{"b.png"});
  EXPECT_FALSE(store->selectedItemID.get());
  EXPECT_TRUE(store->selectedItemIDs.get().empty());
}

TEST_F(Prune, nothingListensToTheSettingOnceTheLibraryIsGone) {
  open();
  add("a.png");
  platform.time.runReady();
  store.reset();
  platform.log.clear();
  settings.maxHistory.set(3);
  EXPECT_EQ(platform.log.calls(), Names{});
  EXPECT_EQ(settings.maxHistory.get(), 3);
}

}  // namespace
}  // namespace quenlio
