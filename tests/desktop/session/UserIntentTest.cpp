#include <gtest/gtest.h>

#include "desktop/linux/session/UserIntent.h"

namespace quenlio {
namespace {

TEST(UserIntent, lastsForASecond) {
  UserIntent intent;
  const UserIntent::Time start;
  EXPECT_FALSE(intent.recent(start));
  intent.note(start);
  EXPECT_TRUE(intent.recent(start));
  EXPECT_TRUE(intent.recent(start + std::chrono::milliseconds(999)));
  EXPECT_FALSE(intent.recent(start + std::chrono::milliseconds(1000)));
}

}  // namespace
}  // namespace quenlio
