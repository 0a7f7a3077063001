// The looks at one file: when they come, how many there are, and what ends them.
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/core/detection/WatcherBench.h"

namespace quenlio {
namespace {

constexpr auto kInstant = std::chrono::nanoseconds(1);

// When the look with this attempt number comes, counted from the event.
constexpr std::chrono::nanoseconds momentOf(int attempt) {
  return (attempt + 1) * std::chrono::nanoseconds(kLook);
}

class Looks : public testing::Test, public WatcherBench {
 protected:
  void SetUp() override { startWithoutPoll(); }
  void advanceTo(std::chrono::nanoseconds moment) { time.advanceBy(moment - time.monotonic()); }
  [[nodiscard]] bool isLookedAt() const { return time.pending() > 0; }
  // The file grows just before each look up to and with this one.
  void growUpToLook(int last) {
    for (int attempt = 0; attempt <= last; ++attempt) {
      files.write(kShot, std::string(static_cast<std::size_t>(attempt) + 10, 'x'));
      advanceTo(momentOf(attempt));
    }
  }
};

TEST_F(Looks, aFileThatAppearsBeforeTheLastLookForItIsFound) {
  event(kShot, kFSEventStreamEventFlagItemCreated);
  advanceTo(momentOf(20) - kInstant);
  files.write(kShot);
  time.advanceBy(Seconds(5));
  ASSERT_EQ(foundPaths(), Paths{kShot});
  EXPECT_EQ(found.front().at, momentOf(21)) << "two looks at it are needed";
}

TEST_F(Looks, twentyOneLooksWithoutAFileAreTheLast) {
  event(kShot, kFSEventStreamEventFlagItemCreated);
  advanceTo(momentOf(20) - kInstant);
  EXPECT_TRUE(isLookedAt());
  time.advanceBy(kInstant);
  EXPECT_FALSE(isLookedAt());
  files.write(kShot);
  event(kShot, kFSEventStreamEventFlagItemModified);
  watcher->scanDirectoryForNewScreenshots();
  time.advanceBy(Seconds(5));
  EXPECT_EQ(foundPaths(), Paths{}) << "the path counts as seen";
}

TEST_F(Looks, aFileThatGoesWhileItIsLookedAtCountsAttemptsOn) {
  arrive(kShot);
  advanceTo(momentOf(0));
  files.remove(kShot);
  advanceTo(momentOf(20) - kInstant);
  EXPECT_TRUE(isLookedAt());
  time.advanceBy(kInstant);
  EXPECT_FALSE(isLookedAt());
}

TEST_F(Looks, aFileThatGoesLateEndsAtTheNextLook) {
  files.write(kShot, "");
  event(kShot, kFSEventStreamEventFlagItemCreated);
  advanceTo(momentOf(25));
  files.remove(kShot);
  EXPECT_TRUE(isLookedAt());
  advanceTo(momentOf(26));
  EXPECT_FALSE(isLookedAt());
}

TEST_F(Looks, aSizeThatBecomesReadableInTimeIsEnough) {
  arrive(kShot);
  files.setSizeUnreadable(kShot, true);
  advanceTo(momentOf(39) - kInstant);
  files.setSizeUnreadable(kShot, false);
  time.advanceBy(Seconds(5));
  ASSERT_EQ(foundPaths(), Paths{kShot});
  EXPECT_EQ(found.front().at, momentOf(40));
}

TEST_F(Looks, fortyOneLooksAtAnUnreadableSizeAreTheLast) {
  arrive(kShot);
  files.setSizeUnreadable(kShot, true);
  advanceTo(momentOf(40) - kInstant);
  EXPECT_TRUE(isLookedAt());
  time.advanceBy(kInstant);
  EXPECT_FALSE(isLookedAt());
  files.setSizeUnreadable(kShot, false);
  time.advanceBy(Seconds(5));
  EXPECT_EQ(foundPaths(), Paths{});
}

TEST_F(Looks, aFileThatStopsGrowingInTimeIsFoundAtTheSecondLookOfTheSameSize) {
  arrive(kShot);
  growUpToLook(5);
  time.advanceBy(Seconds(5));
  ASSERT_EQ(foundPaths(), Paths{kShot});
  EXPECT_EQ(found.front().at, momentOf(6));
}

TEST_F(Looks, aFileThatStopsGrowingAtTheLastButOneLookIsStillFound) {
  arrive(kShot);
  growUpToLook(39);
  time.advanceBy(Seconds(5));
  ASSERT_EQ(foundPaths(), Paths{kShot});
  EXPECT_EQ(found.front().at, momentOf(40));
}

TEST_F(Looks, aFileThatGrowsAtEveryLookIsDroppedAfterFortyOneAndNotLookedAtAgain) {
  arrive(kShot);
  growUpToLook(39);
  EXPECT_TRUE(isLookedAt());
  files.write(kShot, std::string(500, 'x'));
  advanceTo(momentOf(40));
  EXPECT_FALSE(isLookedAt());
  EXPECT_EQ(momentOf(40) - momentOf(0), Milliseconds(1200));
  event(kShot, kFSEventStreamEventFlagItemModified);
  watcher->scanDirectoryForNewScreenshots();
  time.advanceBy(Seconds(5));
  EXPECT_EQ(foundPaths(), Paths{});
}

TEST_F(Looks, anEmptyFileIsDroppedAfterFortyOne) {
  files.write(kShot, "");
  event(kShot, kFSEventStreamEventFlagItemCreated);
  advanceTo(momentOf(40) - kInstant);
  EXPECT_TRUE(isLookedAt());
  time.advanceBy(kInstant);
  EXPECT_FALSE(isLookedAt());
  files.write(kShot);
  time.advanceBy(Seconds(5));
  EXPECT_EQ(foundPaths(), Paths{});
}

TEST_F(Looks, anEmptyFileBetweenTwoLooksOfOneSizeCountsFromOneAgain) {
  files.write(kShot, "same");
  event(kShot, kFSEventStreamEventFlagItemCreated);
  advanceTo(momentOf(0));
  files.write(kShot, "");
  advanceTo(momentOf(1));
  files.write(kShot, "same");
  advanceTo(momentOf(3) - kInstant);
  EXPECT_EQ(foundPaths(), Paths{});
  time.advanceBy(kInstant);
  EXPECT_EQ(foundPaths(), Paths{kShot});
}

TEST_F(Looks, theSystemIsAskedOnlyOnceTheSizeIsAtRest) {
  arrive(kShot);
  advanceTo(momentOf(0));
  EXPECT_EQ(metadata.questions, 0);
  advanceTo(momentOf(1));
  EXPECT_EQ(metadata.questions, 1);
}

TEST_F(Looks, aRenamedCaptureThatTheSystemKnowsIsAccepted) {
  metadata.values[kHoliday] = true;
  arrive(kHoliday);
  time.advanceBy(kTwoLooks);
  EXPECT_EQ(foundPaths(), Paths{kHoliday});
}

TEST_F(Looks, theSystemsNoIsFinal) {
  metadata.values[kShot] = false;
  arrive(kShot);
  advanceTo(momentOf(1));
  EXPECT_FALSE(isLookedAt());
  EXPECT_EQ(metadata.questions, 1);
  metadata.values[kShot] = true;
  event(kShot, kFSEventStreamEventFlagItemModified);
  time.advanceBy(Seconds(5));
  EXPECT_EQ(foundPaths(), Paths{});
}

TEST_F(Looks, aFileThatNobodyKnowsIsAskedForAtEachLookAndThenDropped) {
  arrive(kHoliday);
  advanceTo(momentOf(40) - kInstant);
  EXPECT_TRUE(isLookedAt());
  time.advanceBy(kInstant);
  EXPECT_FALSE(isLookedAt());
  EXPECT_EQ(metadata.questions, 40) << "from the second look to the forty-first";
  metadata.values[kHoliday] = true;
  time.advanceBy(Seconds(5));
  EXPECT_EQ(foundPaths(), Paths{});
}

TEST_F(Looks, aSystemThatCatchesUpInTimeIsHeard) {
  arrive(kHoliday);
  advanceTo(momentOf(40) - kInstant);
  metadata.values[kHoliday] = true;
  time.advanceBy(kInstant);
  EXPECT_EQ(foundPaths(), Paths{kHoliday});
}

TEST_F(Looks, aFileThatGrowsAgainWhileNobodyKnowsItMustComeToRestAgain) {
  arrive(kHoliday);
  advanceTo(momentOf(3));
  EXPECT_EQ(metadata.questions, 3);
  files.write(kHoliday, "much more content");
  metadata.values[kHoliday] = true;
  advanceTo(momentOf(4));
  EXPECT_EQ(foundPaths(), Paths{});
  advanceTo(momentOf(5));
  EXPECT_EQ(foundPaths(), Paths{kHoliday});
}

TEST_F(Looks, eachFileHasItsOwn) {
  arrive(kShot);
  time.advanceBy(Milliseconds(10));
  arrive(kOtherShot);
  time.advanceBy(Seconds(1));
  ASSERT_EQ(foundPaths(), (Paths{kShot, kOtherShot}));
  EXPECT_EQ(found[0].at, Milliseconds(60));
  EXPECT_EQ(found[1].at, Milliseconds(70));
}

TEST_F(Looks, fiftyFilesAtOnceArriveOnceEachInTheirOrder) {
  Paths expected;
  for (int i = 10; i < 60; ++i) {
    expected.push_back(kFolder + "/Screenshot 2026-11-15 at 21.04." + std::to_string(i) + ".png");
    arrive(expected.back());
  }
  time.advanceBy(kTwoLooks);
  EXPECT_EQ(foundPaths(), expected);
}

class SourceDisplay : public Looks {
 protected:
  void SetUp() override {
    screens.list.push_back({{{1280, 0}, {1920, 1080}}, {{1280, 0}, {1920, 1080}}, 2});
    Looks::SetUp();
  }
};

TEST_F(SourceDisplay, isTheOneUnderThePointerAtTheMomentOfTheReport) {
  screens.pointer = {100, 100};
  arrive(kShot);
  time.advanceBy(kTwoLooks - kInstant);
  screens.pointer = {2000, 100};
  time.advanceBy(kInstant);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found.front().display, 2U);
}

TEST_F(SourceDisplay, isNoneWithoutAScreenOrWithoutAScreensNumber) {
  screens.list = {{{{0, 0}, {1280, 800}}, {{0, 0}, {1280, 800}}, std::nullopt}};
  arrive(kShot);
  time.advanceBy(kTwoLooks);
  screens.list.clear();
  arrive(kOtherShot);
  time.advanceBy(kTwoLooks);
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].display, std::nullopt);
  EXPECT_EQ(found[1].display, std::nullopt);
}

}  // namespace
}  // namespace quenlio
