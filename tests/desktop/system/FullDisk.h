// A disk on which there is no more room than this, as far as this process is concerned: a limit on the length of files
// stands for it, and a write beyond it is cut short and then refused.
#pragma once

#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>

namespace quenlio {

class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &before_), 0);
    const rlimit small{.rlim_cur = bytes, .rlim_max = before_.rlim_max};
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;
  ~FullDisk() {
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &before_), 0);
    (void)std::signal(SIGXFSZ, handler_);
  }

 private:
  rlimit before_{};
  void (*handler_)(int);
};

}  // namespace quenlio
