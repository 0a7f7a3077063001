// Paths as bytes: their parts, and the one spelling that stands for all spellings of a place.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <string>

#include "core/base/FileURL.h"
#include "core/base/ImageExtensions.h"

namespace quenlio {
namespace {

TEST(FileURL, aTrailingSlashIsNoPartOfThePath) {
  EXPECT_EQ(FileURL("/a/b/").path(), "/a/b");
  EXPECT_EQ(FileURL("/a//").path(), "/a");
  EXPECT_EQ(FileURL("/").path(), "/");
  EXPECT_EQ(FileURL("//").path(), "/");
  EXPECT_EQ(FileURL("").path(), "");
}

TEST(FileURL, keepsAPathThatIsNotUTF8) {
  const std::string path = "/shots/\xFF\xFE\x80 name.png";
  EXPECT_EQ(FileURL(path).path(), path);
  EXPECT_EQ(FileURL(path).standardized().path(), path);
  EXPECT_EQ(FileURL(path).stem(), "\xFF\xFE\x80 name");
}

TEST(FileURL, keepsThePathAsItStandsUntilItIsStandardized) {
  EXPECT_EQ(FileURL("/a/./b/../c").path(), "/a/./b/../c");
}

TEST(FileURL, standardizingRemovesDotsAndEmptyComponentsAndTakesBackParents) {
  EXPECT_EQ(FileURL("/a/./b//c").standardized().path(), "/a/b/c");
  EXPECT_EQ(FileURL("/a/b/../c.png").standardized().path(), "/a/c.png");
  EXPECT_EQ(FileURL("/a/b/../../c").standardized().path(), "/c");
  EXPECT_EQ(FileURL("/../..").standardized().path(), "/");
  EXPECT_EQ(FileURL("a/../../b").standardized().path(), "../b");
  EXPECT_EQ(FileURL("../../b").standardized().path(), "../../b");
  EXPECT_EQ(FileURL("./b").standardized().path(), "b");
  EXPECT_EQ(FileURL("/a/..b/...").standardized().path(), "/a/..b/...") << "only whole components count";
}

TEST(FileURL, appendingAddsOneComponent) {
  EXPECT_EQ(FileURL("/a").appending("b").path(), "/a/b");
  EXPECT_EQ(FileURL("/").appending("b").path(), "/b");
  EXPECT_EQ(FileURL("").appending("b").path(), "b");
  EXPECT_EQ(FileURL("/a").appending("b/").path(), "/a/b");
}

TEST(FileURL, theParentIsThePathWithoutItsLastComponent) {
  EXPECT_EQ(FileURL("/a/b.png").parent().path(), "/a");
  EXPECT_EQ(FileURL("/a").parent().path(), "/");
  EXPECT_EQ(FileURL("/").parent().path(), "/");
  EXPECT_EQ(FileURL("a").parent().path(), ".");
}

TEST(FileURL, theLastComponentSplitsIntoStemAndExtension) {
  const FileURL url("/a.b/c.tar.gz");
  EXPECT_EQ(url.lastPathComponent(), "c.tar.gz");
  EXPECT_EQ(url.pathExtension(), "gz");
  EXPECT_EQ(url.stem(), "c.tar");
  EXPECT_EQ(FileURL("/").lastPathComponent(), "/");
  EXPECT_EQ(FileURL("plain").lastPathComponent(), "plain");
}

TEST(FileURL, aLeadingOrATrailingDotMakesNoExtension) {
  EXPECT_EQ(FileURL("/a/.hidden").pathExtension(), "");
  EXPECT_EQ(FileURL("/a/.hidden").stem(), ".hidden");
  EXPECT_EQ(FileURL("/a/b.").pathExtension(), "");
  EXPECT_EQ(FileURL("/a/b.").stem(), "b.");
  EXPECT_EQ(FileURL("/a.png/b").pathExtension(), "") << "the folder's extension is not the file's";
  EXPECT_EQ(FileURL("/a/.hidden.png").pathExtension(), "png");
}

TEST(FileURL, comparesByItsBytes) {
  EXPECT_EQ(FileURL("/a/"), FileURL("/a"));
  EXPECT_NE(FileURL("/a/./b"), FileURL("/a/b"));
  EXPECT_LT(FileURL("/a"), FileURL("/b"));
}

// Paths with many dots, slashes and bytes of any kind.
rc::Gen<std::string> anyPath() {
  const auto piece = rc::gen::element<std::string>("/", "//", ".", "..", "a", "b.png", ".hidden", "\xFF", " ", "/../");
  return rc::gen::map(rc::gen::container<std::vector<std::string>>(piece), [](const std::vector<std::string>& pieces) {
    std::string path;
    for (const auto& one : pieces) {
      path += one;
    }
    return path;
  });
}

RC_GTEST_PROP(FileURLProperty, standardizingTwiceIsStandardizingOnce, ()) {
  const FileURL once = FileURL(*anyPath()).standardized();
  RC_ASSERT(once.standardized() == once);
}

RC_GTEST_PROP(FileURLProperty, aStandardizedAbsolutePathHasNoDotsAndStaysAbsolute, ()) {
  const FileURL url = FileURL("/" + *anyPath()).standardized();
  RC_ASSERT(url.path().starts_with('/'));
  const std::string framed = url.path() + "/";
  RC_ASSERT(framed.find("/./") == std::string::npos);
  RC_ASSERT(framed.find("/../") == std::string::npos);
  RC_ASSERT(url.path().find("//") == std::string::npos);
}

RC_GTEST_PROP(FileURLProperty, parentAndLastComponentMakeThePathAgain, ()) {
  const FileURL url = FileURL("/" + *anyPath()).standardized();
  RC_PRE(url.path() != "/");
  RC_ASSERT(url.parent().appending(url.lastPathComponent()) == url);
}

RC_GTEST_PROP(FileURLProperty, stemAndExtensionMakeTheLastComponentAgain, ()) {
  const FileURL url(*anyPath());
  const std::string extension = url.pathExtension();
  RC_ASSERT(url.lastPathComponent() == (extension.empty() ? url.stem() : url.stem() + "." + extension));
}

TEST(ImageExtensions, sixExtensionsAreImagesInAnyCase) {
  for (const char* extension : {"png", "jpg", "jpeg", "heic", "tiff", "pdf", "PNG", "Jpg", "JPEG", "hEiC"}) {
    EXPECT_TRUE(hasImageExtension(FileURL(std::string("/a/b.") + extension))) << extension;
  }
  for (const char* name : {"/a/b.gif", "/a/b.tif", "/a/b.webp", "/a/png", "/a/.png", "/a/b.png.txt", "/a/b.pngx",
                           "/a.png/b", "/a/b.", ""}) {
    EXPECT_FALSE(hasImageExtension(FileURL(name))) << name;
  }
}

}  // namespace
}  // namespace quenlio
