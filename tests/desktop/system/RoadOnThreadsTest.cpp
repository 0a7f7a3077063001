// Everything arrives once, whatever runs at the same time, and nothing is told to what is gone.
#include "tests/desktop/system/RoadOnThreadsTest.h"

#include <algorithm>
#include <atomic>
#include <future>
#include <latch>
#include <thread>

#include "core/base/Json.h"

namespace quenlio {
namespace {

void renameIntoPlace(const FileURL& url, std::string_view bytes) {
  const FileURL hidden = url.parent() / ("." + url.lastPathComponent());
  writeFile(hidden, bytes);
  std::filesystem::rename(hidden.path(), url.path());
}

void writeInPieces(const FileURL& url, std::string_view bytes) {
  const UniqueFd fd(::open(url.path().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
  for (; !bytes.empty(); bytes.remove_prefix(std::min<std::size_t>(bytes.size(), 40))) {
    check(::write(fd.get(), bytes.data(), std::min<std::size_t>(bytes.size(), 40)) > 0, url.path());
  }
}

std::vector<std::string> sorted(std::vector<std::string> paths) {
  std::ranges::sort(paths);
  return paths;
}

TEST_F(RoadOnThreadsTest, everyCaptureReachesTheLibraryOnceAndGetsItsThumbnail) {
  constexpr int kEach = 40;
  openLibrary();
  watch(Seconds(0.02));
  std::thread renaming([this] {
    for (int i = 0; i < kEach; ++i) {
      renameIntoPlace(capture(i), samples::png());
    }
  });
  std::thread writing([this] {
    for (int i = kEach; i < 2 * kEach; ++i) {
      writeInPieces(capture(i, i % 2 == 0 ? "png" : "pdf"), i % 2 == 0 ? samples::png() : samples::pdf());
    }
  });
  EXPECT_TRUE(runUntilFound(2 * kEach));
  renaming.join();
  writing.join();
  // Nothing else can be under way any more when one that came later is through.
  renameIntoPlace(capture(2 * kEach), samples::png());
  EXPECT_TRUE(runUntilFound(2 * kEach + 1));
  EXPECT_TRUE(scheduler.runUntil([this] { return thumbnailsListed() == 2 * kEach + 1; }));

  std::vector<std::string> listed;
  for (const ScreenshotItem& item : store->items.get()) {
    listed.push_back(item.fileURL.path());
  }
  std::vector<std::string> arrived;
  for (const auto& entry : std::filesystem::directory_iterator(captures.path())) {
    arrived.push_back(entry.path().string());
  }
  EXPECT_EQ(arrived.size(), 2 * kEach + 1U);
  EXPECT_EQ(sorted(found), sorted(arrived));
  EXPECT_EQ(sorted(listed), sorted(arrived));
  EXPECT_EQ(thumbnails.kept(), 2 * kEach + 1);
  EXPECT_EQ(diagnostics->loadPersistedState()->screenshotCount, 2 * kEach + 1);
}

TEST_F(RoadOnThreadsTest, aForcedRestartLosesNothingThatIsBeingLookedAtAndTellsNothingTwice) {
  constexpr int kRounds = 20;
  std::vector<std::string> arrived;
  const auto arrive = [&](int number) {
    renameIntoPlace(capture(number), samples::png());
    arrived.push_back(capture(number).path());
  };
  watch(kNoPoll);
  for (int round = 0; round < kRounds; ++round) {
    arrive(2 * round);
    arrive(2 * round + 1);
    ASSERT_TRUE(scheduler.runUntil([&] { return streams.heard() == arrived.size(); }));
    watcher->restartWatcher(true);
    watcher->scanDirectoryForNewScreenshots();
  }
  EXPECT_TRUE(runUntilFound(arrived.size()));
  watcher->restartWatcher(true);
  watcher->scanDirectoryForNewScreenshots();
  arrive(2 * kRounds);
  EXPECT_TRUE(runUntilFound(arrived.size()));
  arrive(2 * kRounds + 1);
  EXPECT_TRUE(runUntilFound(arrived.size()));
  EXPECT_EQ(sorted(found), sorted(arrived));
}

TEST_F(RoadOnThreadsTest, aCaptureThatWasFoundIsNotToldOnceTheWatcherIsGone) {
  watch(kNoPoll);
  renameIntoPlace(capture(1), samples::png());
  ASSERT_TRUE(scheduler.runUntil([this] { return streams.heard() == 1; }));
  ASSERT_TRUE(scheduler.waitForTask());  // the word that it was found, which is all that can come now
  watcher.reset();
  scheduler.runReady();
  EXPECT_EQ(found, std::vector<std::string>{});
}

TEST_F(RoadOnThreadsTest, aWatcherMayGoInTheMiddleOfAnyOfItsWork) {
  constexpr int kRounds = 24;
  constexpr int kEach = 6;
  for (int round = 0; round < kRounds; ++round) {
    const std::size_t heard = streams.heard();
    found.clear();
    watch(Seconds(0.02));
    std::thread writer([this, round] {
      for (int i = 0; i < kEach; ++i) {
        writeInPieces(capture(kEach * round + i), samples::png());
      }
    });
    const auto enough = static_cast<std::size_t>(round / 2 % kEach);
    EXPECT_TRUE(scheduler.runUntil(
        [&] { return round % 2 == 0 ? streams.heard() >= heard + enough : found.size() >= enough; }));
    watcher.reset();
    const std::vector<std::string> before = found;
    writer.join();
    scheduler.runReady();
    EXPECT_EQ(found, before);
  }
}

TEST_F(RoadOnThreadsTest, aLibraryMayGoWhileItsThumbnailsAreMade) {
  thumbnails.hold(true);
  openLibrary();
  for (int number = 0; number < 8; ++number) {
    const FileURL url = capture(number, number < 2 ? "pdf" : "png");
    writeFile(url, "picture");
    store->ingestScreenshot(url, std::nullopt);
  }
  constexpr int kAtOnce = ThreadScheduler::kWorkers + ThreadScheduler::kBackgroundThreads;
  ASSERT_TRUE(thumbnails.waitUntilBegun(kAtOnce));
  store.reset();
  thumbnails.hold(false);
  // When every thread has come to these, what they had to do before is done, and posted.
  int threads = 0;
  std::latch workers(ThreadScheduler::kWorkers);
  for (int i = 0; i < ThreadScheduler::kWorkers; ++i) {
    scheduler.detached(QualityOfService::utility, [&] {
      workers.arrive_and_wait();
      scheduler.post([&] { ++threads; });
    });
  }
  ASSERT_TRUE(scheduler.runUntil([&] { return threads == ThreadScheduler::kWorkers; }));
  scheduler.detached(QualityOfService::background, [&] { scheduler.post([&] { ++threads; }); });
  ASSERT_TRUE(scheduler.runUntil([&] { return threads == kAtOnce; }));
  EXPECT_EQ(thumbnails.begun(), kAtOnce);
  EXPECT_EQ(thumbnails.kept(), 0);
}

TEST_F(RoadOnThreadsTest, updatesFromTwoThreadsAreAllKeptAndAReaderFindsTheStateWhole) {
  constexpr int kReads = 300;
  std::atomic<bool> isOver = false;
  std::atomic<int> updates = 0;
  const auto update = [&] {
    do {
      const std::string path(static_cast<std::size_t>(++updates % 17 * 400), 'x');
      diagnostics->update([&](QuenlioReleaseTestState& state) {
        ++state.screenshotCount;
        state.latestScreenshotPath = path;
      });
      diagnostics->record("updated", {{"path", path}});
    } while (!isOver);
  };
  std::thread one(update);
  std::thread other(update);
  int whole = 0;
  for (int i = 0; i < kReads; ++i) {
    whole += diagnostics->loadPersistedState() ? 1 : 0;
  }
  isOver = true;
  one.join();
  other.join();
  EXPECT_EQ(whole, kReads);
  EXPECT_EQ(diagnostics->loadPersistedState()->screenshotCount, updates);
  const std::string events = quenlio::contents(folder / "run/events.jsonl");
  int wholeEvents = 0;
  for (std::size_t at = 0; at < events.size(); ++wholeEvents) {
    const std::size_t end = events.find("\n}\n", at);
    ASSERT_NE(end, std::string::npos);
    ASSERT_TRUE(json::read(events.substr(at, end + 2 - at)));
    at = end + 3;
  }
  EXPECT_EQ(wholeEvents, updates);
}

TEST_F(RoadOnThreadsTest, anUpdateFromInsideAnotherDoesNotWaitForItself) {
  std::promise<void> done;
  std::thread updating([&] {
    diagnostics->update([&](QuenlioReleaseTestState& state) {
      diagnostics->record("inner");
      diagnostics->update([](QuenlioReleaseTestState& inner) { inner.screenshotCount = 4; });
      state.statusItemVisible = state.screenshotCount == 4;
    });
    done.set_value();
  });
  // It could not be joined, nor anything else be told of it.
  if (done.get_future().wait_for(std::chrono::seconds(20)) != std::future_status::ready) {
    std::fputs("an update waits for itself\n", stderr);
    std::abort();
  }
  updating.join();
  EXPECT_EQ(diagnostics->loadPersistedState()->screenshotCount, 4);
  EXPECT_TRUE(diagnostics->loadPersistedState()->statusItemVisible);
}

}  // namespace
}  // namespace quenlio
