// Outside the desktop shell nobody sleeps, starts threads, uses the toolkit's timers or reads the system's clock: all
// of that goes through the scheduler and the clock of the platform, which a test can replace.
#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <regex>
#include <string>
#include <vector>

#include "tests/house/SourceTree.h"

namespace quenlio::house {
namespace {

struct Ban {
  const char* name;
  const char* pattern;
};

constexpr std::array kBans{
    Ban{"sleep", R"(\b(sleep_for|sleep_until|usleep|nanosleep|clock_nanosleep|sleep|msleep|qSleep)\s*\()"},
    Ban{"toolkit timer", R"(\b(QTimer|QBasicTimer|QDeadlineTimer|startTimer|qWait)\b)"},
    Ban{"thread", R"(\b(std::thread|std::jthread|std::async|QThread|QtConcurrent|pthread_create)\b)"},
    Ban{"system clock", R"(\b(system_clock::now|gettimeofday|clock_gettime|QDateTime::current\w*)\b)"},
    Ban{"monotonic clock", R"(\b(steady_clock|high_resolution_clock)::now\b)"},
};

// Where something of the above is the point of the code.
struct Exception {
  const char* folder;
  const char* ban;
  const char* reason;
};

constexpr std::array kExceptions{
    Exception{"tests/desktop/", "thread", "the shell's stand-ins promise to bear calls from several threads"},
    Exception{"tests/contract/", "thread", "the queues' contract holds for real threads"},
    Exception{"tests/desktop/", "monotonic clock", "deadlines of waits for real events"},
    Exception{"tests/contract/", "monotonic clock", "deadlines of waits for real events"},
    Exception{"tests/desktop/", "toolkit timer", "an alarm that ends a wait for real events at its deadline"},
    Exception{"tests/contract/", "toolkit timer", "an alarm that ends a wait for real events at its deadline"},
    Exception{"bench/", "sleep", "a benchmark paces the real program that it measures"},
    Exception{"bench/", "monotonic clock", "a benchmark measures real time"},
};

bool isExcepted(const std::string& path, const std::string& ban) {
  return std::ranges::any_of(kExceptions, [&](const Exception& exception) {
    return path.starts_with(exception.folder) && ban == exception.ban;
  });
}

std::vector<std::string> complaintsAbout(const SourceFile& file) {
  std::vector<std::string> complaints;
  const std::string code = codeOnly(file.text);
  for (const Ban& ban : kBans) {
    const std::regex pattern(ban.pattern);
    for (auto found = std::sregex_iterator(code.begin(), code.end(), pattern); found != std::sregex_iterator();
         ++found) {
      if (!isExcepted(file.path, ban.name)) {
        complaints.push_back(file.path + ":" +
                             std::to_string(lineOf(code, static_cast<std::size_t>(found->position()))) + ": " +
                             ban.name + ": " + found->str());
      }
    }
  }
  return complaints;
}

std::vector<std::string> complaintsAboutScript(const SourceFile& file) {
  std::vector<std::string> complaints;
  static const std::regex pattern(R"((^|\n)[^#\n]*\b(time\.sleep\s*\(|asyncio\.sleep\s*\())");
  if (std::regex_search(file.text, pattern)) {
    complaints.push_back(file.path + ": sleeps");
  }
  return complaints;
}

TEST(TimeAndThreads, onlyTheShellHasThem) {
  std::size_t count = 0;
  for (const char* folder : {"core", "tests", "bench"}) {
    for (const SourceFile& file : sourcesBelow(folder, {".h", ".cpp"}, Missing::isEmpty)) {
      EXPECT_EQ(complaintsAbout(file), std::vector<std::string>{});
      ++count;
    }
  }
  EXPECT_GT(count, 80U);
}

TEST(TimeAndThreads, noScriptOfTheTestsSleeps) {
  for (const SourceFile& file : sourcesBelow("tests", {".py"})) {
    EXPECT_EQ(complaintsAboutScript(file), std::vector<std::string>{});
  }
}

TEST(TimeAndThreads, everyExceptionHasAReasonAndNamesABan) {
  for (const Exception& exception : kExceptions) {
    EXPECT_FALSE(std::string(exception.reason).empty());
    EXPECT_TRUE(std::ranges::any_of(kBans, [&](const Ban& ban) { return std::string(ban.name) == exception.ban; }))
        << exception.ban;
    EXPECT_FALSE(std::string(exception.folder).starts_with("core")) << "the core has none";
  }
}

TEST(TimeAndThreadsCheck, findsEachOfThem) {
  for (const char* line :
       {"std::this_thread::sleep_for(1s);", "usleep(10);", "::sleep(1);", "QTimer::singleShot(140, f);",
        "QTest::qWait(10);", "int id = startTimer(5);", "std::thread t(f);", "std::jthread t(f);",
        "auto r = std::async(f);", "auto now = std::chrono::system_clock::now();", "auto now = steady_clock::now();",
        "pthread_create(&t);"}) {
    EXPECT_EQ(complaintsAbout({"core/island/A.cpp", line}).size(), 1U) << line;
    EXPECT_EQ(complaintsAbout({"tests/core/island/A.cpp", line}).size(), 1U) << line;
  }
}

TEST(TimeAndThreadsCheck, readsCodeAndNeitherCommentsNorTexts) {
  EXPECT_EQ(complaintsAbout({"core/A.cpp",
                             "// sleep(1)\n/* std::thread */ const char* a = \"usleep(1)\"; char b = '\"';"
                             "auto c = R\"x(QTimer)x\"; int d = 10'000;"}),
            std::vector<std::string>{});
  EXPECT_EQ(complaintsAbout({"core/A.cpp", "char a = '\"'; usleep(1); char b = '\"';"}).size(), 1U);
  EXPECT_EQ(complaintsAbout({"core/A.cpp", "asleep(); oversleep(); std::this_thread::get_id();"}),
            std::vector<std::string>{});
}

TEST(TimeAndThreadsCheck, anExceptionHoldsForItsFolderAndItsBanAlone) {
  EXPECT_TRUE(complaintsAbout({"tests/contract/A.cpp", "std::thread t(f);"}).empty());
  EXPECT_EQ(complaintsAbout({"tests/contract/A.cpp", "sleep(1);"}).size(), 1U);
  EXPECT_EQ(complaintsAbout({"tests/core/A.cpp", "std::thread t(f);"}).size(), 1U);
}

TEST(TimeAndThreadsCheck, findsAScriptThatSleeps) {
  EXPECT_EQ(complaintsAboutScript({"tests/a.py", "import time\n    time.sleep(1)\n"}).size(), 1U);
  EXPECT_TRUE(complaintsAboutScript({"tests/a.py", "# never time.sleep(1)\n"}).empty());
}

}  // namespace
}  // namespace quenlio::house
