// A file that this program brings back from the trash appears in a watched folder, and is no new screenshot.
#include <map>
#include <sys/stat.h>

#include "desktop/linux/system/ScreenshotMetadata.h"

#include "tests/desktop/system/InotifyEventStreamTest.h"
#include "tests/desktop/system/TrashTest.h"

namespace quenlio {
namespace {

// What the metadata said of each file at the moment when it was reported.
class Answers {
 public:
  explicit Answers(const OwnFiles& own) : metadata_(own) {}

  void take(const FSEventBatch& batch) {
    const std::lock_guard lock(mutex_);
    for (const auto& path : *batch.paths) {
      const FileURL url(*path);
      struct stat status {};
      if (::stat(path->c_str(), &status) == 0 && S_ISREG(status.st_mode)) {
        const auto answer = metadata_.MDItemCopyAttribute(url, kMDItemIsScreenCapture);
        answers_[url].push_back(answer == MetadataValue(true) ? "yes" : answer == MetadataValue(false) ? "no" : "?");
      }
    }
    changed_.notify_all();
  }
  // All answers of that file once there is one; none when the deadline passes first.
  [[nodiscard]] std::vector<std::string> of(const FileURL& url) {
    std::unique_lock lock(mutex_);
    (void)changed_.wait_for(lock, kDeadline, [&] { return answers_.contains(url); });
    return answers_[url];
  }

 private:
  ScreenshotMetadata metadata_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::map<FileURL, std::vector<std::string>> answers_;
};

class RestoredFileTest : public testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::create_directory(captures.path());
    stream = streams.FSEventStreamCreate([shared = answers](const FSEventBatch& batch) { shared->take(batch); },
                                         captures, {.latency = Seconds(0.02), .flags = 19});
    stream->FSEventStreamSetDispatchQueue(queue);
    ASSERT_TRUE(stream->FSEventStreamStart());
  }
  // A capture by its name, that has been reported as one.
  FileURL capture(const std::string& name) {
    writeFile(captures / name, samples::png());
    EXPECT_EQ(answers->of(captures / name).front(), "yes") << name;
    return captures / name;
  }

  TemporaryFolder folder;
  FileURL captures = folder / "captures";
  TrashUser user{folder / "home"};
  LinuxClock clock;
  InotifyEventStreams streams{clock};
  std::shared_ptr<Answers> answers = std::make_shared<Answers>(user.own);
  ThreadQueue queue{"events"};
  std::unique_ptr<FSEventStream> stream;
};

constexpr const char* kName = "Screenshot_20261115_210433.png";
constexpr const char* kOtherName = "Screenshot_20261115_210433 (Restored 1).png";

TEST_F(RestoredFileTest, isNotTakenForANewOneWhereverItComesBack) {
  const FileURL place = user.put(capture(kName));
  ASSERT_TRUE(user.files.moveItemAtURL(place, captures / kOtherName));
  for (const std::string& answer : answers->of(captures / kOtherName)) {
    EXPECT_EQ(answer, "no");
  }
  EXPECT_EQ(capture("Screenshot_20261115_210434.png"), captures / "Screenshot_20261115_210434.png");
}

TEST_F(RestoredFileTest, isNotTakenForANewOneThoughManyOthersWereMovedSince) {
  const FileURL place = user.put(capture(kName));
  for (int i = 0; i < 300; ++i) {
    writeFile(folder / "a", "x");
    ASSERT_TRUE(user.files.moveItemAtURL(folder / "a", folder / "b"));
    ASSERT_EQ(::unlink((folder / "b").path().c_str()), 0);
  }
  ASSERT_TRUE(user.files.moveItemAtURL(place, captures / kOtherName));
  EXPECT_EQ(answers->of(captures / kOtherName).front(), "no");
}

TEST_F(RestoredFileTest, isNotTakenForANewOneWhenItComesFromAnotherFileSystem) {
  const TemporaryFolder other("/dev/shm");
  std::filesystem::create_directories((other / "Trash/files").path());
  std::filesystem::create_directories((other / "Trash/info").path());
  writeFile(other / "Trash/files/a.png", samples::png());
  writeFile(other / "Trash/info/a.png.trashinfo", "[Trash Info]\nPath=/a.png\n");
  ASSERT_TRUE(user.files.moveItemAtURL(other / "Trash/files/a.png", captures / kOtherName));
  for (const std::string& answer : answers->of(captures / kOtherName)) {
    EXPECT_EQ(answer, "no");
  }
  EXPECT_TRUE(wholeTrash(other / "Trash").empty());
}

}  // namespace
}  // namespace quenlio
