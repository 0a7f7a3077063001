// The request channel by itself: its operations may be called more than once.
#include "tests/core/app/AppTest.h"

namespace quenlio {
namespace {

constexpr const char* kIngestNotification = "com.quenlio.release-test.ingest-screenshot";

class ChannelAlone : public AppTest {
 protected:
  void post() {
    platform.notifications.post(kIngestNotification, {{"path", "/shots/a.png"}});
    platform.time.runReady();
  }

  QuenlioReleaseTestDiagnostics diagnostics{platform.configuration, platform.time, platform.time, platform.files,
                                            platform.files};
  Names arrived;
  RequestChannel channel{{.configuration = platform.configuration,
                          .diagnostics = diagnostics,
                          .scheduler = platform.time,
                          .files = platform.files,
                          .contents = platform.files,
                          .process = platform.process,
                          .notifications = platform.notifications,
                          .ingest = [](const FileURL&) {},
                          .handleNewScreenshot = [this](const FileURL& url) { arrived.push_back(url.path()); },
                          .checkForUpdates = [] {}}};
};

TEST_F(ChannelAlone, listensOnceHoweverOftenItIsToldToAndAnewAfterItsEnd) {
  channel.registerReleaseTestNotificationsIfNeeded();
  channel.registerReleaseTestNotificationsIfNeeded();
  EXPECT_EQ(platform.log.count(std::string("addObserver ") + kIngestNotification), 1);
  post();
  EXPECT_EQ(arrived, Names{"/shots/a.png"});
  channel.unregisterReleaseTestNotifications();
  post();
  EXPECT_EQ(arrived.size(), 1U);
  channel.registerReleaseTestNotificationsIfNeeded();
  post();
  EXPECT_EQ(arrived.size(), 2U);
}

TEST_F(ChannelAlone, pollsInOneChainHoweverOftenItIsToldTo) {
  channel.startReleaseTestRequestPollingIfNeeded();
  channel.startReleaseTestRequestPollingIfNeeded();
  EXPECT_EQ(platform.time.pending(), 1U);
  EXPECT_EQ(platform.eventCount("release_test_request_polling_started"), 1);
  platform.time.advanceBy(Seconds(1.2));
  EXPECT_EQ(platform.eventCount("release_test_request_tick"), 2);
}

}  // namespace
}  // namespace quenlio
