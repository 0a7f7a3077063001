// A watcher that nothing but the test makes work: its poll is off.
#pragma once

#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "tests/core/detection/WatcherBench.h"

namespace quenlio {

inline constexpr FSEventFlags kCreated = kFSEventStreamEventFlagItemCreated;
inline constexpr FSEventFlags kRemoved = kFSEventStreamEventFlagItemRemoved;

using EventPaths = std::vector<std::optional<std::string>>;
using EventFlags = std::vector<FSEventFlags>;

class EventTest : public testing::Test, public WatcherBench {
 protected:
  void SetUp() override { startWithoutPoll(); }

  void deliver(const FSEventBatch& batch) {
    eventStreams.deliver(batch);
    time.runReady();
  }
  // A file that is there at once, and the stream's word of it wherever it lies.
  void tellOf(const std::string& path) {
    files.write(path);
    deliver({1, EventPaths{path}, EventFlags{kCreated}});
  }
  // What was found by now, and two seconds later.
  [[nodiscard]] Paths settled() {
    time.advanceBy(Seconds(2));
    return foundPaths();
  }
};

}  // namespace quenlio
