// A running stream on a temporary folder, and what it has told. Waits are for events, with a deadline.
#pragma once

#include <condition_variable>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "desktop/linux/system/InotifyEventStream.h"
#include "desktop/linux/system/LinuxClock.h"
#include "desktop/linux/system/ThreadQueue.h"

#include "tests/desktop/system/SampleFiles.h"
#include "tests/desktop/system/TemporaryFolder.h"

namespace quenlio {
inline constexpr std::chrono::seconds kDeadline{20};

struct Report {
  std::string path;
  FSEventFlags flags = 0;
  std::int64_t size = -1;  // of the file at the moment of the report; -1 when it is not there
};

// What the stream told, in order. Shared with the callback; any thread.
class Reports {
 public:
  void take(const FSEventBatch& batch) {
    const std::lock_guard lock(mutex_);
    for (std::size_t i = 0; i < static_cast<std::size_t>(batch.numEvents); ++i) {
      struct stat status {};
      const std::string& path = *(*batch.paths)[i];
      const bool isThere = ::stat(path.c_str(), &status) == 0;
      reports_.push_back({path, (*batch.flags)[i], isThere ? status.st_size : -1});
    }
    changed_.notify_all();
  }
  // Waits until a report of that path with one of the flags (any, when 0) has come, counting from `after`.
  [[nodiscard]] bool waitFor(const FileURL& url, FSEventFlags flags = 0, std::size_t after = 0) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, kDeadline, [&] {
      for (std::size_t i = after; i < reports_.size(); ++i) {
        if (reports_[i].path == url.path() && (flags == 0 || (reports_[i].flags & flags) != 0)) {
          return true;
        }
      }
      return false;
    });
  }
  [[nodiscard]] std::vector<Report> of(const FileURL& url) const {
    const std::lock_guard lock(mutex_);
    std::vector<Report> result;
    for (const Report& report : reports_) {
      if (report.path == url.path()) {
        result.push_back(report);
      }
    }
    return result;
  }
  [[nodiscard]] std::size_t count() const {
    const std::lock_guard lock(mutex_);
    return reports_.size();
  }

 private:
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Report> reports_;
};

class InotifyEventStreamTest : public testing::Test {
 protected:
  std::unique_ptr<FSEventStream> make(const FileURL& watched) {
    auto made = streams.FSEventStreamCreate([shared = reports](const FSEventBatch& batch) { shared->take(batch); },
                                            watched, {.latency = Seconds(0.02), .flags = 19});
    made->FSEventStreamSetDispatchQueue(queue);
    return made;
  }
  void start(const FileURL& watched) {
    stream = make(watched);
    ASSERT_TRUE(stream->FSEventStreamStart());
  }
  // All changes made so far have been taken note of once a later one is reported.
  void settle() {
    const FileURL last = folder / ("settle" + std::to_string(settled++));
    writeFile(last, samples::png());
    ASSERT_TRUE(reports->waitFor(last));
  }

  TemporaryFolder folder;
  TemporaryFolder elsewhere;
  LinuxClock clock;
  InotifyEventStreams streams{clock};
  std::shared_ptr<Reports> reports = std::make_shared<Reports>();
  ThreadQueue queue{"events"};
  std::unique_ptr<FSEventStream> stream;
  int settled = 0;
};

}  // namespace quenlio
