// The keys of the island, by both ways that lead to them.
#include "tests/core/island/KeysTest.h"

#include "core/island/IslandKeys.h"

namespace quenlio {
namespace {

TEST_F(Keys, returnAndEnterAskTheNameRowToRename) {
  openWith({"a.png"});
  EXPECT_TRUE(key(kReturn));
  EXPECT_EQ(state().renameRequestToken.get(), 1);
  EXPECT_TRUE(key(kEnter));
  EXPECT_EQ(state().renameRequestToken.get(), 2);
  EXPECT_FALSE(key(kReturn, kModifierShift));
  EXPECT_FALSE(key(kReturn, kModifierCommand));
  EXPECT_EQ(state().renameRequestToken.get(), 2);
}

TEST_F(Keys, theTwoLocksDoNotMatter) {
  openWith({"a.png"});
  EXPECT_TRUE(key(kReturn, kCapsLock | kNumericPad));
  EXPECT_EQ(state().renameRequestToken.get(), 1);
}

TEST_F(Keys, returnWithTwoSelectedOrNoneIsPassedOn) {
  openWith({});
  EXPECT_FALSE(key(kReturn));
  addItem("a.png");
  addItem("b.png");
  selectAll();
  EXPECT_FALSE(key(kReturn));
  EXPECT_EQ(state().renameRequestToken.get(), 0);
}

// The preview shows the newest then, and every key acts on what is shown.
TEST_F(Keys, withNothingSelectedTheNewestIsActedOn) {
  openWith({"a.png", "b.png"});
  store.toggleSelection(store.items.get().front());
  ASSERT_TRUE(store.selectedItemIDs.get().empty());
  EXPECT_TRUE(key(kReturn));
  EXPECT_EQ(state().renameRequestToken.get(), 1);
  EXPECT_TRUE(letter("e", kModifierCommand));
  ASSERT_EQ(platform.editors.opened.size(), 1U);
  EXPECT_EQ(platform.editors.opened.front().first, url("b.png"));
  EXPECT_TRUE(letter("c", kModifierCommand));
  ASSERT_TRUE(platform.pasteboard.contents);
  EXPECT_TRUE(key(kSpace));
  EXPECT_EQ(platform.previewPanel.shownFile(), url("b.png"));
}

TEST_F(Keys, spaceOpensThePreviewAndClosesItAgain) {
  openWith({"a.png", "b.png"});
  EXPECT_TRUE(key(kSpace));
  EXPECT_EQ(platform.previewPanel.shownFile(), url("b.png"));
  EXPECT_EQ(platform.previewPanel.files, (std::vector{url("b.png"), url("a.png")}));
  panel().resignKey();
  platform.log.clear();
  EXPECT_TRUE(key(kSpace));
  EXPECT_FALSE(platform.previewPanel.isVisible());
  EXPECT_EQ(platform.log.calls(), (Calls{"preview orderOut", "makeKeyWindow", "makeFirstResponder"}));
  key(kRight);
  EXPECT_TRUE(key(kSpace));
  EXPECT_EQ(platform.previewPanel.shownFile(), url("a.png"));
}

// As the user does who came by the hot key: the pointer is elsewhere all the time.
TEST_F(Keys, spaceWithThePointerOutsideClosesThePreviewSoThatTheNextOpensIt) {
  openWith({"a.png"});
  for (const bool isOpen : {true, false, true}) {
    EXPECT_TRUE(panel().pressKey({0, kSpace, std::nullopt}));
    EXPECT_EQ(platform.previewPanel.isVisible(), isOpen);
  }
}

TEST_F(Keys, spaceWithAnEmptyLibraryIsPassedOn) {
  openWith({});
  EXPECT_FALSE(key(kSpace));
  EXPECT_FALSE(platform.previewPanel.isVisible());
}

TEST_F(Keys, aClickOnThePreviewOpensTheWindowOnAllScreenshots) {
  openWith({"a.png", "b.png"});
  view().onOpenQuickLook(store.items.get().back());
  EXPECT_EQ(platform.previewPanel.files, (std::vector{url("b.png"), url("a.png")}));
  EXPECT_EQ(platform.previewPanel.shownFile(), url("a.png"));
}

TEST_F(Keys, aClickThatMayComeHasItsPictureBegunAndOneThatDoesNotHasItDropped) {
  openWith({"a.png"});
  view().onPrepareQuickLook(store.items.get().front());
  EXPECT_EQ(platform.previewPanel.prepared, url("a.png"));
  EXPECT_FALSE(platform.previewPanel.isVisible());
  view().onDropPreparedQuickLook();
  EXPECT_EQ(platform.previewPanel.prepared, std::nullopt);
}

TEST_F(Keys, commandCCopiesAndStartsTheCountdownAnew) {
  openWith({"a.png"});
  EXPECT_TRUE(restartsCountdown([&] { EXPECT_TRUE(letter("c", kModifierCommand)); }));
  ASSERT_TRUE(platform.pasteboard.contents);
  EXPECT_EQ(platform.pasteboard.contents->fileURLs, std::vector{url("a.png")});
}

TEST_F(Keys, commandShiftSSharesAndStartsTheCountdownAnew) {
  openWith({"a.png"});
  platform.windows.list = {{.id = 1, .frame = {{0, 0}, {2000, 2000}}}};
  EXPECT_TRUE(restartsCountdown([&] { EXPECT_TRUE(letter("S", kModifierCommand | kModifierShift)); }));
  EXPECT_EQ(platform.sharingServicePicker.shown.size(), 1U);
}

TEST_F(Keys, commandORevealsAndStartsTheCountdownAnew) {
  openWith({"a.png"});
  EXPECT_TRUE(restartsCountdown([&] { EXPECT_TRUE(letter("o", kModifierCommand)); }));
  ASSERT_EQ(platform.workspace.revealed.size(), 1U);
  EXPECT_EQ(platform.workspace.revealed.front(), std::vector{url("a.png")});
}

TEST_F(Keys, backspaceAndForwardDeleteTrashAndStartTheCountdownAnew) {
  openWith({"a.png", "b.png", "c.png"});
  EXPECT_TRUE(restartsCountdown([&] { EXPECT_TRUE(key(kBackspace)); }));
  EXPECT_TRUE(key(kForwardDelete, kFunction));
  EXPECT_EQ(store.items.get().size(), 1U);
  EXPECT_FALSE(platform.files.fileExistsAtPath(url("c.png")));
  EXPECT_FALSE(platform.files.fileExistsAtPath(url("b.png")));
  EXPECT_FALSE(key(kBackspace, kModifierCommand));
  EXPECT_TRUE(platform.files.fileExistsAtPath(url("a.png")));
}

TEST_F(Keys, withAnEmptyLibraryNothingThatActsOnTheSelectionIsTaken) {
  openWith({});
  EXPECT_FALSE(letter("c", kModifierCommand));
  EXPECT_FALSE(letter("s", kModifierCommand | kModifierShift));
  EXPECT_FALSE(letter("o", kModifierCommand));
  EXPECT_FALSE(letter("e", kModifierCommand));
  EXPECT_FALSE(key(kBackspace));
  EXPECT_FALSE(key(kRight));
  EXPECT_FALSE(platform.pasteboard.contents);
  EXPECT_TRUE(platform.editors.opened.empty());
}

TEST_F(Keys, lettersNeedExactlyTheirModifiers) {
  openWith({"a.png"});
  platform.windows.list = {{.id = 1, .frame = {{0, 0}, {2000, 2000}}}};
  for (const ModifierFlags flags : {ModifierFlags{0}, kModifierShift, kModifierCommand | kModifierOption,
                                    kModifierCommand | kModifierControl, kModifierCommand | kFunction}) {
    EXPECT_FALSE(letter("c", flags));
    EXPECT_FALSE(letter("o", flags));
    EXPECT_FALSE(letter("e", flags));
    EXPECT_FALSE(letter("s", flags));
  }
  EXPECT_FALSE(letter("s", kModifierCommand));
  EXPECT_FALSE(letter("c", kModifierCommand | kModifierShift));
  EXPECT_FALSE(platform.pasteboard.contents);
}

TEST_F(Keys, anyKeyWithoutARowIsPassedOn) {
  openWith({"a.png"});
  EXPECT_FALSE(key(kEscape));
  EXPECT_FALSE(letter("x", kModifierCommand));
  EXPECT_FALSE(panel().handKeyDown({kModifierCommand, 200, std::nullopt}));
  EXPECT_TRUE(panel().isVisible());
}

TEST_F(Keys, commandZBringsBackWhateverElseIsHeld) {
  openWith({"a.png", "b.png"});
  key(kBackspace);
  platform.log.clear();
  EXPECT_TRUE(restartsCountdown([&] { EXPECT_TRUE(letter("z", kModifierCommand)); }));
  EXPECT_EQ(selectedName(), "b.png");
  EXPECT_EQ(platform.log.count("orderFrontRegardless"), 1);
  key(kBackspace);
  EXPECT_TRUE(letter("Z", kModifierCommand | kModifierShift));
  EXPECT_EQ(selectedName(), "b.png");
  EXPECT_FALSE(letter("z", 0));
}

TEST_F(Keys, commandZWithNothingToBringBackIsPassedOn) {
  openWith({"a.png"});
  EXPECT_FALSE(restartsCountdown([&] { EXPECT_FALSE(letter("z", kModifierCommand)); }));
}

TEST_F(Keys, commandZShowsAHiddenIslandOnTheDisplayOfWhatCameBack) {
  openHidden();
  addSecondScreen();
  platform.screens.pointer = {100, 100};
  addItem("a.png", false, 2);
  store.moveSelectedToTrash();
  EXPECT_TRUE(letter("z", kModifierCommand));
  EXPECT_TRUE(panel().isVisible());
  EXPECT_EQ(island->lastPresentedDisplayID(), 2U);
}

TEST_F(Keys, commandZShowsAHiddenIslandUnderThePointerWhenNoDisplayIsKnown) {
  openHidden();
  addSecondScreen();
  addItem("a.png");
  store.moveSelectedToTrash();
  EXPECT_TRUE(letter("z", kModifierCommand));
  EXPECT_EQ(island->lastPresentedDisplayID(), 2U);
}

TEST_F(Keys, commandEOpensTheEditorAndBringsItsSaveIntoTheLibrary) {
  openWith({"a.png"});
  EXPECT_TRUE(restartsCountdown([&] { EXPECT_TRUE(letter("e", kModifierCommand)); }));
  ASSERT_EQ(platform.editors.opened.size(), 1U);
  EXPECT_EQ(platform.editors.opened.front().first, url("a.png"));
  platform.files.write("/shots/a.png", "edited and longer");
  platform.editors.opened.front().second(url("a.png"));
  EXPECT_NE(store.items.get().front().fileSize, 17);
  platform.time.runReady();
  EXPECT_EQ(store.items.get().front().fileSize, 17);
}

TEST_F(Keys, aSaveAfterTheIslandHasGoneDoesNothing) {
  openWith({"a.png"});
  view().onOpenEditor(store.items.get().front());
  const auto onSave = platform.editors.opened.front().second;
  island.reset();
  platform.files.write("/shots/a.png", "edited and longer");
  onSave(url("a.png"));
  platform.time.runReady();
  EXPECT_NE(store.items.get().front().fileSize, 17);
}

TEST_F(Keys, commandEWithTwoSelectedIsPassedOn) {
  openWith({"a.png", "b.png"});
  selectAll();
  EXPECT_FALSE(letter("e", kModifierCommand));
  EXPECT_TRUE(platform.editors.opened.empty());
}

TEST_F(Keys, arrowsMoveTheSelectionAndStartTheCountdownAnew) {
  openWith({"a.png", "b.png", "c.png"});
  EXPECT_TRUE(restartsCountdown([&] { EXPECT_TRUE(key(kRight)); }));
  EXPECT_EQ(selectedName(), "b.png");
  EXPECT_TRUE(key(kRight, kFunction));
  EXPECT_EQ(selectedName(), "a.png");
  EXPECT_TRUE(key(kLeft));
  EXPECT_EQ(selectedName(), "b.png");
}

TEST_F(Keys, shiftWithAnArrowExtendsAlsoWithTheFunctionBit) {
  openWith({"a.png", "b.png", "c.png"});
  EXPECT_TRUE(key(kRight, kModifierShift));
  EXPECT_EQ(store.selectedItemIDs.get().size(), 2U);
  EXPECT_TRUE(key(kRight, kModifierShift | kFunction));
  EXPECT_EQ(store.selectedItemIDs.get().size(), 3U);
  EXPECT_TRUE(key(kLeft, kModifierShift | kFunction));
  EXPECT_EQ(store.selectedItemIDs.get().size(), 2U);
}

TEST_F(Keys, commandWithAnArrowDoesNothing) {
  openWith({"a.png", "b.png", "c.png"});
  key(kRight);
  for (const std::uint16_t arrow : {kLeft, kRight}) {
    EXPECT_FALSE(key(arrow, kModifierCommand));
    EXPECT_FALSE(key(arrow, kModifierCommand | kModifierShift));
  }
  EXPECT_EQ(selectedName(), "b.png");
  EXPECT_EQ(store.selectedItemIDs.get().size(), 1U);
}

TEST_F(Keys, anArrowAtEitherEndIsPassedOnAndDoesNotHoldTheIslandUp) {
  openWith({"a.png", "b.png"});
  EXPECT_FALSE(restartsCountdown([&] { EXPECT_FALSE(key(kLeft)); }));
  key(kRight);
  EXPECT_FALSE(restartsCountdown([&] { EXPECT_FALSE(key(kRight)); }));
}

TEST_F(Keys, thePreviewFollowsTheArrowsWhileItIsUp) {
  openWith({"a.png", "b.png"});
  key(kRight);
  EXPECT_FALSE(platform.previewPanel.isVisible());
  key(kSpace);
  key(kLeft);
  EXPECT_EQ(platform.previewPanel.shownFile(), url("b.png"));
}

TEST_F(Keys, whileATextFieldHasTheKeyboardEveryKeyIsItsOwn) {
  openWith({"a.png", "b.png"});
  for (const FirstResponder field : {FirstResponder::textField, FirstResponder::textView}) {
    panel().focus(field);
    EXPECT_FALSE(key(kReturn));
    EXPECT_FALSE(key(kBackspace));
    EXPECT_FALSE(key(kSpace));
    EXPECT_FALSE(key(kRight));
    EXPECT_FALSE(letter("c", kModifierCommand));
    EXPECT_FALSE(letter("z", kModifierCommand));
  }
  EXPECT_EQ(state().renameRequestToken.get(), 0);
  EXPECT_EQ(store.items.get().size(), 2U);
  panel().focus(FirstResponder::other);
  EXPECT_TRUE(key(kReturn));
}

TEST_F(Keys, theMonitorTakesAKeyWhileThePanelHasTheKeyboardOrThePointer) {
  openWith({"a.png"});
  const KeyEvent event{0, kReturn, std::nullopt};
  ASSERT_TRUE(panel().isKeyWindow());
  EXPECT_TRUE(platform.eventMonitors.press(event));
  panel().resignKey();
  EXPECT_FALSE(platform.eventMonitors.press(event));
  EXPECT_EQ(state().renameRequestToken.get(), 1);
  hover(true);
  panel().resignKey();
  EXPECT_TRUE(platform.eventMonitors.press(event));
  EXPECT_FALSE(platform.eventMonitors.press({0, kEscape, std::nullopt}));
  island->hide({});
  EXPECT_FALSE(platform.eventMonitors.press(event));
  EXPECT_EQ(state().renameRequestToken.get(), 2);
}

}  // namespace
}  // namespace quenlio
