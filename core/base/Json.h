// Reading and writing JSON, over the JSON library.
//
// Strings hold bytes, not necessarily UTF-8, since a path may be any bytes: what is not UTF-8 goes into the text as it
// is and comes back as it was. Slashes are written as "\/". Any thread.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace quenlio::json {

using Value = nlohmann::json;  // objects keep their keys sorted

enum class Style {
  compact,  // no white space at all
  pretty,   // two blanks a level, a blank on both sides of the colon
};

[[nodiscard]] std::string write(const Value& value, Style style);

// Nothing when the text is not one whole JSON value, or is nested deeper than 128 levels.
[[nodiscard]] std::optional<Value> read(std::string_view text);

}  // namespace quenlio::json
