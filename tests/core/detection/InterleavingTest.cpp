// Whatever happens to the files and in whatever order the queues run: a finished screenshot is reported at most once in
// each life of its path, never while it is being written, and, unless something stood in the way, at last.
#include <algorithm>
#include <array>
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <rapidcheck/gtest.h>
#include <string>
#include <vector>

#include "tests/core/detection/WatcherBench.h"

namespace quenlio {
namespace {

// One path and what has become of it since it was last removed.
struct Life {
  std::string path;
  bool exists = false;
  bool isUnfinished = false;
  bool wasMovedAway = false;
  bool mayBeMissed = false;  // it was, or may have been, known before it was there
  int reports = 0;
  Date created{};
};

class Story {
 public:
  explicit Story(std::uint32_t seed) : bench_(seed) {
    bench_.start();
    for (std::size_t i = 0; i < lives_.size(); ++i) {
      lives_[i].path = kFolder + "/Screenshot 2026-11-1" + std::to_string(i) + ".png";
    }
  }

  // One act, told by a number: what, to which path, and how much time passes first.
  void act(std::uint16_t number) {
    static constexpr auto pauses = std::to_array<int>({0, 1, 15, 29, 30, 31, 60, 700});
    settle(Milliseconds(pauses[(number >> 8) % pauses.size()]));
    Life& life = lives_[(number >> 4) % lives_.size()];
    switch (number % 9) {
      case 0:
        return create(life, /*unfinished=*/false);
      case 1:
        return create(life, /*unfinished=*/true);
      case 2:
        return finish(life);
      case 3:
        return removeFile(life);
      case 4:
        return moveAway(life);
      case 5:
        return speak(life);
      case 6:
        return bench_.watcher->scanDirectoryForNewScreenshots();
      case 7:
        return restart(/*listingWorks=*/number < 0x8000);
      default:
        return bench_.eventStreams.changed(kFolder, kFSEventStreamEventFlagMustScanSubDirs);
    }
  }

  void end() {
    settle(Seconds(20));
    for (const Life& life : lives_) {
      if (life.exists && !life.isUnfinished && !life.mayBeMissed) {
        RC_ASSERT(life.reports == 1);
      }
    }
    bench_.watcher->stop();
    settle(Seconds(2));
    RC_ASSERT(bench_.time.pending() == 0U);
  }

 private:
  void create(Life& life, bool unfinished) {
    if (life.exists) {
      return;
    }
    // A file moved away stays known, and a look at it may be under way: what comes there then is a finished file.
    life.isUnfinished = unfinished && !life.wasMovedAway && !life.mayBeMissed;
    life.exists = true;
    life.created = bench_.time.now();
    bench_.files.write(life.path);
    bench_.files.setUnfinished(life.path, life.isUnfinished);
    speak(life);
  }
  void finish(Life& life) {
    if (life.exists && life.isUnfinished) {
      life.isUnfinished = false;
      bench_.files.setUnfinished(life.path, false);
      speak(life);
    }
  }
  // The stream is silent about a file that is being written.
  void speak(Life& life) {
    if (life.isUnfinished) {
      return;
    }
    life.mayBeMissed = life.mayBeMissed || !life.exists;
    bench_.eventStreams.changed(life.path);
  }
  // The removal is told and read before anything else happens, so that it parts two lives.
  void removeFile(Life& life) {
    if (!life.exists) {
      return;
    }
    bench_.files.remove(life.path);
    bench_.eventStreams.changed(life.path, kFSEventStreamEventFlagItemRemoved);
    settle(Seconds(0));
    life = Life{.path = life.path};
  }
  void moveAway(Life& life) {
    if (life.exists && !life.isUnfinished) {
      bench_.files.remove(life.path);
      life.exists = false;
      life.wasMovedAway = true;
      life.mayBeMissed = true;
    }
  }
  // What is listed now counts as known, what is not is forgotten, and what was begun more than four seconds ago is too
  // old for the new watch.
  void restart(bool listingWorks) {
    settle(Seconds(0));
    for (Life& life : lives_) {
      const bool isListed = listingWorks && life.exists && !life.isUnfinished;
      const bool isTooOld = life.exists && bench_.time.now() - life.created > std::chrono::seconds(4);
      life.mayBeMissed = life.mayBeMissed || (isListed && life.reports == 0) || (!isListed && isTooOld);
      life.reports = isListed ? life.reports : 0;
    }
    bench_.files.setUnlistable(kFolder, !listingWorks);
    bench_.watcher->restartWatcher(true);
    bench_.files.setUnlistable(kFolder, false);
  }

  // Lets time pass and takes in what was reported meanwhile.
  void settle(Seconds duration) {
    bench_.time.advanceBy(duration);
    for (const auto& found : bench_.found) {
      Life& life = *std::ranges::find(lives_, found.path, &Life::path);
      ++life.reports;
      RC_ASSERT(life.reports == 1);
      RC_ASSERT(!life.isUnfinished);
    }
    bench_.found.clear();
  }

  WatcherBench bench_;
  std::array<Life, 3> lives_;
};

RC_GTEST_PROP(Interleaving, eachScreenshotIsReportedAtMostOnceInALifeAndNeverHalfWritten,
              (std::uint32_t seed, const std::vector<std::uint16_t>& script)) {
  Story story(seed);
  for (const std::uint16_t number : script) {
    story.act(number);
  }
  story.end();
}

// Long stories of quick acts, where looks overlap most.
TEST(Interleaving, holdsInLongStoriesUnderManySeeds) {
  rc::detail::checkGTest([](std::uint32_t seed) {
    Story story(seed);
    std::mt19937 random(seed);
    for (int i = 0; i < 300; ++i) {
      story.act(static_cast<std::uint16_t>(random() & 0x83FF));
    }
    story.end();
  });
}

}  // namespace
}  // namespace quenlio
