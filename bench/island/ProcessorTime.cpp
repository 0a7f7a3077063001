#include "bench/island/ProcessorTime.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <thread>

namespace quenlio::bench {
namespace {

using namespace std::chrono_literals;

constexpr auto kLook = 100ms;
constexpr auto kNothing = 1ms;  // of such a look: no more than a poll of the program's takes
constexpr int kMostLooks = 200;

}  // namespace

std::chrono::nanoseconds ProcessorTime::used() const {
  std::chrono::nanoseconds total{0};
  std::error_code missing;
  for (const auto& thread : std::filesystem::directory_iterator(threads_, missing)) {
    long long used = 0;
    std::ifstream(thread.path() / "schedstat") >> used;  // none of a thread that has just ended
    total += std::chrono::nanoseconds(used);
  }
  if (missing) {
    throw std::runtime_error("the program does not run");
  }
  return total;
}

void ProcessorTime::waitUntilIdle() const {
  for (int look = 0; look < kMostLooks; ++look) {
    const auto before = used();
    std::this_thread::sleep_for(kLook);
    if (used() - before < kNothing) {
      return;
    }
  }
  throw std::runtime_error("the program has always something to do");
}

}  // namespace quenlio::bench
