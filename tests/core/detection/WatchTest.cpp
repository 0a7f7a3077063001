// Beginning, following and ending a watch: the stream, the listing, the poll.
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/core/detection/WatcherBench.h"
#include "tests/harness/SchedulerRecorder.h"
#include "tests/harness/TestPlatform.h"

namespace quenlio {
namespace {

class Watch : public testing::Test, public WatcherBench {
 protected:
  // What the watcher asked of its streams.
  [[nodiscard]] std::vector<std::string> streamCalls() const {
    std::vector<std::string> calls;
    for (const std::string& call : log.calls()) {
      if (call.starts_with("FSEventStream")) {
        calls.push_back(call.substr(std::string("FSEventStream").size()));
      }
    }
    return calls;
  }
};

TEST_F(Watch, nothingStartsBeforeItIsAsked) {
  EXPECT_EQ(streamCalls(), std::vector<std::string>{});
  EXPECT_EQ(time.pending(), 0U);
  watcher->scanDirectoryForNewScreenshots();
  EXPECT_EQ(time.pending(), 0U) << "a scan without a folder is nothing";
  EXPECT_EQ(watcher->folderURL(), std::nullopt);
}

TEST_F(Watch, makesAStreamOnItsQueueAndStartsIt) {
  startWithoutPoll();
  EXPECT_EQ(streamCalls(),
            (std::vector<std::string>{"Create " + kFolder, "SetDispatchQueue Quenlio.Watcher", "Start " + kFolder}));
  EXPECT_EQ(eventStreams.lastOptions.latency, Seconds(0.02));
  EXPECT_EQ(eventStreams.lastOptions.flags, 19U);
  EXPECT_EQ(watcher->folderURL(), FileURL(kFolder));
}

TEST_F(Watch, looksAtFilesAsSomethingThatTheUserWaitsFor) {
  SchedulerRecorder scheduler(time);
  watcher = makeWatcher(scheduler);
  EXPECT_EQ(scheduler.queueQualities,
            (std::map<std::string, QualityOfService>{{"Quenlio.Watcher", QualityOfService::userInitiated}}));
}

TEST_F(Watch, pollsAtTheIntervalItIsGivenOrUpToAFifthOfASecondLater) {
  for (const Seconds interval : {Seconds(5), Seconds(1)}) {
    SchedulerRecorder scheduler(time);
    watcher = makeWatcher(scheduler, interval);
    watcher->startPollingForLocationChanges();
    EXPECT_EQ(scheduler.repeating, (std::vector<SchedulerRecorder::Repeating>{{interval, Seconds(0.2)}}));
    watcher.reset();
  }
}

TEST_F(Watch, theSameFolderIsLeftAlone) {
  startWithoutPoll();
  log.clear();
  watcher->restartWatcher(false);
  files.makeFolder("/home/user/x");
  chooseFolder("/home/user/x/../Desktop");
  watcher->restartWatcher(false);
  EXPECT_EQ(streamCalls(), std::vector<std::string>{}) << "also under another spelling";
}

TEST_F(Watch, aForcedRestartEndsTheStreamInOrderAndMakesANewOne) {
  startWithoutPoll();
  log.clear();
  watcher->restartWatcher(true);
  EXPECT_EQ(streamCalls(),
            (std::vector<std::string>{"Stop " + kFolder, "Invalidate " + kFolder, "Release " + kFolder,
                                      "Create " + kFolder, "SetDispatchQueue Quenlio.Watcher", "Start " + kFolder}));
  EXPECT_EQ(eventStreams.runningCount(), 1U);
}

TEST_F(Watch, whatIsOldIsDecidedWhileNoStreamRuns) {
  files.duringListing = [this](const FileURL& folder, HiddenFiles hidden) {
    log.add("FSEventStream" + std::string(hidden == HiddenFiles::skip ? " listing of " : " whole of ") + folder.path());
  };
  startWithoutPoll();
  EXPECT_EQ(streamCalls(), (std::vector<std::string>{" listing of " + kFolder, "Create " + kFolder,
                                                     "SetDispatchQueue Quenlio.Watcher", "Start " + kFolder}));
  log.clear();
  watcher->restartWatcher(true);
  EXPECT_EQ(streamCalls(), (std::vector<std::string>{"Stop " + kFolder, "Invalidate " + kFolder, "Release " + kFolder,
                                                     " listing of " + kFolder, "Create " + kFolder,
                                                     "SetDispatchQueue Quenlio.Watcher", "Start " + kFolder}));
}

TEST_F(Watch, whatLiesInTheFolderAtTheStartIsNotNew) {
  files.write(kShot);
  start();
  event(kShot, kFSEventStreamEventFlagItemModified);
  time.advanceBy(Seconds(20));
  EXPECT_EQ(foundPaths(), Paths{});
}

TEST_F(Watch, aForcedRestartOnTheSameFolderTakesAllInItAsKnown) {
  startWithoutPoll();
  files.write(kShot);
  watcher->restartWatcher(true);
  watcher->scanDirectoryForNewScreenshots();
  event(kShot, kFSEventStreamEventFlagItemCreated);
  time.advanceBy(Seconds(2));
  EXPECT_EQ(foundPaths(), Paths{});
}

TEST_F(Watch, aForcedRestartMovesTheMomentFromWhichFilesCountAsNew) {
  startWithoutPoll();
  const Date created = time.now();
  time.advanceBy(Seconds(10));
  watcher->restartWatcher(true);
  files.write(kShot);
  files.setCreationDate(kShot, created);
  event(kShot, kFSEventStreamEventFlagItemCreated);
  time.advanceBy(Seconds(2));
  EXPECT_EQ(foundPaths(), Paths{}) << "recent for the first watch, old for the second";
}

TEST_F(Watch, aLookUnderWayOutlivesAForcedRestart) {
  startWithoutPoll();
  arrive(kShot);
  time.advanceBy(kLook);
  watcher->restartWatcher(true);
  time.advanceBy(Seconds(2));
  EXPECT_EQ(foundPaths(), Paths{kShot});
}

// A restart while a file is looked at, and while the folder cannot be listed: the file is not among the known ones.
class ForgetfulRestart : public Watch {
 protected:
  void SetUp() override {
    startWithoutPoll();
    arrive(kShot);
  }
  void restart() {
    files.setUnlistable(kFolder, true);
    watcher->restartWatcher(true);
    files.setUnlistable(kFolder, false);
  }
};

TEST_F(ForgetfulRestart, aFileThatIsReportedIsKnownFromThenOn) {
  restart();
  time.advanceBy(kTwoLooks);
  EXPECT_EQ(foundPaths(), Paths{kShot});
  event(kShot, kFSEventStreamEventFlagItemModified);
  watcher->scanDirectoryForNewScreenshots();
  time.advanceBy(Seconds(2));
  EXPECT_EQ(foundPaths(), Paths{kShot});
}

TEST_F(ForgetfulRestart, aNewEventBeginsTheLooksAnewAndEndsTheOldOnes) {
  time.advanceBy(Milliseconds(20));
  restart();
  event(kShot, kFSEventStreamEventFlagItemModified);
  time.advanceBy(Seconds(2));
  ASSERT_EQ(foundPaths(), Paths{kShot});
  EXPECT_EQ(found.front().at, Milliseconds(20) + kTwoLooks);
}

TEST_F(ForgetfulRestart, aNewEventChangesNothingOnceAFurtherLookHasBegun) {
  restart();
  time.advanceBy(Milliseconds(40));
  event(kShot, kFSEventStreamEventFlagItemModified);
  time.advanceBy(Seconds(2));
  ASSERT_EQ(foundPaths(), Paths{kShot});
  EXPECT_EQ(found.front().at, kTwoLooks);
}

TEST_F(Watch, aStreamThatCannotBeMadeIsLoggedAndThePollFindsFiles) {
  eventStreams.creationFails = true;
  start();
  EXPECT_EQ(systemLog.lines, std::vector<std::string>{"Failed to create FSEvent stream for " + kFolder});
  EXPECT_FALSE(watcher->hasStream());
  files.write(kShot);
  time.advanceBy(Seconds(5) + kTwoLooks);
  EXPECT_EQ(foundPaths(), Paths{kShot});
}

TEST_F(Watch, aStreamThatDoesNotStartIsLoggedAndReleasedInOrder) {
  eventStreams.startFails = true;
  start();
  EXPECT_EQ(systemLog.lines, std::vector<std::string>{"Failed to start FSEvent stream for " + kFolder});
  EXPECT_EQ(streamCalls(),
            (std::vector<std::string>{"Create " + kFolder, "SetDispatchQueue Quenlio.Watcher", "Start " + kFolder,
                                      "Stop " + kFolder, "Invalidate " + kFolder, "Release " + kFolder}));
  EXPECT_FALSE(watcher->hasStream());
  files.write(kShot);
  time.advanceBy(Seconds(5) + kTwoLooks);
  EXPECT_EQ(foundPaths(), Paths{kShot});
}

TEST_F(Watch, aStreamIsTriedAgainByAForcedRestartAndByANewFolderAndNotByThePoll) {
  eventStreams.creationFails = true;
  start();
  eventStreams.creationFails = false;
  time.advanceBy(Seconds(20));
  EXPECT_FALSE(watcher->hasStream());
  watcher->restartWatcher(true);
  EXPECT_TRUE(watcher->hasStream());
  eventStreams.creationFails = true;
  watcher->restartWatcher(true);
  EXPECT_FALSE(watcher->hasStream());
  eventStreams.creationFails = false;
  files.makeFolder("/other");
  chooseFolder("/other");
  time.advanceBy(Seconds(5));
  EXPECT_TRUE(watcher->hasStream());
}

TEST_F(Watch, aChangeOfTheSystemsFolderIsTakenUpWithinOnePoll) {
  start();
  files.write("/other/Screenshot 2026-11-15.png");
  chooseFolder("/other");
  time.advanceBy(Seconds(5) - kLook);
  EXPECT_EQ(watcher->folderURL(), FileURL(kFolder));
  time.advanceBy(kLook);
  EXPECT_EQ(watcher->folderURL(), FileURL("/other"));
  time.advanceBy(Seconds(10));
  EXPECT_EQ(foundPaths(), Paths{}) << "what lies in the new folder is not new";
  arrive("/other/Screenshot 2026-11-16.png");
  time.advanceBy(kTwoLooks);
  EXPECT_EQ(foundPaths(), Paths{"/other/Screenshot 2026-11-16.png"});
}

TEST_F(Watch, afterAChangeTheOldFolderIsWatchedNoMore) {
  start();
  files.makeFolder("/other");
  chooseFolder("/other");
  watcher->restartWatcher(false);
  arrive(kShot);
  time.advanceBy(Seconds(10));
  EXPECT_EQ(foundPaths(), Paths{});
}

TEST_F(Watch, comingBackToAFolderTakesWhatLiesThereAsKnown) {
  start();
  files.makeFolder("/other");
  chooseFolder("/other");
  watcher->restartWatcher(false);
  files.write(kShot);
  files.remove("/other");
  time.advanceBy(Seconds(20));
  EXPECT_EQ(watcher->folderURL(), FileURL(kFolder));
  EXPECT_EQ(foundPaths(), Paths{});
}

TEST_F(Watch, thePollFindsWhatTheStreamMissed) {
  start();
  files.write(kShot);
  time.advanceBy(Seconds(5));
  EXPECT_EQ(foundPaths(), Paths{});
  time.advanceBy(kTwoLooks);
  EXPECT_EQ(foundPaths(), Paths{kShot});
  EXPECT_EQ(found.front().at, Seconds(5) + kTwoLooks);
}

TEST_F(Watch, thePollFollowsTheFolderBeforeItScans) {
  start();
  files.write("/other/Screenshot 2026-11-15.png");
  files.write(kShot);
  chooseFolder("/other");
  time.advanceBy(Seconds(30));
  EXPECT_EQ(foundPaths(), Paths{}) << "a scan of the old folder would have found the one, a late listing the other";
}

TEST_F(Watch, startingThePollAgainReplacesTheTimer) {
  settings.manualScreenshotFolderBookmark.set(FakeBookmarks::bytesFor(kFolder));
  settings.detectLocationMode.set(ScreenshotLocationMode::manual);
  start();
  time.advanceBy(Seconds(3));
  watcher->startPollingForLocationChanges();
  bookmarks.accesses.clear();
  time.advanceBy(Seconds(4.9));
  EXPECT_EQ(bookmarks.accesses[kFolder], 0) << "the interval counts from the second call";
  time.advanceBy(Seconds(10.1));
  EXPECT_EQ(bookmarks.accesses[kFolder], 3) << "and nothing of the first is left";
}

TEST_F(Watch, stoppingEndsTheStreamInOrderAndThePoll) {
  start();
  log.clear();
  watcher->stop();
  EXPECT_EQ(streamCalls(),
            (std::vector<std::string>{"Stop " + kFolder, "Invalidate " + kFolder, "Release " + kFolder}));
  EXPECT_FALSE(watcher->hasStream());
  EXPECT_EQ(time.pending(), 0U);
  log.clear();
  watcher->stop();
  EXPECT_EQ(streamCalls(), std::vector<std::string>{}) << "a second time there is nothing to end";
}

TEST_F(Watch, destroyingItStopsItAndDropsWhatIsUnderWay) {
  start();
  arrive(kShot);
  log.clear();
  watcher.reset();
  EXPECT_EQ(streamCalls(),
            (std::vector<std::string>{"Stop " + kFolder, "Invalidate " + kFolder, "Release " + kFolder}));
  EXPECT_EQ(time.pending(), 0U);
  time.advanceBy(Seconds(10));
  EXPECT_EQ(foundPaths(), Paths{});
}

TEST_F(Watch, aFileFoundAtTheMomentOfDestructionIsNotReported) {
  startWithoutPoll();
  arrive(kShot);
  time.advanceBy(kLook + kLook / 2);
  // Runs between the look that finds the file and the main thread's turn to report it.
  const auto between = time.after(kLook / 2, [this] { watcher.reset(); });
  time.advanceBy(Seconds(1));
  EXPECT_EQ(foundPaths(), Paths{});
}

TEST_F(Watch, aWallClockThatJumpsDoesNotStopDetection) {
  start();
  time.jumpWallClock(Seconds(3600));
  arrive(kShot);
  time.advanceBy(kTwoLooks);
  EXPECT_EQ(foundPaths(), Paths{kShot});
}

TEST(WatchOfTheApplication, pollsEveryFiveSecondsAndEverySecondInAScriptedRun) {
  for (const auto& [enabled, interval] : {std::pair(false, Seconds(5)), std::pair(true, Seconds(1))}) {
    TestPlatform platform;
    if (enabled) {
      platform.enableDiagnostics();
    }
    platform.eventStreams.creationFails = true;
    const auto app = platform.makeApp();
    app->applicationDidFinishLaunching();
    platform.time.runReady();
    platform.files.write(kShot);
    platform.time.advanceBy(interval - kLook);
    EXPECT_EQ(app->store().items.get().size(), 0U);
    platform.time.advanceBy(kLook + kTwoLooks);
    EXPECT_EQ(app->store().items.get().size(), 1U);
  }
}

}  // namespace
}  // namespace quenlio
