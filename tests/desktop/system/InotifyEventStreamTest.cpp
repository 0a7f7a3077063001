#include "tests/desktop/system/InotifyEventStreamTest.h"

#include <thread>

namespace quenlio {
namespace {

TEST_F(InotifyEventStreamTest, aFinishedFileIsReportedOnceAndWhole) {
  start(folder.url());
  for (const auto& [kind, bytes] : samples::all()) {
    writeFile(folder / kind, bytes);
    ASSERT_TRUE(reports->waitFor(folder / kind, kFSEventStreamEventFlagItemCreated)) << kind;
  }
  settle();
  for (const auto& [kind, bytes] : samples::all()) {
    const auto told = reports->of(folder / kind);
    ASSERT_EQ(told.size(), 1U) << kind;
    EXPECT_EQ(told[0].size, static_cast<std::int64_t>(bytes.size())) << kind;
  }
}

TEST_F(InotifyEventStreamTest, aFileOfFourHundredWritesIsReportedOnlyWhenItIsWhole) {
  start(folder.url());
  const std::string bytes = samples::png({}, 4000);
  const UniqueFd fd(::open((folder / "a.png").path().c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  const std::size_t piece = bytes.size() / 400;
  for (std::size_t at = 0; at < bytes.size(); at += piece) {
    const std::string part = bytes.substr(at, piece);
    ASSERT_EQ(::write(fd.get(), part.data(), part.size()), static_cast<ssize_t>(part.size()));
    if (at % 20 == 0) {
      settle();
      ASSERT_TRUE(at + piece >= bytes.size() || reports->of(folder / "a.png").empty());
    }
  }
  // The writer keeps its file open.
  ASSERT_TRUE(reports->waitFor(folder / "a.png"));
  settle();
  EXPECT_EQ(reports->of(folder / "a.png").size(), 1U);
  EXPECT_EQ(reports->of(folder / "a.png")[0].size, static_cast<std::int64_t>(bytes.size()));
}

TEST_F(InotifyEventStreamTest, aFileThatIsClosedEmptyFirstIsReportedWhenItIsWritten) {
  start(folder.url());
  writeFile(folder / "a.png", "");
  settle();
  EXPECT_TRUE(reports->of(folder / "a.png").empty());
  writeFile(folder / "a.png", samples::png());
  ASSERT_TRUE(reports->waitFor(folder / "a.png"));
  settle();
  EXPECT_EQ(reports->of(folder / "a.png").size(), 1U);
  EXPECT_GT(reports->of(folder / "a.png")[0].size, 0);
}

TEST_F(InotifyEventStreamTest, aFileThatIsNeverCompleteIsReportedAfterTwoSecondsWithoutATouch) {
  start(folder.url());
  const Date begun = clock.now();
  writeFile(folder / "a.gif", "GIF89a");
  settle();
  EXPECT_TRUE(reports->of(folder / "a.gif").empty());
  ASSERT_TRUE(reports->waitFor(folder / "a.gif"));
  EXPECT_GE(clock.now() - begun, std::chrono::milliseconds(1990));
  EXPECT_EQ(reports->of(folder / "a.gif").size(), 1U);
}

TEST_F(InotifyEventStreamTest, aFileThatWasBegunBeforeTheStartIsWaitedFor) {
  writeFile(folder / "a.gif", "GIF89a");
  writeFile(folder / "b.png", samples::png());
  start(folder.url());
  ASSERT_TRUE(reports->waitFor(folder / "a.gif"));
  EXPECT_TRUE(reports->of(folder / "b.png").empty());
}

TEST_F(InotifyEventStreamTest, aTemporaryFileRenamedIntoPlaceIsReportedUnderItsLastNameOnly) {
  start(folder.url());
  for (const std::string temporary : {".a.png.part", ".a.png"}) {
    writeFile(folder / temporary, samples::png());
    ASSERT_EQ(::rename((folder / temporary).path().c_str(), (folder / "a.png").path().c_str()), 0);
    ASSERT_TRUE(reports->waitFor(folder / "a.png", kFSEventStreamEventFlagItemRenamed));
    EXPECT_TRUE(reports->of(folder / temporary).empty());
  }
}

TEST_F(InotifyEventStreamTest, filesMovedInAndLinkedInAreReported) {
  start(folder.url());
  writeFile(elsewhere / "a.png", samples::png());
  ASSERT_EQ(::rename((elsewhere / "a.png").path().c_str(), (folder / "a.png").path().c_str()), 0);
  EXPECT_TRUE(reports->waitFor(folder / "a.png", kFSEventStreamEventFlagItemRenamed));
  writeFile(elsewhere / "b.png", samples::png());
  ASSERT_EQ(::link((elsewhere / "b.png").path().c_str(), (folder / "b.png").path().c_str()), 0);
  EXPECT_TRUE(reports->waitFor(folder / "b.png", kFSEventStreamEventFlagItemCreated));
}

TEST_F(InotifyEventStreamTest, aMoveAwayIsARenameAndADeletionARemoval) {
  start(folder.url());
  writeFile(folder / "a.png", samples::png());
  writeFile(folder / "b.png", samples::png());
  ASSERT_TRUE(reports->waitFor(folder / "a.png") && reports->waitFor(folder / "b.png"));
  ASSERT_EQ(::rename((folder / "a.png").path().c_str(), (elsewhere / "a.png").path().c_str()), 0);
  EXPECT_TRUE(reports->waitFor(folder / "a.png", kFSEventStreamEventFlagItemRenamed));
  ASSERT_EQ(::unlink((folder / "b.png").path().c_str()), 0);
  EXPECT_TRUE(reports->waitFor(folder / "b.png", kFSEventStreamEventFlagItemRemoved));
  for (const Report& report : reports->of(folder / "a.png")) {
    EXPECT_EQ(report.flags & kFSEventStreamEventFlagItemRemoved, 0U);
  }
  // What comes back under the name of a removed file is new.
  const std::size_t before = reports->count();
  writeFile(folder / "b.png", samples::png());
  EXPECT_TRUE(reports->waitFor(folder / "b.png", kFSEventStreamEventFlagItemCreated, before));
}

TEST_F(InotifyEventStreamTest, linksFoldersAndFilesInSubfoldersAreNotReported) {
  std::filesystem::create_directory((folder / "sub.png").path());
  start(folder.url());
  std::filesystem::create_directory((folder / "sub2.png").path());
  writeFile(folder / "sub.png/a.png", samples::png());
  writeFile(elsewhere / "a.png", samples::png());
  ASSERT_EQ(::symlink((elsewhere / "a.png").path().c_str(), (folder / "link.png").path().c_str()), 0);
  ASSERT_EQ(::mkfifo((folder / "fifo.png").path().c_str(), 0600), 0);
  settle();
  for (const std::string name : {"sub.png", "sub2.png", "sub.png/a.png", "link.png", "fifo.png"}) {
    EXPECT_TRUE(reports->of(folder / name).empty()) << name;
  }
}

TEST_F(InotifyEventStreamTest, fiftyFilesAtOnceAreReportedOnceEach) {
  start(folder.url());
  std::vector<std::thread> writers;
  for (int writer = 0; writer < 5; ++writer) {
    writers.emplace_back([&, writer] {
      for (int i = 0; i < 10; ++i) {
        writeFile(folder / (std::to_string(writer * 10 + i) + ".png"), samples::png({}, 500));
      }
    });
  }
  for (std::thread& writer : writers) {
    writer.join();
  }
  const auto whole = static_cast<std::int64_t>(samples::png({}, 500).size());
  for (int i = 0; i < 50; ++i) {
    ASSERT_TRUE(reports->waitFor(folder / (std::to_string(i) + ".png")));
  }
  settle();
  for (int i = 0; i < 50; ++i) {
    const auto told = reports->of(folder / (std::to_string(i) + ".png"));
    EXPECT_EQ(told.size(), 1U) << i;
    EXPECT_EQ(told[0].size, whole) << i;
  }
}

TEST_F(InotifyEventStreamTest, namesOfAnyBytesAreReportedByteForByte) {
  start(folder.url());
  for (const std::string& name :
       {std::string(251, 'x') + ".png", std::string("\xFF\xFE.png"), std::string("a\nb.png")}) {
    writeFile(folder / name, samples::png());
    EXPECT_TRUE(reports->waitFor(folder / name));
  }
}

}  // namespace
}  // namespace quenlio
