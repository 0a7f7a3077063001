#include <gtest/gtest.h>

#include "core/island/MetaRowText.h"

namespace quenlio {
namespace {

TEST(MetaRowText, titleIsTheNameOfTheOneSelectedFile) {
  EXPECT_EQ(MetaRowText::titleText(1, "a.png"), "a.png");
}

// With nothing selected the row still speaks of the newest item, if there is one.
TEST(MetaRowText, titleIsTheGivenNameEvenWhenNoneIsCounted) {
  EXPECT_EQ(MetaRowText::titleText(0, "a.png"), "a.png");
}

TEST(MetaRowText, titleTellsThatThereIsNoScreenshot) {
  EXPECT_EQ(MetaRowText::titleText(0, std::nullopt), "No screenshot yet");
  EXPECT_EQ(MetaRowText::titleText(1, std::nullopt), "No screenshot yet");
}

TEST(MetaRowText, titleCountsSeveral) {
  EXPECT_EQ(MetaRowText::titleText(2, "a.png"), "2 selected");
  EXPECT_EQ(MetaRowText::titleText(11, std::nullopt), "11 selected");
}

TEST(MetaRowText, tooltipIsTheNameOfExactlyOneSelectedFile) {
  EXPECT_EQ(MetaRowText::filenameTooltip(1, "a.png"), "a.png");
  EXPECT_EQ(MetaRowText::filenameTooltip(0, "a.png"), "");
  EXPECT_EQ(MetaRowText::filenameTooltip(2, "a.png"), "");
  EXPECT_EQ(MetaRowText::filenameTooltip(1, std::nullopt), "");
}

}  // namespace
}  // namespace quenlio
