#include <gtest/gtest.h>

#include "core/tooltip/TooltipEntries.h"

namespace quenlio {
namespace {

class TooltipEntriesTest : public testing::Test {
 protected:
  [[nodiscard]] std::string shown() const {
    const auto active = entries_.active();
    return active ? active->text : "";
  }

  TooltipEntries entries_;
  TooltipEntry copy_{.id = Uuid::random(), .text = "Copy", .rect = {{10, 10}, {24, 24}}};
  TooltipEntry share_{.id = Uuid::random(), .text = "Share", .rect = {{60, 10}, {24, 24}}};
  TooltipEntry refusal_{.id = Uuid::random(), .text = "Enter a name", .rect = {{10, 90}, {90, 24}}, .isUrgent = true};
};

TEST_F(TooltipEntriesTest, withoutAnyNoneIsActive) {
  EXPECT_EQ(entries_.active(), std::nullopt);
  entries_.report(copy_);
  entries_.withdraw(copy_.id);
  EXPECT_EQ(entries_.active(), std::nullopt);
}

TEST_F(TooltipEntriesTest, theLastThatCameIsActive) {
  entries_.report(copy_);
  entries_.report(share_);
  EXPECT_EQ(entries_.active(), share_);
  entries_.withdraw(copy_.id);
  EXPECT_EQ(entries_.active(), share_);
}

TEST_F(TooltipEntriesTest, theOneBeforeComesBackWhenTheLastGoes) {
  entries_.report(copy_);
  entries_.report(share_);
  entries_.withdraw(share_.id);
  EXPECT_EQ(entries_.active(), copy_);
}

TEST_F(TooltipEntriesTest, anUrgentOneWinsForAsLongAsItIsThere) {
  entries_.report(refusal_);
  entries_.report(copy_);
  EXPECT_EQ(shown(), "Enter a name");
  entries_.withdraw(refusal_.id);
  EXPECT_EQ(shown(), "Copy");
  entries_.report(refusal_);
  EXPECT_EQ(shown(), "Enter a name");
}

TEST_F(TooltipEntriesTest, anotherTextOrPlaceIsTheSameEntry) {
  entries_.report(copy_);
  entries_.report(share_);
  copy_.text = "Copied";
  copy_.rect = copy_.rect.moved(5, 5);
  entries_.report(copy_);
  EXPECT_EQ(shown(), "Share");
  entries_.withdraw(share_.id);
  EXPECT_EQ(entries_.active(), copy_);
  entries_.withdraw(copy_.id);
  EXPECT_EQ(shown(), "");
}

TEST_F(TooltipEntriesTest, knowsWhichAreThere) {
  entries_.report(copy_);
  entries_.report(share_);
  EXPECT_TRUE(entries_.contains(copy_.id));
  EXPECT_FALSE(entries_.contains(refusal_.id));
}

TEST_F(TooltipEntriesTest, ofAllThatAreWithdrawnTheUrgentOneStays) {
  entries_.report(copy_);
  entries_.report(refusal_);
  entries_.report(share_);
  entries_.withdrawHelp();
  EXPECT_FALSE(entries_.contains(copy_.id));
  EXPECT_FALSE(entries_.contains(share_.id));
  EXPECT_EQ(shown(), "Enter a name");
}

}  // namespace
}  // namespace quenlio
