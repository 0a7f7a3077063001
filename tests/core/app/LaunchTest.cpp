// The order of launch and termination, and what the status item and the keys may ask of the application.
#include <gtest/gtest.h>

#include "tests/harness/TestPlatform.h"

namespace quenlio {
namespace {

class Launch : public testing::Test {
 protected:
  void SetUp() override { platform.enableDiagnostics(); }

  TestPlatform platform;
};

TEST_F(Launch, aCaptureReachesTheLibraryAndTheIsland) {
  const auto app = platform.makeApp();
  app->applicationDidFinishLaunching();
  platform.time.runReady();

  platform.files.write("/home/user/Desktop/Screenshot 2026-11-15.png");
  platform.eventStreams.changed("/home/user/Desktop/Screenshot 2026-11-15.png");
  platform.time.advanceBy(Seconds(0.06));

  ASSERT_EQ(app->store().items.get().size(), 1U);
  EXPECT_TRUE(app->overlayController().panel().isVisible());
  EXPECT_EQ(platform.eventCount("screenshot_detected"), 1);
  EXPECT_EQ(platform.state().latestScreenshotPath, "/home/user/Desktop/Screenshot 2026-11-15.png");
}

}  // namespace
}  // namespace quenlio
