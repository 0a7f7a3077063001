// Renaming in place, over a real library on a fake file system and, for what a store refuses, over an answer of our
// own.
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "core/base/Text.h"
#include "core/island/RenameSession.h"
#include "core/library/ScreenshotStore.h"

#include "tests/harness/TestLibrary.h"

namespace quenlio {
namespace {

ScreenshotItem itemAt(const std::string& path) {
  ScreenshotItem item;
  item.id = Uuid::random();
  item.fileURL = FileURL(path);
  return item;
}

class RenameSessionTest : public testing::Test {
 protected:
  using Asked = std::vector<std::pair<std::string, std::string>>;
  Asked asked_;  // the file's name, the new one
  bool answer_ = true;
  RenameSession session_{[this](const ScreenshotItem& item, std::string_view newName) {
    asked_.emplace_back(item.fileURL.lastPathComponent(), newName);
    return answer_;
  }};
};

TEST_F(RenameSessionTest, beginsWithTheNameAndKeepsTheExtensionApart) {
  EXPECT_FALSE(session_.isEditing());
  EXPECT_TRUE(session_.begin({itemAt("/shots/a.tar.png")}));
  EXPECT_TRUE(session_.isEditing());
  EXPECT_EQ(session_.draftName(), "a.tar");
  EXPECT_EQ(session_.extension(), "png");
}

TEST_F(RenameSessionTest, aFileWithoutAnExtensionIsItsNameAlone) {
  EXPECT_TRUE(session_.begin({itemAt("/shots/.hidden")}));
  EXPECT_EQ(session_.draftName(), ".hidden");
  EXPECT_EQ(session_.extension(), "");
}

TEST_F(RenameSessionTest, beginsOnlyWithExactlyOneSelected) {
  EXPECT_FALSE(session_.begin({}));
  EXPECT_FALSE(session_.begin({itemAt("/shots/a.png"), itemAt("/shots/b.png")}));
  EXPECT_FALSE(session_.isEditing());
}

TEST_F(RenameSessionTest, askedAgainWhileItIsEditingKeepsTheDraft) {
  const ScreenshotItem item = itemAt("/shots/a.png");
  session_.begin({item});
  session_.edit("half a na");
  EXPECT_TRUE(session_.begin({item}));
  EXPECT_EQ(session_.draftName(), "half a na");
}

TEST_F(RenameSessionTest, aCommitRenamesAndEnds) {
  session_.begin({itemAt("/shots/a.png")});
  session_.edit("b");
  EXPECT_TRUE(session_.commit());
  EXPECT_FALSE(session_.isEditing());
  EXPECT_EQ(asked_, (Asked{{"a.png", "b"}}));
}

TEST_F(RenameSessionTest, anUnchangedDraftEndsWithoutAnyWork) {
  // Some of these would become another name by being cleaned like a typed one.
  for (const char* path : {"/shots/a.png", "/shots/ a .png", "/shots/a:b.png", "/shots/\xff.png", "/shots/a\nb.png"}) {
    session_.begin({itemAt(path)});
    session_.edit("something else");
    session_.edit(readable(FileURL(path).stem()));
    EXPECT_TRUE(session_.commit()) << path;
    EXPECT_FALSE(session_.isEditing());
  }
  EXPECT_TRUE(asked_.empty());
}

TEST_F(RenameSessionTest, aBlankNameIsRefusedInPlace) {
  for (const char* draft : {"", " ", "\t\n", "\u00A0\u2003"}) {
    session_.begin({itemAt("/shots/a.png")});
    session_.edit(draft);
    EXPECT_FALSE(session_.commit());
    EXPECT_TRUE(session_.isEditing());
    EXPECT_EQ(session_.refusal(), "Enter a name");
    EXPECT_EQ(session_.draftName(), draft);
    session_.cancel();
  }
  EXPECT_TRUE(asked_.empty());
}

TEST_F(RenameSessionTest, whatTheLibraryRefusesIsToldAndCanBeMended) {
  session_.begin({itemAt("/shots/a.png")});
  session_.edit("b");
  answer_ = false;
  EXPECT_FALSE(session_.commit());
  EXPECT_EQ(session_.refusal(), "The file could not be renamed");
  EXPECT_EQ(session_.draftName(), "b");
  session_.edit("bc");
  EXPECT_EQ(session_.refusal(), std::nullopt);
  answer_ = true;
  EXPECT_TRUE(session_.commit());
}

TEST_F(RenameSessionTest, aNameThatWasTooLongIsToldAsSuch) {
  session_.begin({itemAt("/shots/a.png")});
  answer_ = false;
  session_.edit(std::string(252, 'x'));  // 256 with ".png"
  EXPECT_FALSE(session_.commit());
  EXPECT_EQ(session_.refusal(), "That name is too long");
  session_.edit(std::string(251, 'x'));
  EXPECT_FALSE(session_.commit());
  EXPECT_EQ(session_.refusal(), "The file could not be renamed");
}

TEST_F(RenameSessionTest, aCancelChangesNothing) {
  session_.begin({itemAt("/shots/a.png")});
  session_.edit("b");
  session_.cancel();
  EXPECT_FALSE(session_.isEditing());
  EXPECT_FALSE(session_.commit());
  EXPECT_TRUE(asked_.empty());
  session_.begin({itemAt("/shots/a.png")});
  EXPECT_EQ(session_.draftName(), "a");
}

TEST_F(RenameSessionTest, aRefusalIsNotHeldAgainstTheNextItem) {
  session_.begin({itemAt("/shots/a.png")});
  session_.edit("");
  session_.commit();
  session_.begin({itemAt("/shots/b.png")});
  EXPECT_EQ(session_.draftName(), "b");
  EXPECT_EQ(session_.refusal(), std::nullopt);
}

TEST_F(RenameSessionTest, anotherSelectionEndsIt) {
  const ScreenshotItem item = itemAt("/shots/a.png");
  const ScreenshotItem other = itemAt("/shots/b.png");
  for (const auto& selection : {std::vector{other}, std::vector{item, other}, std::vector<ScreenshotItem>{}}) {
    session_.begin({item});
    session_.edit("c");
    EXPECT_TRUE(session_.selectionChanged(selection));
    EXPECT_FALSE(session_.isEditing());
  }
  EXPECT_TRUE(asked_.empty());
  EXPECT_FALSE(session_.selectionChanged({other}));  // there was nothing to end
}

TEST_F(RenameSessionTest, theSameItemWithANewThumbnailDoesNotEndIt) {
  ScreenshotItem item = itemAt("/shots/a.png");
  session_.begin({item});
  session_.edit("b");
  item.fileSize = 17;
  EXPECT_FALSE(session_.selectionChanged({item}));
  EXPECT_EQ(session_.draftName(), "b");
}

TEST_F(RenameSessionTest, theSameItemUnderAnotherNameEndsIt) {
  ScreenshotItem item = itemAt("/shots/a.png");
  session_.begin({item});
  item.fileURL = FileURL("/shots/z.png");
  EXPECT_TRUE(session_.selectionChanged({item}));
}

TEST_F(RenameSessionTest, aNameThatIsNoTextIsShownReadablyAndSurvives) {
  session_.begin({itemAt("/shots/caf\xe9 \xf0\x9f\x93\xb7.p\xffg")});
  EXPECT_EQ(session_.draftName(), "caf\uFFFD \U0001F4F7");
  EXPECT_EQ(session_.extension(), "p\uFFFDg");
  EXPECT_TRUE(session_.commit());
  EXPECT_TRUE(asked_.empty());
}

class RenameInLibraryTest : public testing::Test {
 protected:
  void addItem(const std::string& name) {
    library_.platform.files.write("/shots/" + name);
    library_.store.ingestScreenshot(FileURL("/shots/" + name), std::nullopt);
  }
  TestLibrary library_;
  RenameSession session_{[&store = library_.store](const ScreenshotItem& item, std::string_view newName) {
    return store.rename(item, newName);
  }};
};

TEST_F(RenameInLibraryTest, theFileGetsTheNameThatWasTyped) {
  addItem("a.png");
  session_.begin(library_.store.selectedItems());
  session_.edit(" b/c ");
  EXPECT_TRUE(session_.commit());
  EXPECT_EQ(library_.store.selectedItem()->fileURL, FileURL("/shots/b-c.png"));
  EXPECT_FALSE(session_.selectionChanged(library_.store.selectedItems()));
}

TEST_F(RenameInLibraryTest, anItemThatIsGoneIsRefused) {
  addItem("a.png");
  session_.begin(library_.store.selectedItems());
  session_.edit("b");
  library_.platform.files.remove("/shots/a.png");
  library_.store.removeMissingFiles();
  EXPECT_FALSE(session_.commit());
  EXPECT_EQ(session_.refusal(), "The file could not be renamed");
  EXPECT_TRUE(session_.selectionChanged(library_.store.selectedItems()));
}

TEST_F(RenameInLibraryTest, aChangedDraftOfANameThatIsNoTextIsText) {
  addItem("caf\xe9.png");
  session_.begin(library_.store.selectedItems());
  session_.edit("caf\u00e9");
  EXPECT_TRUE(session_.commit());
  EXPECT_EQ(library_.store.selectedItem()->fileURL, FileURL("/shots/caf\u00e9.png"));
}

}  // namespace
}  // namespace quenlio
