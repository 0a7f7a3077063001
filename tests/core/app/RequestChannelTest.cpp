// The ways in which a scripted run feeds the program.
#include "tests/core/app/AppTest.h"
#include "tests/harness/SchedulerRecorder.h"

namespace quenlio {
namespace {

constexpr const char* kRequestFile = "/run/ingest-screenshot-request.txt";
constexpr const char* kIngestNotification = "com.quenlio.release-test.ingest-screenshot";

class Seeds : public AppTest {
 protected:
  void SetUp() override { platform.configuration.screenshotDirectory = FileURL("/seeds"); }
  void seed(const std::string& name, std::optional<int> createdAt) {
    const std::string path = "/seeds/" + name;
    platform.files.write(path);
    platform.files.setCreationDate(
        path, createdAt ? std::optional(platform.time.now() + std::chrono::seconds(*createdAt)) : std::nullopt);
  }
  [[nodiscard]] Names ingested() const { return eventValues("release_test_seed_ingested_on_launch", "path"); }
};

TEST_F(Seeds, areTakenInOldestFirstWithThoseOfNoKnownDateAhead) {
  seed("c.png", -10);
  seed("a.pdf", -30);
  seed("unknown.jpg", std::nullopt);
  seed("b.HEIC", -20);
  launch();
  EXPECT_EQ(ingested(), (Names{"/seeds/unknown.jpg", "/seeds/a.pdf", "/seeds/b.HEIC", "/seeds/c.png"}));
  EXPECT_EQ(listed().size(), 4U);
  EXPECT_EQ(platform.state().screenshotCount, 4);
  for (const ScreenshotItem& item : app->store().items.get()) {
    EXPECT_EQ(item.sourceDisplayID, std::nullopt);
  }
}

TEST_F(Seeds, countAlsoWhenTheyAreHidden) {
  seed(".hidden.png", -1);
  launch();
  EXPECT_EQ(ingested(), Names{"/seeds/.hidden.png"});
  EXPECT_EQ(listed(), Names{"/seeds/.hidden.png"});
}

TEST_F(Seeds, mustBeRegularFilesOfTheSixKinds) {
  seed("a.png", -1);
  seed("b.gif", -1);
  seed("c.txt", -1);
  platform.files.makeFolder("/seeds/folder.png");
  seed("unfinished.png", -1);
  platform.files.setUnfinished("/seeds/unfinished.png", true);
  platform.files.write("/seeds/sub/d.png");
  launch();
  EXPECT_EQ(ingested(), Names{"/seeds/a.png"});
}

TEST_F(Seeds, areContentAndNoArrivals) {
  seed("a.png", -1);
  launch();
  EXPECT_EQ(platform.islandShell.panel, nullptr);
  EXPECT_EQ(platform.eventCount("screenshot_detected"), 0);
  EXPECT_EQ(platform.analytics.count(AnalyticsEventName::firstScreenshotTaken), 0);
}

TEST_F(Seeds, areTakenInBeforeTheWatcherStarts) {
  seed("a.png", -1);
  launch();
  const auto pins = platform.log.indexOf("writeAtomically /home/user/support/Quenlio/pinned.json");
  ASSERT_GE(pins, 0);
  EXPECT_LT(pins, platform.log.indexOf("FSEventStreamCreate /home/user/Desktop"));
}

TEST_F(Seeds, thatCannotBeListedAreLeftOutInSilence) {
  seed("a.png", -1);
  platform.files.setUnlistable("/seeds", true);
  launch();
  EXPECT_EQ(ingested(), Names{});
  EXPECT_TRUE(platform.systemLog.lines.empty());
  EXPECT_EQ(platform.eventCount("release_test_request_polling_started"), 1);
}

TEST_F(Seeds, needAFolderAndARun) {
  seed("a.png", -1);
  platform.configuration.isEnabled = false;
  launch();
  EXPECT_EQ(listed(), Names{});
  platform.configuration.isEnabled = true;
  platform.configuration.screenshotDirectory.reset();
  launch();
  EXPECT_EQ(listed(), Names{});
}

class LaunchArgument : public AppTest {
 protected:
  void launchWith(Names arguments) {
    platform.files.write("/shots/a.png");
    platform.files.write("/shots/b.png");
    arguments.insert(arguments.begin(), "quenlio");
    platform.process.argumentList = std::move(arguments);
    launch();
  }
};

TEST_F(LaunchArgument, isTakenAsANewScreenshot) {
  launchWith({"--release-test-ingest", "/shots/a.png"});
  EXPECT_EQ(eventValues("release_test_launch_ingest_requested", "path"), Names{"/shots/a.png"});
  EXPECT_EQ(eventValues("screenshot_detected", "path"), Names{"/shots/a.png"});
  EXPECT_EQ(listed(), Names{"/shots/a.png"});
  EXPECT_EQ(app->store().items.get().front().sourceDisplayID, std::nullopt);
  EXPECT_TRUE(isIslandUp());
}

TEST_F(LaunchArgument, countsOnceAndTheFirst) {
  launchWith({"other", "--release-test-ingest", "/shots/a.png", "--release-test-ingest", "/shots/b.png"});
  EXPECT_EQ(listed(), Names{"/shots/a.png"});
}

TEST_F(LaunchArgument, withoutAPathIsIgnored) {
  for (const Names& arguments : {Names{"--release-test-ingest"}, Names{"--release-test-ingest", ""}, Names{}}) {
    launchWith(arguments);
    EXPECT_EQ(platform.eventCount("release_test_launch_ingest_requested"), 0);
    EXPECT_EQ(listed(), Names{});
  }
}

TEST_F(LaunchArgument, isIgnoredOutsideADiagnosticsRun) {
  platform.configuration.isEnabled = false;
  launchWith({"--release-test-ingest", "/shots/a.png"});
  EXPECT_EQ(listed(), Names{});
}

class Notification : public AppTest {
 protected:
  void SetUp() override { platform.files.write("/shots/a.png"); }
  void post(const NotificationUserInfo& userInfo) {
    platform.notifications.post(kIngestNotification, userInfo);
    platform.time.runReady();
  }
};

TEST_F(Notification, isTakenAsANewScreenshotOnTheNextTurn) {
  launch();
  platform.notifications.post(kIngestNotification, {{"path", "/shots/a.png"}, {"more", std::monostate{}}});
  EXPECT_EQ(listed(), Names{});
  platform.time.runReady();
  EXPECT_EQ(listed(), Names{"/shots/a.png"});
  EXPECT_TRUE(isIslandUp());
  EXPECT_EQ(eventValues("screenshot_detected", "path"), Names{"/shots/a.png"});
}

TEST_F(Notification, withoutAPathIsIgnored) {
  launch();
  const std::string events = eventText();
  post({});
  post({{"path", std::monostate{}}});
  post({{"path", ""}});
  post({{"other", "/shots/a.png"}});
  EXPECT_EQ(eventText(), events);
  EXPECT_EQ(listed(), Names{});
}

TEST_F(Notification, isNotListenedForOutsideADiagnosticsRun) {
  platform.configuration.isEnabled = false;
  launch();
  EXPECT_EQ(platform.notifications.observers[kIngestNotification].size(), 0U);
  post({{"path", "/shots/a.png"}});
  EXPECT_EQ(listed(), Names{});
}

class RequestFile : public AppTest {
 protected:
  void SetUp() override {
    launch();
    platform.files.write("/shots/a.png");
    platform.files.write("/shots/b.png");
  }
  void request(const std::string& text) { platform.files.write(kRequestFile, text); }
  // The events since the last call.
  Names newEvents() {
    const Names all = platform.eventNames();
    return {all.begin() + std::exchange(seen_, static_cast<std::ptrdiff_t>(all.size())), all.end()};
  }

 private:
  std::ptrdiff_t seen_ = 0;
};

TEST_F(RequestFile, isLookedForTwiceASecond) {
  EXPECT_EQ(eventValues("release_test_request_polling_started", "path"), Names{kRequestFile});
  (void)newEvents();
  platform.time.advanceBy(Seconds(0.49));
  EXPECT_EQ(newEvents(), Names{});
  platform.time.advanceBy(Seconds(0.01));
  EXPECT_EQ(newEvents(), (Names{"release_test_request_tick", "release_test_request_check"}));
  platform.time.advanceBy(2s);
  EXPECT_EQ(platform.eventCount("release_test_request_tick"), 5);
  EXPECT_EQ(eventValues("release_test_request_check", "exists"), Names(6, "false"));
  EXPECT_EQ(eventValues("release_test_request_check", "path"), Names(6, kRequestFile));
}

TEST_F(RequestFile, isWaitedForOnAQueueThatAsksForNoPriority) {
  SchedulerRecorder scheduler(platform.time);
  app.reset();
  app = platform.makeApp(scheduler);
  EXPECT_EQ(scheduler.queueQualities, (std::map<std::string, QualityOfService>{
                                          {"Quenlio.ReleaseTestDiagnostics", QualityOfService::unspecified},
                                          {"Quenlio.ReleaseTestRequestPoll", QualityOfService::unspecified}}));
  app.reset();  // its queues before the scheduler that gave them
}

TEST_F(RequestFile, withAPathTakesTheWholeWayOfAnArrival) {
  request("/shots/a.png");
  (void)newEvents();
  platform.time.advanceBy(500ms);
  EXPECT_EQ(newEvents(), (Names{"release_test_request_tick", "release_test_request_detected",
                                "release_test_request_check", "release_test_request_consumed", "screenshot_detected"}));
  EXPECT_EQ(eventValues("release_test_request_check", "exists").back(), "true");
  EXPECT_EQ(listed(), Names{"/shots/a.png"});
  EXPECT_EQ(app->store().items.get().front().sourceDisplayID, std::nullopt);
  EXPECT_TRUE(isIslandUp());
  EXPECT_EQ(platform.files.content(kRequestFile), std::nullopt);
}

TEST_F(RequestFile, isConsumedOnce) {
  request("/shots/a.png");
  platform.time.advanceBy(5s);
  EXPECT_EQ(platform.eventCount("release_test_request_consumed"), 1);
  EXPECT_EQ(platform.eventCount("screenshot_detected"), 1);
}

TEST_F(RequestFile, thatSpellsAPathInAnotherWayMakesAnotherEntry) {
  for (const char* spelling : {"/shots/a.png", "/shots/../shots/a.png", "/shots/a.png"}) {
    request(spelling);
    platform.time.advanceBy(500ms);
  }
  EXPECT_EQ(listed(), (Names{"/shots/a.png", "/shots/../shots/a.png"})) << "a path is what it came as";
}

TEST_F(RequestFile, isTrimmed) {
  request(" \t\n/shots/a.png \r\n\n");
  platform.time.advanceBy(500ms);
  EXPECT_EQ(listed(), Names{"/shots/a.png"});
}

TEST_F(RequestFile, ofBlanksOnlyIsLeftInPlaceAndCheckedAtEachTurn) {
  for (const char* blank : {"", " \n\t "}) {
    request(blank);
    (void)newEvents();
    platform.time.advanceBy(1s);
    const Names turn{"release_test_request_tick", "release_test_request_detected", "release_test_request_check"};
    Names expected = turn;
    expected.insert(expected.end(), turn.begin(), turn.end());
    EXPECT_EQ(newEvents(), expected);
    EXPECT_EQ(platform.files.content(kRequestFile), blank);
  }
}

TEST_F(RequestFile, thatCannotBeReadIsLeftForTheNextTurn) {
  request("/shots/a.png");
  platform.files.setUnreadable(kRequestFile, true);
  platform.time.advanceBy(500ms);
  EXPECT_EQ(listed(), Names{});
  platform.files.setUnreadable(kRequestFile, false);
  platform.time.advanceBy(500ms);
  EXPECT_EQ(listed(), Names{"/shots/a.png"});
}

TEST_F(RequestFile, thatCannotBeRemovedIsCarriedOutAllTheSame) {
  request("/shots/a.png");
  platform.files.setReadOnly(kRequestFile);
  platform.time.advanceBy(500ms);
  EXPECT_EQ(listed(), Names{"/shots/a.png"});
  EXPECT_TRUE(platform.systemLog.lines.empty());
}

TEST_F(RequestFile, ofTwoWrittenQuicklyTheSecondCounts) {
  request("/shots/a.png");
  platform.time.advanceBy(100ms);
  request("/shots/b.png");
  platform.time.advanceBy(500ms);
  EXPECT_EQ(listed(), Names{"/shots/b.png"});
}

TEST_F(RequestFile, mayAskForAnUpdateCheckAlsoWithANewLineAfterIt) {
  request("__check_for_updates__\n");
  (void)newEvents();
  platform.log.clear();
  platform.time.advanceBy(500ms);
  EXPECT_EQ(newEvents(),
            (Names{"release_test_request_tick", "release_test_request_detected", "release_test_request_check",
                   "release_test_update_check_consumed", "sparkle_update_check_requested"}));
  EXPECT_EQ(platform.analytics.count(AnalyticsEventName::updateCheckRequested), 1);
  EXPECT_EQ(platform.log.count("checkForUpdates"), 1);
  EXPECT_EQ(platform.files.content(kRequestFile), std::nullopt);
  EXPECT_EQ(listed(), Names{});
}

TEST_F(RequestFile, thatIsThereAtTheLaunchIsTakenAtItsEnd) {
  request("/shots/a.png");
  launch();
  EXPECT_EQ(listed(), Names{"/shots/a.png"});
  EXPECT_EQ(platform.eventCount("release_test_request_tick"), 0);
}

TEST_F(RequestFile, isNeverTouchedOutsideADiagnosticsRun) {
  platform.configuration.isEnabled = false;
  request("/shots/a.png");
  launch();
  const std::string events = eventText();
  const int reads = platform.files.readCount();
  platform.time.advanceBy(10s);
  EXPECT_EQ(platform.files.content(kRequestFile), "/shots/a.png");
  EXPECT_EQ(platform.files.readCount(), reads);
  EXPECT_EQ(listed(), Names{});
  EXPECT_EQ(eventText(), events);
}

TEST_F(RequestFile, needsAFolderForDiagnostics) {
  platform.configuration.diagnosticsDirectory.reset();
  launch();
  request("/shots/a.png");
  platform.time.advanceBy(10s);
  EXPECT_EQ(platform.files.content(kRequestFile), "/shots/a.png");
}

}  // namespace
}  // namespace quenlio
