// JSON: the exact text that is written, and what comes back from it.
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <rapidcheck/gtest.h>
#include <string>

#include "core/base/Json.h"

namespace quenlio::json {
namespace {

std::string compact(const Value& value) {
  return write(value, Style::compact);
}

std::string nested(int levels) {
  const auto count = static_cast<std::size_t>(levels);
  return std::string(count, '[') + std::string(count, ']');
}

TEST(JsonWrite, compactFormHasNoWhiteSpaceAndSortedKeys) {
  const Value value = {{"b", {1, true, nullptr}}, {"a", {{"x", 1204.5}, {"y", 880.0}}}};
  EXPECT_EQ(compact(value), R"({"a":{"x":1204.5,"y":880},"b":[1,true,null]})");
}

TEST(JsonWrite, prettyFormIndentsByTwoWithBlanksAroundTheColon) {
  const Value value = {{"name", "a"}, {"list", {1, 2}}, {"object", {{"k", false}}}};
  EXPECT_EQ(write(value, Style::pretty),
            "{\n"
            "  \"list\" : [\n"
            "    1,\n"
            "    2\n"
            "  ],\n"
            "  \"name\" : \"a\",\n"
            "  \"object\" : {\n"
            "    \"k\" : false\n"
            "  }\n"
            "}");
}

TEST(JsonWrite, emptyObjectsAndArraysStayOnOneLine) {
  const Value value = {{"a", Value::array()}, {"o", Value::object()}};
  EXPECT_EQ(write(value, Style::pretty), "{\n  \"a\" : [],\n  \"o\" : {}\n}");
  EXPECT_EQ(compact(value), R"({"a":[],"o":{}})");
}

TEST(JsonWrite, escapesSlashesInValuesAndKeys) {
  EXPECT_EQ(compact({{"a/b", "/home/user"}}), R"({"a\/b":"\/home\/user"})");
}

TEST(JsonWrite, escapesQuotesBackslashesAndControlCharacters) {
  EXPECT_EQ(compact("\"\\\b\f\n\r\t"), R"("\"\\\b\f\n\r\t")");
  EXPECT_EQ(compact(std::string("\0\x01\x1F", 3)), R"("\u0000\u0001\u001f")");
  EXPECT_EQ(compact("\x7F\u00E9\U0001F4F7"), "\"\x7F\u00E9\U0001F4F7\"") << "all else stands as it is";
}

TEST(JsonWrite, bytesThatAreNotUTF8StandAsTheyAre) {
  EXPECT_EQ(compact("/a\xFF\x80"), "\"\\/a\xFF\x80\"");
}

TEST(JsonWrite, numbersAreTheShortestTextThatReadsBack) {
  EXPECT_EQ(compact(0.1), "0.1");
  EXPECT_EQ(compact(880.0), "880");
  EXPECT_EQ(compact(-1.5), "-1.5");
  EXPECT_EQ(compact(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
  EXPECT_EQ(compact(std::numeric_limits<std::uint64_t>::max()), "18446744073709551615");
}

TEST(JsonWrite, infinitiesBecomeNull) {
  EXPECT_EQ(compact(std::numeric_limits<double>::infinity()), "null");
  EXPECT_EQ(compact(std::nan("")), "null");
}

TEST(JsonRead, takesWhiteSpaceAroundOneWholeValueAndNothingElse) {
  EXPECT_EQ(read(" \n{\"a\" : 1}\t"), Value({{"a", 1}}));
  for (const char* text : {"", " ", "{", "{}{}", "{} x", "[1,]", "{\"a\":1,}", "{a:1}", "'a'", "nul", "\"a", "01",
                           "// c\n1", "NaN", "\"\n\""}) {
    EXPECT_EQ(read(text), std::nullopt) << text;
  }
}

TEST(JsonRead, keepsIntegersAndFractionsApart) {
  EXPECT_TRUE(read("1")->is_number_integer());
  EXPECT_TRUE(read("1.0")->is_number_float());
  EXPECT_EQ(read("-9223372036854775808")->get<std::int64_t>(), std::numeric_limits<std::int64_t>::min());
}

TEST(JsonRead, refusesANumberThatNoDoubleHolds) {
  EXPECT_EQ(read("1e999"), std::nullopt);
}

TEST(JsonRead, takesAHundredAndTwentyEightLevelsAndNoMore) {
  EXPECT_TRUE(read(nested(128)));
  EXPECT_FALSE(read(nested(129)));
  EXPECT_FALSE(read(std::string(1'000'000, '[')));
  EXPECT_FALSE(read(std::string(200, '{')));
}

TEST(JsonRead, bracketsInStringsAndSideBySideAreNoNesting) {
  EXPECT_TRUE(read("\"" + std::string(500, '[') + "\""));
  EXPECT_TRUE(read("\"\\\"" + std::string(500, '[') + "\""));
  std::string row = "[[]";
  for (int i = 0; i < 500; ++i) {
    row += ",[]";
  }
  EXPECT_TRUE(read(row + "]"));
}

TEST(JsonRead, understandsEscapes) {
  EXPECT_EQ(read(R"("\/\u0041\n\u00e9\ud83d\udcf7")"), Value("/A\n\u00E9\U0001F4F7"));
}

TEST(JsonRead, anEscapedCharacterIsTheSameAsTheCharacterItselfUpToTheLastOne) {
  EXPECT_EQ(read(R"("\udbff\udf2f")"), Value("\U0010FF2F"));
  EXPECT_EQ(read(R"("\uDBFF\uDFFF")"), Value("\U0010FFFF"));
  EXPECT_EQ(read(R"("\\udbff\\udf2f")"), Value(R"(\udbff\udf2f)")) << "no escape behind an escaped backslash";
  EXPECT_EQ(read("\"\U0010FF2F\""), Value("\U0010FF2F"));
}

TEST(JsonRead, refusesHalfASurrogatePair) {
  EXPECT_EQ(read(R"("\udbff")"), std::nullopt);
  EXPECT_EQ(read(R"("\udf00")"), std::nullopt);
}

TEST(JsonRead, keysThatAreNotUTF8ComeBackToo) {
  const Value value = {{"\xFF/k", 1}, {"\xFE", {{"\x80", "\xC3"}}}};
  EXPECT_EQ(read(compact(value)), value);
}

// Any bytes, with many that begin or continue UTF-8 sequences and the private-use block that needs care.
rc::Gen<std::string> anyBytes() {
  const auto piece = rc::gen::oneOf(
      rc::gen::map(rc::gen::arbitrary<char>(), [](char c) { return std::string(1, c); }),
      rc::gen::element<std::string>("\xF4\x8F\xBC\x80", "\xF4\x8F\xBF\xBF", "\xF4\x8F", "\xBC", "\xED\xA0\x80",
                                    "\xC3\xA9", "\xE2\x82", "\xF0\x9F\x93\xB7", "\\", "\"", "/", "\\udbff\\udf00"));
  return rc::gen::map(rc::gen::container<std::vector<std::string>>(piece), [](const std::vector<std::string>& pieces) {
    std::string bytes;
    for (const auto& one : pieces) {
      bytes += one;
    }
    return bytes;
  });
}

RC_GTEST_PROP(JsonProperty, anyBytesComeBackAsTheyWere, ()) {
  const std::string bytes = *anyBytes();
  const Value value = {{bytes, bytes}, {"list", {bytes}}};
  RC_ASSERT(read(write(value, Style::compact)) == value);
  RC_ASSERT(read(write(value, Style::pretty)) == value);
}

RC_GTEST_PROP(JsonProperty, anyDoubleComesBackExactly, (double number)) {
  RC_ASSERT(read(compact(number))->get<double>() == number);
}

RC_GTEST_PROP(JsonProperty, anyIntegerComesBackAsAnInteger, (std::int64_t number)) {
  const auto value = read(compact(number));
  RC_ASSERT(value->is_number_integer());
  RC_ASSERT(value->get<std::int64_t>() == number);
}

RC_GTEST_PROP(JsonProperty, anyTextIsReadOrRefusedAndNeverHarms, ()) {
  const std::string text = *anyBytes();
  const auto value = read(text);
  RC_ASSERT(!value || read(compact(*value)) == value);
}

}  // namespace
}  // namespace quenlio::json
