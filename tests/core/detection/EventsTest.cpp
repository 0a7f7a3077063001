// What the stream's events of single files lead to.
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "tests/core/detection/EventTest.h"

namespace quenlio {
namespace {

class Events : public EventTest {};

TEST_F(Events, aFinishedFileIsReportedOnceTwoLooksAfterItsEvent) {
  arrive(kShot);
  time.advanceBy(kTwoLooks - std::chrono::nanoseconds(1));
  EXPECT_EQ(foundPaths(), Paths{});
  time.advanceBy(std::chrono::nanoseconds(1));
  EXPECT_EQ(foundPaths(), Paths{kShot});
  EXPECT_EQ(settled(), Paths{kShot});
  EXPECT_EQ(time.pending(), 0U);
}

TEST_F(Events, eachKindOfChangeIsTakenAlike) {
  for (const FSEventFlags flags :
       {kCreated, kFSEventStreamEventFlagItemRenamed, kFSEventStreamEventFlagItemModified, FSEventFlags{0},
        FSEventFlags{0x40000}, kCreated | kFSEventStreamEventFlagItemRenamed}) {
    found.clear();
    files.write(kShot);
    event(kShot, flags);
    EXPECT_EQ(settled(), Paths{kShot}) << flags;
    files.remove(kShot);
    event(kShot, kRemoved);
  }
}

TEST_F(Events, manyEventsOfOneFileAreOneArrival) {
  files.write(kShot);
  for (int i = 0; i < 20; ++i) {
    event(kShot, kFSEventStreamEventFlagItemModified);
    time.advanceBy(Milliseconds(7));
  }
  watcher->scanDirectoryForNewScreenshots();
  EXPECT_EQ(settled(), Paths{kShot});
}

TEST_F(Events, anythingButAnImageIsRefusedOnItsExtension) {
  for (const char* name : {"/Screenshot 2026-11-15 at 21.04.33.gif", "/Screenshot 2026-11-15",
                           "/Screenshot 2026-11-15.txt", "/Screenshot 2026-11-15.png.part"}) {
    metadata.values[kFolder + name] = true;
    arrive(kFolder + name);
  }
  EXPECT_EQ(time.pending(), 0U) << "no look was begun";
  EXPECT_EQ(settled(), Paths{});
  EXPECT_EQ(metadata.questions, 0);
}

TEST_F(Events, extensionsCountInAnyCase) {
  const std::string loud = kFolder + "/SCREENSHOT 2026-11-15.PNG";
  arrive(loud);
  EXPECT_EQ(settled(), Paths{loud});
}

TEST_F(Events, aFileInASubfolderIsNotTaken) {
  tellOf(kFolder + "/sub/Screenshot 2026-11-15.png");
  EXPECT_EQ(time.pending(), 0U);
  EXPECT_EQ(settled(), Paths{});
  watcher->scanDirectoryForNewScreenshots();
  EXPECT_EQ(settled(), Paths{});
}

TEST_F(Events, aFileOutsideTheFolderIsNotTaken) {
  tellOf("/home/user/Screenshot 2026-11-15.png");
  tellOf("/home/user/Desktop2/Screenshot 2026-11-15.png");
  EXPECT_EQ(settled(), Paths{});
}

TEST_F(Events, aPathMaySpellTheFolderInAnotherWay) {
  const std::string spelled = kFolder + "/../Desktop/Screenshot 2026-11-15.png";
  files.write(kFolder + "/Screenshot 2026-11-15.png");
  deliver({1, EventPaths{spelled}, EventFlags{kCreated}});
  EXPECT_EQ(settled(), Paths{spelled}) << "and is handed on as it came";
}

TEST_F(Events, aTrailingSlashMakesNoOtherPath) {
  files.write(kShot);
  event(kShot, kCreated);
  event(kShot + "/", kCreated);
  EXPECT_EQ(settled(), Paths{kShot});
  event(kShot + "/", kRemoved);
  event(kShot, kCreated);
  EXPECT_EQ(settled(), (Paths{kShot, kShot}));
}

TEST_F(Events, aFileThatIsNotUTF8ByNameArrivesWithItsBytes) {
  const std::string path = kFolder + "/\xFF\xFE.png";
  metadata.values[path] = true;
  arrive(path);
  EXPECT_EQ(settled(), Paths{path});
}

TEST_F(Events, aFileCreatedLongBeforeTheWatchIsNeverShownAndStaysKnown) {
  files.write(kShot);
  files.setCreationDate(kShot, time.now() - std::chrono::seconds(5));
  event(kShot, kFSEventStreamEventFlagItemRenamed);
  files.setCreationDate(kShot, time.now());
  event(kShot, kFSEventStreamEventFlagItemModified);
  watcher->scanDirectoryForNewScreenshots();
  EXPECT_EQ(settled(), Paths{});
}

TEST_F(Events, fourSecondsBeforeTheWatchIsRecentAndAMomentMoreIsNot) {
  const Date startup = time.now();
  const std::vector<std::pair<Date, bool>> cases{
      {startup - std::chrono::seconds(3), true},
      {startup - std::chrono::seconds(4), true},
      {startup - std::chrono::seconds(4) - std::chrono::nanoseconds(1), false},
      {startup - std::chrono::seconds(5), false},
      {startup + std::chrono::hours(1), true}};
  time.advanceBy(Seconds(60));
  for (const auto& [created, isRecent] : cases) {
    found.clear();
    files.write(kShot);
    files.setCreationDate(kShot, created);
    event(kShot, kCreated);
    EXPECT_EQ(settled(), isRecent ? Paths{kShot} : Paths{});
    files.remove(kShot);
    event(kShot, kRemoved);
  }
}

TEST_F(Events, aFileWithoutACreationDateCountsAsRecent) {
  files.write(kShot);
  files.setCreationDate(kShot, std::nullopt);
  event(kShot, kCreated);
  EXPECT_EQ(settled(), Paths{kShot});
}

TEST_F(Events, aFileWhoseDateCannotBeReadCountsAsRecent) {
  files.write(kShot);
  files.setCreationDate(kShot, kDistantPast);
  files.setUnreadable(kShot, true);
  event(kShot, kCreated);
  files.setUnreadable(kShot, false);
  EXPECT_EQ(settled(), Paths{kShot});
}

TEST_F(Events, aRemovalMakesANewFileAtThePathNewAgain) {
  arrive(kShot);
  EXPECT_EQ(settled(), Paths{kShot});
  files.remove(kShot);
  event(kShot, kRemoved);
  arrive(kShot);
  EXPECT_EQ(settled(), (Paths{kShot, kShot}));
}

TEST_F(Events, aMoveAwayIsNoRemovalSoAFileThatComesBackIsNotReported) {
  arrive(kShot);
  EXPECT_EQ(settled(), Paths{kShot});
  files.remove(kShot);
  event(kShot, kFSEventStreamEventFlagItemRenamed);
  arrive(kShot);
  watcher->scanDirectoryForNewScreenshots();
  EXPECT_EQ(settled(), Paths{kShot});
}

TEST_F(Events, aRemovalWinsOverTheOtherFlagsOfItsEvent) {
  arrive(kShot);
  EXPECT_EQ(settled(), Paths{kShot});
  event(kShot, kRemoved | kCreated | kFSEventStreamEventFlagItemModified);
  EXPECT_EQ(settled(), Paths{kShot}) << "it is no arrival itself";
  watcher->scanDirectoryForNewScreenshots();
  EXPECT_EQ(settled(), (Paths{kShot, kShot})) << "and the path is forgotten";
}

TEST_F(Events, aFileThatIsRemovedAndMadeAgainWhileItIsLookedAtArrivesOnce) {
  arrive(kShot);
  time.advanceBy(Milliseconds(20));
  files.remove(kShot);
  event(kShot, kRemoved);
  time.advanceBy(Milliseconds(20));
  arrive(kShot);
  EXPECT_EQ(settled(), Paths{kShot});
  EXPECT_EQ(found.front().at, Milliseconds(40) + kTwoLooks) << "with two looks of its own";
}

TEST_F(Events, aFileThatIsBeingWrittenWhereOneWasRemovedIsNotTakenHalfWritten) {
  arrive(kShot);
  files.remove(kShot);
  event(kShot, kRemoved);
  files.write(kShot, "half");
  files.setUnfinished(kShot, true);
  EXPECT_EQ(settled(), Paths{}) << "the stream has not reported it";
  files.setUnfinished(kShot, false);
  event(kShot, kCreated);
  EXPECT_EQ(settled(), Paths{kShot});
}

TEST_F(Events, aRenamedFilesNewPathIsNew) {
  arrive(kShot);
  EXPECT_EQ(settled(), Paths{kShot});
  (void)files.moveItemAtURL(FileURL(kShot), FileURL(kOtherShot));
  event(kShot, kFSEventStreamEventFlagItemRenamed);
  event(kOtherShot, kFSEventStreamEventFlagItemRenamed);
  EXPECT_EQ(settled(), (Paths{kShot, kOtherShot}));
}

}  // namespace
}  // namespace quenlio
