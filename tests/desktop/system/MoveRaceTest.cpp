// Moves to names that other programs take at the same moment: whoever is first keeps the name and what is in it.
#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

#include "desktop/linux/system/FileTransfer.h"
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

// What is in the file, if anything is there.
std::string textAt(const FileURL& url) {
  return exists(url) ? contents(url) : "(nothing)";
}

// In each round, acts as soon as the file has appeared.
class Intruder {
 public:
  Intruder(FileURL file, int rounds, Race& race, std::function<void()> act)
      : thread_([this, file = std::move(file), rounds, &race, act = std::move(act)] {
          for (int round = 0; round < rounds; ++round) {
            race.meet();
            while (!isOver_ && !exists(file)) {
            }
            handicap(round, true);
            act();
            race.meet();
          }
        }) {}
  Intruder(const Intruder&) = delete;
  Intruder& operator=(const Intruder&) = delete;
  ~Intruder() { thread_.join(); }

  // It need not wait any longer in this round.
  void setOver(bool isOver) { isOver_ = isOver; }

 private:
  std::atomic<bool> isOver_ = false;
  std::thread thread_;
};

class MoveRaceTest : public testing::Test {
 protected:
  // Moves "mine" to the place while another program, as soon as `signal` is there, renames its own file over
  // `contested`.
  void raceWithIntruder(const FileURL& to, const FileURL& signal, const FileURL& contested,
                        const std::function<bool()>& move, const std::function<void(bool isMoved)>& look) {
    constexpr int rounds = 200;
    const FileURL theirs = contested.parent() / "theirs";
    Race race;
    Intruder intruder(signal, rounds, race,
                      [&] { check(::rename(theirs.path().c_str(), contested.path().c_str()) == 0, "rename"); });
    for (int round = 0; round < rounds; ++round) {
      writeFile(here / "mine", "mine");
      writeFile(theirs, "theirs");
      intruder.setOver(false);
      race.meet();
      handicap(round, false);
      const bool isMoved = move();
      intruder.setOver(true);
      race.meet();
      EXPECT_EQ(textAt(contested), "theirs") << round;
      look(isMoved);
      (void)::unlink(to.path().c_str());
      (void)::unlink((here / "mine").path().c_str());
      EXPECT_EQ(entryCount(here.url()) + entryCount(there.url()), 0U) << round;
    }
  }

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

TEST_F(MoveRaceTest, aFileThatIsPutInTheSourcesPlaceMeanwhileStaysThere) {
  const std::pair<FileURL, std::function<bool()>> moves[] = {
      {there / "to", [&] { return files.moveItemAtURL(here / "mine", there / "to").ok(); }},
      {here / "to", [&] { return linkAndUnlink((here / "mine").path(), (here / "to").path()) == 0; }},
  };
  for (const auto& [to, move] : moves) {
    raceWithIntruder(to, to, here / "mine", move,
                     [&to = to](bool isMoved) { EXPECT_EQ(textAt(to), isMoved ? "mine" : "(nothing)"); });
  }
}

TEST_F(MoveRaceTest, aFileThatIsPutInItsNewPlaceAtOnceCostsItNothingThatWasNotItsOwn) {
  raceWithIntruder(
      here / "to", here / "mine", here / "to",
      [&] { return linkAndUnlink((here / "mine").path(), (here / "to").path()) == 0; },
      [&](bool isMoved) { EXPECT_EQ(exists(here / "mine"), !isMoved); });
  raceWithIntruder(
      there / "to", there / "to", there / "to",
      [&] {
        FileCopy copy(own);
        check(copy.make(here / "mine", there.url(), Durability::onDisk) == 0, "copy");
        writeFile(here / "mine", "changed since");
        return copy.takeOver((there / "to").path()) == 0;
      },
      [&](bool isMoved) {
        EXPECT_FALSE(isMoved);
        EXPECT_EQ(textAt(here / "mine"), "changed since");
      });
}

TEST_F(MoveRaceTest, theRemovalOfANameTakesNothingThatIsPutThereInThatMoment) {
  constexpr int rounds = 500;
  const FileURL mine = here / "mine";
  const FileURL theirs = here / "theirs";
  Race race;
  Intruder intruder(mine, rounds, race,
                    [&] { check(::rename(theirs.path().c_str(), mine.path().c_str()) == 0, "rename"); });
  for (int round = 0; round < rounds; ++round) {
    writeFile(mine, "mine");
    writeFile(theirs, "theirs");
    const UniqueFd file(::open(mine.path().c_str(), O_RDONLY | O_CLOEXEC));
    race.meet();
    handicap(round, false);
    (void)removeNameOf(file, mine.path());
    intruder.setOver(true);
    race.meet();
    intruder.setOver(false);
    EXPECT_EQ(textAt(mine), "theirs") << round;
    EXPECT_EQ(entryCount(here.url()), 1U) << round;
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
