// A long day of the library on a real disk, with a real trash. At its end no more memory and no more descriptors are in
// use than in the middle of it.
#include <gtest/gtest.h>
#include <malloc.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
// Of the sanitizers' runtime; this compiler comes without the header that declares it.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

#include "core/library/DeletedScreenshots.h"

#include "desktop/linux/system/LinuxFileContents.h"

#include "tests/desktop/system/TrashTest.h"
#include "tests/harness/LibrarySoak.h"

namespace quenlio {
namespace {

// The library is as full both times. What may differ is the length of names, and how many deletions can be undone. What
// is lost in but one operation of ten comes to more, if it is as large as a single item.
constexpr std::size_t kMostGrowth = 32 * 1024;

std::size_t allocatedBytes() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  return __sanitizer_get_current_allocated_bytes();
#else
  const struct mallinfo2 info = ::mallinfo2();
  return info.uordblks + info.hblkhd;
#endif
}

std::optional<std::string> bytesAt(const std::string& path) {
  const UniqueFd fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat status {};
  if (!fd || ::fstat(fd.get(), &status) != 0) {
    return std::nullopt;
  }
  std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
  check(::read(fd.get(), bytes.data(), bytes.size()) == status.st_size, path);
  return bytes;
}

struct Use {
  std::size_t bytes = 0;
  std::size_t descriptors = 0;
};

class LibrarySoakTest : public testing::TestWithParam<std::uint32_t> {
 protected:
  LibrarySoakTest() { std::filesystem::create_directory(captures.path()); }

  [[nodiscard]] std::vector<std::string> trashed() const {
    std::vector<std::string> paths = namesIn(user.trash() / "files");
    for (std::string& path : paths) {
      path = (user.trash() / "files" / path).path();
    }
    return paths;
  }
  // With a full library and nothing that waits.
  [[nodiscard]] Use atRest() {
    soak.fillUp();
    return {.bytes = allocatedBytes(), .descriptors = entryCount(FileURL("/proc/self/fd"))};
  }
  void operate(int times) {
    for (int operation = 0; operation < times; ++operation) {
      soak.operate();
      ASSERT_EQ(soak.problem(), "") << "operation " << operation;
    }
  }

  TemporaryFolder folder;
  FileURL captures = folder / "Captures";
  TrashUser user{folder / "share"};
  LinuxFileContents contents;
  TestPlatform platform;
  LibrarySoak soak{platform,
                   {.files = user.files,
                    .contents = contents,
                    .directories = user.directories,
                    .clock = user.clock,
                    .captures = captures,
                    .write = [](const std::string& path, const std::string& bytes) { writeFile(FileURL(path), bytes); },
                    .remove = [](const std::string& path) { check(::unlink(path.c_str()) == 0, path); },
                    .read = bytesAt,
                    .trashed = [this] { return trashed(); }},
                   GetParam()};
};

TEST_P(LibrarySoakTest, losesNoFileAndKeepsNoMemory) {
  ASSERT_NO_FATAL_FAILURE(operate(LibrarySoak::kOperations / 2));
  const Use half = atRest();
  ASSERT_NO_FATAL_FAILURE(operate(LibrarySoak::kOperations / 2));
  const Use whole = atRest();
  ASSERT_EQ(soak.problem(), "");
  RecordProperty("bytesHalfway", std::to_string(half.bytes));
  RecordProperty("bytesAtTheEnd", std::to_string(whole.bytes));

  EXPECT_LE(whole.bytes, half.bytes + kMostGrowth);
  EXPECT_EQ(whole.descriptors, half.descriptors);
  EXPECT_LE(soak.thumbnails(), static_cast<std::size_t>(LibrarySoak::kMaxHistory) + DeletedScreenshots::kLimit);
  // Nothing half moved is left anywhere.
  EXPECT_EQ(namesIn(captures).size() + wholeTrash(user.trash()).size(),
            soak.day().arrived + soak.day().foreign - soak.day().vanished);
  EXPECT_GT(soak.day().arrived, 400U);
  EXPECT_GT(soak.day().deleted, 200);
  EXPECT_GT(soak.day().undone, 100);
  EXPECT_GT(soak.day().renamed, 100);
  EXPECT_GT(soak.day().vanished, 20U);
  EXPECT_GT(soak.day().foreign, 20U);
  EXPECT_GT(soak.day().failed, 0U);
}

INSTANTIATE_TEST_SUITE_P(Seeds, LibrarySoakTest, testing::Values(1U, 20261115U));

}  // namespace
}  // namespace quenlio
