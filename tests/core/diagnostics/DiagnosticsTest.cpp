// The two files of a scripted run: when they are written, what holds while they are, and that nothing happens when
// diagnostics are off.
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Json.h"
#include "core/base/SharedBinding.h"
#include "core/diagnostics/QuenlioReleaseTestDiagnostics.h"

#include "tests/fakes/CallLog.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/harness/SchedulerRecorder.h"
#include "tests/harness/VirtualTime.h"

namespace quenlio {
namespace {

using namespace std::chrono_literals;

class Diagnostics : public testing::Test {
 protected:
  Diagnostics() {
    configuration.isEnabled = true;
    configuration.runID = "run-1";
    configuration.diagnosticsDirectory = FileURL("/out/run");
  }

  QuenlioReleaseTestDiagnostics& start() { return diagnostics.emplace(configuration, time, time, files, files); }

  [[nodiscard]] QuenlioReleaseTestState stateFile() const {
    const auto state = decodeState(files.content("/out/run/state.json").value_or(""));
    EXPECT_TRUE(state.has_value());
    return state.value_or(QuenlioReleaseTestState{});
  }

  CallLog log;
  VirtualTime time;
  FakeFileSystem files{time, log};
  QuenlioReleaseTestConfiguration configuration;
  std::optional<QuenlioReleaseTestDiagnostics> diagnostics;
};

TEST_F(Diagnostics, theFolderAndTheStateExistFromTheStart) {
  start();
  const auto state = stateFile();
  EXPECT_EQ(state.runID, "run-1");
  EXPECT_EQ(state.onboardingScreenshotRecoveryResult, "notAttempted");
  EXPECT_EQ(state.permissionState, QuenlioReleaseTestPermissionSnapshot{});
  EXPECT_EQ(files.content("/out/run/events.jsonl"), std::nullopt) << "no event yet";
}

TEST_F(Diagnostics, anAbsentLaunchTimeIsFilledAtTheFirstWriteAndKept) {
  auto& running = start();
  const Date launched = time.now();
  EXPECT_EQ(stateFile().launchedAt, launched);
  EXPECT_EQ(stateFile().lastUpdatedAt, std::nullopt) << "nothing was updated yet";
  time.advanceBy(10s);
  running.update([](auto& state) { state.screenshotCount = 1; });
  EXPECT_EQ(stateFile().launchedAt, launched);
  running.update([](auto& state) { state.launchedAt.reset(); });
  EXPECT_EQ(stateFile().launchedAt, launched + 10s) << "missing again, it is filled again";
}

TEST_F(Diagnostics, anUpdateChangesTheStateStampsItAndWritesItAtOnce) {
  auto& running = start();
  time.advanceBy(3s);
  running.update([&](auto& state) {
    state.screenshotCount = 2;
    state.lastUpdatedAt = Date{};
  });
  EXPECT_EQ(stateFile().screenshotCount, 2);
  EXPECT_EQ(stateFile().lastUpdatedAt, time.now());
  running.update([](auto& state) {
    EXPECT_EQ(state.screenshotCount, 2) << "the state lives on from update to update";
    state.statusItemVisible = true;
  });
  EXPECT_EQ(stateFile().screenshotCount, 2);
  EXPECT_TRUE(stateFile().statusItemVisible);
}

TEST_F(Diagnostics, theStateIsWrittenWholeOrNotAtAll) {
  auto& running = start();
  const auto before = log.count("writeAtomically /out/run/state.json");
  EXPECT_EQ(before, 1);
  running.update([](auto&) {});
  running.update([](auto&) {});
  EXPECT_EQ(log.count("writeAtomically /out/run/state.json"), before + 2);
}

TEST_F(Diagnostics, aReaderFindsValidJSONAfterEachOfABurstOfUpdates) {
  auto& running = start();
  for (int i = 1; i <= 200; ++i) {
    running.update([&](auto& state) {
      state.screenshotCount = i;
      state.latestScreenshotPath = std::string(static_cast<std::size_t>(i % 17) * 40, '/');
      EXPECT_EQ(stateFile().screenshotCount, i - 1) << "also from inside an update";
    });
    EXPECT_EQ(stateFile().screenshotCount, i);
  }
}

TEST_F(Diagnostics, threeEventsAreThreeObjectsInOrderEachEndedByANewLine) {
  auto& running = start();
  running.record("first", {{"path", "/a"}});
  time.advanceBy(2s);
  running.record("second");
  running.record("third", {{"k", "v"}});
  const QuenlioReleaseTestEvent first{time.now() - 2s, "first", {{"path", "/a"}}};
  const QuenlioReleaseTestEvent second{time.now(), "second", {}};
  const QuenlioReleaseTestEvent third{time.now(), "third", {{"k", "v"}}};
  EXPECT_EQ(files.content("/out/run/events.jsonl"),
            encode(first) + "\n" + encode(second) + "\n" + encode(third) + "\n");
}

TEST_F(Diagnostics, eventsAreAddedToWhatTheFileHolds) {
  files.write("/out/run/events.jsonl", "{}\n");
  start().record("next");
  const auto content = files.content("/out/run/events.jsonl").value_or("");
  EXPECT_TRUE(content.starts_with("{}\n{\n")) << content;
}

TEST_F(Diagnostics, withTheMasterSwitchOffNothingAppearsAndNoMutationIsCalled) {
  configuration.isEnabled = false;
  auto& running = start();
  EXPECT_FALSE(running.isEnabled());
  int calls = 0;
  running.update([&](auto&) { ++calls; });
  running.record("event");
  EXPECT_EQ(calls, 0);
  EXPECT_FALSE(files.fileExistsAtPath(FileURL("/out")));
  EXPECT_EQ(log.calls(), std::vector<std::string>{});
}

TEST_F(Diagnostics, withTheMasterSwitchOffTheStateOfAnEarlierRunIsNotRead) {
  start();
  ASSERT_NE(diagnostics->loadPersistedState(), std::nullopt);
  const int reads = files.readCount();
  configuration.isEnabled = false;
  EXPECT_EQ(start().loadPersistedState(), std::nullopt);
  EXPECT_EQ(files.readCount(), reads);
}

TEST_F(Diagnostics, withoutAFolderNothingIsEnabledAndNothingIsWritten) {
  configuration.diagnosticsDirectory.reset();
  auto& running = start();
  EXPECT_FALSE(running.isEnabled());
  int calls = 0;
  running.update([&](auto&) { ++calls; });
  running.record("event");
  EXPECT_EQ(calls, 0);
  EXPECT_EQ(running.loadPersistedState(), std::nullopt);
  EXPECT_EQ(log.calls(), std::vector<std::string>{});
}

TEST_F(Diagnostics, anUpdateFromInsideTheQueuesOwnWorkRunsAtOnce) {
  auto& running = start();
  std::string order;
  running.update([&](auto& state) {
    order += '(';
    running.record("inner");
    running.update([&](auto& inner) {
      order += 'u';
      inner.statusItemVisible = true;
    });
    state.screenshotCount = 4;
    order += ')';
  });
  EXPECT_EQ(order, "(u)");
  EXPECT_EQ(stateFile().screenshotCount, 4);
  EXPECT_TRUE(stateFile().statusItemVisible);
  EXPECT_TRUE(files.content("/out/run/events.jsonl").has_value());
}

TEST_F(Diagnostics, theFolderIsMadeAgainWhenSomebodyHasDeletedIt) {
  auto& running = start();
  files.remove("/out");
  running.record("event");
  EXPECT_TRUE(files.content("/out/run/events.jsonl").has_value());
  files.remove("/out");
  running.update([](auto& state) { state.screenshotCount = 9; });
  EXPECT_EQ(stateFile().screenshotCount, 9);
}

TEST_F(Diagnostics, anUnwritableFolderMeansNoFilesAndNoHarm) {
  files.setReadOnly("/out");
  auto& running = start();
  int calls = 0;
  running.update([&](auto& state) {
    ++calls;
    state.screenshotCount = 5;
  });
  running.record("event");
  EXPECT_EQ(calls, 1);
  EXPECT_FALSE(files.fileExistsAtPath(FileURL("/out")));
}

TEST_F(Diagnostics, thePersistedStateIsReadBackFromTheFile) {
  auto& running = start();
  running.update([](auto& state) { state.selectedScreenshotPath = "/b"; });
  EXPECT_EQ(running.loadPersistedState(), stateFile());
  files.write("/out/run/state.json", "{ half");
  EXPECT_EQ(running.loadPersistedState(), std::nullopt);
  files.remove("/out/run/state.json");
  EXPECT_EQ(running.loadPersistedState(), std::nullopt);
}

TEST_F(Diagnostics, workOnAQueueOfTheirOwnThatAsksForNoPriority) {
  SchedulerRecorder scheduler(time);
  diagnostics.emplace(configuration, scheduler, time, files, files);
  EXPECT_EQ(
      scheduler.queueQualities,
      (std::map<std::string, QualityOfService>{{"Quenlio.ReleaseTestDiagnostics", QualityOfService::unspecified}}));
}

TEST_F(Diagnostics, anEventLeavesTheStateAsItStands) {
  auto& running = start();
  running.update([](auto& state) { state.screenshotCount = 1; });
  const auto before = files.content("/out/run/state.json");
  const auto writes = log.count("writeAtomically /out/run/state.json");
  time.advanceBy(5s);
  running.record("event");
  EXPECT_EQ(files.content("/out/run/state.json"), before);
  EXPECT_EQ(log.count("writeAtomically /out/run/state.json"), writes);
}

TEST_F(Diagnostics, nothingIsLeftWaiting) {
  auto& running = start();
  running.update([](auto&) {});
  running.record("event");
  EXPECT_EQ(time.pending(), 0U);
}

TEST_F(Diagnostics, theSharedOneIsTheBoundOne) {
  auto& running = start();
  const SharedBinding<QuenlioReleaseTestDiagnostics> binding(running);
  EXPECT_EQ(&QuenlioReleaseTestDiagnostics::shared(), &running);
}

}  // namespace
}  // namespace quenlio
