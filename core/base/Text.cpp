#include "core/base/Text.h"

#include <algorithm>
#include <array>

namespace quenlio {
namespace {

constexpr auto kWhiteSpace = std::to_array<std::string_view>({
    " ",
    "\t",
    "\n",
    "\v",
    "\f",
    "\r",
    "\xC2\x85",
    "\xC2\xA0",
    "\xE1\x9A\x80",
    "\xE2\x80\x80",
    "\xE2\x80\x81",
    "\xE2\x80\x82",
    "\xE2\x80\x83",
    "\xE2\x80\x84",
    "\xE2\x80\x85",
    "\xE2\x80\x86",
    "\xE2\x80\x87",
    "\xE2\x80\x88",
    "\xE2\x80\x89",
    "\xE2\x80\x8A",
    "\xE2\x80\xA8",
    "\xE2\x80\xA9",
    "\xE2\x80\xAF",
    "\xE2\x81\x9F",
    "\xE3\x80\x80",
});

bool isContinuation(std::string_view text, std::size_t at, unsigned low = 0x80, unsigned high = 0xBF) {
  if (at >= text.size()) {
    return false;
  }
  const auto byte = static_cast<unsigned char>(text[at]);
  return byte >= low && byte <= high;
}

}  // namespace

std::string_view trimmed(std::string_view text) {
  const auto leading = [&] {
    return std::ranges::find_if(kWhiteSpace, [&](std::string_view space) { return text.starts_with(space); });
  };
  const auto trailing = [&] {
    return std::ranges::find_if(kWhiteSpace, [&](std::string_view space) { return text.ends_with(space); });
  };
  for (auto space = leading(); space != kWhiteSpace.end(); space = leading()) {
    text.remove_prefix(space->size());
  }
  for (auto space = trailing(); space != kWhiteSpace.end(); space = trailing()) {
    text.remove_suffix(space->size());
  }
  return text;
}

std::string lowercased(std::string_view text) {
  std::string lower(text);
  for (char& letter : lower) {
    letter = lowercased(letter);
  }
  return lower;
}

std::string_view beginning(std::string_view text, std::size_t longest) {
  constexpr std::size_t mostContinuations = 3;
  std::size_t end = std::min(longest, text.size());
  while (end > 0 && longest - end < mostContinuations && isContinuation(text, end)) {
    --end;
  }
  return text.substr(0, isContinuation(text, end) ? longest : end);
}

std::size_t utf8SequenceLength(std::string_view text, std::size_t at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  if (lead < 0x80) {
    return 1;
  }
  if (lead >= 0xC2 && lead <= 0xDF) {
    return isContinuation(text, at + 1) ? 2 : 0;
  }
  if (lead >= 0xE0 && lead <= 0xEF) {
    const unsigned low = lead == 0xE0 ? 0xA0 : 0x80;
    const unsigned high = lead == 0xED ? 0x9F : 0xBF;
    return isContinuation(text, at + 1, low, high) && isContinuation(text, at + 2) ? 3 : 0;
  }
  if (lead >= 0xF0 && lead <= 0xF4) {
    const unsigned low = lead == 0xF0 ? 0x90 : 0x80;
    const unsigned high = lead == 0xF4 ? 0x8F : 0xBF;
    const bool whole =
        isContinuation(text, at + 1, low, high) && isContinuation(text, at + 2) && isContinuation(text, at + 3);
    return whole ? 4 : 0;
  }
  return 0;
}

std::string readable(std::string_view text) {
  constexpr std::string_view replacement = "\xEF\xBF\xBD";
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = utf8SequenceLength(text, at);
    out += length == 0 ? replacement : text.substr(at, length);
    at += std::max<std::size_t>(length, 1);
  }
  return out;
}

}  // namespace quenlio
