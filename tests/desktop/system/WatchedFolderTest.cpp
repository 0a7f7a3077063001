#include <chrono>
#include <random>
#include <semaphore>
#include <sys/resource.h>

#include "tests/desktop/system/InotifyEventStreamTest.h"

namespace quenlio {
namespace {

using WatchedFolderTest = InotifyEventStreamTest;

TEST_F(WatchedFolderTest, aFolderThatIsDeletedAndMadeAgainIsWatchedAgain) {
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
TEST_F(WatchedFolderTest, aDeletedFolderThatIsStillInUseIsNoticedToo) {
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

TEST_F(WatchedFolderTest, aFolderThatIsMovedAwayAndBackIsWatchedAgain) {
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

TEST_F(WatchedFolderTest, aFolderThatIsReplacedByAnotherIsWatchedAnew) {
  const FileURL watched = folder / "a";
  std::filesystem::create_directories(watched.path());
  std::filesystem::create_directories((folder / "other").path());
  start(watched);
  std::filesystem::rename((folder / "other").path(), watched.path());
  ASSERT_TRUE(reports->waitFor(watched, kFSEventStreamEventFlagMustScanSubDirs));
  writeFile(watched / "a.png", samples::png());
  EXPECT_TRUE(reports->waitFor(watched / "a.png"));
}

TEST_F(WatchedFolderTest, aFolderThatIsNotThereYetIsWaitedFor) {
  const FileURL watched = folder / "a/b/c";
  start(watched);
  std::filesystem::create_directories(watched.path());
  ASSERT_TRUE(reports->waitFor(watched, kFSEventStreamEventFlagMustScanSubDirs));
  writeFile(watched / "a.png", samples::png());
  EXPECT_TRUE(reports->waitFor(watched / "a.png"));
}

TEST_F(WatchedFolderTest, aChangeOfTheFoldersModeAsksForAListing) {
  start(folder.url());
  ASSERT_EQ(::chmod(folder.url().path().c_str(), 0500), 0);
  EXPECT_TRUE(reports->waitFor(folder.url(), kFSEventStreamEventFlagMustScanSubDirs));
  ASSERT_EQ(::chmod(folder.url().path().c_str(), 0700), 0);
  settle();
}

TEST_F(WatchedFolderTest, theFlagOfLostRecordsComesWhenMoreHappensThanTheKernelKeeps) {
  std::size_t limit = 0;
  std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> limit;
  ASSERT_GT(limit, 0U);
  // The reader is held up by a queue whose turn it waits for, so that the records pile up.
  struct HoldingQueue final : SerialQueue {
    [[nodiscard]] const std::string& label() const override { return name; }
    void async(Task task) override {
      reached.release();
      const std::lock_guard lock(gate);
      task();
    }
    void sync(const Task& task) override { task(); }
    void after(Seconds, Task task) override { async(std::move(task)); }
    std::string name = "holding";
    std::counting_semaphore<> reached{0};
    std::mutex gate;
  } holding;
  stream = make(folder.url());
  stream->FSEventStreamSetDispatchQueue(holding);
  {
    const std::lock_guard held(holding.gate);
    ASSERT_TRUE(stream->FSEventStreamStart());
    writeFile(folder / "first.png", samples::png());
    ASSERT_TRUE(holding.reached.try_acquire_for(std::chrono::seconds(20)));
    // Records alike follow one another as one: two names take turns.
    const UniqueFd even(::open((folder / "even").path().c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    const UniqueFd odd(::open((folder / "odd").path().c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    for (std::size_t i = 0; i <= limit + 8192; ++i) {
      ASSERT_EQ(::write(i % 2 == 0 ? even.get() : odd.get(), "x", 1), 1);
    }
  }
  EXPECT_TRUE(reports->waitFor(folder.url(), kFSEventStreamEventFlagMustScanSubDirs));
  stream->FSEventStreamStop();
}

TEST_F(WatchedFolderTest, nothingBeginsOnceStopHasReturned) {
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

TEST_F(WatchedFolderTest, aStreamMayGoWhileItsDeliveriesStandInTheQueue) {
  for (int round = 0; round < 30; ++round) {
    start(folder.url());
    for (int i = 0; i < 5; ++i) {
      writeFile(folder / (std::to_string(i) + ".png"), samples::png());
    }
    stream.reset();
  }
  queue.sync([] {});
}

TEST_F(WatchedFolderTest, aSlowQueueGetsEveryReportInOrder) {
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

TEST_F(WatchedFolderTest, aStoppedStreamStartsAgain) {
  start(folder.url());
  stream->FSEventStreamStop();
  ASSERT_TRUE(stream->FSEventStreamStart());
  settle();
}

TEST_F(WatchedFolderTest, withoutAQueueOrAFolderThereIsNoStart) {
  auto lonely =
      streams.FSEventStreamCreate([](const FSEventBatch&) {}, folder.url(), {.latency = Seconds(0), .flags = 0});
  EXPECT_FALSE(lonely->FSEventStreamStart());
  EXPECT_EQ(streams.FSEventStreamCreate([](const FSEventBatch&) {}, FileURL(), {.latency = Seconds(0), .flags = 0}),
            nullptr);
  EXPECT_EQ(streams.FSEventStreamCreate(nullptr, folder.url(), {.latency = Seconds(0), .flags = 0}), nullptr);
}

// As many streams as the system gives: the one after them is refused, and works once another has gone.
TEST_F(WatchedFolderTest, startFailsWhenTheSystemGivesNoMoreWatchers) {
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

// A random life of a folder: what is there in the end has been reported, and not as removed.
TEST_F(WatchedFolderTest, noFileOfARandomLifeIsLost) {
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
