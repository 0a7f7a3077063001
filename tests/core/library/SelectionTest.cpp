// Which items count as selected, and how a selection is repaired after the list has changed.
#include "tests/core/library/LibraryTest.h"

namespace quenlio {
namespace {

class Selection : public LibraryTest {
 protected:
  void SetUp() override {
    open();
    c = add("c.png", 1);
    b = add("b.png", 2);
    a = add("a.png", 3);
  }
  void set(std::optional<Uuid> primary, const std::set<Uuid>& all, std::optional<Uuid> anchor = std::nullopt) {
    store->selectedItemID.set(primary);
    store->selectedItemIDs.set(all);
    store->selectionAnchorID = anchor;
  }
  void expect(std::optional<Uuid> primary, const std::set<Uuid>& all, std::optional<Uuid> anchor) {
    EXPECT_EQ(store->selectedItemID.get(), primary);
    EXPECT_EQ(store->selectedItemIDs.get(), all);
    EXPECT_EQ(store->selectionAnchorID, anchor);
  }
  [[nodiscard]] Names selectedNames() const {
    Names selected;
    for (const ScreenshotItem& item : store->selectedItems()) {
      selected.push_back(item.fileURL.lastPathComponent());
    }
    return selected;
  }

  Uuid a, b, c;  // in list order
  const Uuid stranger = Uuid::random();
};

TEST_F(Selection, thePrimaryItemIsTheSelectedOne) {
  set(c, {a, c});
  ASSERT_NE(store->selectedItem(), nullptr);
  EXPECT_EQ(store->selectedItem()->id, c);
}

TEST_F(Selection, withoutAPrimaryItemTheFirstOfTheSelectedInListOrderIs) {
  set(std::nullopt, {c, b});
  EXPECT_EQ(store->selectedItem()->id, b);
  set(stranger, {c, b});
  EXPECT_EQ(store->selectedItem()->id, b);
}

TEST_F(Selection, withNothingSelectedTheFirstItemIsTheSelectedOne) {
  set(std::nullopt, {});
  EXPECT_EQ(store->selectedItem()->id, a);
  set(stranger, {stranger});
  EXPECT_EQ(store->selectedItem()->id, a);
}

TEST_F(Selection, ofAnEmptyListNothingIsSelected) {
  open();
  EXPECT_EQ(store->selectedItem(), nullptr);
  EXPECT_TRUE(store->selectedItems().empty());
}

TEST_F(Selection, severalComeInListOrder) {
  set(c, {c, a});
  EXPECT_EQ(selectedNames(), (Names{"a.png", "c.png"}));
}

TEST_F(Selection, withoutAnyTheOneSelectedItemStandsForThem) {
  set(c, {});
  EXPECT_EQ(selectedNames(), Names{"c.png"});
  set(std::nullopt, {});
  EXPECT_EQ(selectedNames(), Names{"a.png"});
}

TEST_F(Selection, selectingOneSelectsItAloneAndMakesItTheAnchor) {
  set(c, {a, b, c}, b);
  store->select(a);
  expect(a, {a}, a);
}

TEST_F(Selection, repairDropsWhatIsNotListed) {
  set(stranger, {stranger, b}, stranger);
  store->normalizeSelection(std::nullopt, true);
  expect(b, {b}, b);
}

TEST_F(Selection, repairKeepsASoundSelection) {
  set(b, {a, b}, a);
  store->normalizeSelection(std::nullopt, false);
  expect(b, {a, b}, a);
}

TEST_F(Selection, aPreferredItemBecomesThePrimaryOneAndJoinsTheRest) {
  set(b, {b}, b);
  store->normalizeSelection(c, true);
  expect(c, {b, c}, b);
}

TEST_F(Selection, aPreferredItemThatIsNotListedIsIgnored) {
  set(b, {b}, b);
  store->normalizeSelection(stranger, true);
  expect(b, {b}, b);
}

TEST_F(Selection, withoutAPrimaryItemRepairTakesTheFirstOfTheSelected) {
  set(std::nullopt, {c, b});
  store->normalizeSelection(std::nullopt, true);
  expect(b, {b, c}, b);
}

TEST_F(Selection, anEmptySelectionStandsWhereItIsAllowed) {
  set(std::nullopt, {}, b);
  store->normalizeSelection(std::nullopt, true);
  expect(std::nullopt, {}, std::nullopt);
}

TEST_F(Selection, whereAnEmptySelectionIsNotAllowedTheFirstItemIsTaken) {
  set(std::nullopt, {}, std::nullopt);
  store->normalizeSelection(std::nullopt, false);
  expect(a, {a}, a);
}

TEST_F(Selection, thePrimaryItemIsAlwaysAmongTheSelected) {
  set(b, {c}, b);
  store->normalizeSelection(std::nullopt, true);
  expect(b, {b, c}, b);
}

TEST_F(Selection, theAnchorStaysWhileItsItemIsListedAndElseMovesToThePrimaryItem) {
  set(b, {b}, c);
  store->normalizeSelection(std::nullopt, true);
  expect(b, {b}, c);
  platform.files.remove("/shots/c.png");
  store->removeMissingFiles();
  expect(b, {b}, b);
}

TEST_F(Selection, repairOfAnEmptyListClearsAllThree) {
  for (const bool allowEmpty : {true, false}) {
    open();
    set(stranger, {stranger}, stranger);
    store->normalizeSelection(stranger, allowEmpty);
    expect(std::nullopt, {}, std::nullopt);
  }
}

}  // namespace
}  // namespace quenlio
