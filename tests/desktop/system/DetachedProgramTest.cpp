// Programs that are started and left to themselves.
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>

#include "desktop/linux/system/DetachedProgram.h"

#include "tests/desktop/system/TemporaryFolder.h"

namespace quenlio {
namespace {

using testing::HasSubstr;

// What the program writes into a pipe that it finds by its path; returns when it has ended.
class Pipe {
 public:
  Pipe() { check(::mkfifo(url().path().c_str(), 0600) == 0, "fifo"); }
  [[nodiscard]] FileURL url() const { return folder_ / "pipe"; }
  // Opened before the program is started, so that neither waits for the other.
  void open() { reading_ = UniqueFd(::open(url().path().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)); }
  [[nodiscard]] std::string readToEnd() {
    std::string all;
    for (;;) {
      pollfd waiting{reading_.get(), POLLIN, 0};
      check(::poll(&waiting, 1, 10'000) == 1, "nobody wrote");
      std::array<char, 4096> buffer{};
      const ssize_t got = ::read(reading_.get(), buffer.data(), buffer.size());
      if (got <= 0) {
        return all;
      }
      all.append(buffer.data(), static_cast<std::size_t>(got));
    }
  }

 private:
  TemporaryFolder folder_;
  UniqueFd reading_;
};

std::string outputOf(const std::string& script, DetachedProgram start = {}) {
  Pipe pipe;
  pipe.open();
  start.program = FileURL("/bin/sh");
  start.arguments.insert(start.arguments.begin(), {"-c", "{ " + script + "; } >\"$0\"", pipe.url().path()});
  EXPECT_TRUE(startDetached(start));
  return pipe.readToEnd();
}

TEST(StartDetached, handsArgumentsOverByteForByte) {
  EXPECT_EQ(outputOf("printf '<%s>' \"$@\"", {.program = {}, .arguments = {"a b", "$HOME `x` \"'", "\xff\n", ""}}),
            "<a b><$HOME `x` \"'><\xff\n><>");
}

TEST(StartDetached, addsToTheEnvironmentOrReplacesIt) {
  ::setenv("QUENLIO_TEST_KEPT", "kept", 1);
  ::setenv("QUENLIO_TEST_CHANGED", "old", 1);
  const std::string output =
      outputOf("printf '%s ' \"$QUENLIO_TEST_KEPT\" \"$QUENLIO_TEST_CHANGED\" \"$QUENLIO_TEST_NEW\"",
               {.program = {},
                .arguments = {},
                .environment = {{"QUENLIO_TEST_CHANGED", "new"}, {"QUENLIO_TEST_NEW", "there"}}});
  EXPECT_EQ(output, "kept new there ");
}

TEST(StartDetached, startsInTheFolderAndWithNothingToRead) {
  const TemporaryFolder folder;
  EXPECT_EQ(outputOf("pwd -P; cat", {.program = {}, .arguments = {}, .workingDirectory = folder.url().path()}),
            folder.url().path() + "\n");
}

TEST(StartDetached, leavesNoChildBehind) {
  const std::string parent = outputOf("ps -o ppid= -p $$ 2>/dev/null || cut -d' ' -f4 /proc/$$/stat");
  EXPECT_FALSE(parent.empty());
  EXPECT_NE(std::stol(parent), static_cast<long>(::getpid()));
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST(StartDetached, undoesWhatThisProgramDoesWithSignals) {
  const auto before = std::signal(SIGPIPE, SIG_IGN);
  const std::string ignored = outputOf("grep SigIgn /proc/$$/status");
  (void)std::signal(SIGPIPE, before);
  EXPECT_THAT(ignored, HasSubstr("0000000000000000"));
}

TEST(StartDetached, saysWhenThereIsNoSuchProgram) {
  EXPECT_FALSE(startDetached({.program = FileURL("/nowhere/viewer"), .arguments = {}}));
  EXPECT_FALSE(startDetached({.program = FileURL("/bin/sh"), .arguments = {}, .workingDirectory = "/nowhere"}));
}

}  // namespace
}  // namespace quenlio
