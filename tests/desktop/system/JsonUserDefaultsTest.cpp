// Settings outlive the program, other processes, kills and damage.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <random>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

#include "desktop/linux/system/JsonUserDefaults.h"
#include "desktop/linux/system/RegularFile.h"

namespace quenlio {
namespace {

namespace fs = std::filesystem;

class JsonUserDefaultsTest : public testing::Test {
 protected:
  JsonUserDefaultsTest() {
    std::string pattern = fs::temp_directory_path() / "quenlio-defaults-XXXXXX";
    root_ = ::mkdtemp(pattern.data());
    folder_ = root_ / "config" / "quenlio";
  }
  ~JsonUserDefaultsTest() override {
    std::error_code ignored;
    fs::remove_all(root_, ignored);
  }

  // A store as another process, or the next run, would have it.
  [[nodiscard]] JsonUserDefaults opened() const { return JsonUserDefaults(FileURL(folder_.string()), "suite"); }

  [[nodiscard]] fs::path file(const std::string& suffix = ".json") const { return folder_ / ("suite" + suffix); }
  [[nodiscard]] static std::string contents(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  void writeFile(const std::string& text) const {
    fs::create_directories(folder_);
    std::ofstream(file(), std::ios::binary) << text;
  }
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

  fs::path root_;
  fs::path folder_;
};

TEST_F(JsonUserDefaultsTest, readsEveryTypeBackAsItWas) {
  const std::string oddText("a/\"\\\n\0\xFF\xC3\x28 \xF4\x8F\xBF\xBF é", 18);
  const std::map<std::string, DefaultsObject> objects{
      {"yes", true},
      {"no", false},
      {"one", std::int64_t{1}},
      {"least", std::numeric_limits<std::int64_t>::min()},
      {"most", std::numeric_limits<std::int64_t>::max()},
      {"one point", 1.0},
      {"fraction", 0.1},
      {"large", 1e300},
      {"endless", std::numeric_limits<double>::infinity()},
      {"text", std::string("word")},
      {"odd text", oddText},
      {"empty text", std::string()},
      {std::string("odd key \xFF/\0", 11), std::string("x")},
      {"", std::string("key without letters")},
      {"no bytes", Bytes{}},
      {"a byte", Bytes{std::byte{0xFF}}},
      {"bytes", Bytes{std::byte{0}, std::byte{1}, std::byte{254}, std::byte{62}, std::byte{63}}}};
  auto store = opened();
  for (const auto& [key, object] : objects) {
    store.setObject(key, object);
    EXPECT_EQ(store.objectForKey(key), object) << key;
  }
  const auto next = opened();
  for (const auto& [key, object] : objects) {
    EXPECT_EQ(next.objectForKey(key), object) << key;
  }
  EXPECT_EQ(next.dictionaryRepresentation(), objects);
}

TEST_F(JsonUserDefaultsTest, keepsTheTypesApart) {
  auto store = opened();
  store.setObject("value", std::int64_t{1});
  EXPECT_EQ(opened().object<std::int64_t>("value"), 1);
  EXPECT_EQ(opened().object<double>("value"), std::nullopt);
  EXPECT_FALSE(opened().boolForKey("value"));
  store.setObject("value", 1.0);
  EXPECT_EQ(opened().object<double>("value"), 1.0);
  EXPECT_EQ(opened().object<std::int64_t>("value"), std::nullopt);
  store.setObject("value", true);
  EXPECT_TRUE(opened().boolForKey("value"));
  EXPECT_EQ(opened().object<std::string>("value"), std::nullopt);
}

TEST_F(JsonUserDefaultsTest, forgetsWhatIsRemoved) {
  auto store = opened();
  store.setObject("value", true);
  store.removeObjectForKey("value");
  store.removeObjectForKey("never there");
  EXPECT_EQ(store.objectForKey("value"), std::nullopt);
  EXPECT_TRUE(opened().dictionaryRepresentation().empty());
}

TEST_F(JsonUserDefaultsTest, leavesNoTraceWhenNothingIsSet) {
  auto store = opened();
  store.removeObjectForKey("value");
  EXPECT_EQ(store.objectForKey("value"), std::nullopt);
  EXPECT_FALSE(fs::exists(root_ / "config"));
}

TEST_F(JsonUserDefaultsTest, touchesNoFileWhenNothingChanges) {
  auto store = opened();
  store.setObject("value", 3.0);
  struct stat before {};
  ASSERT_EQ(::stat(file().c_str(), &before), 0);
  store.setObject("value", 3.0);
  store.removeObjectForKey("other");
  auto other = opened();
  other.setObject("value", 3.0);
  struct stat after {};
  ASSERT_EQ(::stat(file().c_str(), &after), 0);
  EXPECT_EQ(stampOf(before), stampOf(after));
  store.setObject("value", std::int64_t{3});
  ASSERT_EQ(::stat(file().c_str(), &after), 0);
  EXPECT_NE(stampOf(before), stampOf(after));
}

TEST_F(JsonUserDefaultsTest, isForTheUserAlone) {
  opened().setObject("value", true);
  struct stat status {};
  ASSERT_EQ(::stat(file().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & ALLPERMS, 0600U);
  ASSERT_EQ(::stat(folder_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & ALLPERMS, 0700U);
}

TEST_F(JsonUserDefaultsTest, writesThroughALink) {
  fs::create_directories(folder_);
  fs::create_symlink(root_ / "elsewhere.json", file());
  std::ofstream(root_ / "elsewhere.json") << R"({"old": {"bool": true}})";
  auto store = opened();
  store.setObject("value", std::int64_t{3});
  EXPECT_TRUE(fs::is_symlink(file()));
  EXPECT_EQ(JsonUserDefaults(FileURL(root_.string()), "elsewhere").dictionaryRepresentation().size(), 2U);
}

TEST_F(JsonUserDefaultsTest, seesWhatAnotherStoreWrites) {
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

TEST_F(JsonUserDefaultsTest, countsADamagedFileAsEmptyAndKeepsIt) {
  const std::array<std::string, 4> damaged{"{\"half\": {\"bo", "[1, 2]", "", std::string("\0\0\0", 3)};
  for (const auto& text : damaged) {
    writeFile(text);
    auto store = opened();
    EXPECT_TRUE(store.dictionaryRepresentation().empty());
    EXPECT_FALSE(fs::exists(file()));
    store.setObject("value", true);
    EXPECT_TRUE(opened().boolForKey("value"));
  }
  EXPECT_EQ(contents(file(".json.damaged")), damaged[0]);
  EXPECT_EQ(contents(file(".json.damaged-2")), damaged[1]);
  EXPECT_EQ(contents(file(".json.damaged-3")), damaged[2]);
  EXPECT_EQ(contents(file(".json.damaged-4")), damaged[3]);
}

TEST_F(JsonUserDefaultsTest, keepsADamagedFileBeforeItsFirstWrite) {
  writeFile("damaged");
  opened().setObject("value", true);
  EXPECT_EQ(contents(file(".json.damaged")), "damaged");
  EXPECT_TRUE(opened().boolForKey("value"));
}

TEST_F(JsonUserDefaultsTest, noticesDamageWhileItRuns) {
  auto store = opened();
  store.setObject("value", true);
  writeFile("damaged");
  EXPECT_FALSE(store.boolForKey("value"));
  EXPECT_EQ(contents(file(".json.damaged")), "damaged");
}

TEST_F(JsonUserDefaultsTest, leavesOutEntriesThatItDoesNotKnowAndKeepsThemInTheFile) {
  writeFile(R"({"future": {"date": "2026-11-15"}, "bare": 3, "two": {"bool": true, "integer": 1},
               "wrong": {"bool": 1}, "large": {"integer": 18446744073709551615}, "half": {"integer": 1.5},
               "data": {"data": "a?=="}, "nothing": null, "good": {"string": "yes"}})");
  auto store = opened();
  EXPECT_EQ(store.dictionaryRepresentation(), (std::map<std::string, DefaultsObject>{{"good", std::string("yes")}}));
  EXPECT_EQ(store.objectForKey("future"), std::nullopt);
  store.setObject("good", std::string("no"));
  store.setObject("wrong", false);
  const auto kept = json::read(contents(file()));
  ASSERT_TRUE(kept);
  EXPECT_EQ(kept->size(), 9U);
  EXPECT_EQ((*kept)["future"], json::Value({{"date", "2026-11-15"}}));
  EXPECT_EQ((*kept)["large"]["integer"], 18446744073709551615U);
  EXPECT_EQ((*kept)["nothing"], nullptr);
  EXPECT_EQ((*kept)["good"]["string"], "no");
  EXPECT_EQ(opened().object<bool>("wrong"), false);
}

TEST_F(JsonUserDefaultsTest, livesInMemoryWhereNoFolderCanBe) {
  std::ofstream(root_ / "config") << "a file where the folder would be";
  auto store = opened();
  store.setObject("value", std::int64_t{3});
  store.setObject("gone", true);
  store.removeObjectForKey("gone");
  EXPECT_EQ(store.object<std::int64_t>("value"), 3);
  EXPECT_EQ(store.dictionaryRepresentation().size(), 1U);
  fs::remove(root_ / "config");
  store.setObject("later", true);
  EXPECT_EQ(opened().object<std::int64_t>("value"), 3);
  EXPECT_TRUE(opened().boolForKey("later"));
}

TEST_F(JsonUserDefaultsTest, livesInMemoryWhereNothingCanBeWritten) {
  opened().setObject("old", true);
  opened().setObject("removed", true);
  const std::string before = contents(file());
  fs::remove(file(".lock"));
  fs::create_directory(file(".lock"));  // no lock can be had, whoever asks
  auto store = opened();
  store.setObject("value", std::int64_t{3});
  store.removeObjectForKey("removed");
  EXPECT_TRUE(store.boolForKey("old"));
  EXPECT_EQ(store.object<std::int64_t>("value"), 3);
  EXPECT_EQ(store.objectForKey("removed"), std::nullopt);
  EXPECT_EQ(store.dictionaryRepresentation().size(), 2U);
  EXPECT_EQ(contents(file()), before);
}

TEST_F(JsonUserDefaultsTest, neverReplacesWhatItCannotRead) {
  fs::create_directories(file());  // a folder has the file's name
  auto store = opened();
  store.setObject("value", true);
  EXPECT_TRUE(store.boolForKey("value"));
  EXPECT_TRUE(fs::is_directory(file()));
}

TEST_F(JsonUserDefaultsTest, losesNoKeyOfTwoProcessesThatWriteAtOnce) {
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
TEST_F(JsonUserDefaultsTest, hardlyWaitsForAProcessThatKeepsTheLock) {
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

TEST_F(JsonUserDefaultsTest, writesAtItsEndWhatCouldNotBeWrittenBefore) {
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
TEST_F(JsonUserDefaultsTest, isWholeAfterAKill) {
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

TEST_F(JsonUserDefaultsTest, givesOneStoreForOneName) {
  JsonUserDefaultsSuites suites(FileURL(folder_.string()), std::string(kStandardSuiteName));
  UserDefaults* const suite = suites.initWithSuiteName("suite");
  ASSERT_NE(suite, nullptr);
  EXPECT_EQ(suites.initWithSuiteName("suite"), suite);
  EXPECT_NE(suite, &suites.standardUserDefaults());
  EXPECT_EQ(suites.initWithSuiteName(kStandardSuiteName), &suites.standardUserDefaults());
  suites.standardUserDefaults().setObject("value", true);
  EXPECT_EQ(suite->objectForKey("value"), std::nullopt);
  EXPECT_TRUE(fs::exists(folder_ / "com.quenlio.app.json"));
}

TEST_F(JsonUserDefaultsTest, refusesNamesThatAreNoFileNames) {
  JsonUserDefaultsSuites suites(FileURL(folder_.string()), "standard");
  for (const std::string& name : {std::string(), std::string("."), std::string(".."), std::string("a/b"),
                                  std::string("/"), std::string("a\0b", 3), std::string(300, 'a')}) {
    EXPECT_EQ(suites.initWithSuiteName(name), nullptr) << name;
  }
  EXPECT_NE(suites.initWithSuiteName("a b.\xFF"), nullptr);
}

}  // namespace
}  // namespace quenlio
