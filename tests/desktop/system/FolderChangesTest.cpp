#include <cstring>
#include <gtest/gtest.h>
#include <sys/inotify.h>

#include "desktop/linux/system/FolderChanges.h"

namespace quenlio {
namespace {

using std::chrono::milliseconds;
using Moment = FolderChanges::Moment;
using Report = std::pair<std::string, FSEventFlags>;

constexpr FSEventFlags kCreated = kFSEventStreamEventFlagItemCreated;
constexpr FSEventFlags kModified = kFSEventStreamEventFlagItemModified;
constexpr FSEventFlags kRenamed = kFSEventStreamEventFlagItemRenamed;
constexpr FSEventFlags kRemoved = kFSEventStreamEventFlagItemRemoved;

class FolderChangesTest : public testing::Test {
 protected:
  void put(const std::string& name, bool isFinished, std::uint64_t version,
           std::optional<Seconds> untilSettled = Seconds(2)) {
    FinishedState state;
    state.completeness = isFinished ? Completeness::complete : Completeness::notYet;
    state.stamp = FileStamp{.device = 1, .inode = version, .size = 1};
    state.untilSettled = isFinished ? std::nullopt : untilSettled;
    files[name] = state;
  }
  void event(const std::string& name, std::uint32_t mask) {
    changes.note({.watch = 1, .mask = mask, .name = name}, now);
  }
  std::vector<Report> reports() {
    const FSEventBatch batch = changes.collect(now);
    std::vector<Report> result;
    for (std::size_t i = 0; i < static_cast<std::size_t>(batch.numEvents); ++i) {
      result.emplace_back(*(*batch.paths)[i], (*batch.flags)[i]);
    }
    return result;
  }

  std::map<std::string, FinishedState> files;
  int looks = 0;
  Moment now{milliseconds(1000)};
  FolderChanges changes{FileURL("/f"),
                        {.latency = Seconds(0.02), .flags = kFSEventStreamCreateFlagNoDefer},
                        [&files = files, &looks = looks](const std::string& name) {
                          ++looks;
                          return files.contains(name) ? files[name] : FinishedState{};
                        }};
};

using Reports = std::vector<Report>;

TEST_F(FolderChangesTest, theFirstChangeIsLookedAtAtOnce) {
  put("a.png", true, 1);
  event("a.png", IN_CREATE);
  EXPECT_EQ(changes.nextLook(), now);
  EXPECT_EQ(reports(), Reports({{"/f/a.png", kCreated}}));
}

TEST_F(FolderChangesTest, changesWithinTheLatencyComeTogether) {
  put("a.png", false, 1);
  event("a.png", IN_CREATE);
  EXPECT_EQ(reports(), Reports{});
  put("b.png", true, 2);
  now += milliseconds(5);
  event("a.png", IN_MODIFY);
  event("b.png", IN_CREATE);
  EXPECT_EQ(reports(), Reports{});
  EXPECT_EQ(changes.nextLook(), Moment(milliseconds(1020)));
  now = milliseconds(1020);
  put("a.png", true, 1);
  EXPECT_EQ(reports(), Reports({{"/f/a.png", kCreated | kModified}, {"/f/b.png", kCreated}}));
}

TEST_F(FolderChangesTest, aStreamThatDefersLooksOnlyAfterTheLatency) {
  FolderChanges deferred(FileURL("/f"), {.latency = Seconds(0.02), .flags = 0}, [&looks = looks](const std::string&) {
    ++looks;
    return FinishedState{};
  });
  deferred.note({.watch = 1, .mask = IN_CREATE, .name = "a.png"}, now);
  EXPECT_EQ(deferred.collect(now).numEvents, 0);
  EXPECT_EQ(looks, 0);
  EXPECT_EQ(deferred.nextLook(), now + milliseconds(20));
}

TEST_F(FolderChangesTest, aClosedFileAndOneMovedInAreLookedAtAtOnceEvenWithinTheLatency) {
  put("a.png", false, 1);
  event("a.png", IN_CREATE);
  (void)reports();
  now += milliseconds(1);
  put("a.png", true, 1);
  event("a.png", IN_CLOSE_WRITE);
  EXPECT_EQ(reports(), Reports({{"/f/a.png", kCreated | kModified}}));
  put("b.png", true, 2);
  event("b.png", IN_MOVED_TO);
  EXPECT_EQ(reports(), Reports({{"/f/b.png", kRenamed}}));
}

TEST_F(FolderChangesTest, fourHundredWritesCostALookEachLatencyAndOneReport) {
  put("a.png", false, 1);
  event("a.png", IN_CREATE);
  Reports all = reports();
  for (int i = 0; i < 400; ++i) {
    now += milliseconds(1);
    event("a.png", IN_MODIFY);
    for (const Report& report : reports()) {
      all.push_back(report);
    }
  }
  EXPECT_EQ(all, Reports{});
  EXPECT_LE(looks, 22);
  EXPECT_GE(looks, 19);
  put("a.png", true, 1);
  event("a.png", IN_CLOSE_WRITE);
  EXPECT_EQ(reports(), Reports({{"/f/a.png", kCreated | kModified}}));
}

TEST_F(FolderChangesTest, anUnfinishedFileIsLookedAtAgainWhenItsTwoSecondsAreOver) {
  put("a.png", false, 1, Seconds(1.5));
  event("a.png", IN_CREATE);
  EXPECT_EQ(reports(), Reports{});
  const auto next = changes.nextLook();
  ASSERT_TRUE(next);
  EXPECT_GE(*next, now + milliseconds(1500));
  EXPECT_LE(*next, now + milliseconds(1510));
  now = *next;
  put("a.png", true, 1);
  EXPECT_EQ(reports(), Reports({{"/f/a.png", kCreated}}));
  EXPECT_FALSE(changes.nextLook());
}

TEST_F(FolderChangesTest, anEmptyFileWaitsForAChangeAndWakesNobody) {
  put("a.png", false, 1, std::nullopt);
  event("a.png", IN_CREATE);
  event("a.png", IN_CLOSE_WRITE);
  EXPECT_EQ(reports(), Reports{});
  EXPECT_FALSE(changes.nextLook());
  now += std::chrono::hours(1);
  put("a.png", true, 1);
  event("a.png", IN_MODIFY);
  EXPECT_EQ(reports(), Reports({{"/f/a.png", kCreated | kModified}}));
}

TEST_F(FolderChangesTest, aReportedFileIsReportedAgainOnlyWhenItChanged) {
  put("a.png", true, 1);
  event("a.png", IN_MODIFY);
  EXPECT_EQ(reports().size(), 1U);
  event("a.png", IN_CLOSE_WRITE);
  EXPECT_EQ(reports(), Reports{});
  files["a.png"].stamp->changed = Date(milliseconds(5));  // a new mode
  event("a.png", IN_CLOSE_WRITE);
  EXPECT_EQ(reports(), Reports{});
  files["a.png"].stamp->modified = Date(milliseconds(5));
  event("a.png", IN_CLOSE_WRITE);
  EXPECT_EQ(reports(), Reports({{"/f/a.png", kModified}}));
}

TEST_F(FolderChangesTest, aRemovalIsReportedAtOnceAndForgetsTheFile) {
  put("a.png", true, 1);
  event("a.png", IN_CREATE);
  EXPECT_EQ(reports().size(), 1U);
  files.clear();
  event("a.png", IN_DELETE);
  EXPECT_EQ(reports(), Reports({{"/f/a.png", kRemoved}}));
  put("a.png", true, 1);
  now += milliseconds(50);
  event("a.png", IN_CREATE);
  EXPECT_EQ(reports(), Reports({{"/f/a.png", kCreated}}));
}

TEST_F(FolderChangesTest, aRemovalEndsTheWaiting) {
  put("a.png", false, 1);
  event("a.png", IN_CREATE);
  (void)reports();
  files.clear();
  event("a.png", IN_DELETE);
  EXPECT_EQ(reports(), Reports({{"/f/a.png", kRemoved}}));
  EXPECT_FALSE(changes.nextLook());
}

TEST_F(FolderChangesTest, aFileMadeRemovedAndMadeAgainIsRemovedFirstAndReportedOnce) {
  put("a.png", true, 2);
  event("a.png", IN_CREATE);
  event("a.png", IN_DELETE);
  event("a.png", IN_CREATE);
  EXPECT_EQ(reports(), Reports({{"/f/a.png", kRemoved}, {"/f/a.png", kCreated}}));
}

// The look was ahead of the records: it saw the second file already.
TEST_F(FolderChangesTest, aRemovalOfAFileBeforeTheReportedOneIsNotTold) {
  put("a.png", true, 2);
  event("a.png", IN_CREATE);  // of the first file
  EXPECT_EQ(reports(), Reports({{"/f/a.png", kCreated}}));
  event("a.png", IN_DELETE);  // of the first file
  event("a.png", IN_CREATE);  // of the second
  event("a.png", IN_CLOSE_WRITE);
  EXPECT_EQ(reports(), Reports{});
}

TEST_F(FolderChangesTest, aMoveAwayIsARenameAndNoRemoval) {
  put("a.png", true, 1);
  event("a.png", IN_CREATE);
  (void)reports();
  event("a.png", IN_MOVED_FROM);
  EXPECT_EQ(reports(), Reports({{"/f/a.png", kRenamed}}));
  event("b.png", IN_MOVED_FROM);  // there from before
  EXPECT_EQ(reports(), Reports({{"/f/b.png", kRenamed}}));
}

TEST_F(FolderChangesTest, aFileThatIsMovedAwayUnfinishedIsNeverSpokenOf) {
  put("a.png", false, 1);
  event("a.png", IN_CREATE);
  EXPECT_EQ(reports(), Reports{});
  files.clear();
  event("a.png", IN_MOVED_FROM);
  put("b.png", true, 1);
  event("b.png", IN_MOVED_TO);
  EXPECT_EQ(reports(), Reports({{"/f/b.png", kRenamed}}));
}

TEST_F(FolderChangesTest, hiddenNamesAndFoldersAreNotSpokenOf) {
  put(".a.png", true, 1);
  put("b.png", true, 1);
  event(".a.png", IN_CREATE);
  event(".a.png", IN_DELETE);
  event("b.png", IN_CREATE | IN_ISDIR);
  event("b.png", IN_DELETE | IN_ISDIR);
  event("", IN_MODIFY);
  EXPECT_EQ(reports(), Reports{});
  EXPECT_EQ(looks, 0);
}

TEST_F(FolderChangesTest, whatIsGoneAtTheLookIsForgotten) {
  event("a.png", IN_CREATE);
  EXPECT_EQ(reports(), Reports{});
  EXPECT_FALSE(changes.nextLook());
}

TEST_F(FolderChangesTest, lostRecordsAskForAListingOfTheFolder) {
  changes.noteLost();
  EXPECT_EQ(reports(), Reports({{"/f", kFSEventStreamEventFlagMustScanSubDirs}}));
  EXPECT_EQ(reports(), Reports{});
}

TEST_F(FolderChangesTest, aFileFoundUnfinishedIsWaitedForAndAFinishedOneLeftAlone) {
  put("a.png", false, 1);
  put("b.png", true, 2);
  changes.noteFound("a.png", now);
  changes.noteFound("b.png", now);
  changes.noteFound(".c.png", now);
  EXPECT_EQ(reports(), Reports{});
  const auto next = changes.nextLook();
  ASSERT_TRUE(next);
  EXPECT_GE(*next, now + milliseconds(2000));
  now = *next;
  put("a.png", true, 1);
  EXPECT_EQ(reports(), Reports({{"/f/a.png", kModified}}));
}

std::string record(int watch, std::uint32_t mask, const std::string& name, std::uint32_t room) {
  inotify_event head{};
  head.wd = watch;
  head.mask = mask;
  head.len = room;
  std::string bytes(sizeof head, '\0');
  std::memcpy(bytes.data(), &head, sizeof head);
  std::string padded = name;
  padded.resize(room, '\0');
  return bytes + padded;
}

TEST(InotifyEvents, eachRecordIsTakenWithItsNameWithoutTheFilling) {
  const auto events =
      parseInotifyEvents(record(3, IN_CREATE, "a\n\xFF.png", 16) + record(-1, IN_Q_OVERFLOW, "", 0) +
                         record(4, IN_DELETE_SELF, "", 0) + record(3, IN_MODIFY, std::string(255, 'x'), 256));
  ASSERT_EQ(events.size(), 4U);
  EXPECT_EQ(events[0].watch, 3);
  EXPECT_EQ(events[0].mask, static_cast<std::uint32_t>(IN_CREATE));
  EXPECT_EQ(events[0].name, "a\n\xFF.png");
  EXPECT_EQ(events[1].watch, -1);
  EXPECT_EQ(events[1].mask, static_cast<std::uint32_t>(IN_Q_OVERFLOW));
  EXPECT_EQ(events[2].name, "");
  EXPECT_EQ(events[3].name, std::string(255, 'x'));
}

TEST(InotifyEvents, aRecordThatIsCutOffIsLeftOut) {
  const std::string whole = record(3, IN_CREATE, "a", 16) + record(3, IN_MODIFY, "b", 16);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_EQ(parseInotifyEvents(std::string_view(whole).substr(0, length)).size(),
              length < whole.size() / 2 ? 0U : 1U);
  }
  EXPECT_EQ(parseInotifyEvents(whole).size(), 2U);
}

}  // namespace
}  // namespace quenlio
