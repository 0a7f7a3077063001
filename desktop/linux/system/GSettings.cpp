#include "desktop/linux/system/GSettings.h"

#include <charconv>
#include <cstdint>

#include "core/base/Text.h"

#include "desktop/linux/system/ChildProcess.h"

namespace quenlio {
namespace {

std::string utf8(std::uint32_t character) {
  const auto byte = [](std::uint32_t value) { return static_cast<char>(value); };
  const auto tail = [&](int shift) { return byte(0x80 | (character >> shift & 0x3F)); };
  if (character < 0x80) {
    return {byte(character)};
  }
  if (character < 0x800) {
    return {byte(0xC0 | character >> 6), tail(0)};
  }
  if (character < 0x10000) {
    return {byte(0xE0 | character >> 12), tail(6), tail(0)};
  }
  return {byte(0xF0 | character >> 18), tail(12), tail(6), tail(0)};
}

// What follows a backslash; takes it off the text.
std::string unescaped(std::string_view& text) {
  const char kind = text.front();
  text.remove_prefix(1);
  const std::size_t digits = kind == 'u' ? 4 : kind == 'U' ? 8 : 0;
  std::uint32_t character = 0;
  if (digits > 0 && text.size() >= digits &&
      std::from_chars(text.data(), text.data() + digits, character, 16).ptr == text.data() + digits) {
    text.remove_prefix(digits);
    return utf8(character);
  }
  constexpr std::string_view letters = "abfnrtv";
  constexpr std::string_view meanings = "\a\b\f\n\r\t\v";
  const std::size_t letter = letters.find(kind);
  return {letter == std::string_view::npos ? kind : meanings[letter]};
}

}  // namespace

std::optional<std::string> gsettingsGet(std::string_view schema, std::string_view key) {
  constexpr std::chrono::seconds patience(1);
  constexpr std::size_t longest = 64 * 1024;
  const auto deadline = std::chrono::steady_clock::now() + patience;
  auto program = ChildProcess::start({"gsettings", "get", std::string(schema), std::string(key)});
  auto printed = program ? program->readToEnd(longest, deadline) : std::nullopt;
  return printed && !printed->empty() ? printed : std::nullopt;
}

std::optional<std::string> stringOfVariant(std::string_view printed) {
  std::string_view text = trimmed(printed);
  const bool isQuoted =
      text.size() >= 2 && (text.front() == '\'' || text.front() == '"') && text.back() == text.front();
  if (!isQuoted) {
    return std::nullopt;
  }
  text = text.substr(1, text.size() - 2);
  std::string value;
  while (!text.empty()) {
    const char next = text.front();
    text.remove_prefix(1);
    value += next == '\\' && !text.empty() ? unescaped(text) : std::string(1, next);
  }
  return value;
}

}  // namespace quenlio
