// The one queue that guards the state and both files of a scripted run.
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/diagnostics/QuenlioReleaseTestDiagnostics.h"

#include "tests/fakes/CallLog.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/harness/VirtualTime.h"

namespace quenlio {
namespace {

// Virtual time whose queues tell how often somebody waited for work on them, and whether such work is under way.
class WatchedQueues final : public Scheduler {
 public:
  explicit WatchedQueues(VirtualTime& time) : time_(time) {}

  void post(Task task) override { time_.post(std::move(task)); }
  [[nodiscard]] ScheduledTask after(Seconds delay, Task task) override { return time_.after(delay, std::move(task)); }
  [[nodiscard]] ScheduledTask every(Seconds interval, Seconds tolerance, Task task) override {
    return time_.every(interval, tolerance, std::move(task));
  }
  void detached(QualityOfService priority, Task task) override { time_.detached(priority, std::move(task)); }
  [[nodiscard]] std::unique_ptr<SerialQueue> makeSerialQueue(std::string label, QualityOfService quality) override {
    return std::make_unique<Queue>(*this, time_.makeSerialQueue(std::move(label), quality));
  }

  int entries = 0;
  bool isOnQueue = false;

 private:
  class Queue final : public SerialQueue {
   public:
    Queue(WatchedQueues& owner, std::unique_ptr<SerialQueue> queue) : owner_(owner), queue_(std::move(queue)) {}
    [[nodiscard]] const std::string& label() const override { return queue_->label(); }
    void async(Task task) override { queue_->async(std::move(task)); }
    void after(Seconds delay, Task task) override { queue_->after(delay, std::move(task)); }
    void sync(const Task& task) override {
      ++owner_.entries;
      const bool wasOnQueue = std::exchange(owner_.isOnQueue, true);
      queue_->sync(task);
      owner_.isOnQueue = wasOnQueue;
    }

   private:
    WatchedQueues& owner_;
    std::unique_ptr<SerialQueue> queue_;
  };

  VirtualTime& time_;
};

class DiagnosticsQueue : public testing::Test {
 protected:
  DiagnosticsQueue() {
    configuration.isEnabled = true;
    configuration.diagnosticsDirectory = FileURL("/out/run");
  }
  void start() { diagnostics.emplace(configuration, scheduler, time, files, files); }

  CallLog log;
  VirtualTime time;
  WatchedQueues scheduler{time};
  FakeFileSystem files{time, log};
  QuenlioReleaseTestConfiguration configuration;
  std::optional<QuenlioReleaseTestDiagnostics> diagnostics;
};

TEST_F(DiagnosticsQueue, theStateAndBothFilesAreTouchedOnItAlone) {
  std::vector<std::string> outside;
  const auto expectInside = [&](const std::string& what) {
    if (!scheduler.isOnQueue) {
      outside.push_back(what);
    }
  };
  log.whenAdded = expectInside;
  files.afterWriting = [&](const FileURL& file, std::string_view) { expectInside(file.path()); };
  start();
  EXPECT_EQ(scheduler.entries, 1);
  diagnostics->update([&](auto&) { expectInside("the change of the state"); });
  diagnostics->record("event");
  EXPECT_EQ(outside, std::vector<std::string>{});
  EXPECT_EQ(scheduler.entries, 3);
}

TEST_F(DiagnosticsQueue, nobodyWaitsForItWithDiagnosticsOff) {
  configuration.isEnabled = false;
  start();
  diagnostics->update([](auto&) {});
  diagnostics->record("event", {{"path", "/a"}});
  (void)diagnostics->loadPersistedState();
  EXPECT_EQ(scheduler.entries, 0);
}

}  // namespace
}  // namespace quenlio
