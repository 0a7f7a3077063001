// What a running program has used of the processor, to the nanosecond: the program's other figures count in hundredths
// of a second, which is longer than a whole animation's work takes.
#pragma once

#include <chrono>
#include <string>
#include <sys/types.h>

namespace quenlio::bench {

class ProcessorTime {
 public:
  explicit ProcessorTime(pid_t pid) : threads_("/proc/" + std::to_string(pid) + "/task") {}

  // By all threads that there are now. Throws std::runtime_error when the program does not run.
  [[nodiscard]] std::chrono::nanoseconds used() const;
  // Returns once the program has nothing more to do. Throws when that does not come.
  void waitUntilIdle() const;

 private:
  std::string threads_;
};

}  // namespace quenlio::bench
