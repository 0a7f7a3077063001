// The selection moved along the list, one step at a time, alone or with a range behind it.
#include <limits>

#include "tests/core/library/LibraryTest.h"

namespace quenlio {
namespace {

class MoveSelection : public LibraryTest {
 protected:
  // Six items, which stand in the list from 0 to 5.
  void SetUp() override {
    open();
    for (int i = 5; i >= 0; --i) {
      add(std::to_string(i) + ".png", 10 - i);
    }
  }
  void selectIndex(std::size_t index) { store->select(store->items.get()[index].id); }
  void selectNothing() {
    store->selectedItemID.set(std::nullopt);
    store->selectedItemIDs.set({});
    store->selectionAnchorID.reset();
  }
  bool step(int step) { return store->moveSelection(step, false); }
  bool extend(int step) { return store->moveSelection(step, true); }
};

TEST_F(MoveSelection, aStepSelectsTheNeighbourAloneAndMakesItTheAnchor) {
  selectIndex(2);
  EXPECT_TRUE(step(1));
  EXPECT_EQ(selection(), "3 | 3 | 3");
  EXPECT_TRUE(step(-1));
  EXPECT_TRUE(step(-1));
  EXPECT_EQ(selection(), "1 | 1 | 1");
}

TEST_F(MoveSelection, theAnchorIsThereWhenAllThatAreSelectedAreAnnounced) {
  selectIndex(2);
  std::vector<std::optional<Uuid>> anchors;
  const Subscription observer =
      store->selectedItemIDs.subscribe([&](const std::set<Uuid>&) { anchors.push_back(store->selectionAnchorID); });
  anchors.clear();
  EXPECT_TRUE(step(1));
  ASSERT_FALSE(anchors.empty());
  EXPECT_EQ(anchors.front(), store->items.get()[3].id);
  // Nor is it any other way for a range that has nowhere to begin.
  store->selectionAnchorID = Uuid::random();
  anchors.clear();
  store->selectRange(store->items.get()[5], false);
  ASSERT_FALSE(anchors.empty());
  EXPECT_EQ(anchors.front(), store->items.get()[5].id);
}

TEST_F(MoveSelection, anEmptyListHasNoStep) {
  open();
  for (const bool extends : {false, true}) {
    EXPECT_FALSE(store->moveSelection(1, extends));
    EXPECT_FALSE(store->moveSelection(-1, extends));
    EXPECT_EQ(selection(), "- | - | -");
  }
}

TEST_F(MoveSelection, withNothingSelectedTheStepsAreCountedFromTheFirstItem) {
  for (const bool extends : {false, true}) {
    selectNothing();
    EXPECT_TRUE(store->moveSelection(1, extends));
    EXPECT_EQ(selection(), "1 | 1 | 1");
    selectNothing();
    EXPECT_TRUE(store->moveSelection(-1, extends));
    EXPECT_EQ(selection(), "0 | 0 | 0");
  }
}

TEST_F(MoveSelection, atTheEndsNothingIsDone) {
  for (const bool extends : {false, true}) {
    selectIndex(5);
    const Announcements atTheLast(*store);
    EXPECT_FALSE(store->moveSelection(1, extends));
    EXPECT_EQ(atTheLast.list, Names{});
    EXPECT_EQ(selection(), "5 | 5 | 5");
    selectIndex(0);
    const Announcements atTheFirst(*store);
    EXPECT_FALSE(store->moveSelection(-1, extends));
    EXPECT_EQ(atTheFirst.list, Names{});
    EXPECT_EQ(selection(), "0 | 0 | 0");
  }
}

TEST_F(MoveSelection, atTheEndsARangeIsKept) {
  selectIndex(4);
  EXPECT_TRUE(extend(1));
  EXPECT_FALSE(extend(1));
  EXPECT_FALSE(step(1));
  EXPECT_EQ(selection(), "5 | 4 5 | 4");
}

TEST_F(MoveSelection, aLongStepGoesToTheEnd) {
  selectIndex(2);
  EXPECT_TRUE(step(std::numeric_limits<int>::max()));
  EXPECT_EQ(selection(), "5 | 5 | 5");
  EXPECT_TRUE(step(std::numeric_limits<int>::min()));
  EXPECT_EQ(selection(), "0 | 0 | 0");
  EXPECT_FALSE(step(0));
}

TEST_F(MoveSelection, aPrimaryItemThatIsNotListedCountsAsTheFirst) {
  selectIndex(3);
  store->selectedItemID.set(Uuid::random());
  EXPECT_FALSE(step(-1));
  EXPECT_TRUE(step(1));
  EXPECT_EQ(selection(), "1 | 1 | 1");
}

TEST_F(MoveSelection, anExtendedSelectionGrowsFromTheAnchorAndShrinksBackToIt) {
  selectIndex(2);
  EXPECT_TRUE(extend(1));
  EXPECT_EQ(selection(), "3 | 2 3 | 2");
  EXPECT_TRUE(extend(1));
  EXPECT_EQ(selection(), "4 | 2 3 4 | 2");
  EXPECT_TRUE(extend(-1));
  EXPECT_EQ(selection(), "3 | 2 3 | 2");
  EXPECT_TRUE(extend(-1));
  EXPECT_EQ(selection(), "2 | 2 | 2");
  EXPECT_TRUE(extend(-1));
  EXPECT_EQ(selection(), "1 | 1 2 | 2");
}

TEST_F(MoveSelection, whatIsSelectedOutsideTheRangeIsLost) {
  selectIndex(0);
  store->toggleSelection(item("3.png"));
  EXPECT_TRUE(extend(1));
  EXPECT_EQ(selection(), "4 | 3 4 | 3");
}

TEST_F(MoveSelection, withoutAnAnchorARangeStartsAtThePrimaryItemWhichBecomesTheAnchor) {
  selectIndex(2);
  store->selectionAnchorID.reset();
  EXPECT_TRUE(extend(1));
  EXPECT_EQ(selection(), "3 | 2 3 | 2");
}

TEST_F(MoveSelection, withAnAnchorThatIsNotListedTheTargetIsSelectedAlone) {
  selectIndex(2);
  store->selectionAnchorID = Uuid::random();
  EXPECT_TRUE(extend(1));
  EXPECT_EQ(selection(), "3 | 3 | 3");
}

TEST_F(MoveSelection, aRangeIsAnnouncedBeforeItsPrimaryItemAndOneItemAfter) {
  selectIndex(2);
  const AnnouncementsInTheLog announcements(*this);
  step(1);
  EXPECT_EQ(platform.log.calls(), (Names{"primary 3.png", "selected 3.png", "selected 3.png", "primary 3.png",
                                         "selected 3.png", "selected 3.png"}));
  platform.log.clear();
  extend(1);
  EXPECT_EQ(platform.log.calls(), (Names{"selected 3.png 4.png", "primary 4.png", "selected 3.png 4.png",
                                         "primary 4.png", "selected 3.png 4.png", "selected 3.png 4.png"}));
}

}  // namespace
}  // namespace quenlio
