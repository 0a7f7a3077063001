// One open file descriptor, closed by whoever holds it. Movable, not copyable; any one thread at a time.
#pragma once

#include <unistd.h>
#include <utility>

namespace quenlio {

class UniqueFd {
 public:
  UniqueFd() = default;
  explicit UniqueFd(int fd) : fd_(fd) {}
  UniqueFd(UniqueFd&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  UniqueFd& operator=(UniqueFd&& other) noexcept {
    if (this != &other) {
      reset();
      fd_ = std::exchange(other.fd_, -1);
    }
    return *this;
  }
  UniqueFd(const UniqueFd&) = delete;
  UniqueFd& operator=(const UniqueFd&) = delete;
  ~UniqueFd() { reset(); }

  [[nodiscard]] int get() const { return fd_; }
  [[nodiscard]] explicit operator bool() const { return fd_ >= 0; }

  void reset() {
    if (const int fd = std::exchange(fd_, -1); fd >= 0) {
      ::close(fd);
    }
  }

 private:
  int fd_ = -1;
};

}  // namespace quenlio
