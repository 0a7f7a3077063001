// Trimming and lower case on any bytes.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <string>

#include "core/base/Text.h"

namespace quenlio {
namespace {

TEST(Trimmed, takesWhiteSpaceAndNewLinesOffBothEnds) {
  EXPECT_EQ(trimmed(" \t\n\v\f\r a b \r\n"), "a b");
  EXPECT_EQ(trimmed("a"), "a");
  EXPECT_EQ(trimmed(""), "");
  EXPECT_EQ(trimmed(" \n\t "), "");
}

TEST(Trimmed, takesEachUnicodeSpaceOff) {
  for (const char* space :
       {"\u0085", "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007",
        "\u2008", "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"}) {
    EXPECT_EQ(trimmed(std::string(space) + "x" + space), "x") << space;
  }
}

TEST(Trimmed, keepsWhatOnlyLooksLikeWhiteSpace) {
  EXPECT_EQ(trimmed("\u200B"), "\u200B") << "a space of no width is no white space";
  EXPECT_EQ(trimmed("\xA0x"), "\xA0x") << "a byte that is not UTF-8";
  EXPECT_EQ(trimmed(std::string_view("\0 ", 2)), std::string_view("\0", 1));
}

RC_GTEST_PROP(TrimmedProperty, trimmingTwiceIsTrimmingOnce, (const std::string& text)) {
  RC_ASSERT(trimmed(trimmed(text)) == trimmed(text));
}

RC_GTEST_PROP(TrimmedProperty, theResultIsAPieceOfTheText, (const std::string& text)) {
  const auto padded = " \n" + text + "\t ";
  RC_ASSERT(padded.find(trimmed(padded)) != std::string::npos);
  RC_ASSERT(trimmed(padded) == trimmed(text));
}

TEST(Lowercased, changesTheLettersAToZAndNothingElse) {
  EXPECT_EQ(lowercased("AbcXYZ@[`{09"), "abcxyz@[`{09");
  EXPECT_EQ(lowercased("\u00C4\xFF"), "\u00C4\xFF");
}

RC_GTEST_PROP(LowercasedProperty, keepsTheLengthAndEveryByteThatIsNoCapital, (const std::string& text)) {
  const std::string lower = lowercased(text);
  RC_ASSERT(lower.size() == text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isCapital = text[i] >= 'A' && text[i] <= 'Z';
    RC_ASSERT(lower[i] == (isCapital ? text[i] + ('a' - 'A') : text[i]));
  }
}

TEST(Beginning, cutsNoCharacterInTwo) {
  EXPECT_EQ(beginning("abc", 4), "abc");
  EXPECT_EQ(beginning("abc", 3), "abc");
  EXPECT_EQ(beginning("abc", 2), "ab");
  EXPECT_EQ(beginning("abc", 0), "");
  for (const std::string_view character : {"\u00e9", "\u20ac", "\U0001F4F7"}) {
    const std::string text = "ab" + std::string(character) + "c";
    for (std::size_t inside = 0; inside < character.size(); ++inside) {
      EXPECT_EQ(beginning(text, 2 + inside), "ab");
    }
    EXPECT_EQ(beginning(text, 2 + character.size()), "ab" + std::string(character));
  }
}

TEST(Beginning, cutsAnywhereWhatIsNoUTF8) {
  const std::string bytes(8, '\x80');
  for (std::size_t longest = 0; longest <= 8; ++longest) {
    EXPECT_EQ(beginning(bytes, longest).size(), longest);
  }
}

TEST(Readable, keepsWhatIsUTF8) {
  EXPECT_EQ(readable(""), "");
  EXPECT_EQ(readable("a\n\u00e9\u20ac\U0001F4F7\U0010FFFF"), "a\n\u00e9\u20ac\U0001F4F7\U0010FFFF");
}

TEST(Readable, showsEveryOtherByteAsAReplacement) {
  EXPECT_EQ(readable("caf\xe9.png"), "caf\uFFFD.png");
  EXPECT_EQ(readable("\xe2\x82"), "\uFFFD\uFFFD") << "cut off";
  EXPECT_EQ(readable("\xc0\xaf"), "\uFFFD\uFFFD") << "longer than need be";
  EXPECT_EQ(readable("\xed\xa0\x80"), "\uFFFD\uFFFD\uFFFD") << "a surrogate";
  EXPECT_EQ(readable("\xf4\x90\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD") << "beyond the last character";
}

RC_GTEST_PROP(ReadableProperty, whatIsReadableStaysAsItIs, (const std::string& bytes)) {
  RC_ASSERT(readable(readable(bytes)) == readable(bytes));
}

}  // namespace
}  // namespace quenlio
