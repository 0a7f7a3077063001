// A long day of the library on a disk in memory.
#include <gtest/gtest.h>

#include "tests/harness/LibrarySoak.h"

namespace quenlio {
namespace {

class LibrarySoakTest : public testing::TestWithParam<std::uint32_t> {
 protected:
  LibrarySoakTest() {
    platform.enableDiagnostics();
    platform.files.makeFolder("/shots");
  }

  [[nodiscard]] std::vector<std::string> trashed() {
    std::vector<std::string> paths;
    platform.files.enumerateAtURL(FileURL(FakeFileSystem::kTrash),
                                  [&paths](const FileURL& url, bool) { paths.push_back(url.path()); });
    return paths;
  }

  TestPlatform platform;
  LibrarySoak soak{
      platform,
      {.files = platform.files,
       .contents = platform.files,
       .directories = platform.directories,
       .clock = platform.time,
       .captures = FileURL("/shots"),
       .write = [this](const std::string& path, const std::string& bytes) { platform.files.write(path, bytes); },
       .remove = [this](const std::string& path) { platform.files.remove(path); },
       .read = [this](const std::string& path) { return platform.files.content(path); },
       .trashed = [this] { return trashed(); }},
      GetParam()};
};

TEST_P(LibrarySoakTest, losesNoFileAndListsNoneThatIsNotThere) {
  for (int operation = 0; operation < LibrarySoak::kOperations; ++operation) {
    soak.operate();
    ASSERT_EQ(soak.problem(), "") << "operation " << operation;
  }
  // The day was a long one indeed.
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
