// Small helpers on byte strings. None of them knows a locale; all work on any bytes, valid UTF-8 or not.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quenlio {

// Without the white space and new lines at both ends (ASCII and the Unicode spaces U+0085, U+00A0, U+1680,
// U+2000..U+200A, U+2028, U+2029, U+202F, U+205F, U+3000).
[[nodiscard]] std::string_view trimmed(std::string_view text);

// A to Z become a to z; every other byte stays.
[[nodiscard]] constexpr char lowercased(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}
[[nodiscard]] std::string lowercased(std::string_view text);

// The longest beginning of at most so many bytes that cuts no UTF-8 character in two. What is no UTF-8 is cut anywhere.
[[nodiscard]] std::string_view beginning(std::string_view text, std::size_t longest);

// Length of the well-formed UTF-8 sequence at this place, which is inside the text (Unicode, table 3-7), or 0.
[[nodiscard]] std::size_t utf8SequenceLength(std::string_view text, std::size_t at);

// The text as people can be shown it, always UTF-8: each byte that is not part of it becomes U+FFFD.
[[nodiscard]] std::string readable(std::string_view text);

}  // namespace quenlio
