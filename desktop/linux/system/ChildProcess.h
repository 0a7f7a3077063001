// A program that we start for its output, and that ends with this object at the latest: it is killed and reaped, so
// none is left behind. Movable; any one thread at a time, but for what says otherwise.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

#include "desktop/linux/system/UniqueFd.h"

namespace quenlio {

class ChildProcess {
 public:
  using Deadline = std::chrono::steady_clock::time_point;

  // The command's first word is a path, or a name that is looked for where the environment says. The program reads from
  // the descriptor, or nothing at all, and what it says to standard error is dropped. Nothing when it cannot be
  // started.
  [[nodiscard]] static std::optional<ChildProcess> start(std::vector<std::string> command,
                                                         std::optional<int> input = std::nullopt);

  ChildProcess(ChildProcess&& other) noexcept;
  ChildProcess& operator=(ChildProcess&&) = delete;
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

  // Kills it now. Who reads meets the end of the output. Any thread, also while another one reads.
  void kill() const;

  // Fills the bytes with the next output. False when the program ends, or the deadline passes, before there is that
  // much.
  [[nodiscard]] bool read(void* bytes, std::size_t count, Deadline deadline);

  // All the rest of the output. Nothing when it is longer than that, or does not end before the deadline.
  [[nodiscard]] std::optional<std::string> readToEnd(std::size_t most, Deadline deadline);

 private:
  ChildProcess(pid_t process, UniqueFd output) : process_(process), output_(std::move(output)) {}

  // How many bytes there were: at least one, 0 at the end, -1 on an error or when the deadline passes.
  ssize_t readSome(char* bytes, std::size_t most, Deadline deadline);

  pid_t process_;  // 0 once it was moved away
  UniqueFd output_;
};

}  // namespace quenlio
