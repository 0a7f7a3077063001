// Random identities.
#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <string>

#include "core/base/Uuid.h"

namespace quenlio {
namespace {

TEST(Uuid, isWrittenInUpperCaseGroupsWithTheMarksOfVersionFour) {
  const std::regex form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
  for (int i = 0; i < 200; ++i) {
    const std::string text = Uuid::random().string();
    EXPECT_TRUE(std::regex_match(text, form)) << text;
  }
}

TEST(Uuid, theEmptyOneIsAllZeros) {
  EXPECT_EQ(Uuid().string(), "00000000-0000-0000-0000-000000000000");
}

TEST(Uuid, twoRandomOnesDiffer) {
  std::set<Uuid> all;
  for (int i = 0; i < 1000; ++i) {
    all.insert(Uuid::random());
  }
  EXPECT_EQ(all.size(), 1000U);
}

TEST(Uuid, everyByteVariesButForTheMarks) {
  std::string seen[36];
  for (int i = 0; i < 300; ++i) {
    const std::string text = Uuid::random().string();
    for (std::size_t at = 0; at < text.size(); ++at) {
      if (seen[at].find(text[at]) == std::string::npos) {
        seen[at] += text[at];
      }
    }
  }
  for (std::size_t at = 0; at < 36; ++at) {
    const bool isHyphen = at == 8 || at == 13 || at == 18 || at == 23;
    const std::size_t expected = isHyphen || at == 14 ? 1 : at == 19 ? 4 : 16;
    EXPECT_EQ(seen[at].size(), expected) << "character " << at;
  }
}

TEST(Uuid, equalBytesAreTheSameIdentity) {
  const Uuid uuid = Uuid::random();
  const Uuid copy = uuid;
  EXPECT_EQ(uuid, copy);
  EXPECT_EQ(uuid.string(), copy.string());
  EXPECT_NE(uuid, Uuid());
}

}  // namespace
}  // namespace quenlio
