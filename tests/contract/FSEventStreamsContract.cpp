// What every stream of a folder's changes does.
#include <condition_variable>
#include <fstream>
#include <gtest/gtest.h>
#include <mutex>
#include <utility>
#include <vector>

#include "desktop/linux/system/InotifyEventStream.h"
#include "desktop/linux/system/LinuxClock.h"
#include "desktop/linux/system/ThreadQueue.h"

#include "tests/contract/TemporaryFolder.h"
#include "tests/desktop/system/SampleFiles.h"
#include "tests/fakes/FakeEventStreams.h"
#include "tests/harness/VirtualTime.h"

namespace quenlio {
namespace {

// What a stream has told, in order. Shared with its callback; any thread.
class Told {
 public:
  void take(const FSEventBatch& batch) {
    const std::scoped_lock lock(mutex_);
    for (std::size_t i = 0; i < static_cast<std::size_t>(batch.numEvents); ++i) {
      changes_.emplace_back((*batch.paths)[i].value_or(""), (*batch.flags)[i]);
    }
    changed_.notify_all();
  }
  [[nodiscard]] std::vector<FSEventFlags> flagsOf(const FileURL& url) const {
    const std::scoped_lock lock(mutex_);
    std::vector<FSEventFlags> flags;
    for (const auto& [path, flag] : changes_) {
      if (path == url.path()) {
        flags.push_back(flag);
      }
    }
    return flags;
  }
  [[nodiscard]] std::size_t count() const {
    const std::scoped_lock lock(mutex_);
    return changes_.size();
  }
  // Waits for the first word of this file; false when the deadline has passed.
  [[nodiscard]] bool waitFor(const FileURL& url) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(20), [&] {
      return std::ranges::any_of(changes_, [&](const auto& change) { return change.first == url.path(); });
    });
  }

 private:
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::pair<std::string, FSEventFlags>> changes_;
};

struct FakeKind {
  VirtualTime time;
  CallLog log;
  FakeEventStreams streams{log};
  std::unique_ptr<SerialQueue> queue = time.makeSerialQueue("events", QualityOfService::unspecified);
  FileURL folder{"/shots"};
  FileURL elsewhere{"/elsewhere"};

  void write(const FileURL& url) { streams.changed(url.path()); }
  [[nodiscard]] bool waitFor(Told& told, const FileURL& url) {
    time.advanceBy(Seconds(20));
    return !told.flagsOf(url).empty();
  }
};

struct RealKind {
  LinuxClock clock;
  InotifyEventStreams streams{clock};
  std::unique_ptr<SerialQueue> queue = std::make_unique<ThreadQueue>("events");
  TemporaryFolder temporary;
  TemporaryFolder other;
  FileURL folder = temporary.url();
  FileURL elsewhere = other.url();

  static void write(const FileURL& url) { std::ofstream(url.path(), std::ios::binary) << samples::png(); }
  [[nodiscard]] static bool waitFor(Told& told, const FileURL& url) { return told.waitFor(url); }
};

template <class Kind>
class FSEventStreamsContract : public testing::Test {
 protected:
  struct Watch {
    std::shared_ptr<Told> told = std::make_shared<Told>();
    std::unique_ptr<FSEventStream> stream;
  };
  [[nodiscard]] Watch make(const FileURL& folder) {
    Watch watch;
    watch.stream = kind.streams.FSEventStreamCreate(
        [told = watch.told](const FSEventBatch& batch) { told->take(batch); }, folder,
        {.latency = Seconds(0.02),
         .flags = kFSEventStreamCreateFlagUseCFTypes | kFSEventStreamCreateFlagNoDefer |
                  kFSEventStreamCreateFlagFileEvents});
    return watch;
  }
  [[nodiscard]] Watch start(const FileURL& folder) {
    Watch watch = make(folder);
    watch.stream->FSEventStreamSetDispatchQueue(*kind.queue);
    EXPECT_TRUE(watch.stream->FSEventStreamStart());
    return watch;
  }
  [[nodiscard]] FileURL file(std::string_view name) const { return kind.folder.appending(name); }
  // Writes a file of which this stream tells; so do all streams that were to tell of it or of what came before.
  void writeAndWait(const FileURL& url, Watch& watch) {
    kind.write(url);
    ASSERT_TRUE(kind.waitFor(*watch.told, url)) << url.path();
    kind.queue->sync([] {});
  }

  Kind kind;
};

using Kinds = testing::Types<FakeKind, RealKind>;
TYPED_TEST_SUITE(FSEventStreamsContract, Kinds);

TYPED_TEST(FSEventStreamsContract, aFinishedNewFileIsToldOnceWithItsPath) {
  auto watch = this->start(this->kind.folder);
  this->writeAndWait(this->file("a.png"), watch);
  this->writeAndWait(this->file("b.png"), watch);
  for (const char* name : {"a.png", "b.png"}) {
    const auto flags = watch.told->flagsOf(this->file(name));
    ASSERT_EQ(flags.size(), 1U) << name;
    EXPECT_NE(flags.front() & kFSEventStreamEventFlagItemCreated, 0U) << name;
  }
  EXPECT_EQ(watch.told->count(), 2U);
}

TYPED_TEST(FSEventStreamsContract, aStreamTellsOfItsOwnFolderAlone) {
  auto here = this->start(this->kind.folder);
  auto there = this->start(this->kind.elsewhere);
  const FileURL far = this->kind.elsewhere.appending("far.png");
  this->writeAndWait(far, there);
  this->writeAndWait(this->file("near.png"), here);
  EXPECT_TRUE(here.told->flagsOf(far).empty());
  EXPECT_EQ(here.told->count(), 1U);
  EXPECT_EQ(there.told->count(), 1U);
}

TYPED_TEST(FSEventStreamsContract, everyStreamOfAFolderIsTold) {
  auto one = this->start(this->kind.folder);
  auto two = this->start(this->kind.folder);
  this->kind.write(this->file("a.png"));
  EXPECT_TRUE(this->kind.waitFor(*one.told, this->file("a.png")));
  EXPECT_TRUE(this->kind.waitFor(*two.told, this->file("a.png")));
}

TYPED_TEST(FSEventStreamsContract, aStreamThatIsNotStartedTellsNothing) {
  auto silent = this->make(this->kind.folder);
  silent.stream->FSEventStreamSetDispatchQueue(*this->kind.queue);
  auto witness = this->start(this->kind.folder);
  this->writeAndWait(this->file("a.png"), witness);
  EXPECT_EQ(silent.told->count(), 0U);
}

TYPED_TEST(FSEventStreamsContract, nothingIsToldOnceAStreamIsStoppedInvalidatedOrGone) {
  auto stopped = this->start(this->kind.folder);
  auto invalidated = this->start(this->kind.folder);
  auto gone = this->start(this->kind.folder);
  auto witness = this->start(this->kind.folder);
  const std::vector<std::shared_ptr<Told>> ended{stopped.told, invalidated.told, gone.told};
  this->kind.write(this->file("before.png"));
  for (const auto& told : ended) {
    ASSERT_TRUE(this->kind.waitFor(*told, this->file("before.png")));
  }

  stopped.stream->FSEventStreamStop();
  invalidated.stream->FSEventStreamInvalidate();
  gone.stream.reset();
  this->kind.queue->sync([] {});
  this->writeAndWait(this->file("after.png"), witness);

  for (const auto& told : ended) {
    EXPECT_EQ(told->count(), 1U);
  }
}

TYPED_TEST(FSEventStreamsContract, aStreamThatIsStartedAgainTellsOfWhatComesFromThenOn) {
  auto watch = this->start(this->kind.folder);
  auto witness = this->start(this->kind.folder);
  watch.stream->FSEventStreamStop();
  this->writeAndWait(this->file("meanwhile.png"), witness);
  ASSERT_TRUE(watch.stream->FSEventStreamStart());
  this->writeAndWait(this->file("a.png"), watch);
  EXPECT_TRUE(watch.told->flagsOf(this->file("meanwhile.png")).empty());
}

TYPED_TEST(FSEventStreamsContract, startingARunningStreamChangesNothing) {
  auto watch = this->start(this->kind.folder);
  EXPECT_TRUE(watch.stream->FSEventStreamStart());
  this->writeAndWait(this->file("a.png"), watch);
  this->writeAndWait(this->file("b.png"), watch);
  EXPECT_EQ(watch.told->count(), 2U);
}

TYPED_TEST(FSEventStreamsContract, withoutAQueueNoStreamStarts) {
  auto watch = this->make(this->kind.folder);
  EXPECT_FALSE(watch.stream->FSEventStreamStart());
  watch.stream->FSEventStreamSetDispatchQueue(*this->kind.queue);
  watch.stream->FSEventStreamInvalidate();
  EXPECT_FALSE(watch.stream->FSEventStreamStart());
}

TYPED_TEST(FSEventStreamsContract, withoutACallbackOrAFolderThereIsNoStream) {
  const FSEventStreamOptions options{.latency = Seconds(0.02), .flags = 0};
  EXPECT_EQ(this->kind.streams.FSEventStreamCreate(nullptr, this->kind.folder, options), nullptr);
  EXPECT_EQ(this->kind.streams.FSEventStreamCreate([](const FSEventBatch&) {}, FileURL(), options), nullptr);
}

}  // namespace
}  // namespace quenlio
