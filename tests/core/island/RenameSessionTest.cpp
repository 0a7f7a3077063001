// Renaming in place, over a real library on a fake file system and, for what a store refuses, over an answer of our
// own.
#include <functional>
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

RenameSession::Selection selecting(const std::vector<ScreenshotItem>& items) {
  return {.item = items.empty() ? nullptr : items.data(), .count = items.size()};
}

using Beginning = RenameSession::Beginning;

class RenameSessionTest : public testing::Test {
 protected:
  Beginning begin(const std::vector<ScreenshotItem>& selected) { return session_.begin(selecting(selected)); }
  bool selectionChanged(const std::vector<ScreenshotItem>& selected) {
    return session_.selectionChanged(selecting(selected));
  }
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
  EXPECT_EQ(begin({itemAt("/shots/a.tar.png")}), Beginning::begun);
  EXPECT_TRUE(session_.isEditing());
  EXPECT_EQ(session_.draftName(), "a.tar");
  EXPECT_EQ(session_.extension(), "png");
}

TEST_F(RenameSessionTest, aFileWithoutAnExtensionIsItsNameAlone) {
  EXPECT_EQ(begin({itemAt("/shots/.hidden")}), Beginning::begun);
  EXPECT_EQ(session_.draftName(), ".hidden");
  EXPECT_EQ(session_.extension(), "");
}

TEST_F(RenameSessionTest, beginsOnlyWithExactlyOneSelected) {
  EXPECT_EQ(begin({}), Beginning::refused);
  EXPECT_EQ(begin({itemAt("/shots/a.png"), itemAt("/shots/b.png")}), Beginning::refused);
  EXPECT_FALSE(session_.isEditing());
}

// The preview still shows one then.
TEST_F(RenameSessionTest, whatIsShownWithoutBeingSelectedIsNotRenamed) {
  const ScreenshotItem item = itemAt("/shots/a.png");
  EXPECT_EQ(session_.begin({.item = &item, .count = 0}), Beginning::refused);
  begin({item});
  EXPECT_TRUE(session_.selectionChanged({.item = &item, .count = 0}));
  EXPECT_FALSE(session_.isEditing());
}

TEST_F(RenameSessionTest, isOfferedForExactlyOneUntilItHasBegun) {
  const ScreenshotItem item = itemAt("/shots/a.png");
  EXPECT_FALSE(session_.isOffered({}));
  EXPECT_FALSE(session_.isOffered({.item = &item, .count = 0}));
  EXPECT_TRUE(session_.isOffered({.item = &item, .count = 1}));
  EXPECT_FALSE(session_.isOffered({.item = &item, .count = 2}));
  begin({item});
  EXPECT_FALSE(session_.isOffered({.item = &item, .count = 1}));
  session_.cancel();
  EXPECT_TRUE(session_.isOffered({.item = &item, .count = 1}));
}

TEST_F(RenameSessionTest, askedAgainWhileItIsEditingKeepsTheDraft) {
  const ScreenshotItem item = itemAt("/shots/a.png");
  begin({item});
  session_.edit("half a na");
  EXPECT_EQ(begin({item}), Beginning::goesOn);
  EXPECT_EQ(session_.draftName(), "half a na");
}

// As after an arrival, which leaves the one alone.
TEST_F(RenameSessionTest, askedForAnotherItemWhileItIsEditingItBeginsWithThatOne) {
  begin({itemAt("/shots/a.png")});
  session_.edit("half a na");
  EXPECT_EQ(begin({itemAt("/shots/b.jpg")}), Beginning::begun);
  EXPECT_EQ(session_.draftName(), "b");
  EXPECT_EQ(session_.extension(), "jpg");
  EXPECT_TRUE(session_.commit());
  EXPECT_EQ(asked_, (Asked{{"b.jpg", "b"}}));
}

TEST_F(RenameSessionTest, aCommitRenamesAndEnds) {
  begin({itemAt("/shots/a.png")});
  session_.edit("b");
  EXPECT_TRUE(session_.commit());
  EXPECT_FALSE(session_.isEditing());
  EXPECT_EQ(asked_, (Asked{{"a.png", "b"}}));
}

// Also where its readable form is another one.
TEST_F(RenameSessionTest, anUnchangedDraftIsTheNameItself) {
  for (const char* path : {"/shots/a.png", "/shots/ a .png", "/shots/a:b.png", "/shots/\xff.png", "/shots/a\nb.png"}) {
    asked_.clear();
    const FileURL url(path);
    begin({itemAt(path)});
    session_.edit("something else");
    session_.edit(readable(url.stem()));
    EXPECT_TRUE(session_.commit()) << path;
    EXPECT_FALSE(session_.isEditing());
    EXPECT_EQ(asked_, (Asked{{url.lastPathComponent(), url.stem()}}));
  }
}

TEST_F(RenameSessionTest, aBlankNameIsRefusedInPlace) {
  answer_ = false;
  for (const char* draft : {"", " ", "\t\n", "\u00A0\u2003"}) {
    asked_.clear();
    begin({itemAt("/shots/a.png")});
    session_.edit(draft);
    EXPECT_FALSE(session_.commit());
    EXPECT_EQ(asked_, (Asked{{"a.png", draft}}));
    EXPECT_TRUE(session_.isEditing());
    EXPECT_EQ(session_.refusal(), "Enter a name");
    EXPECT_EQ(session_.draftName(), draft);
    session_.cancel();
  }
}

TEST_F(RenameSessionTest, whatTheLibraryRefusesIsToldAndCanBeMended) {
  begin({itemAt("/shots/a.png")});
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
  begin({itemAt("/shots/a.png")});
  answer_ = false;
  session_.edit(std::string(252, 'x'));  // 256 with ".png"
  EXPECT_FALSE(session_.commit());
  EXPECT_EQ(session_.refusal(), "That name is too long");
  session_.edit(std::string(251, 'x'));
  EXPECT_FALSE(session_.commit());
  EXPECT_EQ(session_.refusal(), "The file could not be renamed");
}

TEST_F(RenameSessionTest, aCancelChangesNothing) {
  begin({itemAt("/shots/a.png")});
  session_.edit("b");
  session_.cancel();
  EXPECT_FALSE(session_.isEditing());
  EXPECT_FALSE(session_.commit());
  EXPECT_TRUE(asked_.empty());
  begin({itemAt("/shots/a.png")});
  EXPECT_EQ(session_.draftName(), "a");
}

TEST_F(RenameSessionTest, aRefusalIsNotHeldAgainstTheNextItem) {
  answer_ = false;
  begin({itemAt("/shots/a.png")});
  session_.edit("");
  EXPECT_FALSE(session_.commit());
  begin({itemAt("/shots/b.png")});
  EXPECT_EQ(session_.draftName(), "b");
  EXPECT_EQ(session_.refusal(), std::nullopt);
}

TEST_F(RenameSessionTest, anotherSelectionEndsIt) {
  const ScreenshotItem item = itemAt("/shots/a.png");
  const ScreenshotItem other = itemAt("/shots/b.png");
  for (const auto& selection : {std::vector{other}, std::vector{item, other}, std::vector<ScreenshotItem>{}}) {
    begin({item});
    session_.edit("c");
    EXPECT_TRUE(selectionChanged(selection));
    EXPECT_FALSE(session_.isEditing());
  }
  EXPECT_TRUE(asked_.empty());
  EXPECT_FALSE(selectionChanged({other}));  // there was nothing to end
}

// The newest is the one that is selected.
TEST_F(RenameSessionTest, anArrivalThatTakesTheSelectionDoesNotEndIt) {
  const ScreenshotItem item = itemAt("/shots/a.png");
  std::vector<ScreenshotItem> library{item, itemAt("/shots/b.png")};
  const auto select = [&](std::size_t index) {
    return session_.selectionChanged({.item = &library.at(index), .count = 1, .library = library});
  };
  EXPECT_FALSE(select(0));
  begin({item});
  session_.edit("c");
  for (const char* path : {"/shots/new.png", "/shots/newer.png"}) {
    library.insert(library.begin(), itemAt(path));
    EXPECT_FALSE(select(0));
  }
  EXPECT_EQ(session_.draftName(), "c");
  EXPECT_TRUE(session_.commit());
  EXPECT_EQ(asked_, (Asked{{"a.png", "c"}}));
}

TEST_F(RenameSessionTest, afterAnArrivalAChoiceOrTheItemsGoingEndsIt) {
  const ScreenshotItem item = itemAt("/shots/a.png");
  const ScreenshotItem other = itemAt("/shots/b.png");
  const ScreenshotItem arrival = itemAt("/shots/c.png");
  const auto select = [this](const ScreenshotItem& selected, const std::vector<ScreenshotItem>& library) {
    return session_.selectionChanged({.item = &selected, .count = 1, .library = library});
  };
  ScreenshotItem renamed = item;
  renamed.fileURL = FileURL("/shots/z.png");
  const std::pair<ScreenshotItem, std::vector<ScreenshotItem>> ends[] = {
      {other, {arrival, item, other}}, {arrival, {arrival, other}}, {arrival, {arrival, renamed, other}}};
  for (const auto& [selected, library] : ends) {
    EXPECT_FALSE(select(item, {item, other}));
    begin({item});
    EXPECT_FALSE(select(arrival, {arrival, item, other}));
    EXPECT_TRUE(select(selected, library));
    EXPECT_FALSE(session_.isEditing());
  }
  EXPECT_TRUE(asked_.empty());
}

// While nobody types, an arrival is what the next look at the island is about.
TEST_F(RenameSessionTest, putAsideItKeepsTheDraftUntilSomethingElseArrives) {
  const ScreenshotItem item = itemAt("/shots/a.png");
  std::vector<ScreenshotItem> library{item};
  const auto select = [&](std::size_t index) {
    return session_.selectionChanged({.item = &library.at(index), .count = 1, .library = library});
  };
  EXPECT_FALSE(select(0));
  begin({item});
  session_.edit("c");
  library.insert(library.begin(), itemAt("/shots/new.png"));
  EXPECT_FALSE(select(0));
  session_.putAside();
  EXPECT_FALSE(select(0));  // it had come before
  EXPECT_EQ(session_.draftName(), "c");
  library.insert(library.begin(), itemAt("/shots/newer.png"));
  EXPECT_TRUE(select(0));
  EXPECT_TRUE(asked_.empty());
}

TEST_F(RenameSessionTest, takenUpAgainItOutlastsArrivalsAsBefore) {
  const ScreenshotItem item = itemAt("/shots/a.png");
  const ScreenshotItem arrival = itemAt("/shots/new.png");
  const auto arrive = [&] {
    return session_.selectionChanged({.item = &arrival, .count = 1, .library = std::vector{arrival, item}});
  };
  const std::function<void()> takings[] = {[this] { session_.edit("d"); }, [this, &item] { begin({item}); }};
  for (const auto& takeUp : takings) {
    EXPECT_FALSE(selectionChanged({item}));
    begin({item});
    session_.putAside();
    takeUp();
    EXPECT_FALSE(arrive());
    session_.cancel();
  }
}

TEST_F(RenameSessionTest, theSameItemWithANewThumbnailDoesNotEndIt) {
  ScreenshotItem item = itemAt("/shots/a.png");
  begin({item});
  session_.edit("b");
  item.fileSize = 17;
  EXPECT_FALSE(selectionChanged({item}));
  EXPECT_EQ(session_.draftName(), "b");
}

TEST_F(RenameSessionTest, theSameItemUnderAnotherNameEndsIt) {
  ScreenshotItem item = itemAt("/shots/a.png");
  begin({item});
  item.fileURL = FileURL("/shots/z.png");
  EXPECT_TRUE(selectionChanged({item}));
}

TEST_F(RenameSessionTest, aNameThatIsNoTextIsShownReadablyAndSurvives) {
  begin({itemAt("/shots/caf\xe9 \xf0\x9f\x93\xb7.p\xffg")});
  EXPECT_EQ(session_.draftName(), "caf\uFFFD \U0001F4F7");
  EXPECT_EQ(session_.extension(), "p\uFFFDg");
  EXPECT_TRUE(session_.commit());
  EXPECT_EQ(asked_, (Asked{{"caf\xe9 \xf0\x9f\x93\xb7.p\xffg", "caf\xe9 \xf0\x9f\x93\xb7"}}));
}

class RenameInLibraryTest : public testing::Test {
 protected:
  void addItem(const std::string& name) {
    library_.platform.files.write("/shots/" + name);
    library_.store.ingestScreenshot(FileURL("/shots/" + name), std::nullopt);
  }
  [[nodiscard]] RenameSession::Selection selection() const {
    return {.item = library_.store.selectedItem(), .count = library_.store.selectedItemIDs.get().size()};
  }
  Beginning begin() { return session_.begin(selection()); }

  TestLibrary library_;
  RenameSession session_{[&store = library_.store](const ScreenshotItem& item, std::string_view newName) {
    return store.rename(item, newName);
  }};
};

TEST_F(RenameInLibraryTest, theFileGetsTheNameThatWasTyped) {
  addItem("a.png");
  begin();
  session_.edit(" b/c ");
  EXPECT_TRUE(session_.commit());
  EXPECT_EQ(library_.store.selectedItem()->fileURL, FileURL("/shots/b-c.png"));
  EXPECT_FALSE(session_.selectionChanged(selection()));
}

TEST_F(RenameInLibraryTest, anUnchangedDraftMovesNoFileWhateverBytesItsNameIsMadeOf) {
  for (const char* name : {"a.png", "caf\xe9.png", "a\nb.png", ".hidden.png", "a.b.png"}) {
    addItem(name);
    library_.platform.log.clear();
    EXPECT_EQ(begin(), Beginning::begun);
    EXPECT_TRUE(session_.commit()) << name;
    EXPECT_TRUE(library_.platform.log.calls().empty());
    EXPECT_EQ(library_.store.selectedItem()->fileURL, FileURL(std::string("/shots/") + name));
  }
}

TEST_F(RenameInLibraryTest, aBlankDraftChangesNothing) {
  addItem("a.png");
  begin();
  session_.edit("  ");
  EXPECT_FALSE(session_.commit());
  EXPECT_EQ(session_.refusal(), "Enter a name");
  EXPECT_EQ(library_.store.selectedItem()->fileURL, FileURL("/shots/a.png"));
}

TEST_F(RenameInLibraryTest, anItemThatIsGoneIsRefused) {
  addItem("a.png");
  begin();
  session_.edit("b");
  library_.platform.files.remove("/shots/a.png");
  library_.store.removeMissingFiles();
  EXPECT_FALSE(session_.commit());
  EXPECT_EQ(session_.refusal(), "The file could not be renamed");
  EXPECT_TRUE(session_.selectionChanged(selection()));
}

TEST_F(RenameInLibraryTest, aChangedDraftOfANameThatIsNoTextIsText) {
  addItem("caf\xe9.png");
  begin();
  session_.edit("caf\u00e9");
  EXPECT_TRUE(session_.commit());
  EXPECT_EQ(library_.store.selectedItem()->fileURL, FileURL("/shots/caf\u00e9.png"));
}

}  // namespace
}  // namespace quenlio
