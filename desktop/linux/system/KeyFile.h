// The desktop's text files of groups and keys: desktop entries, and the lists of which program opens which type. Pure;
// any thread.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace quenlio {

// The keys of one group with their values as they stand in the text. Of a key that comes twice the last one counts; a
// line that is no key is passed over.
using KeyFileGroup = std::map<std::string, std::string, std::less<>>;
[[nodiscard]] KeyFileGroup keyFileGroup(std::string_view text, std::string_view group);

// A value with its escapes (\s, \n, \t, \r, \\) undone.
[[nodiscard]] std::string unescaped(std::string_view value);

// The parts of a value that semicolons divide, without empty ones; a semicolon after a backslash is a part's own.
[[nodiscard]] std::vector<std::string> listOf(std::string_view value);

// The parts of a text that this character divides, without empty ones.
[[nodiscard]] std::vector<std::string> splitAt(char divider, std::string_view text);

}  // namespace quenlio
