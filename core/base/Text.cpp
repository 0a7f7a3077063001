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
  std::ranges::transform(lower, lower.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return lower;
}

}  // namespace quenlio
