// Small helpers on byte strings. None of them knows a locale; all work on any bytes, valid UTF-8 or not.
#pragma once

#include <string>
#include <string_view>

namespace quenlio {

// Without the white space and new lines at both ends (ASCII and the Unicode spaces U+0085, U+00A0, U+1680,
// U+2000..U+200A, U+2028, U+2029, U+202F, U+205F, U+3000).
[[nodiscard]] std::string_view trimmed(std::string_view text);

// A to Z become a to z; every other byte stays.
[[nodiscard]] std::string lowercased(std::string_view text);

}  // namespace quenlio
