#include <condition_variable>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <random>
#include <sys/resource.h>
#include <thread>

#include "desktop/linux/system/FinishedFile.h"
#include "desktop/linux/system/InotifyEventStream.h"
#include "desktop/linux/system/LinuxClock.h"
#include "desktop/linux/system/ThreadQueue.h"

#include "tests/desktop/system/SampleFiles.h"
#include "tests/desktop/system/TemporaryFolder.h"

namespace quenlio {
namespace {

constexpr std::chrono::seconds kDeadline{20};

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

TEST_F(InotifyEventStreamTest, aFinishedFileIsReportedOnceAndWhole) {
  start(folder.url());
  for (const auto& [kind, bytes] : samples::all()) {
    writeFile(folder / kind, bytes);
    ASSERT_TRUE(reports->waitFor(folder / kind, kFSEventStreamEventFlagItemCreated)) << kind;
  }
  settle();
  for (const auto& [kind, bytes] : samples::all()) {
    const auto told = reports->of(folder / kind);
    ASSERT_EQ(told.size(), 1U) << kind;
    EXPECT_EQ(told[0].size, static_cast<std::int64_t>(bytes.size())) << kind;
  }
}

TEST_F(InotifyEventStreamTest, aFileOfFourHundredWritesIsReportedOnlyWhenItIsWhole) {
  start(folder.url());
  const std::string bytes = samples::png({}, 4000);
  const UniqueFd fd(::open((folder / "a.png").path().c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  const std::size_t piece = bytes.size() / 400;
  for (std::size_t at = 0; at < bytes.size(); at += piece) {
    const std::string part = bytes.substr(at, piece);
    ASSERT_EQ(::write(fd.get(), part.data(), part.size()), static_cast<ssize_t>(part.size()));
    if (at % 20 == 0) {
      settle();
      ASSERT_TRUE(at + piece >= bytes.size() || reports->of(folder / "a.png").empty());
    }
  }
  // The writer keeps its file open.
  ASSERT_TRUE(reports->waitFor(folder / "a.png"));
  settle();
  EXPECT_EQ(reports->of(folder / "a.png").size(), 1U);
  EXPECT_EQ(reports->of(folder / "a.png")[0].size, static_cast<std::int64_t>(bytes.size()));
}

TEST_F(InotifyEventStreamTest, aFileThatIsClosedEmptyFirstIsReportedWhenItIsWritten) {
  start(folder.url());
  writeFile(folder / "a.png", "");
  settle();
  EXPECT_TRUE(reports->of(folder / "a.png").empty());
  writeFile(folder / "a.png", samples::png());
  ASSERT_TRUE(reports->waitFor(folder / "a.png"));
  settle();
  EXPECT_EQ(reports->of(folder / "a.png").size(), 1U);
  EXPECT_GT(reports->of(folder / "a.png")[0].size, 0);
}

TEST_F(InotifyEventStreamTest, aFileThatIsNeverCompleteIsReportedAfterTwoSecondsWithoutATouch) {
  start(folder.url());
  const Date begun = clock.now();
  writeFile(folder / "a.gif", "GIF89a");
  settle();
  EXPECT_TRUE(reports->of(folder / "a.gif").empty());
  ASSERT_TRUE(reports->waitFor(folder / "a.gif"));
  EXPECT_GE(clock.now() - begun, std::chrono::milliseconds(1990));
  EXPECT_EQ(reports->of(folder / "a.gif").size(), 1U);
}

TEST_F(InotifyEventStreamTest, aFileThatWasBegunBeforeTheStartIsWaitedFor) {
  writeFile(folder / "a.gif", "GIF89a");
  writeFile(folder / "b.png", samples::png());
  start(folder.url());
  ASSERT_TRUE(reports->waitFor(folder / "a.gif"));
  EXPECT_TRUE(reports->of(folder / "b.png").empty());
}

TEST_F(InotifyEventStreamTest, aTemporaryFileRenamedIntoPlaceIsReportedUnderItsLastNameOnly) {
  start(folder.url());
  for (const std::string temporary : {".a.png.part", ".a.png"}) {
    writeFile(folder / temporary, samples::png());
    ASSERT_EQ(::rename((folder / temporary).path().c_str(), (folder / "a.png").path().c_str()), 0);
    ASSERT_TRUE(reports->waitFor(folder / "a.png", kFSEventStreamEventFlagItemRenamed));
    EXPECT_TRUE(reports->of(folder / temporary).empty());
  }
}

TEST_F(InotifyEventStreamTest, filesMovedInAndLinkedInAreReported) {
  start(folder.url());
  writeFile(elsewhere / "a.png", samples::png());
  ASSERT_EQ(::rename((elsewhere / "a.png").path().c_str(), (folder / "a.png").path().c_str()), 0);
  EXPECT_TRUE(reports->waitFor(folder / "a.png", kFSEventStreamEventFlagItemRenamed));
  writeFile(elsewhere / "b.png", samples::png());
  ASSERT_EQ(::link((elsewhere / "b.png").path().c_str(), (folder / "b.png").path().c_str()), 0);
  EXPECT_TRUE(reports->waitFor(folder / "b.png", kFSEventStreamEventFlagItemCreated));
}

TEST_F(InotifyEventStreamTest, aMoveAwayIsARenameAndADeletionARemoval) {
  start(folder.url());
  writeFile(folder / "a.png", samples::png());
  writeFile(folder / "b.png", samples::png());
  ASSERT_TRUE(reports->waitFor(folder / "a.png") && reports->waitFor(folder / "b.png"));
  ASSERT_EQ(::rename((folder / "a.png").path().c_str(), (elsewhere / "a.png").path().c_str()), 0);
  EXPECT_TRUE(reports->waitFor(folder / "a.png", kFSEventStreamEventFlagItemRenamed));
  ASSERT_EQ(::unlink((folder / "b.png").path().c_str()), 0);
  EXPECT_TRUE(reports->waitFor(folder / "b.png", kFSEventStreamEventFlagItemRemoved));
  for (const Report& report : reports->of(folder / "a.png")) {
    EXPECT_EQ(report.flags & kFSEventStreamEventFlagItemRemoved, 0U);
  }
  // What comes back under the name of a removed file is new.
  const std::size_t before = reports->count();
  writeFile(folder / "b.png", samples::png());
  EXPECT_TRUE(reports->waitFor(folder / "b.png", kFSEventStreamEventFlagItemCreated, before));
}

TEST_F(InotifyEventStreamTest, linksFoldersAndFilesInSubfoldersAreNotReported) {
  std::filesystem::create_directory((folder / "sub.png").path());
  start(folder.url());
  std::filesystem::create_directory((folder / "sub2.png").path());
  writeFile(folder / "sub.png/a.png", samples::png());
  writeFile(elsewhere / "a.png", samples::png());
  ASSERT_EQ(::symlink((elsewhere / "a.png").path().c_str(), (folder / "link.png").path().c_str()), 0);
  ASSERT_EQ(::mkfifo((folder / "fifo.png").path().c_str(), 0600), 0);
  settle();
  for (const std::string name : {"sub.png", "sub2.png", "sub.png/a.png", "link.png", "fifo.png"}) {
    EXPECT_TRUE(reports->of(folder / name).empty()) << name;
  }
}

TEST_F(InotifyEventStreamTest, fiftyFilesAtOnceAreReportedOnceEach) {
  start(folder.url());
  std::vector<std::thread> writers;
  for (int writer = 0; writer < 5; ++writer) {
    writers.emplace_back([&, writer] {
      for (int i = 0; i < 10; ++i) {
        writeFile(folder / (std::to_string(writer * 10 + i) + ".png"), samples::png({}, 500));
      }
    });
  }
  for (std::thread& writer : writers) {
    writer.join();
  }
  const auto whole = static_cast<std::int64_t>(samples::png({}, 500).size());
  for (int i = 0; i < 50; ++i) {
    ASSERT_TRUE(reports->waitFor(folder / (std::to_string(i) + ".png")));
  }
  settle();
  for (int i = 0; i < 50; ++i) {
    const auto told = reports->of(folder / (std::to_string(i) + ".png"));
    EXPECT_EQ(told.size(), 1U) << i;
    EXPECT_EQ(told[0].size, whole) << i;
  }
}

TEST_F(InotifyEventStreamTest, namesOfAnyBytesAreReportedByteForByte) {
  start(folder.url());
  for (const std::string& name :
       {std::string(251, 'x') + ".png", std::string("\xFF\xFE.png"), std::string("a\nb.png")}) {
    writeFile(folder / name, samples::png());
    EXPECT_TRUE(reports->waitFor(folder / name));
  }
}

TEST_F(InotifyEventStreamTest, aFolderThatIsDeletedAndMadeAgainIsWatchedAgain) {
  const FileURL watched = folder / "a/b";
  std::filesystem::create_directories(watched.path());
  start(watched);
  for (int round = 0; round < 3; ++round) {
    const std::size_t before = reports->count();
    std::filesystem::remove_all((folder / "a").path());
    std::filesystem::create_directories(watched.path());
    ASSERT_TRUE(reports->waitFor(watched, kFSEventStreamEventFlagMustScanSubDirs, before));
    const FileURL file = watched / (std::to_string(round) + ".png");
    writeFile(file, samples::png());
    ASSERT_TRUE(reports->waitFor(file));
  }
}

// A program whose working folder it is keeps a deleted folder alive.
TEST_F(InotifyEventStreamTest, aDeletedFolderThatIsStillInUseIsNoticedToo) {
  const FileURL watched = folder / "a";
  std::filesystem::create_directories(watched.path());
  start(watched);
  const UniqueFd user(::open(watched.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  ASSERT_TRUE(user);
  std::filesystem::remove((folder / "a").path());
  std::filesystem::create_directory(watched.path());
  ASSERT_TRUE(reports->waitFor(watched, kFSEventStreamEventFlagMustScanSubDirs));
  writeFile(watched / "a.png", samples::png());
  EXPECT_TRUE(reports->waitFor(watched / "a.png"));
}

TEST_F(InotifyEventStreamTest, aFolderThatIsMovedAwayAndBackIsWatchedAgain) {
  for (const std::string moved : {"a/b", "a"}) {  // itself, and the one above it
    const FileURL watched = folder / "a/b";
    std::filesystem::create_directories(watched.path());
    start(watched);
    const std::size_t before = reports->count();
    std::filesystem::rename((folder / moved).path(), (folder / "away").path());
    std::filesystem::rename((folder / "away").path(), (folder / moved).path());
    std::filesystem::rename((folder / moved).path(), (folder / "away").path());
    std::filesystem::create_directories(watched.path());
    ASSERT_TRUE(reports->waitFor(watched, kFSEventStreamEventFlagMustScanSubDirs, before)) << moved;
    writeFile(watched / "new.png", samples::png());
    EXPECT_TRUE(reports->waitFor(watched / "new.png", 0, before)) << moved;
    std::filesystem::remove_all((folder / "away").path());
    std::filesystem::remove_all((folder / "a").path());
  }
}

TEST_F(InotifyEventStreamTest, aFolderThatIsReplacedByAnotherIsWatchedAnew) {
  const FileURL watched = folder / "a";
  std::filesystem::create_directories(watched.path());
  std::filesystem::create_directories((folder / "other").path());
  start(watched);
  std::filesystem::rename((folder / "other").path(), watched.path());
  ASSERT_TRUE(reports->waitFor(watched, kFSEventStreamEventFlagMustScanSubDirs));
  writeFile(watched / "a.png", samples::png());
  EXPECT_TRUE(reports->waitFor(watched / "a.png"));
}

TEST_F(InotifyEventStreamTest, aFolderThatIsNotThereYetIsWaitedFor) {
  const FileURL watched = folder / "a/b/c";
  start(watched);
  std::filesystem::create_directories(watched.path());
  ASSERT_TRUE(reports->waitFor(watched, kFSEventStreamEventFlagMustScanSubDirs));
  writeFile(watched / "a.png", samples::png());
  EXPECT_TRUE(reports->waitFor(watched / "a.png"));
}

TEST_F(InotifyEventStreamTest, aChangeOfTheFoldersModeAsksForAListing) {
  start(folder.url());
  ASSERT_EQ(::chmod(folder.url().path().c_str(), 0500), 0);
  EXPECT_TRUE(reports->waitFor(folder.url(), kFSEventStreamEventFlagMustScanSubDirs));
  ASSERT_EQ(::chmod(folder.url().path().c_str(), 0700), 0);
  settle();
}

TEST_F(InotifyEventStreamTest, theFlagOfLostRecordsComesWhenMoreHappensThanTheKernelKeeps) {
  std::size_t limit = 0;
  std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> limit;
  ASSERT_GT(limit, 0U);
  // The reader is held up by a queue whose turn it waits for, so that the records pile up.
  struct HoldingQueue final : SerialQueue {
    [[nodiscard]] const std::string& label() const override { return name; }
    void async(Task task) override {
      const std::lock_guard lock(gate);
      task();
    }
    void sync(const Task& task) override { task(); }
    void after(Seconds, Task task) override { async(std::move(task)); }
    std::string name = "holding";
    std::mutex gate;
  } holding;
  stream = make(folder.url());
  stream->FSEventStreamSetDispatchQueue(holding);
  {
    const std::lock_guard held(holding.gate);
    ASSERT_TRUE(stream->FSEventStreamStart());
    writeFile(folder / "first.png", samples::png());
    // Records alike follow one another as one: two names take turns.
    for (std::size_t i = 0; i <= limit / 2 + 4096; ++i) {
      writeFile(folder / (i % 2 == 0 ? "even.txt" : "odd.txt"), "x");
    }
  }
  EXPECT_TRUE(reports->waitFor(folder.url(), kFSEventStreamEventFlagMustScanSubDirs));
  stream->FSEventStreamStop();
}

TEST_F(InotifyEventStreamTest, nothingBeginsOnceStopHasReturned) {
  start(folder.url());
  settle();
  stream->FSEventStreamStop();
  queue.sync([] {});
  const std::size_t before = reports->count();
  for (int i = 0; i < 50; ++i) {
    writeFile(folder / (std::to_string(i) + ".png"), samples::png());
  }
  stream->FSEventStreamInvalidate();
  stream.reset();
  queue.sync([] {});
  EXPECT_EQ(reports->count(), before);
}

TEST_F(InotifyEventStreamTest, aStreamMayGoWhileItsDeliveriesStandInTheQueue) {
  for (int round = 0; round < 30; ++round) {
    start(folder.url());
    for (int i = 0; i < 5; ++i) {
      writeFile(folder / (std::to_string(i) + ".png"), samples::png());
    }
    stream.reset();
  }
  queue.sync([] {});
}

TEST_F(InotifyEventStreamTest, aSlowQueueGetsEveryReportInOrder) {
  start(folder.url());
  std::mutex gate;
  {
    const std::lock_guard held(gate);
    queue.async([&gate] { const std::lock_guard wait(gate); });
    for (int i = 0; i < 100; ++i) {
      writeFile(folder / (std::to_string(i) + ".png"), samples::png());
    }
  }
  for (int i = 0; i < 100; ++i) {
    ASSERT_TRUE(reports->waitFor(folder / (std::to_string(i) + ".png")));
  }
}

TEST_F(InotifyEventStreamTest, aStoppedStreamStartsAgain) {
  start(folder.url());
  stream->FSEventStreamStop();
  ASSERT_TRUE(stream->FSEventStreamStart());
  settle();
}

TEST_F(InotifyEventStreamTest, withoutAQueueOrAFolderThereIsNoStart) {
  auto lonely =
      streams.FSEventStreamCreate([](const FSEventBatch&) {}, folder.url(), {.latency = Seconds(0), .flags = 0});
  EXPECT_FALSE(lonely->FSEventStreamStart());
  EXPECT_EQ(streams.FSEventStreamCreate([](const FSEventBatch&) {}, FileURL(), {.latency = Seconds(0), .flags = 0}),
            nullptr);
  EXPECT_EQ(streams.FSEventStreamCreate(nullptr, folder.url(), {.latency = Seconds(0), .flags = 0}), nullptr);
}

// As many streams as the system gives: the one after them is refused, and works once another has gone.
TEST_F(InotifyEventStreamTest, startFailsWhenTheSystemGivesNoMoreWatchers) {
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  std::vector<UniqueFd> taken;
  const rlimit small{.rlim_cur = 64, .rlim_max = before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &small), 0);
  while (taken.empty() || taken.back()) {
    taken.emplace_back(::open("/dev/null", O_RDONLY | O_CLOEXEC));
  }
  stream = make(folder.url());
  EXPECT_FALSE(stream->FSEventStreamStart());
  taken.clear();
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
  EXPECT_TRUE(stream->FSEventStreamStart());
  settle();
}

// A random life of a folder: what is reported is whole, and what is there and whole in the end has been reported.
TEST_F(InotifyEventStreamTest, everyFileOfARandomLifeIsReportedWholeAndNoneIsLost) {
  start(folder.url());
  const std::string bytes = samples::png({}, 300);
  std::mt19937 random(4711);
  const auto below = [&](int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random); };
  const auto name = [&] { return std::to_string(below(12)) + ".png"; };
  for (int step = 0; step < 1500; ++step) {
    const FileURL file = folder / name();
    switch (below(6)) {
      case 0:
      case 1:
        if (!exists(file)) {
          writeFile(file, bytes);
        }
        break;
      case 2:
        (void)::unlink(file.path().c_str());
        break;
      case 3:
        writeFile(folder / ".temporary", bytes);
        (void)::rename((folder / ".temporary").path().c_str(), file.path().c_str());
        break;
      case 4:
        (void)::rename(file.path().c_str(), (folder / name()).path().c_str());
        break;
      default:
        if (!exists(file)) {
          writeFile(file, "");
          writeFile(file, bytes.substr(0, 100));
          const UniqueFd rest(::open(file.path().c_str(), O_WRONLY | O_APPEND | O_CLOEXEC));
          check(::write(rest.get(), bytes.data() + 100, bytes.size() - 100) > 0, "write");
        }
    }
  }
  settle();
  for (int i = 0; i < 12; ++i) {
    const FileURL file = folder / (std::to_string(i) + ".png");
    const auto told = reports->of(file);
    if (exists(file)) {
      ASSERT_FALSE(told.empty()) << i;
      EXPECT_EQ(told.back().flags & kFSEventStreamEventFlagItemRemoved, 0U) << i;
    }
  }
}

}  // namespace
}  // namespace quenlio
