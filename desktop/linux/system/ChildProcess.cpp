#include "desktop/linux/system/ChildProcess.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace quenlio {
namespace {

// The standard streams and the signals of the program to be started.
class SpawnPlan {
 public:
  SpawnPlan(int input, int output) {
    posix_spawn_file_actions_init(&files_);
    if (input >= 0) {
      posix_spawn_file_actions_adddup2(&files_, input, STDIN_FILENO);
    } else {
      posix_spawn_file_actions_addopen(&files_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    }
    posix_spawn_file_actions_adddup2(&files_, output, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&files_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    // What this program blocks or ignores is no affair of the other.
    posix_spawnattr_init(&attributes_);
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setsigdefault(&attributes_, &all);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  SpawnPlan(const SpawnPlan&) = delete;
  SpawnPlan& operator=(const SpawnPlan&) = delete;
  ~SpawnPlan() {
    posix_spawnattr_destroy(&attributes_);
    posix_spawn_file_actions_destroy(&files_);
  }

  [[nodiscard]] std::optional<pid_t> start(std::vector<std::string>& command) const {
    std::vector<char*> words;
    words.reserve(command.size() + 1);
    for (auto& word : command) {
      words.push_back(word.data());
    }
    words.push_back(nullptr);
    pid_t process = 0;
    const int error = ::posix_spawnp(&process, words[0], &files_, &attributes_, words.data(), environ);
    return error == 0 ? std::optional(process) : std::nullopt;
  }

 private:
  posix_spawn_file_actions_t files_{};
  posix_spawnattr_t attributes_{};
};

}  // namespace

std::optional<ChildProcess> ChildProcess::start(std::vector<std::string> command, std::optional<int> input) {
  std::array<int, 2> ends{};
  if (command.empty() || ::pipe2(ends.data(), O_CLOEXEC) != 0) {
    return std::nullopt;
  }
  UniqueFd ours(ends[0]);
  // Closed on the way out, or the end of the output would never be seen.
  const UniqueFd theirs(ends[1]);
  const auto process = SpawnPlan(input.value_or(-1), theirs.get()).start(command);
  return process ? std::optional(ChildProcess(*process, std::move(ours))) : std::nullopt;
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : process_(std::exchange(other.process_, 0)), output_(std::move(other.output_)) {}

ChildProcess::~ChildProcess() {
  if (process_ == 0) {
    return;
  }
  ::kill(process_, SIGKILL);
  while (::waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
  }
}

// The number stays the child's own until it is reaped, which is when this object goes.
void ChildProcess::kill() const {
  ::kill(process_, SIGKILL);
}

bool ChildProcess::read(void* bytes, std::size_t count, Deadline deadline) {
  auto* next = static_cast<char*>(bytes);
  while (count > 0) {
    const ssize_t length = readSome(next, count, deadline);
    if (length <= 0) {
      return false;
    }
    next += length;
    count -= static_cast<std::size_t>(length);
  }
  return true;
}

std::optional<std::string> ChildProcess::readToEnd(std::size_t most, Deadline deadline) {
  std::string text;
  std::array<char, 4096> piece{};
  while (text.size() <= most) {
    const ssize_t length = readSome(piece.data(), piece.size(), deadline);
    if (length < 0) {
      return std::nullopt;
    }
    if (length == 0) {
      return text;
    }
    text.append(piece.data(), static_cast<std::size_t>(length));
  }
  return std::nullopt;
}

ssize_t ChildProcess::readSome(char* bytes, std::size_t most, Deadline deadline) {
  while (true) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
    if (left <= 0) {
      return -1;
    }
    pollfd waiting{output_.get(), POLLIN, 0};
    const int ready = ::poll(&waiting, 1, static_cast<int>(left));
    const ssize_t length = ready > 0 ? ::read(output_.get(), bytes, most) : -1;
    if (length >= 0 || (ready != 0 && errno != EINTR)) {
      return length;
    }
  }
}

}  // namespace quenlio
