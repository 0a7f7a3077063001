// What decides that a file is a finished screenshot.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <string>
#include <vector>

#include "core/detection/ScreenshotFileClassifier.h"

#include "tests/fakes/FakeDesktop.h"

namespace quenlio {
namespace {

using Classifier = ScreenshotFileClassifier;

TEST(NamePattern, matchesTheDefaultNamingOfAScreenshot) {
  for (const char* stem :
       {"Screenshot 2026-11-15 at 21.04.33", "Screen Shot 2026-11-15 at 21.04.33", "screenshot 2026-11-15",
        "SCREENSHOT 2026-11-15", "sCrEeN sHoT 2026-11-15", "Screenshot 2026-11-15 at 21.04.33 copy",
        "Screenshot 2026-11-15 at 9.04.33\u202FPM", "Screenshot 2026-11-15 at x", "Screenshot 9999-99-99"}) {
    EXPECT_TRUE(Classifier::matchesFallbackNamePattern(stem)) << stem;
  }
}

TEST(NamePattern, matchesTheWholeNameOrNothing) {
  for (const char* stem :
       {"My Screenshot 2026-11-15", "Screenshot 2026-11-15 copy", "Screenshot 2026-11-15 at ",
        "Screenshot 2026-11-15 at", "Screenshot 2026-11-15 ", " Screenshot 2026-11-15", "Screenshot",
        "Screenshot2026-11-15", "Screen  Shot 2026-11-15", "Screenshot 26-11-15", "Screenshot 2026-1-15",
        "Screenshot 2026-11-155", "Screenshot_2026-11-15", "Screenshot from 2026-11-15 21-04-33",
        "Screenshot 2026/11/15", "Screen-Shot 2026-11-15", ""}) {
    EXPECT_FALSE(Classifier::matchesFallbackNamePattern(stem)) << stem;
  }
}

TEST(NamePattern, bearsTheLongestNameThatThereIs) {
  EXPECT_TRUE(Classifier::matchesFallbackNamePattern("Screenshot 2026-11-15 at " + std::string(4000, 'x')));
}

class Metadata : public testing::Test {
 protected:
  [[nodiscard]] std::optional<bool> systemSays(MetadataValue value) {
    metadata.values["/a.png"] = std::move(value);
    return Classifier::screenCaptureMetadata(metadata, FileURL("/a.png"));
  }
  [[nodiscard]] Classifier::Answer answerFor(const std::string& path) const {
    return Classifier::isScreenshot(metadata, FileURL(path));
  }

  FakeMetadata metadata;
};

TEST_F(Metadata, aBooleanIsTheAnswer) {
  EXPECT_EQ(systemSays(true), true);
  EXPECT_EQ(systemSays(false), false);
}

TEST_F(Metadata, aNumberCountsByItsTruth) {
  EXPECT_EQ(systemSays(std::int64_t{1}), true);
  EXPECT_EQ(systemSays(std::int64_t{-5}), true);
  EXPECT_EQ(systemSays(std::int64_t{0}), false);
}

TEST_F(Metadata, anyOtherTypeAndNoValueSayNothing) {
  EXPECT_EQ(systemSays(std::string("true")), std::nullopt);
  EXPECT_EQ(Classifier::screenCaptureMetadata(metadata, FileURL("/unknown.png")), std::nullopt);
}

TEST_F(Metadata, theSystemsYesHoldsForAnyName) {
  metadata.values["/Holiday.png"] = true;
  EXPECT_EQ(answerFor("/Holiday.png"), Classifier::Answer::yes);
}

TEST_F(Metadata, theSystemsNoHoldsForAnyName) {
  metadata.values["/Screenshot 2026-11-15.png"] = false;
  EXPECT_EQ(answerFor("/Screenshot 2026-11-15.png"), Classifier::Answer::no);
}

TEST_F(Metadata, withoutTheSystemsWordTheNameMaySayYes) {
  EXPECT_EQ(answerFor("/Screenshot 2026-11-15.png"), Classifier::Answer::yes);
  EXPECT_EQ(answerFor("/SCREENSHOT 2026-11-15.PNG"), Classifier::Answer::yes);
  EXPECT_EQ(answerFor("/Holiday.png"), Classifier::Answer::notYet);
  EXPECT_EQ(answerFor("/Screenshot 2026-11-15/Holiday.png"), Classifier::Answer::notYet) << "the folder's does not";
}

ScreenshotFileReadinessState observed(const std::vector<std::int64_t>& sizes) {
  ScreenshotFileReadinessState state;
  for (const std::int64_t size : sizes) {
    state.observe(size);
  }
  return state;
}

TEST(Readiness, aNewStateHasSeenNothing) {
  EXPECT_EQ(observed({}), (ScreenshotFileReadinessState{std::nullopt, 0}));
  EXPECT_FALSE(observed({}).isStable());
}

TEST(Readiness, theSamePositiveSizeCountsUp) {
  EXPECT_EQ(observed({5}), (ScreenshotFileReadinessState{5, 1}));
  EXPECT_EQ(observed({5, 5}), (ScreenshotFileReadinessState{5, 2}));
  EXPECT_EQ(observed({5, 5, 5}), (ScreenshotFileReadinessState{5, 3}));
}

TEST(Readiness, anotherSizeCountsFromOne) {
  EXPECT_EQ(observed({5, 5, 6}), (ScreenshotFileReadinessState{6, 1}));
  EXPECT_EQ(observed({6, 5}), (ScreenshotFileReadinessState{5, 1})) << "also a smaller one";
}

TEST(Readiness, anEmptyFileCountsNothingAndIsRemembered) {
  EXPECT_EQ(observed({0}), (ScreenshotFileReadinessState{0, 0}));
  EXPECT_EQ(observed({0, 0, 0}), (ScreenshotFileReadinessState{0, 0}));
  EXPECT_EQ(observed({5, 0, 5}), (ScreenshotFileReadinessState{5, 1}));
  EXPECT_EQ(observed({-1, -1}), (ScreenshotFileReadinessState{-1, 0}));
}

RC_GTEST_PROP(ReadinessProperty, isStableExactlyWhenTheLastTwoLooksSawTheSamePositiveSize, ()) {
  const auto sizes = *rc::gen::container<std::vector<std::int64_t>>(rc::gen::inRange<std::int64_t>(-1, 3));
  const std::size_t count = sizes.size();
  const bool expected = count >= 2 && sizes[count - 1] > 0 && sizes[count - 1] == sizes[count - 2];
  RC_ASSERT(observed(sizes).isStable() == expected);
}

}  // namespace
}  // namespace quenlio
