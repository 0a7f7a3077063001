#include <array>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>

#include "desktop/linux/system/FinishedFile.h"

#include "tests/desktop/system/SampleFiles.h"
#include "tests/desktop/system/TemporaryFolder.h"

namespace quenlio {
namespace {

using std::chrono::milliseconds;

// The latest of the file's times.
Date lastTouch(const FileURL& url) {
  struct stat status {};
  check(::stat(url.path().c_str(), &status) == 0, url.path());
  const FileStamp stamp = stampOf(status);
  return std::max(stamp.modified, stamp.changed);
}

TEST(FinishedFile, aFileThatIsCompleteByItsFormatIsFinishedAtOnce) {
  const TemporaryFolder folder;
  for (const auto& [kind, bytes] : samples::all()) {
    writeFile(folder / "a", bytes);
    EXPECT_TRUE(finishedState(folder / "a", lastTouch(folder / "a")).isFinished()) << kind;
  }
}

TEST(FinishedFile, theContentsDecideAndNotTheName) {
  const TemporaryFolder folder;
  writeFile(folder / "a.jpg", samples::png());
  EXPECT_TRUE(finishedState(folder / "a.jpg", lastTouch(folder / "a.jpg")).isFinished());
  writeFile(folder / "b.png", "no picture at all");
  EXPECT_FALSE(finishedState(folder / "b.png", lastTouch(folder / "b.png")).isFinished());
}

TEST(FinishedFile, anIncompleteFileIsFinishedTwoSecondsAfterItsLastTouch) {
  const TemporaryFolder folder;
  const FileURL file = folder / "a.png";
  writeFile(file, samples::png().substr(0, 60));
  const Date touched = lastTouch(file);
  const FinishedState before = finishedState(file, touched + milliseconds(1999));
  EXPECT_FALSE(before.isFinished());
  ASSERT_TRUE(before.untilSettled);
  EXPECT_NEAR(before.untilSettled->count(), 0.001, 1e-6);
  EXPECT_TRUE(finishedState(file, touched + milliseconds(2000)).isFinished());
}

TEST(FinishedFile, theTimeUntilTheTwoSecondsAreOverIsTold) {
  const TemporaryFolder folder;
  const FileURL file = folder / "a.gif";
  writeFile(file, "GIF89a");
  const FinishedState state = finishedState(file, lastTouch(file) + milliseconds(500));
  ASSERT_TRUE(state.untilSettled);
  EXPECT_NEAR(state.untilSettled->count(), 1.5, 1e-6);
}

TEST(FinishedFile, anEmptyFileIsNeverFinished) {
  const TemporaryFolder folder;
  writeFile(folder / "a.png", "");
  const FinishedState state = finishedState(folder / "a.png", lastTouch(folder / "a.png") + std::chrono::hours(24));
  EXPECT_FALSE(state.isFinished());
  EXPECT_FALSE(state.untilSettled);
  EXPECT_TRUE(state.stamp);
}

TEST(FinishedFile, whatIsNotThereIsNotFinished) {
  const TemporaryFolder folder;
  const FinishedState state = finishedState(folder / "a.png", Date::max());
  EXPECT_FALSE(state.isFinished());
  EXPECT_FALSE(state.stamp);
}

TEST(FinishedFile, linksAreFollowed) {
  const TemporaryFolder folder;
  writeFile(folder / "a.png", samples::png());
  ASSERT_EQ(::symlink("a.png", (folder / "b.png").path().c_str()), 0);
  EXPECT_TRUE(finishedState(folder / "b.png", lastTouch(folder / "a.png")).isFinished());
}

TEST(FinishedFile, fifosSocketsDevicesAndFoldersAreNeverOpened) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo((folder / "a.png").path().c_str(), 0600), 0);
  ASSERT_EQ(::mkdir((folder / "b.png").path().c_str(), 0700), 0);
  const UniqueFd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = (folder / "c.png").path();
  ASSERT_LT(path.size(), sizeof address.sun_path);
  std::memcpy(address.sun_path, path.c_str(), path.size());
  // The interface of sockets takes every kind of address through this one type.
  ASSERT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  for (const FileURL& url : {folder / "a.png", folder / "b.png", folder / "c.png", FileURL("/dev/zero")}) {
    const FinishedState state = finishedState(url, Date::max());
    EXPECT_FALSE(state.isFinished()) << url.path();
    EXPECT_FALSE(state.stamp) << url.path();
  }
}

// Whether the file is opened meanwhile.
bool isOpenedBy(const FileURL& file, const std::function<void()>& act) {
  const UniqueFd watch(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  check(watch && ::inotify_add_watch(watch.get(), file.path().c_str(), IN_OPEN) >= 0, file.path());
  act();
  std::array<char, 4096> records{};
  return ::read(watch.get(), records.data(), records.size()) > 0;
}

// Thousands of them may lie in the folder, and the launch waits for its first listing.
TEST(FinishedFile, aFileThatHasBeenLeftAloneForLongEnoughIsNotEvenOpened) {
  const TemporaryFolder folder;
  const FileURL file = folder / "a.png";
  for (const std::string& bytes : {samples::png(), std::string("half")}) {
    writeFile(file, bytes);
    const Date touched = lastTouch(file);
    EXPECT_TRUE(isOpenedBy(file, [&] { (void)finishedState(file, touched + milliseconds(1999)); }));
    EXPECT_FALSE(isOpenedBy(file, [&] {
      const FinishedState state = finishedState(file, touched + milliseconds(2000));
      EXPECT_TRUE(state.isFinished());
      ASSERT_TRUE(state.stamp);
      EXPECT_EQ(state.stamp->size, static_cast<std::int64_t>(bytes.size()));
    }));
  }
}

TEST(UntilSettled, theLaterOfBothTimesCounts) {
  const Date now(std::chrono::hours(1000));
  EXPECT_EQ(untilSettled(now - milliseconds(500), now - milliseconds(1500), now), Seconds(1.5));
  EXPECT_EQ(untilSettled(now - milliseconds(1500), now - milliseconds(500), now), Seconds(1.5));
  EXPECT_EQ(untilSettled(now, now, now), Seconds(2));
}

TEST(UntilSettled, aModificationTimeInTheFutureIsNoTouch) {
  const Date now(std::chrono::hours(1000));
  EXPECT_EQ(untilSettled(now + std::chrono::hours(5), now - milliseconds(500), now), Seconds(1.5));
}

TEST(UntilSettled, bothTimesInTheFutureCountAsJustNow) {
  const Date now(std::chrono::hours(1000));
  EXPECT_EQ(untilSettled(now + std::chrono::hours(5), now + std::chrono::hours(5), now), kSettlingTime);
}

// A copied picture keeps the time of its original, but was touched just now.
TEST(FinishedFile, anOldModificationTimeDoesNotMakeACopyFinished) {
  const TemporaryFolder folder;
  const FileURL file = folder / "a.png";
  const UniqueFd fd(::open(file.path().c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  ASSERT_EQ(::write(fd.get(), "half", 4), 4);
  const timespec old[2]{{.tv_sec = 1000, .tv_nsec = 0}, {.tv_sec = 1000, .tv_nsec = 0}};
  ASSERT_EQ(::futimens(fd.get(), old), 0);
  EXPECT_FALSE(finishedState(file, lastTouch(file)).isFinished());
}

// One thread writes piece by piece, the other looks all the time: whatever it is told to be finished must be whole.
TEST(FinishedFile, aFileSeenWhileItIsWrittenIsFinishedOnlyWhenItIsWhole) {
  const TemporaryFolder folder;
  const FileURL file = folder / "a.png";
  const std::string bytes = samples::png({}, 2000);
  for (int round = 0; round < 20; ++round) {
    std::thread writer([&] {
      const UniqueFd fd(::open(file.path().c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
      const std::size_t piece = bytes.size() / 400 + 1;
      for (std::size_t at = 0; at < bytes.size(); at += piece) {
        const std::string part = bytes.substr(at, piece);
        check(::write(fd.get(), part.data(), part.size()) == static_cast<ssize_t>(part.size()), "write");
      }
    });
    FinishedState state;
    while (!state.isFinished()) {
      state = finishedState(file, exists(file) ? lastTouch(file) : Date{});
    }
    EXPECT_EQ(state.stamp->size, static_cast<std::int64_t>(bytes.size()));
    writer.join();
    ASSERT_EQ(::unlink(file.path().c_str()), 0);
  }
}

}  // namespace
}  // namespace quenlio
