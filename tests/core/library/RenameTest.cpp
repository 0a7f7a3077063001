// Items whose files get another name.
#include "tests/core/library/LibraryTest.h"

namespace quenlio {
namespace {

class Rename : public LibraryTest {
 protected:
  void SetUp() override {
    open();
    add("b.png", 1);
    add("a.png", 2);
    platform.time.runReady();
  }
  bool rename(const std::string& name, const std::string& newName) { return store->rename(item(name), newName); }
  // An item that the library would not take in, since its kind cannot be told by its name.
  void addWithoutExtension(const std::string& name) {
    ScreenshotItem added = item("a.png");
    added.id = Uuid::random();
    added.fileURL = file(name);
    store->items.mutate([&](auto& list) { list.push_back(added); });
  }
  void expectNothingChanged(const std::string& newName, bool result) {
    const Names before = names();
    const auto pins = pinnedWrites();
    const Announcements announcements(*store);
    EXPECT_EQ(rename("a.png", newName), result) << newName;
    EXPECT_EQ(announcements.list, Names{});
    EXPECT_EQ(names(), before);
    EXPECT_EQ(platform.files.content("/shots/a.png"), "content");
    EXPECT_EQ(pinnedWrites(), pins);
    EXPECT_TRUE(platform.analytics.events.empty());
  }
};

TEST_F(Rename, movesTheFileAndKeepsTheItem) {
  platform.files.write("/shots/a.png", "what it held");
  ScreenshotItem expected = item("a.png");
  ASSERT_NE(expected.thumbnail, nullptr);
  EXPECT_TRUE(rename("a.png", "holiday"));
  expected.fileURL = FileURL("/shots/holiday.png");
  expected.fileSize = 12;
  EXPECT_EQ(item("holiday.png"), expected);
  EXPECT_EQ(platform.files.content("/shots/holiday.png"), "what it held");
  EXPECT_FALSE(platform.files.fileExistsAtPath(FileURL("/shots/a.png")));
}

TEST_F(Rename, aSizeThatCannotBeReadIsThatOfBefore) {
  platform.files.write("/shots/a.png", "what it held");
  platform.files.setSizeUnreadable("/shots/a.png", true);
  const std::int64_t before = item("a.png").fileSize;
  ASSERT_TRUE(rename("a.png", "c"));
  EXPECT_EQ(item("c.png").fileSize, before);
}

TEST_F(Rename, slashesAndColonsBecomeDashesAndTheExtensionIsKept) {
  EXPECT_TRUE(rename("a.png", "a/b:c"));
  EXPECT_EQ(names(), (Names{"a-b-c.png", "b.png"}));
  EXPECT_TRUE(rename("a-b-c.png", "/:/"));
  EXPECT_EQ(names(), (Names{"---.png", "b.png"}));
}

TEST_F(Rename, whatWasTypedIsNeverLookedIntoForAnExtension) {
  EXPECT_TRUE(rename("a.png", "shot.png"));
  EXPECT_EQ(names(), (Names{"shot.png.png", "b.png"}));
}

TEST_F(Rename, whiteSpaceAndNewLinesAtBothEndsDoNotCount) {
  EXPECT_TRUE(rename("a.png", "\n \t one two \xC2\xA0\r\n"));
  EXPECT_EQ(names(), (Names{"one two.png", "b.png"}));
}

TEST_F(Rename, blanksAloneAreRefused) {
  for (const char* blank : {"", " ", "\n", " \t\r\n ", "\xC2\xA0\xE3\x80\x80"}) {
    expectNothingChanged(blank, false);
  }
}

TEST_F(Rename, aNameWithAZeroByteIsRefused) {
  expectNothingChanged(std::string("a\0b", 3), false);
}

TEST_F(Rename, toTheNameThatItHasIsDoneWithoutAMove) {
  platform.log.clear();
  expectNothingChanged("a", true);
  expectNothingChanged("  a\n", true);
  EXPECT_EQ(platform.log.calls(), Names{});
}

TEST_F(Rename, anItemThatIsNotListedIsRefused) {
  ScreenshotItem stranger = item("a.png");
  stranger.id = Uuid::random();
  platform.log.clear();
  EXPECT_FALSE(store->rename(stranger, "c"));
  open();
  EXPECT_FALSE(store->rename(stranger, "c"));
  EXPECT_EQ(platform.log.count("moveItem /shots/a.png /shots/c.png"), 0);
}

TEST_F(Rename, worksOnTheListedItemAndNotOnAnOlderCopyOfIt) {
  const ScreenshotItem before = item("a.png");
  ASSERT_TRUE(store->rename(before, "c"));
  EXPECT_TRUE(store->rename(before, "d"));
  EXPECT_EQ(names(), (Names{"d.png", "b.png"}));
}

TEST_F(Rename, toANameThatAnotherFileHasGetsANumber) {
  EXPECT_TRUE(rename("a.png", "b"));
  EXPECT_EQ(names(), (Names{"b 2.png", "b.png"}));
  EXPECT_EQ(platform.analytics.events.back(),
            std::pair(AnalyticsEventName::screenshotRenamed,
                      std::map<std::string, std::string>{{"from", "a.png"}, {"to", "b 2.png"}}));
}

TEST_F(Rename, anItemWhoseOwnNumberIsTheFirstFreeOneStaysByTheNextOne) {
  ASSERT_TRUE(rename("a.png", "b"));
  EXPECT_TRUE(rename("b 2.png", "b"));
  EXPECT_EQ(names(), (Names{"b 3.png", "b.png"}));
}

TEST_F(Rename, toTheNameOfAFileThatHasVanishedTakesThePlaceOfItsItem) {
  platform.files.remove("/shots/b.png");
  const Uuid id = item("a.png").id;
  store->selectRange(item("b.png"), false);
  EXPECT_EQ(selection(), "b | a b | a");
  EXPECT_TRUE(rename("a.png", "b"));
  EXPECT_EQ(names(), Names{"b.png"});
  EXPECT_EQ(item("b.png").id, id);
  EXPECT_EQ(selection(), "b | b | b");
}

TEST_F(Rename, toTheNameOfALinkThatLeadsNowhereGetsANumber) {
  platform.files.makeDanglingLink("/shots/c.png");
  EXPECT_TRUE(rename("a.png", "c"));
  EXPECT_EQ(names(), (Names{"c 2.png", "b.png"}));
}

TEST_F(Rename, aFileWithoutAnExtensionGetsTheBareName) {
  addWithoutExtension("bare");
  file("taken");
  EXPECT_TRUE(rename("bare", "name"));
  EXPECT_EQ(names(), (Names{"a.png", "b.png", "name"}));
  EXPECT_TRUE(rename("name", "taken"));
  EXPECT_EQ(names(), (Names{"a.png", "b.png", "taken 2"}));
}

TEST_F(Rename, aLeadingDotIsNoExtension) {
  addWithoutExtension(".hidden");
  EXPECT_TRUE(rename(".hidden", ".other"));
  EXPECT_EQ(names(), (Names{"a.png", "b.png", ".other"}));
  EXPECT_TRUE(rename("a.png", ".other"));
  EXPECT_EQ(names(), (Names{".other.png", "b.png", ".other"}));
}

TEST_F(Rename, theFolderAboveIsNeverMeant) {
  addWithoutExtension("bare");
  EXPECT_TRUE(rename("bare", ".."));
  EXPECT_EQ(item(".. 2").fileURL, FileURL("/shots/.. 2"));
  EXPECT_TRUE(rename("a.png", "../../x"));
  EXPECT_EQ(item("..-..-x.png").fileURL, FileURL("/shots/..-..-x.png"));
}

TEST_F(Rename, namesOfAnyBytesSurvive) {
  for (const std::string name : {"two\nlines", "caf\xC3\xA9", "no \xFF\xC3 text", "-rf *", "\\"}) {
    store->select(store->items.get().back().id);
    EXPECT_TRUE(store->rename(*store->selectedItem(), name));
    EXPECT_EQ(store->selectedItem()->fileURL.path(), "/shots/" + name + ".png");
    EXPECT_EQ(platform.files.content("/shots/" + name + ".png"), "content");
    store->moveSelectedToTrash();
    EXPECT_TRUE(store->undoLastDeletion());
    EXPECT_EQ(platform.files.content("/shots/" + name + ".png"), "content");
  }
}

TEST_F(Rename, aNameIsAsLongAsTheFileSystemAllows) {
  const std::string longest(251, 'n');
  EXPECT_TRUE(rename("a.png", longest));
  EXPECT_EQ(names(), (Names{longest + ".png", "b.png"}));
  // Told apart by a number it would be too long, and is shortened.
  EXPECT_TRUE(rename("b.png", longest));
  EXPECT_EQ(names(), (Names{longest + ".png", std::string(249, 'n') + " 2.png"}));
  EXPECT_FALSE(rename(longest + ".png", std::string(252, 'm')));
  EXPECT_EQ(names().front(), longest + ".png");
  EXPECT_EQ(platform.systemLog.lines, Names{"Failed to rename screenshot: the name is too long"});
}

TEST_F(Rename, aFileThatCannotBeMovedStaysAndTheFailureIsLogged) {
  platform.files.setReadOnly("/shots/a.png");
  expectNothingChanged("c", false);
  EXPECT_EQ(platform.systemLog.lines, Names{"Failed to rename screenshot: read-only"});
}

TEST_F(Rename, aFileThatAppearsMeanwhileIsNotOverwritten) {
  platform.files.duringMove = [&](const FileURL&, const FileURL& to) {
    platform.files.write(to.path(), "somebody else's");
  };
  expectNothingChanged("c", false);
  EXPECT_EQ(platform.files.content("/shots/c.png"), "somebody else's");
  EXPECT_EQ(platform.systemLog.lines, Names{"Failed to rename screenshot: a file is in the way"});
}

TEST_F(Rename, everythingHappensInItsOrder) {
  store->select(item("b.png").id);
  const AnnouncementsInTheLog announcements(*this);
  EXPECT_TRUE(rename("a.png", "c"));
  EXPECT_EQ(platform.log.calls(), (Names{
                                      "moveItem /shots/a.png /shots/c.png",
                                      "items c.png b.png",
                                      "selected b.png",
                                      "primary c.png",
                                      "selected b.png c.png",
                                      "selected b.png c.png",
                                      "track 8",
                                  }));
  EXPECT_EQ(selection(), "c | c b | b");
}

TEST_F(Rename, theListIsNotSortedAgainAndNothingIsReported) {
  platform.files.setCreationDate("/shots/b.png", start + std::chrono::seconds(9));
  const auto reports = stateWrites();
  EXPECT_TRUE(rename("b.png", "newest"));
  EXPECT_EQ(names(), (Names{"a.png", "newest.png"}));
  EXPECT_EQ(item("newest.png").createdAt, start + std::chrono::seconds(1));
  EXPECT_EQ(stateWrites(), reports);
}

TEST_F(Rename, aPinnedItemTakesItsPinAlongAndTheOthersWriteNone) {
  pin({"p.png"});
  open();
  add("p.png");
  add("a.png");
  const auto before = pinnedWrites();
  EXPECT_TRUE(rename("a.png", "c"));
  EXPECT_EQ(pinnedWrites(), before);
  EXPECT_TRUE(rename("p.png", "q"));
  EXPECT_EQ(pinnedWrites(), before + 1);
  EXPECT_EQ(pinnedOnDisk(), std::set<std::string>{"q.png"});
  EXPECT_TRUE(item("q.png").isPinned);
}

TEST_F(Rename, aPinIsWrittenAfterTheListHasChangedAndBeforeTheSelectionIsRepaired) {
  pin({"p.png"});
  open();
  add("p.png");
  const AnnouncementsInTheLog announcements(*this);
  EXPECT_TRUE(rename("p.png", "q"));
  EXPECT_EQ(platform.log.calls(), (Names{
                                      "moveItem /shots/p.png /shots/q.png",
                                      "items q.png",
                                      "writeAtomically /home/user/support/Quenlio/pinned.json",
                                      "selected q.png",
                                      "primary q.png",
                                      "selected q.png",
                                      "selected q.png",
                                      "track 8",
                                  }));
}

TEST_F(Rename, theNameMayBeTakenFromTheItemItself) {
  EXPECT_TRUE(store->rename(store->items.get().front(), store->items.get().front().fileURL.path()));
  EXPECT_EQ(names(), (Names{"-shots-a.png.png", "b.png"}));
}

}  // namespace
}  // namespace quenlio
