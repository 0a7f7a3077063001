// A process that dies in the middle of its work.
#pragma once

#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/desktop/system/TemporaryFolder.h"

namespace quenlio {

// The signal that ended a process of its own which does this.
template <class Work>
int signalThatEnds(Work work) {
  const pid_t child = ::fork();
  check(child >= 0, "fork");
  if (child == 0) {
    work();
    ::_exit(0);
  }
  int status = 0;
  check(::waitpid(child, &status, 0) == child, "waitpid");
  return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

// The same, killed in the middle of writing: by the system, at the first byte beyond the limit.
template <class Work>
int signalThatEndsAfter(rlim_t bytes, Work work) {
  return signalThatEnds([&] {
    const rlimit noCore{.rlim_cur = 0, .rlim_max = 0};
    const rlimit limit{.rlim_cur = bytes, .rlim_max = bytes};
    (void)std::signal(SIGXFSZ, SIG_DFL);
    if (::setrlimit(RLIMIT_CORE, &noCore) == 0 && ::setrlimit(RLIMIT_FSIZE, &limit) == 0) {
      work();
    }
  });
}

}  // namespace quenlio
