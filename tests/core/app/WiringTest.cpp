// What the status item, the island and the editor ask of the application.

#include "tests/core/app/AppTest.h"

namespace quenlio {
namespace {

class StatusItemWish : public AppTest {
 protected:
  void SetUp() override {
    launch();
    callbacks = app->statusBarController()->callbacks();
    platform.log.clear();
  }
  [[nodiscard]] std::ptrdiff_t reports() const { return platform.log.count("writeAtomically /run/state.json"); }

  StatusBarCallbacks callbacks;
};

TEST_F(StatusItemWish, bringsTheIslandUp) {
  callbacks.onOpenIslandTool();
  EXPECT_TRUE(isIslandUp());
}

TEST_F(StatusItemWish, opensTheEditorOnTheFileThatIsGiven) {
  platform.files.write("/shots/a.png");
  callbacks.onOpenEditor(FileURL("/shots/a.png"));
  ASSERT_EQ(platform.editors.opened.size(), 1U);
  EXPECT_EQ(platform.editors.opened[0].first, FileURL("/shots/a.png"));
}

TEST_F(StatusItemWish, startsTheWatcherAnewThoughTheFolderIsTheSame) {
  callbacks.onRefreshLocation();
  EXPECT_EQ(calls(), (Names{"FSEventStreamStop /home/user/Desktop", "FSEventStreamInvalidate /home/user/Desktop",
                            "FSEventStreamRelease /home/user/Desktop", "FSEventStreamCreate /home/user/Desktop",
                            "FSEventStreamSetDispatchQueue Quenlio.Watcher", "FSEventStreamStart /home/user/Desktop"}));
}

TEST_F(StatusItemWish, recordsTheUpdateCheckThenCountsItThenRunsIt) {
  callbacks.onCheckUpdates();
  EXPECT_EQ(calls(), (Names{"track " + std::to_string(static_cast<int>(AnalyticsEventName::updateCheckRequested)),
                            "checkForUpdates"}));
  EXPECT_EQ(platform.eventNames().back(), "sparkle_update_check_requested");
  EXPECT_TRUE(platform.analytics.events.back().second.empty());
}

TEST_F(StatusItemWish, quitsTheApplication) {
  callbacks.onQuit();
  EXPECT_EQ(calls(), Names{"terminate"});
}

TEST_F(StatusItemWish, reportsItsVisibilityOnlyWhenThatChanges) {
  callbacks.onStatusItemVisibilityChanged(false);
  EXPECT_EQ(reports(), 0);
  callbacks.onStatusItemVisibilityChanged(true);
  EXPECT_EQ(reports(), 1);
  EXPECT_TRUE(platform.state().statusItemVisible);
  callbacks.onStatusItemVisibilityChanged(true);
  EXPECT_EQ(reports(), 1);
  callbacks.onStatusItemVisibilityChanged(false);
  EXPECT_EQ(reports(), 2);
  EXPECT_FALSE(platform.state().statusItemVisible);
}

TEST_F(StatusItemWish, beforeTheWatcherExistsARefreshDoesNothing) {
  app.reset();
  app = platform.makeApp();
  app->bootstrapStatusBarIfNeeded();
  platform.log.clear();
  app->statusBarController()->callbacks().onRefreshLocation();
  EXPECT_EQ(platform.log.calls(), Names{});
}

TEST_F(StatusItemWish, reachesNobodyOnceTheApplicationIsGone) {
  platform.files.write("/shots/a.png");
  app.reset();
  platform.log.clear();
  callbacks.onTriggerScreenshot();
  callbacks.onOpenIslandTool();
  callbacks.onOpenEditor(FileURL("/shots/a.png"));
  callbacks.onRefreshLocation();
  callbacks.onCheckUpdates();
  callbacks.onShowOnboarding();
  callbacks.onStatusItemVisibilityChanged(true);
  callbacks.onQuit();
  platform.time.runReady();
  EXPECT_EQ(platform.log.calls(), Names{});
  EXPECT_TRUE(platform.editors.opened.empty());
}

class FolderRequest : public AppTest {};

TEST_F(FolderRequest, startsTheWatcherAnewAndPublishesThePermissions) {
  platform.screenCapture.isGranted = true;
  launch();
  app->openIslandToolFromMenu();
  ASSERT_TRUE(platform.state().permissionState.desktopFolderReadable);
  platform.screenCapture.isGranted = false;
  platform.files.setUnlistable(kDesktop, true);
  platform.log.clear();
  platform.islandShell.view->onRequestFolderAccess();
  EXPECT_EQ(platform.log.count("FSEventStreamCreate /home/user/Desktop"), 1);
  EXPECT_FALSE(platform.state().permissionState.screenRecordingGranted);
  EXPECT_FALSE(platform.state().permissionState.desktopFolderReadable);
}

TEST_F(FolderRequest, listsTheFolderThenStartsTheWatcherAnewThenPublishes) {
  launch();
  app->openIslandToolFromMenu();
  platform.files.duringListing = [this](const FileURL&, HiddenFiles) { platform.log.add("listing"); };
  platform.log.clear();
  platform.islandShell.view->onRequestFolderAccess();
  EXPECT_EQ(platform.log.calls(),
            (Names{"listing", "FSEventStreamStop /home/user/Desktop", "FSEventStreamInvalidate /home/user/Desktop",
                   "FSEventStreamRelease /home/user/Desktop", "listing", "FSEventStreamCreate /home/user/Desktop",
                   "FSEventStreamSetDispatchQueue Quenlio.Watcher", "FSEventStreamStart /home/user/Desktop",
                   "createDirectory /run", "writeAtomically /run/state.json"}));
}

TEST_F(FolderRequest, aFolderThatIsGoneOrIsAFileIsNotTried) {
  launch();
  app->openIslandToolFromMenu();
  int listings = 0;
  platform.files.duringListing = [&](const FileURL&, HiddenFiles) { ++listings; };
  platform.files.remove(kDesktop);
  platform.islandShell.view->onRequestFolderAccess();
  EXPECT_EQ(listings, 1) << "the watcher's alone";
  platform.files.write(kDesktop, "a file");
  platform.islandShell.view->onRequestFolderAccess();
  EXPECT_EQ(listings, 2) << "the watcher's alone";
}

TEST_F(FolderRequest, triesAListingOfTheFolderWithoutHiddenFilesWhateverComesOfIt) {
  launch();
  app->openIslandToolFromMenu();
  Names listings;
  platform.files.duringListing = [&](const FileURL& folder, HiddenFiles hidden) {
    listings.push_back(folder.path() + (hidden == HiddenFiles::skip ? "" : " with hidden files"));
  };
  platform.islandShell.view->onRequestFolderAccess();
  EXPECT_EQ(listings, (Names{kDesktop, kDesktop}));  // the request's own and the watcher's
  platform.files.setUnreadable(kDesktop, true);
  listings.clear();
  platform.log.clear();
  platform.islandShell.view->onRequestFolderAccess();
  EXPECT_EQ(listings, Names{kDesktop});  // the watcher's alone: a folder that may not be read is not tried
  EXPECT_EQ(platform.log.count("FSEventStreamCreate /home/user/Desktop"), 1);
}

class EditorEntry : public AppTest {
 protected:
  void SetUp() override { launch(); }
  [[nodiscard]] Names opened() const {
    Names paths;
    for (const auto& [url, onSave] : platform.editors.opened) {
      paths.push_back(url.path());
    }
    return paths;
  }
};

TEST_F(EditorEntry, opensAPictureUnderItsStandardPath) {
  platform.files.write("/shots/a.PNG");
  app->openEditor(FileURL("/shots/sub/../a.PNG"));
  EXPECT_EQ(opened(), Names{"/shots/a.PNG"});
}

TEST_F(EditorEntry, opensEachOfTheSixKinds) {
  const Names paths{"/s/a.png", "/s/a.jpg", "/s/a.jpeg", "/s/a.heic", "/s/a.tiff", "/s/a.pdf"};
  for (const std::string& path : paths) {
    platform.files.write(path);
    app->openEditor(FileURL(path));
  }
  EXPECT_EQ(opened(), paths);
}

TEST_F(EditorEntry, opensNothingForAMissingFileAFolderOrAnotherKindAndSaysNothing) {
  platform.files.makeFolder("/shots/folder.png");
  platform.files.write("/shots/a.gif");
  platform.log.clear();
  for (const char* path : {"/shots/missing.png", "/shots/folder.png", "/shots/a.gif"}) {
    app->openEditor(FileURL(path));
  }
  EXPECT_EQ(opened(), Names{});
  EXPECT_EQ(platform.log.calls(), Names{});
  EXPECT_TRUE(platform.systemLog.lines.empty());
}

TEST_F(EditorEntry, withoutAFileTakesTheFirstScreenshotOfTheListNotTheSelectedOne) {
  for (const char* path : {"/shots/old.png", "/shots/new.png"}) {
    platform.files.write(path);
    arrive(path);
    platform.time.advanceBy(1s);
  }
  app->store().select(app->store().items.get().back().id);
  app->openEditorFromMenu(std::nullopt);
  EXPECT_EQ(opened(), Names{"/shots/new.png"});
  EXPECT_TRUE(platform.openPanel.requests.empty());
}

TEST_F(EditorEntry, withAFileThatCannotBeOpenedDoesNotFallBackToTheScreenshots) {
  platform.files.write("/shots/a.png");
  arrive("/shots/a.png");
  app->openEditorFromMenu(FileURL("/shots/missing.png"));
  EXPECT_EQ(opened(), Names{});
}

TEST_F(EditorEntry, withAnEmptyLibraryAsksForAPicture) {
  platform.files.write("/pictures/a.jpg");
  platform.openPanel.answer = FileURL("/pictures/a.jpg");
  app->openEditorFromMenu(std::nullopt);
  EXPECT_EQ(opened(), Names{"/pictures/a.jpg"});
  ASSERT_EQ(platform.openPanel.requests.size(), 1U);
  const OpenPanelRequest& request = platform.openPanel.requests[0];
  EXPECT_EQ(request.title, "Open Image in Editor");
  EXPECT_EQ(request.prompt, "Open");
  EXPECT_TRUE(request.canChooseFiles);
  EXPECT_FALSE(request.canChooseDirectories);
  EXPECT_FALSE(request.allowsMultipleSelection);
  EXPECT_EQ(request.allowedContentTypes,
            (std::vector{ContentType::png, ContentType::jpeg, ContentType::heic, ContentType::tiff, ContentType::pdf}));
  EXPECT_EQ(request.directoryURL, FileURL("/home/user/Desktop"));
}

TEST_F(EditorEntry, aCancelledQuestionOpensNothing) {
  app->openEditorFromMenu(std::nullopt);
  EXPECT_EQ(platform.openPanel.requests.size(), 1U);
  EXPECT_EQ(opened(), Names{});
}

TEST_F(EditorEntry, aSaveBringsTheLibraryUpToDateAndIsThenRecorded) {
  platform.files.write("/shots/a.png");
  arrive("/shots/a.png");
  app->openEditor(FileURL("/shots/a.png"));
  platform.files.write("/shots/a.png", "edited, and longer");
  platform.editors.opened.at(0).second(FileURL("/shots/a.png"));
  EXPECT_EQ(platform.eventCount("editor_saved"), 0);  // on the next turn of the main thread
  platform.time.runReady();
  EXPECT_EQ(app->store().items.get().front().fileSize, 18);
  EXPECT_EQ(eventValues("editor_saved", "path"), Names{"/shots/a.png"});
}

TEST_F(EditorEntry, aSaveAfterTheApplicationIsGoneReachesNobody) {
  platform.files.write("/shots/a.png");
  app->openEditor(FileURL("/shots/a.png"));
  app.reset();
  platform.editors.opened.at(0).second(FileURL("/shots/a.png"));
  platform.time.runReady();
  EXPECT_EQ(platform.eventCount("editor_saved"), 0);
}

TEST_F(EditorEntry, theSharedServicesAreThoseOfThisApplication) {
  EXPECT_EQ(&AppSettings::shared(), &app->settings());
  EXPECT_EQ(&AnalyticsTracker::shared(), &platform.analytics);
  EXPECT_EQ(&ScreenshotEditorManager::shared(), &platform.editors);
  QuenlioReleaseTestDiagnostics::shared().record("told through the shared one");
  EXPECT_EQ(platform.eventCount("told through the shared one"), 1);
}

TEST_F(EditorEntry, eachLazyPartIsMadeOnce) {
  EXPECT_EQ(&app->store(), &app->store());
  EXPECT_EQ(&app->overlayController(), &app->overlayController());
  EXPECT_EQ(&app->updaterController(), &app->updaterController());
}

}  // namespace
}  // namespace quenlio
