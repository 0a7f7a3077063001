// Names that no other file has.
#include <algorithm>
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "core/library/UniqueNames.h"

#include "tests/harness/TestPlatform.h"

namespace quenlio {
namespace {

constexpr std::size_t kUuidLength = 36;

class UniqueNames : public testing::Test {
 protected:
  [[nodiscard]] FileURL restore(const std::string& name) const {
    return uniqueRestoreURL(FileURL("/shots/" + name), platform.files);
  }
  [[nodiscard]] FileURL rename(const std::string& name) const {
    return uniqueRenameURL(FileURL("/shots/from.png"), FileURL("/shots/" + name), platform.files);
  }
  void write(const std::string& name) { platform.files.write("/shots/" + name); }

  TestPlatform platform;
};

TEST_F(UniqueNames, aFreeNameIsTakenAsItIs) {
  EXPECT_EQ(restore("a.png"), FileURL("/shots/a.png"));
  EXPECT_EQ(rename("a.png"), FileURL("/shots/a.png"));
}

TEST_F(UniqueNames, aLinkThatLeadsNowhereHasItsName) {
  platform.files.makeDanglingLink("/shots/a.png");
  platform.files.makeDanglingLink("/shots/a 2.png");
  EXPECT_EQ(restore("a.png"), FileURL("/shots/a (Restored 1).png"));
  EXPECT_EQ(rename("a.png"), FileURL("/shots/a 3.png"));
}

TEST_F(UniqueNames, theFirstFreeNumberWins) {
  write("a.png");
  EXPECT_EQ(restore("a.png"), FileURL("/shots/a (Restored 1).png"));
  EXPECT_EQ(rename("a.png"), FileURL("/shots/a 2.png"));
  for (const char* name : {"a (Restored 1).png", "a (Restored 3).png", "a 2.png", "a 4.png"}) {
    write(name);
  }
  EXPECT_EQ(restore("a.png"), FileURL("/shots/a (Restored 2).png"));
  EXPECT_EQ(rename("a.png"), FileURL("/shots/a 3.png"));
}

TEST_F(UniqueNames, theFilesOwnNameIsFreeForIt) {
  write("from.png");
  EXPECT_EQ(rename("from.png"), FileURL("/shots/from.png"));
}

TEST_F(UniqueNames, withoutAnExtensionTheEndingIsTheLast) {
  for (const char* name : {"bare", ".hidden", "dot."}) {
    write(name);
    EXPECT_EQ(restore(name), FileURL("/shots/" + std::string(name) + " (Restored 1)"));
    EXPECT_EQ(rename(name), FileURL("/shots/" + std::string(name) + " 2"));
  }
}

TEST_F(UniqueNames, onlyTheLastExtensionIsOne) {
  write("a.b.png");
  EXPECT_EQ(restore("a.b.png"), FileURL("/shots/a.b (Restored 1).png"));
  write(".a.png");
  EXPECT_EQ(rename(".a.png"), FileURL("/shots/.a 2.png"));
}

TEST_F(UniqueNames, numbersEndAtAThousandAndARandomIdentityFollows) {
  write("a.png");
  for (int number = 1; number <= 999; ++number) {
    write("a (Restored " + std::to_string(number) + ").png");
    write("a " + std::to_string(number) + ".png");
  }
  EXPECT_EQ(restore("a.png"), FileURL("/shots/a (Restored 1000).png"));
  EXPECT_EQ(rename("a.png"), FileURL("/shots/a 1000.png"));

  write("a (Restored 1000).png");
  write("a 1000.png");
  const FileURL restored = restore("a.png");
  EXPECT_TRUE(restored.path().starts_with("/shots/a-restored-")) << restored.path();
  EXPECT_EQ(restored.stem().size(), std::string("a-restored-").size() + kUuidLength);
  EXPECT_EQ(restored.pathExtension(), "png");
  EXPECT_NE(restore("a.png"), restored);
  const FileURL renamed = rename("a.png");
  EXPECT_TRUE(renamed.path().starts_with("/shots/a-")) << renamed.path();
  EXPECT_EQ(renamed.stem().size(), std::string("a-").size() + kUuidLength);
  EXPECT_EQ(renamed.pathExtension(), "png");
  EXPECT_NE(rename("a.png"), renamed);
}

TEST_F(UniqueNames, aStemIsShortenedWhereTheEndingWouldNotFit) {
  const std::string fits = std::string(249, 'n') + ".png";
  write(fits);
  EXPECT_EQ(rename(fits).lastPathComponent(), std::string(249, 'n') + " 2.png");
  const std::string longest = std::string(251, 'n') + ".png";
  write(longest);
  EXPECT_EQ(rename(longest).lastPathComponent(), std::string(249, 'n') + " 2.png");
  EXPECT_EQ(restore(longest).lastPathComponent(), std::string(238, 'n') + " (Restored 1).png");
}

TEST_F(UniqueNames, aStemIsShortenedBetweenCharacters) {
  // Of 251 bytes of stem 238 could stay, which ends after so many bytes of the character.
  for (const std::string character : {"\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x93\xB7"}) {
    for (std::size_t inside = 1; inside <= character.size(); ++inside) {
      const std::string before(238 - inside, 'n');
      std::string stem = before + character;
      stem.resize(251, 'm');
      write(stem + ".png");
      const std::string kept = inside == character.size() ? before + character : before;
      EXPECT_EQ(restore(stem + ".png").lastPathComponent(), kept + " (Restored 1).png");
    }
  }
}

TEST_F(UniqueNames, aStemThatIsNoTextIsShortenedAnywhere) {
  for (const std::string& stem : {std::string(251, '\x80'), "n" + std::string(250, '\x80')}) {
    write(stem + ".png");
    EXPECT_EQ(rename(stem + ".png").lastPathComponent(), stem.substr(0, 249) + " 2.png");
  }
}

TEST_F(UniqueNames, anExtensionIsNeverShortened) {
  const std::string extension(250, 'x');
  write("abcd." + extension);
  EXPECT_EQ(rename("abcd." + extension).lastPathComponent(), "ab 2." + extension);
}

TEST_F(UniqueNames, aTypedNameKeepsFolderAndExtension) {
  EXPECT_EQ(renamedURL(FileURL("/shots/a.png"), " b/c:d "), FileURL("/shots/b-c-d.png"));
  EXPECT_EQ(renamedURL(FileURL("/a.tar.gz"), "b"), FileURL("/b.gz"));
  EXPECT_EQ(renamedURL(FileURL("/shots/bare"), "b"), FileURL("/shots/b"));
  EXPECT_EQ(renamedURL(FileURL("/shots/.hidden"), "b.c"), FileURL("/shots/b.c"));
  EXPECT_EQ(renamedURL(FileURL("/shots/a.png"), " \n"), std::nullopt);
  EXPECT_EQ(renamedURL(FileURL("/shots/a.png"), std::string_view("a\0", 2)), std::nullopt);
}

// A name of few different letters, so that names meet; long ones of one, two, three or four bytes a character.
std::string anyName() {
  static const std::vector<std::string> kLetters{"a", ".", " ", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x93\xB7", "\x80"};
  std::string stem;
  if (*rc::gen::arbitrary<bool>()) {
    const std::string letter = *rc::gen::elementOf(kLetters);
    const std::size_t size = *rc::gen::inRange<std::size_t>(230, 246);
    while (stem.size() + letter.size() <= size) {
      stem += letter;
    }
  }
  stem += *rc::gen::elementOf(kLetters);
  return "n" + stem + *rc::gen::element<std::string>("", ".png", ".jpeg");
}

RC_GTEST_PROP(UniqueNamesProperty, areNeverThoseOfOtherFilesAndKeepFolderExtensionAndLength, ()) {
  TestPlatform platform;
  const FileURL preferred("/shots/" + anyName());
  const FileURL from("/shots/" + anyName());
  platform.files.write(from.path());
  platform.files.makeFolder("/shots");
  // A row of files that have all the names tried so far, as they would come about one after the other.
  const int taken = *rc::gen::inRange(0, 12);
  for (int file = 0; file < taken; ++file) {
    const FileURL renamed = uniqueRenameURL(from, preferred, platform.files);
    const FileURL restored = uniqueRestoreURL(preferred, platform.files);
    for (const FileURL& unique : {renamed, restored}) {
      RC_ASSERT(unique.parent() == preferred.parent());
      RC_ASSERT(preferred.pathExtension().empty() || unique.pathExtension() == preferred.pathExtension());
      RC_ASSERT(unique.lastPathComponent().size() <= 255U);
    }
    RC_ASSERT(!platform.files.fileExistsAtPath(restored));
    RC_ASSERT(renamed == from || !platform.files.fileExistsAtPath(renamed));
    RC_ASSERT((renamed == preferred) == (preferred == from || !platform.files.fileExistsAtPath(preferred)));
    platform.files.write(restored.path());
    platform.files.write(uniqueRenameURL(from, preferred, platform.files).path());
  }
}

}  // namespace
}  // namespace quenlio
