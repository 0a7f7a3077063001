// The names under which screenshot tools save by default, and those of the folders that they keep: data, in one place.
// Any thread.
#pragma once

#include <span>
#include <string_view>

namespace quenlio {

// What desktops call a screenshot, in their users' languages. Their tools name a file by this word, a few words between
// (such as "from"), and the moment.
[[nodiscard]] std::span<const std::string_view> screenshotWords();

// What desktops call the folder that they keep for screenshots, in their users' languages.
[[nodiscard]] std::span<const std::string_view> screenshotFolderWords();

// How the desktops that make that folder by themselves call it, by the locale of the user's messages.
struct ScreenshotFolderName {
  std::string_view locale;  // a language, or a language with a country: "pt", "pt_BR"
  std::string_view name;
};
[[nodiscard]] std::span<const ScreenshotFolderName> screenshotFolderNames();

// Names that single tools give, without extension: '#' is one digit, '+' one digit or more, '~' a mark between two
// numbers (one of "-_.:+"), all else itself.
[[nodiscard]] std::span<const std::string_view> screenshotNamePatterns();

// Whether a tool would give this name by default; the name goes without its extension, and may end in what tools add
// when a name is taken: "-1", " - 1", "_1", " (1)". Case does not count in ASCII letters.
[[nodiscard]] bool isScreenshotName(std::string_view stem);

// Whether this is the name of a folder kept for screenshots.
[[nodiscard]] bool isScreenshotFolderName(std::string_view name);

}  // namespace quenlio
