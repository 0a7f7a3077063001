#include <QtCore/QCoreApplication>
#include <QtCore/QProcess>
#include <gtest/gtest.h>

#include "desktop/linux/session/SingleInstance.h"

#include "tests/desktop/session/Desk.h"

namespace quenlio {
namespace {

constexpr const char* kName = "com.quenlio.test.single";

// Starts this program once more; handles events meanwhile, as the first one must in order to answer.
int secondStart(const char* name) {
  QProcess second;
  second.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--second-start"), QString::fromLatin1(name)});
  const bool ended = waitUntil([&second] { return second.state() == QProcess::NotRunning; });
  return ended && second.exitStatus() == QProcess::NormalExit ? second.exitCode() : -1;
}

TEST(SingleInstance, nameTellsDiagnosticsRunsApart) {
  EXPECT_EQ(SingleInstance::serviceName(std::nullopt), "com.quenlio.app");
  EXPECT_EQ(SingleInstance::serviceName("a-1/\xff"), "com.quenlio.app.r612d312fff");
}

TEST(SingleInstance, secondStartShowsTheRunningOneAndEndsWithZero) {
  UserIntent intent;
  SingleInstance first(kName, intent);
  ASSERT_TRUE(first.isFirst());
  int shown = 0;
  first.setOnShow([&shown] { ++shown; });
  EXPECT_EQ(secondStart(kName), 0);
  EXPECT_EQ(shown, 1);
  EXPECT_TRUE(intent.recent());
}

TEST(SingleInstance, showsLaterWhatWasAskedForTooEarly) {
  UserIntent intent;
  SingleInstance first(kName, intent);
  EXPECT_EQ(secondStart(kName), 0);
  int shown = 0;
  first.setOnShow([&shown] { ++shown; });
  EXPECT_EQ(shown, 1);
}

TEST(SingleInstance, nameIsFreeAgainAfterwards) {
  UserIntent intent;
  { const SingleInstance first(kName, intent); }
  EXPECT_EQ(secondStart(kName), 1);  // it was the first itself
  const SingleInstance next(kName, intent);
  EXPECT_TRUE(next.isFirst());
}

TEST(SingleInstance, otherNamesDoNotMeet) {
  UserIntent intent;
  const SingleInstance first(kName, intent);
  EXPECT_EQ(secondStart("com.quenlio.test.other"), 1);
}

}  // namespace
}  // namespace quenlio
