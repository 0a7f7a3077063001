// Screenshots on their way to the clipboard, the share menu and the file manager.
#include <gtest/gtest.h>

#include "tests/harness/TestLibrary.h"

namespace quenlio {
namespace {

class HandOut : public testing::Test, protected TestLibrary {
 protected:
  FileURL add(const std::string& name) {
    platform.time.advanceBy(Seconds(1));  // the newest comes first
    platform.files.write("/shots/" + name);
    store.ingestScreenshot(FileURL("/shots/" + name), std::nullopt);
    return FileURL("/shots/" + name);
  }
  void selectAll() {
    std::set<Uuid> ids;
    for (const ScreenshotItem& item : store.items.get()) {
      ids.insert(item.id);
    }
    store.selectedItemIDs.set(ids);
  }
  void selectNothing() {
    store.selectedItemID.set(std::nullopt);
    store.selectedItemIDs.set({});
  }
  [[nodiscard]] std::optional<WindowID> shareHost() {
    platform.sharingServicePicker.shown.clear();
    store.shareSelection();
    return platform.sharingServicePicker.shown.empty()
               ? std::nullopt
               : std::optional(platform.sharingServicePicker.shown.front().window);
  }
};

TEST_F(HandOut, aCopyOfOneIsItsPictureAndItsFileInOneWrite) {
  const FileURL file = add("a.png");
  store.copySelection();
  ASSERT_TRUE(platform.pasteboard.contents);
  const auto picture = std::dynamic_pointer_cast<const FakeImages::Picture>(platform.pasteboard.contents->image);
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->url, file);
  EXPECT_EQ(platform.pasteboard.contents->fileURLs, std::vector{file});
  EXPECT_LT(platform.log.indexOf("clearContents"), platform.log.indexOf("writeObjects"));
  EXPECT_EQ(platform.log.count("writeObjects"), 1);
}

TEST_F(HandOut, aCopyOfAFileThatIsNoReadablePictureIsTheFileAlone) {
  const FileURL file = add("a.png");
  platform.images.unreadable.insert(file);
  store.copySelection();
  ASSERT_TRUE(platform.pasteboard.contents);
  EXPECT_EQ(platform.pasteboard.contents->image, nullptr);
  EXPECT_EQ(platform.pasteboard.contents->fileURLs, std::vector{file});
}

TEST_F(HandOut, aCopyOfSeveralIsTheirFilesInListOrderWithoutPixels) {
  const FileURL older = add("a.png");
  const FileURL newer = add("b.png");
  selectAll();
  store.copySelection();
  ASSERT_TRUE(platform.pasteboard.contents);
  EXPECT_EQ(platform.pasteboard.contents->image, nullptr);
  EXPECT_EQ(platform.pasteboard.contents->fileURLs, (std::vector{newer, older}));
}

TEST_F(HandOut, aCopyFromAnEmptyListLeavesTheClipboardAlone) {
  platform.pasteboard.contents = PasteboardObjects{.fileURLs = {FileURL("/else.txt")}};
  store.copySelection();
  ASSERT_TRUE(platform.pasteboard.contents);
  EXPECT_EQ(platform.pasteboard.contents->fileURLs, std::vector{FileURL("/else.txt")});
  EXPECT_EQ(platform.log.count("clearContents"), 0);
}

TEST_F(HandOut, withNothingSelectedTheFirstItemIsCopied) {
  add("a.png");
  const FileURL newest = add("b.png");
  selectNothing();
  store.copySelection();
  ASSERT_TRUE(platform.pasteboard.contents);
  EXPECT_EQ(platform.pasteboard.contents->fileURLs, std::vector{newest});
}

TEST_F(HandOut, theShareMenuOpensAtThePointerInTheWindowUnderIt) {
  const FileURL older = add("a.png");
  const FileURL newer = add("b.png");
  selectAll();
  platform.windows.list = {{.id = 7, .frame = {{0, 0}, {50, 50}}, .isKeyWindow = true},
                           {.id = 8, .frame = {{100, 200}, {300, 300}}}};
  platform.screens.pointer = {130, 260};
  store.shareSelection();
  ASSERT_EQ(platform.sharingServicePicker.shown.size(), 1U);
  const auto& shown = platform.sharingServicePicker.shown.front();
  EXPECT_EQ(shown.items, (std::vector{newer, older}));
  EXPECT_EQ(shown.window, 8U);
  EXPECT_EQ(shown.rect, (Rect<WindowContent>{{30, 60}, {1, 1}}));
  EXPECT_EQ(shown.edge, RectEdge::minY);
}

TEST_F(HandOut, withoutAWindowUnderThePointerTheKeyOneIsTakenThenTheFloatingOneThenTheFirst) {
  add("a.png");
  const Rect<Screen> elsewhere{{900, 0}, {10, 10}};
  platform.windows.list = {{.id = 1, .frame = elsewhere},
                           {.id = 2, .frame = elsewhere, .level = kStatusWindowLevel},
                           {.id = 3, .frame = elsewhere, .isKeyWindow = true}};
  EXPECT_EQ(shareHost(), 3U);
  platform.windows.list[2].isKeyWindow = false;
  EXPECT_EQ(shareHost(), 2U);
  platform.windows.list[1].level = 3;
  EXPECT_EQ(shareHost(), 1U);
}

TEST_F(HandOut, nothingIsSharedWithoutAWindowOrOneWithoutContentOrWithoutItems) {
  platform.windows.list = {{.id = 1, .frame = {{0, 0}, {500, 800}}}};
  EXPECT_EQ(shareHost(), std::nullopt);  // no items
  add("a.png");
  EXPECT_EQ(shareHost(), 1U);
  platform.windows.list.front().hasContentView = false;
  EXPECT_EQ(shareHost(), std::nullopt);
  platform.windows.list.clear();
  EXPECT_EQ(shareHost(), std::nullopt);
}

TEST_F(HandOut, allThatIsSelectedIsRevealedAtOnceInListOrder) {
  store.revealSelectionInFinder();
  EXPECT_TRUE(platform.workspace.revealed.empty());
  const FileURL older = add("a.png");
  const FileURL newer = add("b.png");
  selectAll();
  store.revealSelectionInFinder();
  ASSERT_EQ(platform.workspace.revealed.size(), 1U);
  EXPECT_EQ(platform.workspace.revealed.front(), (std::vector{newer, older}));
}

}  // namespace
}  // namespace quenlio
