// What the listings of the folder lead to, and the stream's events by the batch.
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/core/detection/EventTest.h"

namespace quenlio {
namespace {

constexpr FSEventFlags kMustScan = kFSEventStreamEventFlagMustScanSubDirs;

class Scans : public EventTest {};

TEST_F(Scans, aScanTakesEveryNewImageInTheOrderOfTheListing) {
  files.write(kOtherShot);
  files.write(kFolder + "/note.txt");
  files.write(kShot);
  watcher->scanDirectoryForNewScreenshots();
  EXPECT_EQ(settled(), (Paths{kOtherShot, kShot}));
}

TEST_F(Scans, aScanLeavesOutHiddenFilesFoldersAndFilesWithoutValues) {
  const std::string hidden = kFolder + "/.Screenshot 2026-11-15.png";
  metadata.values[hidden] = true;
  files.write(hidden);
  files.write(kFolder + "/Screenshot 2026-11-16.png/file.txt");
  files.write(kShot);
  files.setUnfinished(kShot, true);
  watcher->scanDirectoryForNewScreenshots();
  time.runReady();
  EXPECT_EQ(time.pending(), 0U);
  files.setUnfinished(kShot, false);
  watcher->scanDirectoryForNewScreenshots();
  EXPECT_EQ(settled(), Paths{kShot}) << "a file that gets its values later is new then";
}

TEST_F(Scans, aFolderThatCannotBeListedHoldsNothingAndIsNotLogged) {
  files.write(kShot);
  files.setUnlistable(kFolder, true);
  watcher->scanDirectoryForNewScreenshots();
  EXPECT_EQ(settled(), Paths{});
  EXPECT_EQ(systemLog.lines, std::vector<std::string>{});
  files.setUnlistable(kFolder, false);
  watcher->scanDirectoryForNewScreenshots();
  EXPECT_EQ(settled(), Paths{kShot});
}

TEST_F(Scans, aFileThatComesWhileTheFolderIsListedForTheWatchIsEitherKnownOrNew) {
  int listings = 0;
  files.duringListing = [&](const FileURL&, HiddenFiles) {
    if (++listings == 1) {
      files.write(kShot);
    }
  };
  watcher->restartWatcher(true);
  EXPECT_EQ(listings, 1);
  EXPECT_EQ(settled(), Paths{}) << "in the listing: known";
  files.write(kOtherShot);  // after the listing, and the stream says nothing of it
  watcher->startPollingForLocationChanges();
  time.advanceBy(Seconds(5) + kTwoLooks);
  EXPECT_EQ(foundPaths(), Paths{kOtherShot}) << "after it: caught by the next poll";
}

class Batches : public EventTest {};

TEST_F(Batches, aBatchOfNoEventsIsNothing) {
  files.write(kShot);
  deliver({0, EventPaths{kShot}, EventFlags{kCreated}});
  deliver({0, std::nullopt, std::nullopt});
  deliver({-1, std::nullopt, std::nullopt});
  EXPECT_EQ(settled(), Paths{});
}

TEST_F(Batches, aBatchWithoutPathsIsAScan) {
  files.write(kShot);
  deliver({1, std::nullopt, EventFlags{kRemoved}});
  EXPECT_EQ(settled(), Paths{kShot});
}

TEST_F(Batches, aBatchWithTooFewPathsIsAScan) {
  files.write(kShot);
  files.write(kOtherShot);
  deliver({3, EventPaths{kShot}, EventFlags{kCreated}});
  EXPECT_EQ(settled(), (Paths{kShot, kOtherShot}));
}

TEST_F(Batches, aBatchWithTooFewPathsIsNothingButAScan) {
  arrive(kShot);
  EXPECT_EQ(settled(), Paths{kShot});
  files.write(kOtherShot);
  deliver({2, EventPaths{kShot}, EventFlags{kRemoved}});
  EXPECT_EQ(settled(), (Paths{kShot, kOtherShot}));
  watcher->scanDirectoryForNewScreenshots();
  EXPECT_EQ(settled(), (Paths{kShot, kOtherShot})) << "the removal in it was not read";
}

TEST_F(Batches, aBatchCountsOnlyAsFarAsItSays) {
  files.write(kShot);
  files.write(kOtherShot);
  deliver({1, EventPaths{kShot, kOtherShot}, EventFlags{kCreated, kCreated}});
  EXPECT_EQ(settled(), Paths{kShot});
}

TEST_F(Batches, aPathThatIsNoTextIsSkippedAndTheNextIsTaken) {
  files.write(kShot);
  deliver({2, EventPaths{std::nullopt, kShot}, EventFlags{kMustScan, kCreated}});
  EXPECT_EQ(settled(), Paths{kShot});
}

TEST_F(Batches, aSkippedPathsFlagsAreNotRead) {
  files.write(kOtherShot);
  deliver({1, EventPaths{std::nullopt}, EventFlags{kMustScan}});
  EXPECT_EQ(settled(), Paths{});
}

TEST_F(Batches, withoutFlagsEveryPathIsACandidate) {
  files.write(kShot);
  files.write(kOtherShot);
  deliver({2, EventPaths{kOtherShot, kShot}, std::nullopt});
  EXPECT_EQ(settled(), (Paths{kOtherShot, kShot}));
}

TEST_F(Batches, theMustScanFlagScansTheWholeFolderAndTheBatchGoesOn) {
  arrive(kOtherShot);
  EXPECT_EQ(settled(), Paths{kOtherShot});
  files.write(kShot);
  files.remove(kOtherShot);
  deliver({2, EventPaths{kFolder, kOtherShot}, EventFlags{kMustScan, kRemoved}});
  EXPECT_EQ(settled(), (Paths{kOtherShot, kShot}));
  arrive(kOtherShot);
  EXPECT_EQ(settled(), (Paths{kOtherShot, kShot, kOtherShot})) << "the removal behind it was read";
}

TEST_F(Batches, theMustScanFlagIsLookedAtBeforeTheRemoval) {
  arrive(kShot);
  EXPECT_EQ(settled(), Paths{kShot});
  event(kShot, kMustScan | kRemoved);
  watcher->scanDirectoryForNewScreenshots();
  EXPECT_EQ(settled(), Paths{kShot}) << "the path is still known";
}

}  // namespace
}  // namespace quenlio
