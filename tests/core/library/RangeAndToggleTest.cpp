// Ranges and single items taken into the selection and out of it, and what a deletion leaves of it.
#include "tests/core/library/LibraryTest.h"

namespace quenlio {
namespace {

class SelectionClicks : public LibraryTest {
 protected:
  // Six items, which stand in the list from 0 to 5. The first is selected.
  void SetUp() override {
    open();
    for (int i = 5; i >= 0; --i) {
      add(std::to_string(i) + ".png", 10 - i);
    }
  }
  const ScreenshotItem& at(std::size_t index) { return store->items.get()[index]; }
  void click(std::size_t index) { store->select(at(index).id); }
  void range(std::size_t index, bool additive = false) { store->selectRange(at(index), additive); }
  void toggle(std::size_t index) { store->toggleSelection(at(index)); }
  ScreenshotItem stranger() {
    ScreenshotItem item = at(0);
    item.id = Uuid::random();
    return item;
  }
};

class SelectRange : public SelectionClicks {};

TEST_F(SelectRange, reachesFromTheAnchorToTheItemInEitherDirection) {
  click(3);
  range(5);
  EXPECT_EQ(selection(), "5 | 3 4 5 | 3");
  range(1);
  EXPECT_EQ(selection(), "1 | 1 2 3 | 3");
  range(3);
  EXPECT_EQ(selection(), "3 | 3 | 3");
}

TEST_F(SelectRange, takesThePlaceOfTheSelectionOrJoinsIt) {
  click(0);
  toggle(4);
  range(3, true);
  EXPECT_EQ(selection(), "3 | 0 3 4 | 4");
  range(5);
  EXPECT_EQ(selection(), "5 | 4 5 | 4");
}

TEST_F(SelectRange, withoutAnAnchorStartsAtThePrimaryItemWhichBecomesTheAnchor) {
  click(2);
  store->selectionAnchorID.reset();
  range(4);
  EXPECT_EQ(selection(), "4 | 2 3 4 | 2");
}

TEST_F(SelectRange, withNothingSelectedIsTheItemAlone) {
  click(2);
  toggle(2);
  range(4);
  EXPECT_EQ(selection(), "4 | 4 | 4");
}

TEST_F(SelectRange, withAnAnchorThatIsNotListedSelectsTheItemAloneAndRepairsNothing) {
  click(2);
  store->selectionAnchorID = Uuid::random();
  const AnnouncementsInTheLog announcements(*this);
  range(4, true);
  EXPECT_EQ(selection(), "4 | 4 | 4");
  EXPECT_EQ(platform.log.calls(), (Names{"primary 4.png", "selected 4.png"}));
}

TEST_F(SelectRange, toAnItemThatIsNotListedChangesNothing) {
  click(2);
  const Announcements announcements(*store);
  store->selectRange(stranger(), false);
  store->selectRange(stranger(), true);
  EXPECT_EQ(announcements.list, Names{});
  EXPECT_EQ(selection(), "2 | 2 | 2");
}

TEST_F(SelectRange, isAnnouncedBeforeItsPrimaryItemAndThenRepaired) {
  click(2);
  const AnnouncementsInTheLog announcements(*this);
  range(3);
  EXPECT_EQ(platform.log.calls(), (Names{"selected 2.png 3.png", "primary 3.png", "selected 2.png 3.png",
                                         "primary 3.png", "selected 2.png 3.png", "selected 2.png 3.png"}));
}

class ToggleSelection : public SelectionClicks {};

TEST_F(ToggleSelection, takesAnItemInAsThePrimaryOneAndAnchor) {
  click(1);
  const AnnouncementsInTheLog announcements(*this);
  toggle(4);
  EXPECT_EQ(selection(), "4 | 1 4 | 4");
  EXPECT_EQ(platform.log.calls(), (Names{"selected 1.png 4.png", "primary 4.png"}));
}

TEST_F(ToggleSelection, ofThePrimaryItemMakesTheFirstOfTheOthersPrimary) {
  click(1);
  toggle(3);
  toggle(2);
  EXPECT_EQ(selection(), "2 | 1 2 3 | 2");
  const AnnouncementsInTheLog announcements(*this);
  toggle(2);
  EXPECT_EQ(selection(), "1 | 1 3 | 2");
  EXPECT_EQ(platform.log.calls(),
            (Names{"selected 1.png 3.png", "primary 1.png", "selected 1.png 3.png", "selected 1.png 3.png"}));
}

TEST_F(ToggleSelection, ofAnotherItemLeavesThePrimaryOne) {
  click(1);
  toggle(3);
  toggle(1);
  EXPECT_EQ(selection(), "3 | 3 | 3");
}

TEST_F(ToggleSelection, ofTheOnlySelectedItemLeavesAnEmptySelectionThatStands) {
  click(3);
  const AnnouncementsInTheLog announcements(*this);
  toggle(3);
  EXPECT_EQ(selection(), "- | - | -");
  ASSERT_NE(store->selectedItem(), nullptr);
  EXPECT_EQ(store->selectedItem()->fileURL.stem(), "0");
  EXPECT_EQ(platform.log.calls(), (Names{"selected", "primary", "primary"}));
}

TEST_F(ToggleSelection, ofTheLastSelectedItemAlsoClearsAPrimaryItemThatWasNotAmongThem) {
  click(3);
  store->selectedItemIDs.set({at(5).id});
  toggle(5);
  EXPECT_EQ(selection(), "- | - | -");
}

TEST_F(ToggleSelection, ofAnItemThatHasLeftTheListLastsUntilTheNextRepair) {
  click(3);
  store->toggleSelection(stranger());
  EXPECT_EQ(selection(), "? | 3 ? | ?");
  store->normalizeSelection(std::nullopt, true);
  EXPECT_EQ(selection(), "3 | 3 | 3");
}

class SelectionAfterADeletion : public SelectionClicks {};

TEST_F(SelectionAfterADeletion, theFirstThatRemainsSelectedIsPrimaryAndTheAnchorStays) {
  click(5);
  toggle(4);
  range(2, true);
  EXPECT_EQ(selection(), "2 | 2 3 4 5 | 4");
  store->moveToTrash(at(2));
  EXPECT_EQ(selection(), "3 | 3 4 5 | 4");
}

TEST_F(SelectionAfterADeletion, theAnchorMovesToThePrimaryItemWhenItsOwnGoes) {
  click(2);
  range(4);
  store->moveToTrash(at(2));
  EXPECT_EQ(selection(), "4 | 3 4 | 4");
}

TEST_F(SelectionAfterADeletion, isLeftEmptyWhenTheOnlySelectedItemGoes) {
  click(2);
  store->moveToTrash(at(2));
  EXPECT_EQ(selection(), "- | - | -");
  EXPECT_EQ(names().size(), 5U);
}

TEST_F(SelectionAfterADeletion, doesNotChangeWhenAnotherItemGoes) {
  click(2);
  range(4);
  store->moveToTrash(at(0));
  EXPECT_EQ(selection(), "4 | 2 3 4 | 2");
}

class SelectionHandedOut : public SelectionClicks {
 protected:
  using Revealed = std::vector<std::vector<FileURL>>;
  [[nodiscard]] static std::vector<FileURL> urls(const Names& names) {
    std::vector<FileURL> list;
    for (const std::string& name : names) {
      list.emplace_back("/shots/" + name);
    }
    return list;
  }
};

TEST_F(SelectionHandedOut, isCopiedSharedAndRevealedInListOrder) {
  click(4);
  toggle(1);
  platform.windows.list = {{.id = 7, .frame = {{0, 0}, {100, 100}}, .isKeyWindow = true}};
  store->copySelection();
  store->shareSelection();
  store->revealSelectionInFinder();
  const std::vector<FileURL> both = urls({"1.png", "4.png"});
  ASSERT_TRUE(platform.pasteboard.contents);
  EXPECT_EQ(platform.pasteboard.contents->fileURLs, both);
  ASSERT_EQ(platform.sharingServicePicker.shown.size(), 1U);
  EXPECT_EQ(platform.sharingServicePicker.shown.front().items, both);
  EXPECT_EQ(platform.workspace.revealed, Revealed({both}));
}

TEST_F(SelectionHandedOut, isTheFirstItemWhenNothingIsSelected) {
  click(4);
  toggle(4);
  store->copySelection();
  store->revealSelectionInFinder();
  EXPECT_EQ(platform.pasteboard.contents->fileURLs, urls({"0.png"}));
  EXPECT_EQ(platform.workspace.revealed, Revealed({urls({"0.png"})}));
}

}  // namespace
}  // namespace quenlio
