// The program's run on the real event loop, over an application on fakes.
#include <QtCore/QCoreApplication>
#include <QtCore/QProcess>
#include <QtCore/QTimer>
#include <csignal>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "desktop/Program.h"
#include "desktop/linux/session/QtApplication.h"
#include "desktop/linux/session/SingleInstance.h"

#include "tests/harness/TestPlatform.h"

namespace quenlio {
namespace {

using testing::ElementsAre;

constexpr const char* kName = "com.quenlio.test.program";
constexpr int kTooLate = 99;

class ProgramTest : public testing::Test {
 protected:
  // Runs the program and what is to happen once its loop runs; the exit code, or kTooLate.
  int run(std::function<void()> event) {
    QTimer alarm;
    alarm.setSingleShot(true);
    QObject::connect(&alarm, &QTimer::timeout, &alarm, [] { QCoreApplication::exit(kTooLate); });
    alarm.start(std::chrono::seconds(10));
    QMetaObject::invokeMethod(
        &alarm,
        [this, event = std::move(event)] {
          platform_.time.runReady();  // the end of the launch
          platform_.log.clear();
          event();
        },
        Qt::QueuedConnection);
    return runUntilTermination(*app_, application_, instance_);
  }

  UserIntent intent_;
  QtApplication application_{intent_};
  SingleInstance instance_{kName, intent_};
  TestPlatform platform_;
  std::unique_ptr<AppDelegate> app_ = platform_.makeApp();
};

class ProgramSignal : public ProgramTest, public testing::WithParamInterface<int> {};

TEST_P(ProgramSignal, terminatesTheApplicationInOrderAndEndsWithZero) {
  EXPECT_EQ(run([] { std::raise(GetParam()); }), 0);
  EXPECT_THAT(platform_.log.calls(),
              ElementsAre("FSEventStreamStop /home/user/Desktop", "FSEventStreamInvalidate /home/user/Desktop",
                          "FSEventStreamRelease /home/user/Desktop", "UnregisterEventHotKey", "RemoveEventHandler"));
  EXPECT_EQ(platform_.time.pending(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Each, ProgramSignal, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST_F(ProgramTest, terminatesTheApplicationOnceWhateverEndsTheLoop) {
  EXPECT_EQ(run([] { QCoreApplication::exit(3); }), 3);
  EXPECT_EQ(std::ranges::count(platform_.log.calls(), "UnregisterEventHotKey"), 1);
}

TEST_F(ProgramTest, aSecondStartShowsTheIsland) {
  ASSERT_TRUE(instance_.isFirst());
  QProcess second;
  bool wasUp = true;
  QObject::connect(&second, &QProcess::finished, &second, [] { std::raise(SIGTERM); });
  EXPECT_EQ(run([&] {
              wasUp = platform_.islandShell.panel != nullptr && platform_.islandShell.panel->isVisible();
              second.start(QCoreApplication::applicationFilePath(),
                           {QStringLiteral("--second-start"), QString::fromLatin1(kName)});
            }),
            0);
  EXPECT_FALSE(wasUp);
  EXPECT_EQ(second.exitCode(), 0);
  ASSERT_NE(platform_.islandShell.panel, nullptr);
  EXPECT_TRUE(platform_.islandShell.panel->isVisible());
}

}  // namespace
}  // namespace quenlio
