// What every kind of bookmark does.
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "desktop/linux/system/LinuxBookmarks.h"

#include "tests/contract/TemporaryFolder.h"
#include "tests/fakes/FakeSettingsStores.h"

namespace quenlio {
namespace {

struct FakeKind {
  FakeBookmarks bookmarks;
  FileURL folder{"/chosen"};
};

struct RealKind {
  TemporaryFolder temporary;
  LinuxBookmarks bookmarks;
  FileURL folder = temporary.url();
};

template <class Kind>
class BookmarksContract : public testing::Test {
 protected:
  Kind kind;
};

using Kinds = testing::Types<FakeKind, RealKind>;
TYPED_TEST_SUITE(BookmarksContract, Kinds);

TYPED_TEST(BookmarksContract, aBookmarkLeadsBackToItsFolder) {
  const auto bytes = this->kind.bookmarks.bookmarkDataWithSecurityScope(this->kind.folder);
  ASSERT_TRUE(bytes.ok());
  const auto resolved = this->kind.bookmarks.resolveBookmarkData(bytes.value());
  ASSERT_TRUE(resolved.ok());
  EXPECT_EQ(resolved.value().url, this->kind.folder);
  EXPECT_FALSE(resolved.value().isStale);
  EXPECT_TRUE(this->kind.bookmarks.startAccessingSecurityScopedResource(resolved.value().url));
}

TYPED_TEST(BookmarksContract, bytesThatAreNoBookmarkFail) {
  EXPECT_FALSE(this->kind.bookmarks.resolveBookmarkData(FakeBookmarks::bytesFor("nonsense")).ok());
  EXPECT_FALSE(this->kind.bookmarks.resolveBookmarkData({}).ok());
}

TEST(LinuxBookmarks, aFolderThatIsGoneOrAnotherOneAtItsPathIsStale) {
  TemporaryFolder temporary;
  LinuxBookmarks bookmarks;
  const FileURL folder = temporary.url().appending("shots");
  std::filesystem::create_directory(folder.path());
  const auto bytes = bookmarks.bookmarkDataWithSecurityScope(folder);
  ASSERT_TRUE(bytes.ok());

  // Renamed and not removed, so that the new folder cannot get the old one's number.
  std::filesystem::rename(folder.path(), folder.path() + ".away");
  const auto gone = bookmarks.resolveBookmarkData(bytes.value());
  ASSERT_TRUE(gone.ok());
  EXPECT_TRUE(gone.value().isStale);
  EXPECT_EQ(gone.value().url, folder);

  std::filesystem::create_directory(folder.path());
  EXPECT_TRUE(bookmarks.resolveBookmarkData(bytes.value()).value().isStale);
}

TEST(LinuxBookmarks, aFolderThatIsNotThereGetsNoBookmark) {
  TemporaryFolder temporary;
  LinuxBookmarks bookmarks;
  const auto bytes = bookmarks.bookmarkDataWithSecurityScope(temporary.url().appending("none"));
  ASSERT_FALSE(bytes.ok());
  EXPECT_NE(bytes.error().localizedDescription.find("none"), std::string::npos);
}

TEST(LinuxBookmarks, damagedBookmarksFail) {
  LinuxBookmarks bookmarks;
  for (const char* text : {"[]", "{}", R"({"path":1,"device":1,"inode":1})", R"({"path":"/a","device":-1,"inode":1})",
                           R"({"path":"/a","device":"1","inode":1})", R"({"path":"/a","device":1})"}) {
    EXPECT_FALSE(bookmarks.resolveBookmarkData(FakeBookmarks::bytesFor(text)).ok()) << text;
  }
}

}  // namespace
}  // namespace quenlio
