// What every clock does, the virtual one and the system's.
#include <atomic>
#include <gtest/gtest.h>
#include <memory>

#include "desktop/linux/system/LinuxClock.h"
#include "desktop/linux/system/ThreadQueue.h"

#include "tests/harness/VirtualTime.h"

namespace quenlio {
namespace {

struct VirtualKind {
  VirtualTime time;
  const Clock& clock() { return time; }
  void letPass(Seconds duration) { time.advanceBy(duration); }
};

struct RealKind {
  LinuxClock linuxClock;
  ThreadQueue queue{"time"};
  const Clock& clock() { return linuxClock; }
  void letPass(Seconds duration) {
    auto passed = std::make_shared<std::atomic<bool>>(false);
    queue.after(duration, [passed] {
      *passed = true;
      passed->notify_all();
    });
    passed->wait(false);
  }
};

template <class Kind>
class ClockContract : public testing::Test {
 protected:
  Kind kind;
};

using Kinds = testing::Types<VirtualKind, RealKind>;
TYPED_TEST_SUITE(ClockContract, Kinds);

TYPED_TEST(ClockContract, monotonicTimeGoesOnByAtLeastWhatAQueueWaited) {
  const Clock& clock = this->kind.clock();
  const auto before = clock.monotonic();
  this->kind.letPass(Seconds(0.02));
  EXPECT_GE(clock.monotonic() - before, std::chrono::milliseconds(20));
}

TYPED_TEST(ClockContract, monotonicTimeNeverGoesBack) {
  const Clock& clock = this->kind.clock();
  auto last = clock.monotonic();
  for (int i = 0; i < 1000; ++i) {
    const auto next = clock.monotonic();
    ASSERT_GE(next, last);
    last = next;
  }
}

TYPED_TEST(ClockContract, wallTimeIsADateOfTheseYearsThatGoesOn) {
  const Clock& clock = this->kind.clock();
  const Date before = clock.now();
  EXPECT_GT(before, Date(std::chrono::sys_days(std::chrono::year(2025) / 1 / 1)));
  this->kind.letPass(Seconds(0.02));
  EXPECT_GT(clock.now(), before);
}

}  // namespace
}  // namespace quenlio
