#include "desktop/linux/system/ScreenshotNames.h"

#include <algorithm>
#include <optional>
#include <string>

#include "core/base/Text.h"

namespace quenlio {
namespace {

// At most this many bytes of words stand between the word for a screenshot and the moment.
constexpr std::size_t kMostBetween = 40;

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isMark(char c) {
  return c == '-' || c == '_' || c == '.' || c == ':' || c == '+';
}

bool isSame(char a, char b) {
  return lowercased(a) == lowercased(b);
}

// What is left of the text behind the pattern that it begins with; nothing when it does not.
std::optional<std::string_view> behind(std::string_view pattern, std::string_view text) {
  for (const char c : pattern) {
    if (c == '+') {
      const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
      if (digits == 0) {
        return std::nullopt;
      }
      text.remove_prefix(digits);
      continue;
    }
    const bool fits = !text.empty() && (c == '#'   ? isDigit(text.front())
                                        : c == '~' ? isMark(text.front())
                                                   : isSame(c, text.front()));
    if (!fits) {
      return std::nullopt;
    }
    text.remove_prefix(1);
  }
  return text;
}

// Nothing, or what tools add when the name is taken or the screen is a dense one.
bool isSuffix(std::string_view text) {
  if (const auto rest = behind("@#x", text)) {
    text = *rest;
  }
  return text.empty() || std::ranges::any_of(std::initializer_list<std::string_view>{"-+", " - +", "_+", " (+)"},
                                             [&](std::string_view pattern) { return behind(pattern, text) == ""; });
}

// The moment as tools write it behind the word for a screenshot, up to the end of the name.
bool isMoment(std::string_view text) {
  static constexpr std::string_view kMoments[] = {
      "####-##-## ##~##~##", "####-##-##_##~##~##", "####-##-##-##~##~##", "####-##-##T##~##~##", "####-##-## ##~##",
      "####-##-##_##~##",    "####-##-##-######",   "####-##-##_######",   "########_######",     "########-######",
      "########T######",     "##############",      "####_##_##_##_##_##",
  };
  return std::ranges::any_of(kMoments, [&](std::string_view moment) {
    const auto rest = behind(moment, text);
    return rest && isSuffix(*rest);
  });
}

bool isWordAndMoment(std::string_view stem, std::string_view word) {
  const auto rest = behind(word, stem);
  const std::size_t digit = rest ? rest->find_first_of("0123456789") : std::string_view::npos;
  return digit != std::string_view::npos && digit > 0 && digit <= kMostBetween && isMoment(rest->substr(digit));
}

}  // namespace

bool isScreenshotName(std::string_view stem) {
  return std::ranges::any_of(screenshotWords(), [&](std::string_view word) { return isWordAndMoment(stem, word); }) ||
         std::ranges::any_of(screenshotNamePatterns(), [&](std::string_view pattern) {
           const auto rest = behind(pattern, stem);
           return rest && isSuffix(*rest);
         });
}

bool isScreenshotFolderName(std::string_view name) {
  return std::ranges::any_of(screenshotFolderWords(), [&](std::string_view word) {
    return name.size() == word.size() && std::ranges::equal(name, word, isSame);
  });
}

}  // namespace quenlio
