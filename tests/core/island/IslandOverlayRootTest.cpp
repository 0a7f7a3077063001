// What the user does in the island's views.
#include <gtest/gtest.h>

#include "core/island/IslandOverlayRoot.h"

#include "tests/harness/TestLibrary.h"

namespace quenlio {
namespace {

using namespace std::chrono_literals;

class IslandRoot : public testing::Test, protected TestLibrary {
 protected:
  IslandRoot() {
    for (const char* name : {"c.png", "b.png", "a.png"}) {
      platform.time.advanceBy(1s);
      platform.files.write(std::string("/shots/") + name);
      store.ingestScreenshot(FileURL(std::string("/shots/") + name), std::nullopt);
    }
    platform.time.runReady();
    platform.windows.list = {{.id = 1, .frame = {{0, 0}, {2000, 2000}}}};
  }
  [[nodiscard]] const ScreenshotItem& item(std::size_t index) const { return store.items.get().at(index); }
  [[nodiscard]] std::vector<std::string> selected() const {
    std::vector<std::string> names;
    for (const ScreenshotItem& each : store.items.get()) {
      if (store.selectedItemIDs.get().contains(each.id)) {
        names.push_back(each.fileURL.lastPathComponent());
      }
    }
    return names;
  }
  [[nodiscard]] std::vector<std::string> dragged() const {
    std::vector<std::string> names;
    for (const DraggingItem& each : platform.draggingSessions.requests.back().items) {
      names.push_back(each.fileURL.lastPathComponent());
    }
    return names;
  }
  using Names = std::vector<std::string>;

  std::vector<FileURL> edited;
  std::vector<bool> dragStates;
  IslandOverlayRoot root{{.store = store,
                          .dragDrop = dragDrop,
                          .scheduler = platform.time,
                          .onOpenEditor = [this](const ScreenshotItem& opened) { edited.push_back(opened.fileURL); },
                          .onItemDragStateChanged = [this](bool dragging) { dragStates.push_back(dragging); }}};
};

TEST_F(IslandRoot, aPlainClickSelectsOneAloneAndMakesItTheAnchor) {
  root.select(item(2), 0);
  EXPECT_EQ(selected(), Names{"c.png"});
  EXPECT_EQ(store.selectedItemID.get(), item(2).id);
  EXPECT_EQ(store.selectionAnchorID, item(2).id);
}

TEST_F(IslandRoot, shiftSelectsARangeInPlaceOfTheRest) {
  root.select(item(1), 0);
  root.select(item(2), kModifierShift);
  EXPECT_EQ(selected(), (Names{"b.png", "c.png"}));
  root.select(item(0), kModifierShift);
  EXPECT_EQ(selected(), (Names{"a.png", "b.png"}));
}

TEST_F(IslandRoot, shiftWithCommandAddsARange) {
  root.select(item(0), 0);
  root.select(item(2), kModifierCommand);
  root.select(item(1), kModifierShift | kModifierCommand);
  EXPECT_EQ(selected(), (Names{"a.png", "b.png", "c.png"}));
}

TEST_F(IslandRoot, commandTakesOneMoreOrOneLess) {
  root.select(item(0), 0);
  root.select(item(2), kModifierCommand);
  EXPECT_EQ(selected(), (Names{"a.png", "c.png"}));
  root.select(item(0), kModifierCommand);
  EXPECT_EQ(selected(), Names{"c.png"});
}

TEST_F(IslandRoot, otherModifiersMakeAPlainClick) {
  root.select(item(0), 0);
  root.select(item(2), kModifierOption | kModifierControl);
  EXPECT_EQ(selected(), Names{"c.png"});
}

TEST_F(IslandRoot, aClickOnAnItemThatHasJustLeftSelectsNothing) {
  ScreenshotItem left = item(1);
  store.moveToTrash(left);
  const Uuid primary = item(0).id;
  root.select(item(0), 0);
  for (const ModifierFlags flags : {ModifierFlags{0}, kModifierCommand, kModifierShift}) {
    root.select(left, flags);
    EXPECT_EQ(store.selectedItemID.get(), primary);
    EXPECT_EQ(store.selectedItemIDs.get(), std::set<Uuid>{primary});
    EXPECT_EQ(store.selectionAnchorID, primary);
  }
}

TEST_F(IslandRoot, theToolbarActsOnTheSelection) {
  root.select(item(0), 0);
  root.select(item(1), kModifierCommand);
  root.copy();
  EXPECT_EQ(platform.pasteboard.contents->fileURLs.size(), 2U);
  root.share();
  EXPECT_EQ(platform.sharingServicePicker.shown.back().items.size(), 2U);
  root.viewInFolder();
  EXPECT_EQ(platform.workspace.revealed.back().size(), 2U);
  root.edit();
  EXPECT_EQ(edited, std::vector{FileURL("/shots/b.png")});
  root.trash();
  EXPECT_EQ(store.items.get().size(), 1U);
  EXPECT_TRUE(store.selectedItemIDs.get().empty());
}

TEST_F(IslandRoot, thereIsNothingToEditInAnEmptyLibrary) {
  root.select(item(0), 0);
  root.select(item(2), kModifierShift);
  root.trash();
  ASSERT_TRUE(store.items.get().empty());
  root.edit();
  EXPECT_TRUE(edited.empty());
}

TEST_F(IslandRoot, aDragOfASelectedItemTakesTheWholeSelectionAlong) {
  root.select(item(0), 0);
  root.select(item(2), kModifierCommand);
  EXPECT_TRUE(root.beginItemDrag(item(2)));
  EXPECT_EQ(dragged(), (Names{"a.png", "c.png"}));
}

TEST_F(IslandRoot, aDragOfAnotherItemIsOfThatAlone) {
  root.select(item(0), 0);
  EXPECT_TRUE(root.beginItemDrag(item(2)));
  EXPECT_EQ(dragged(), Names{"c.png"});
  EXPECT_EQ(selected(), Names{"a.png"});
}

TEST_F(IslandRoot, aDragLastsFromItsStartUntilAMomentAfterItsEnd) {
  EXPECT_TRUE(root.beginItemDrag(item(0)));
  EXPECT_TRUE(root.isExportDragging.get());
  EXPECT_EQ(dragStates, std::vector{true});
  platform.draggingSessions.end(1);
  platform.time.runReady();
  EXPECT_TRUE(root.isExportDragging.get());
  platform.time.advanceBy(120ms);
  EXPECT_FALSE(root.isExportDragging.get());
  EXPECT_EQ(dragStates, (std::vector{true, false}));
}

TEST_F(IslandRoot, theLateEndOfAnOldDragDoesNotEndANewOne) {
  EXPECT_TRUE(root.beginItemDrag(item(0)));
  platform.draggingSessions.end(1);
  platform.time.advanceBy(60ms);
  EXPECT_TRUE(root.beginItemDrag(item(1)));
  platform.time.advanceBy(1s);
  EXPECT_TRUE(root.isExportDragging.get());
  platform.draggingSessions.end(2);
  platform.time.advanceBy(1s);
  EXPECT_FALSE(root.isExportDragging.get());
}

TEST_F(IslandRoot, theEndOfAnOldDragThatComesAfterTheStartOfANewOneDoesNotEndItEither) {
  EXPECT_TRUE(root.beginItemDrag(item(0)));
  EXPECT_TRUE(root.beginItemDrag(item(1)));
  platform.draggingSessions.end(1);
  platform.time.advanceBy(1s);
  EXPECT_TRUE(root.isExportDragging.get());
}

TEST_F(IslandRoot, aDragThatCannotBeginIsOverAtOnce) {
  platform.files.remove("/shots/a.png");
  EXPECT_FALSE(root.beginItemDrag(item(0)));
  EXPECT_FALSE(root.isExportDragging.get());
  EXPECT_EQ(dragStates, (std::vector{true, false}));
  EXPECT_EQ(platform.time.pending(), 0U);
}

TEST_F(IslandRoot, theContentIsAsOpaqueAsItsStateSays) {
  EXPECT_DOUBLE_EQ(root.containerOpacity(), 0.88);
  root.isPreviewHolding.set(true);
  EXPECT_DOUBLE_EQ(root.containerOpacity(), 0.85);
  root.isExportDragging.set(true);
  EXPECT_DOUBLE_EQ(root.containerOpacity(), 0.83);
  store.items.mutate([](auto& items) { items.front().isPinned = true; });
  EXPECT_DOUBLE_EQ(root.containerOpacity(), 0.85);
  root.isExportDragging.set(false);
  EXPECT_DOUBLE_EQ(root.containerOpacity(), 0.87);
  root.isPreviewHolding.set(false);
  EXPECT_DOUBLE_EQ(root.containerOpacity(), 0.90);
  store.items.set({});
  EXPECT_DOUBLE_EQ(root.containerOpacity(), 0.88);
}

}  // namespace
}  // namespace quenlio
