#include <gtest/gtest.h>
#include <memory>

#include "desktop/views/common/ViewRefresh.h"

#include "tests/harness/VirtualTime.h"

namespace quenlio {
namespace {

TEST(ViewRefresh, readsOnceOnTheNextTurnHoweverManyFieldsChange) {
  VirtualTime time;
  Published<int> first{1};
  Published<int> second{1};
  int readings = 0;
  int sum = 0;
  ViewRefresh refresh(time, [&] {
    ++readings;
    sum = first.get() + second.get();
  });
  refresh.watch(first);
  refresh.watch(second);
  time.runReady();
  EXPECT_EQ(readings, 1);  // the subscriptions announce the present values
  first.set(10);
  second.set(20);
  second.set(30);
  EXPECT_EQ(readings, 1);
  time.runReady();
  EXPECT_EQ(readings, 2);
  EXPECT_EQ(sum, 40);
}

TEST(ViewRefresh, whatChangesWhileItReadsIsReadAgain) {
  VirtualTime time;
  Published<int> field{0};
  int seen = -1;
  ViewRefresh refresh(time, [&] {
    seen = field.get();
    if (seen == 1) {
      field.set(2);
    }
  });
  refresh.watch(field);
  time.runReady();
  field.set(1);
  time.runReady();
  EXPECT_EQ(seen, 2);
}

TEST(ViewRefresh, doesNothingOnceItIsGone) {
  VirtualTime time;
  Published<int> field{0};
  int readings = 0;
  auto refresh = std::make_unique<ViewRefresh>(time, [&] { ++readings; });
  refresh->watch(field);
  refresh.reset();
  time.runReady();
  field.set(1);
  time.runReady();
  EXPECT_EQ(readings, 0);
}

}  // namespace
}  // namespace quenlio
