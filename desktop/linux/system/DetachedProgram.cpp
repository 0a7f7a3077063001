#include "desktop/linux/system/DetachedProgram.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "desktop/linux/system/UniqueFd.h"

namespace quenlio {
namespace {

std::vector<std::string> environmentWith(const std::vector<std::pair<std::string, std::string>>& changes) {
  std::vector<std::string> result;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string_view text = *variable;
    const bool isChanged = std::ranges::any_of(changes, [text](const auto& change) {
      return text.starts_with(change.first) && text.substr(change.first.size()).starts_with('=');
    });
    if (!isChanged) {
      result.emplace_back(text);
    }
  }
  for (const auto& [name, value] : changes) {
    result.push_back(name + "=" + value);
  }
  return result;
}

std::vector<char*> pointersTo(std::vector<std::string>& words) {
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) {
    pointers.push_back(word.data());
  }
  pointers.push_back(nullptr);
  return pointers;
}

// All that the new process needs, made before there is one: between fork and exec nothing may be allocated.
class Launch {
 public:
  explicit Launch(const DetachedProgram& start)
      : words_(start.arguments),
        variables_(environmentWith(start.environment)),
        program_(start.program.path()),
        folder_(start.workingDirectory) {
    words_.insert(words_.begin(), program_);
    wordPointers_ = pointersTo(words_);
    variablePointers_ = pointersTo(variables_);
  }

  // In the child: becomes a process without a parent of ours, and then the program. Tells a failure through the pipe,
  // which closes by itself when there is none.
  [[noreturn]] void run(int failure) const {
    ::setsid();
    if (const pid_t second = ::fork(); second != 0) {
      if (second < 0) {
        tell(failure);
      }
      ::_exit(0);
    }
    undoSignals();
    if (const int nothing = ::open("/dev/null", O_RDONLY); nothing >= 0) {
      ::dup2(nothing, STDIN_FILENO);
    }
    if (folder_.empty() || ::chdir(folder_.c_str()) == 0) {
      ::execve(program_.c_str(), wordPointers_.data(), variablePointers_.data());
    }
    tell(failure);
    ::_exit(1);
  }

 private:
  static void tell(int failure) {
    const char mark = 1;
    [[maybe_unused]] const ssize_t written = ::write(failure, &mark, 1);
  }
  // What this program ignores or blocks is no affair of the other.
  static void undoSignals() {
    for (int number = 1; number < NSIG; ++number) {
      (void)::signal(number, SIG_DFL);
    }
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
  }

  std::vector<std::string> words_;
  std::vector<std::string> variables_;
  std::string program_;
  std::string folder_;
  std::vector<char*> wordPointers_;
  std::vector<char*> variablePointers_;
};

}  // namespace

bool startDetached(const DetachedProgram& start) {
  const Launch launch(start);
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
    return false;
  }
  const UniqueFd reading(ends[0]);
  UniqueFd writing(ends[1]);
  const pid_t first = ::fork();
  if (first == 0) {
    launch.run(writing.get());
  }
  writing.reset();
  if (first < 0) {
    return false;
  }
  // Both are over as soon as the program runs.
  while (::waitpid(first, nullptr, 0) < 0 && errno == EINTR) {
  }
  char mark = 0;
  ssize_t got = 0;
  do {
    got = ::read(reading.get(), &mark, 1);
  } while (got < 0 && errno == EINTR);
  return got == 0;
}

}  // namespace quenlio
