// Moves to names that other programs take at the same moment: whoever is first keeps the name and what is in it.
#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

#include "desktop/linux/system/LinuxClock.h"
#include "desktop/linux/system/LinuxFileManager.h"
#include "desktop/linux/system/RenameWithoutReplacing.h"

#include "tests/desktop/system/AttributeFolder.h"
#include "tests/desktop/system/TemporaryFolder.h"
#include "tests/fakes/FakeDesktop.h"

namespace quenlio {
namespace {

// Two threads that meet before each round.
class Race {
 public:
  void meet() {
    const int round = arrived_.fetch_add(1) / 2;
    while (arrived_ < 2 * (round + 1)) {
      std::this_thread::yield();
    }
  }

 private:
  std::atomic<int> arrived_ = 0;
};

// Lets one of the two begin a little later, each in turn, so that now the one wins and now the other.
void handicap(int round, bool isFirst) {
  if ((round % 2 == 0) == isFirst) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds(round / 2 % 40);
    while (std::chrono::steady_clock::now() < end) {
    }
  }
}

// Takes the names "0", "1" … in the folder, each once in a race, as any program may: true for each that it got.
class OtherProgram {
 public:
  OtherProgram(const FileURL& folder, int rounds, Race& race)
      : got_(static_cast<std::size_t>(rounds)), thread_([this, folder, rounds, &race] {
          for (int round = 0; round < rounds; ++round) {
            const std::string path = (folder / std::to_string(round)).path();
            race.meet();
            handicap(round, true);
            const UniqueFd fd(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
            got_[static_cast<std::size_t>(round)] = fd && ::write(fd.get(), "theirs", 6) == 6;
            race.meet();
          }
        }) {}
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;
  ~OtherProgram() { thread_.join(); }

  // To be asked after the race has met for the second time.
  [[nodiscard]] bool got(int round) const { return got_[static_cast<std::size_t>(round)] != 0; }

 private:
  std::vector<char> got_;
  std::thread thread_;
};

class MoveRaceTest : public testing::Test {
 protected:
  // Moves "mine" to each of the names by that way, and holds what came of it against what the other program got.
  void raceFor(const FileURL& folder, const std::function<bool(const FileURL& from, const FileURL& to)>& move) {
    constexpr int rounds = 200;
    Race race;
    const OtherProgram other(folder, rounds, race);
    for (int round = 0; round < rounds; ++round) {
      const FileURL to = folder / std::to_string(round);
      writeFile(here / "mine", "mine");
      race.meet();
      handicap(round, false);
      const bool isMoved = move(here / "mine", to);
      race.meet();
      EXPECT_NE(isMoved, other.got(round)) << round;
      EXPECT_EQ(contents(to), isMoved ? "mine" : "theirs") << round;
      EXPECT_EQ(exists(here / "mine"), !isMoved) << round;
    }
    EXPECT_EQ(entryCount(folder), static_cast<std::size_t>(rounds));
  }

  AttributeFolder here;
  TemporaryFolder there{"/dev/shm"};
  OwnFiles own;
  LinuxClock clock;
  FakeDirectories directories;
  LinuxFileManager files{own, clock, directories};
};

TEST_F(MoveRaceTest, aMoveOnOneFileSystemReplacesNothingThatAppearsMeanwhile) {
  const FileURL folder = here / "folder";
  std::filesystem::create_directory(folder.path());
  raceFor(folder, [&](const FileURL& from, const FileURL& to) { return files.moveItemAtURL(from, to).ok(); });
}

TEST_F(MoveRaceTest, aMoveAcrossFileSystemsReplacesNothingThatAppearsMeanwhile) {
  raceFor(there.url(), [&](const FileURL& from, const FileURL& to) { return files.moveItemAtURL(from, to).ok(); });
}

TEST_F(MoveRaceTest, neitherDoTheOtherWaysOfRenaming) {
  for (const auto rename : {linkAndUnlink, claimAndRename}) {
    const FileURL folder = here / (rename == linkAndUnlink ? "link" : "claim");
    std::filesystem::create_directory(folder.path());
    raceFor(folder, [&](const FileURL& from, const FileURL& to) { return rename(from.path(), to.path()) == 0; });
  }
}

TEST_F(MoveRaceTest, ofTwoMovesToOneNameOneFailsAndItsFileStays) {
  constexpr int rounds = 100;
  for (const FileURL& folder : {here.url(), there.url()}) {
    for (int round = 0; round < rounds; ++round) {
      const FileURL to = folder / "to";
      writeFile(here / "a", "a");
      writeFile(here / "b", "b");
      Race race;
      bool isOtherMoved = false;
      std::thread other([&] {
        race.meet();
        isOtherMoved = files.moveItemAtURL(here / "b", to).ok();
      });
      race.meet();
      const bool isMoved = files.moveItemAtURL(here / "a", to).ok();
      other.join();
      ASSERT_NE(isMoved, isOtherMoved);
      EXPECT_EQ(contents(to), isMoved ? "a" : "b");
      EXPECT_EQ(exists(here / "a"), !isMoved);
      EXPECT_EQ(exists(here / "b"), isMoved);
      ASSERT_EQ(::unlink(to.path().c_str()), 0);
    }
    EXPECT_EQ(entryCount(there.url()), 0U);
  }
}

}  // namespace
}  // namespace quenlio
