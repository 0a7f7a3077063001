// How the user brings the island up and sends it away: by the menu and by the hot key.
#include "core/app/IslandHotKey.h"

#include "tests/core/app/AppTest.h"

namespace quenlio {
namespace {

class IslandTool : public AppTest {
 protected:
  void SetUp() override { platform.screens.list.push_back({{{1280, 0}, {1000, 600}}, {{1280, 0}, {1000, 580}}, 2}); }
  void press() {
    platform.hotKeys.press();
    platform.time.runReady();
  }
};

TEST_F(IslandTool, theMenuBringsTheIslandUpAndLeavesItUp) {
  launch();
  app->openIslandToolFromMenu();
  EXPECT_TRUE(isIslandUp());
  platform.time.advanceBy(1s);
  app->openIslandToolFromMenu();
  platform.time.advanceBy(1s);
  EXPECT_TRUE(isIslandUp());
}

TEST_F(IslandTool, theMenuShowsAnIslandThatIsUpOnceMore) {
  launch();
  app->openIslandToolFromMenu();
  platform.time.advanceBy(1s);
  const Rect<Screen> corner = platform.islandShell.panel->frame();
  platform.islandShell.view->onWindowDrag({-100, 0}, true);
  app->openIslandToolFromMenu();
  EXPECT_EQ(platform.islandShell.panel->frame(), corner);
}

TEST_F(IslandTool, theHotKeyShowsThenHidesIn120MillisecondsThenShowsAgain) {
  launch();
  press();
  EXPECT_TRUE(isIslandUp());
  platform.time.advanceBy(1s);
  EXPECT_TRUE(isIslandUp());
  platform.log.clear();
  press();
  EXPECT_EQ(platform.log.calls(), Names{"runAnimationGroup to 1036 34 232 232"});
  EXPECT_EQ(platform.islandShell.panel->lastAnimation()->duration, 120ms);
  platform.time.advanceBy(120ms);
  EXPECT_FALSE(isIslandUp());
  press();
  platform.time.advanceBy(1s);
  EXPECT_TRUE(isIslandUp());
}

TEST_F(IslandTool, theHotKeyDoesNothingVisibleWhileTheIslandIsDisabled) {
  launch();
  app->settings().islandEnabled.set(false);
  press();
  platform.time.advanceBy(1s);
  EXPECT_FALSE(isIslandUp());
}

TEST_F(IslandTool, comesUpOnTheDisplayOfTheSelectedScreenshotElseOnTheOneUnderThePointer) {
  launch();
  const std::vector<std::function<void()>> ways{[this] { app->openIslandToolFromMenu(); }, [this] { press(); }};
  for (const auto& open : ways) {
    const auto displayShown = [&] {
      app->overlayController().hide({});
      open();
      return app->overlayController().lastPresentedDisplayID();
    };
    platform.screens.pointer = {1300, 500};
    EXPECT_EQ(displayShown(), 2U);
    platform.files.write("/shots/a.png");
    arrive("/shots/a.png", 1);
    EXPECT_EQ(displayShown(), 1U);
    arrive("/shots/a.png");  // the same screenshot, of no known display
    EXPECT_EQ(displayShown(), 2U);
    platform.files.remove("/shots/a.png");
    app->store().removeMissingFiles();
  }
}

TEST_F(IslandTool, withoutAnyScreenNothingComesUp) {
  platform.screens.list.clear();
  launch();
  app->openIslandToolFromMenu();
  press();
  EXPECT_FALSE(isIslandUp());
}

TEST_F(IslandTool, theHotKeyIsCommandShift2) {
  launch();
  ASSERT_EQ(platform.hotKeys.keys.size(), 1U);
  const auto& [combination, identifier] = platform.hotKeys.keys.begin()->second;
  EXPECT_EQ(combination, (HotKeyCombination{.virtualKeyCode = 19, .modifiers = 768}));
  EXPECT_EQ(identifier, (HotKeyID{.signature = 0x49534C44, .id = 1}));
}

TEST_F(IslandTool, theHandlerAnswersAtOnceAndTheIslandFollowsOnTheNextTurn) {
  launch();
  ASSERT_EQ(platform.hotKeys.handlers.size(), 1U);
  EXPECT_EQ(platform.hotKeys.handlers.begin()->second(), noErr);
  EXPECT_FALSE(isIslandUp());
  platform.time.runReady();
  EXPECT_TRUE(isIslandUp());
}

TEST_F(IslandTool, theHandlerDoesNotTakeAKeyOnceTheApplicationIsGone) {
  launch();
  const auto handler = platform.hotKeys.handlers.begin()->second;
  app.reset();
  EXPECT_EQ(handler(), eventNotHandledErr);
  platform.time.runReady();
  EXPECT_EQ(platform.islandShell.panel, nullptr);
}

TEST_F(IslandTool, aKeyThatIsTakenIsLoggedAndTheRestWorks) {
  platform.hotKeys.registerStatus = -9878;
  launch();
  EXPECT_EQ(platform.systemLog.lines, Names{"Failed to register Cmd+Shift+2 island hotkey: -9878"});
  EXPECT_EQ(platform.log.count("InstallEventHandler"), 0);
  EXPECT_TRUE(platform.hotKeys.handlers.empty());
  app->openIslandToolFromMenu();
  EXPECT_TRUE(isIslandUp());
}

TEST_F(IslandTool, aHandlerThatCannotBeInstalledIsLoggedAndTheKeyIsGivenBack) {
  platform.hotKeys.installStatus = -50;
  launch();
  EXPECT_EQ(platform.systemLog.lines, Names{"Failed to install island hotkey event handler: -50"});
  EXPECT_TRUE(platform.hotKeys.keys.empty());
  EXPECT_TRUE(platform.hotKeys.handlers.empty());
  // Neither reference is left to be given back a second time.
  platform.log.clear();
  app->applicationWillTerminate();
  EXPECT_EQ(platform.log.count("UnregisterEventHotKey") + platform.log.count("RemoveEventHandler"), 0);
}

class HotKeyAlone : public AppTest {};

TEST_F(HotKeyAlone, aSecondRegistrationReplacesBothAndLeavesOneWorkingKey) {
  IslandHotKey key(platform.hotKeys, platform.systemLog);
  int first = 0;
  int second = 0;
  key.registerIslandOpenHotKey([&] { return ++first, noErr; });
  platform.log.clear();
  key.registerIslandOpenHotKey([&] { return ++second, noErr; });
  EXPECT_EQ(platform.log.calls(),
            (Names{"UnregisterEventHotKey", "RemoveEventHandler", "RegisterEventHotKey", "InstallEventHandler"}));
  EXPECT_EQ(platform.hotKeys.keys.size(), 1U);
  platform.hotKeys.press();
  EXPECT_EQ(first, 0);
  EXPECT_EQ(second, 1);
}

TEST_F(HotKeyAlone, aSecondRegistrationThatFailsLeavesNeither) {
  IslandHotKey key(platform.hotKeys, platform.systemLog);
  key.registerIslandOpenHotKey([] { return noErr; });
  platform.hotKeys.registerStatus = -9878;
  key.registerIslandOpenHotKey([] { return noErr; });
  EXPECT_TRUE(platform.hotKeys.keys.empty());
  EXPECT_TRUE(platform.hotKeys.handlers.empty());
}

TEST_F(HotKeyAlone, theKeyGoesWithItsOwner) {
  {
    IslandHotKey key(platform.hotKeys, platform.systemLog);
    key.registerIslandOpenHotKey([] { return noErr; });
    ASSERT_EQ(platform.hotKeys.keys.size(), 1U);
  }
  EXPECT_TRUE(platform.hotKeys.keys.empty());
  EXPECT_TRUE(platform.hotKeys.handlers.empty());
}

}  // namespace
}  // namespace quenlio
