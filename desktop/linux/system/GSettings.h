// One key of the desktop's settings store, read through its own command, so that no library of it is loaded.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quenlio {

// The text that `gsettings get SCHEMA KEY` prints; nothing without such a program, schema or key.
using GSettingsGet = std::function<std::optional<std::string>(std::string_view schema, std::string_view key)>;

// Starts the program and waits for it for a second at most, far longer than it takes.
[[nodiscard]] std::optional<std::string> gsettingsGet(std::string_view schema, std::string_view key);

// The string of a printed value: 'text' or "text", with its escapes undone. Nothing for a value of another type.
[[nodiscard]] std::optional<std::string> stringOfVariant(std::string_view printed);

}  // namespace quenlio
