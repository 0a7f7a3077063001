// Settings that several processes have at once, some of which are killed or stand still.
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <random>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/desktop/system/JsonUserDefaultsTest.h"

namespace quenlio {
namespace {

class SharedUserDefaultsTest : public JsonUserDefaultsTest {
 protected:
  // Runs the work in a process of its own and gives that process.
  template <class Work>
  [[nodiscard]] static pid_t forked(Work work) {
    const pid_t process = ::fork();
    if (process == 0) {
      work();
      ::_exit(0);
    }
    return process;
  }
  static int exitOf(pid_t process) {
    int status = -1;
    EXPECT_EQ(::waitpid(process, &status, 0), process);
    return status;
  }
};

TEST_F(SharedUserDefaultsTest, seesWhatAnotherStoreWrites) {
  auto store = opened();
  auto other = opened();
  for (std::int64_t i = 0; i < 50; ++i) {
    other.setObject("theirs", i);
    EXPECT_EQ(store.object<std::int64_t>("theirs"), i);
    store.setObject("ours", i);
    EXPECT_EQ(other.object<std::int64_t>("ours"), i);
  }
  other.removeObjectForKey("ours");
  EXPECT_EQ(store.objectForKey("ours"), std::nullopt);
}

TEST_F(SharedUserDefaultsTest, losesNoKeyOfTwoProcessesThatWriteAtOnce) {
  constexpr std::int64_t count = 150;
  const auto write = [this](const std::string& prefix) {
    return forked([&] {
      auto store = opened();
      for (std::int64_t i = 0; i < count; ++i) {
        store.setObject(prefix + std::to_string(i), i);
      }
      // On a busy machine one process may keep the other out for longer than that waits: what it could not write then
      // goes with its next change.
      const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
      for (std::int64_t i = 0; !opened().objectForKey(prefix); ++i) {
        store.setObject(prefix, i);
        if (std::chrono::steady_clock::now() > deadline) {
          ::_exit(1);
        }
      }
    });
  };
  const pid_t first = write("a");
  const pid_t second = write("b");
  EXPECT_EQ(exitOf(first), 0);
  EXPECT_EQ(exitOf(second), 0);
  const auto objects = opened().dictionaryRepresentation();
  EXPECT_EQ(objects.size(), 2U * (count + 1));
  for (std::int64_t i = 0; i < count; ++i) {
    EXPECT_EQ(objects.at("a" + std::to_string(i)), DefaultsObject(i));
    EXPECT_EQ(objects.at("b" + std::to_string(i)), DefaultsObject(i));
  }
}

// Another process that keeps the lock of the suite until this lets it go.
class LockHolder {
 public:
  explicit LockHolder(const fs::path& lock) {
    std::array<int, 2> ready{};
    if (::pipe(ready.data()) != 0 || ::pipe(end_.data()) != 0) {
      throw std::system_error(errno, std::generic_category(), "pipe");
    }
    process_ = ::fork();
    if (process_ == 0) {
      ::close(end_[1]);
      const int fd = ::open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
      char byte = ::flock(fd, LOCK_EX) == 0 ? 'y' : 'n';
      (void)!::write(ready[1], &byte, 1);
      (void)!::read(end_[0], &byte, 1);  // until the other end is closed
      ::_exit(0);
    }
    ::close(end_[0]);
    ::close(ready[1]);
    char answer = 'n';
    isHeld_ = ::read(ready[0], &answer, 1) == 1 && answer == 'y';
    ::close(ready[0]);
  }
  LockHolder(const LockHolder&) = delete;
  LockHolder& operator=(const LockHolder&) = delete;
  ~LockHolder() {
    ::close(end_[1]);
    (void)::waitpid(process_, nullptr, 0);
  }
  [[nodiscard]] bool isHeld() const { return isHeld_; }

 private:
  std::array<int, 2> end_{};
  pid_t process_ = -1;
  bool isHeld_ = false;
};

// As many changes as a first launch makes.
TEST_F(SharedUserDefaultsTest, hardlyWaitsForAProcessThatKeepsTheLock) {
  constexpr std::int64_t changes = 82;
  auto store = opened();
  store.setObject("before", true);
  {
    const LockHolder holder(file(".lock"));
    ASSERT_TRUE(holder.isHeld());
    const auto start = std::chrono::steady_clock::now();
    for (std::int64_t i = 0; i < changes; ++i) {
      store.setObject("key" + std::to_string(i), i);
    }
    // One wait and no more, on a machine however busy.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1500));
    EXPECT_EQ(store.object<std::int64_t>("key81"), 81);
    EXPECT_EQ(opened().dictionaryRepresentation().size(), 1U);
  }
  store.setObject("after", true);  // and does not sit out a pause once the lock is free
  EXPECT_EQ(opened().dictionaryRepresentation().size(), changes + 2U);
}

TEST_F(SharedUserDefaultsTest, writesAtItsEndWhatCouldNotBeWrittenBefore) {
  {
    auto store = opened();
    store.setObject("before", true);
    {
      const LockHolder holder(file(".lock"));
      ASSERT_TRUE(holder.isHeld());
      store.setObject("value", std::int64_t{3});
      store.removeObjectForKey("before");
    }
    EXPECT_FALSE(opened().objectForKey("value"));
  }
  EXPECT_EQ(opened().object<std::int64_t>("value"), 3);
  EXPECT_FALSE(opened().objectForKey("before"));
}

// The writer tells of each change; after a random number of them it is killed in the middle of whatever it does.
TEST_F(SharedUserDefaultsTest, isWholeAfterAKill) {
  const std::string small(3'000, 's');
  const std::string large(60'000, 'l');
  opened().setObject("value", small);
  std::mt19937 random(20261115);
  for (int round = 0; round < 40; ++round) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const pid_t writer = forked([&] {
      auto store = opened();
      while (::write(ends[1], ".", 1) == 1) {
        store.setObject("value", store.object<std::string>("value") == small ? large : small);
      }
    });
    ::close(ends[1]);
    char told = 0;
    for (auto changes = 1 + random() % 20; changes > 0; --changes) {
      ASSERT_EQ(::read(ends[0], &told, 1), 1);
    }
    const auto moment = std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 2'000);
    while (std::chrono::steady_clock::now() < moment) {
    }
    ::kill(writer, SIGKILL);
    EXPECT_TRUE(WIFSIGNALED(exitOf(writer)));
    ::close(ends[0]);
    const auto value = opened().object<std::string>("value");
    ASSERT_TRUE(value == small || value == large) << "round " << round;
    opened().setObject("round", std::int64_t{round});  // no lock is left behind
    ASSERT_EQ(opened().object<std::int64_t>("round"), round);
  }
  EXPECT_FALSE(fs::exists(file(".json.damaged")));
}

}  // namespace
}  // namespace quenlio
