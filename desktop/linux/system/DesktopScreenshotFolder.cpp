#include "desktop/linux/system/DesktopScreenshotFolder.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <sys/stat.h>
#include <vector>

#include "core/base/Text.h"

#include "desktop/linux/system/LinuxFileContents.h"
#include "desktop/linux/system/LinuxStandardDirectories.h"
#include "desktop/linux/system/ScreenshotNames.h"

namespace quenlio {
namespace {

struct StoreKey {
  std::string_view desktop;
  std::string_view schema;
  std::string_view key;
};
constexpr std::array<StoreKey, 4> kStoreKeys{{{"gnome", "org.gnome.gnome-screenshot", "auto-save-directory"},
                                              {"mate", "org.mate.screenshot", "last-save-directory"},
                                              {"x-cinnamon", "org.cinnamon.screenshot", "save-directory"},
                                              {"pantheon", "io.elementary.screenshot", "folder-dir"}}};

// Desktops, and compositors without one, whose tools put screenshots right into the user's pictures.
constexpr std::array<std::string_view, 10> kUsePictures{"mate",    "x-cinnamon", "xfce",  "pantheon", "sway",
                                                        "wlroots", "hyprland",   "river", "labwc",    "wayfire"};

std::optional<FileStamp> stampOfFile(const FileURL& file) {
  struct stat status {};
  return ::stat(file.path().c_str(), &status) == 0 ? std::optional(stampOf(status)) : std::nullopt;
}

bool isFolder(const FileURL& url) {
  struct stat status {};
  return ::stat(url.path().c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string withoutPercents(std::string_view text) {
  std::string plain;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char* const digits = text.data() + at + 1;
    unsigned char byte = 0;
    if (text[at] == '%' && text.size() - at > 2 && std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
      plain += static_cast<char>(byte);
      at += 2;
    } else {
      plain += text[at];
    }
  }
  return plain;
}

}  // namespace

std::optional<std::string> valueInGroup(std::string_view text, std::string_view group, std::string_view key) {
  std::string_view present;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    const std::string_view line = trimmed(text.substr(0, end));
    text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
    if (line.starts_with('[') && line.ends_with(']')) {
      present = line.substr(1, line.size() - 2);
      continue;
    }
    const std::size_t equals = line.find('=');
    if (present != group || equals == std::string_view::npos || line.starts_with('#')) {
      continue;
    }
    const std::string_view name = trimmed(line.substr(0, equals));
    if (trimmed(name.substr(0, name.find('['))) == key) {
      return std::string(trimmed(line.substr(equals + 1)));
    }
  }
  return std::nullopt;
}

std::optional<FileURL> folderOfSetting(std::string_view value, const FileURL& home) {
  constexpr std::string_view scheme = "file://";
  const bool isURL = lowercased(value.substr(0, scheme.size())) == scheme;
  std::string path(value);
  if (isURL) {
    value.remove_prefix(scheme.size());
    value.remove_prefix(value.starts_with("localhost/") ? std::string_view("localhost").size() : 0);
    path = withoutPercents(value);
  }
  for (const std::string_view name : {"~", "$HOME", "${HOME}"}) {
    path = withHomeFor(name, path, home).value_or(path);
  }
  const bool isPath = path.starts_with('/') && path.find('\0') == std::string::npos;
  return isPath ? std::optional(FileURL(std::move(path))) : std::nullopt;
}

std::optional<FileURL> DesktopScreenshotFolder::current() {
  auto folder = configured();
  folder = folder ? folder : fromEnvironment();
  return folder ? folder : byDefault();
}

FileURL DesktopScreenshotFolder::settingsFolder() const {
  return settingsDirectory(process_, directories_.homeDirectory());
}

// The names of desktops stand one after the other, the most special one first: "ubuntu:GNOME".
bool DesktopScreenshotFolder::isDesktop(std::string_view name) const {
  const std::string names = ":" + lowercased(process_.environment("XDG_CURRENT_DESKTOP").value_or("")) + ":";
  return names.find(":" + std::string(name) + ":") != std::string::npos;
}

std::optional<FileURL> DesktopScreenshotFolder::configured() {
  for (const auto& [desktop, schema, key] : kStoreKeys) {
    if (isDesktop(desktop)) {
      return fromStore(schema, key);
    }
  }
  struct FileKey {
    std::string_view desktop, file, group, key;
  };
  // The present key first, then those of older versions.
  static constexpr std::array<FileKey, 5> keys{{{"kde", "spectaclerc", "ImageSave", "imageSaveLocation"},
                                                {"kde", "spectaclerc", "Save", "defaultSaveLocation"},
                                                {"kde", "spectaclerc", "General", "defaultSaveLocation"},
                                                {"xfce", "xfce4/xfce4-screenshooter", "Default", "screenshot_dir"},
                                                {"xfce", "xfce4/xfce4-screenshooter", "", "screenshot_dir"}}};
  for (const auto& [desktop, file, group, key] : keys) {
    if (!isDesktop(desktop)) {
      continue;
    }
    const auto value = valueInGroup(text(settingsFolder().appending(file)), group, key);
    if (auto folder = value ? folderOfSetting(*value, directories_.homeDirectory()) : std::nullopt) {
      return folder;
    }
  }
  return std::nullopt;
}

std::optional<FileURL> DesktopScreenshotFolder::fromStore(std::string_view schema, std::string_view key) {
  const auto printed = store_.get(schema, key, stampOfFile(settingsFolder().appending("dconf").appending("user")));
  const auto value = printed ? stringOfVariant(*printed) : std::nullopt;
  return value ? folderOfSetting(*value, directories_.homeDirectory()) : std::nullopt;
}

std::optional<FileURL> DesktopScreenshotFolder::fromEnvironment() {
  const FileURL home = directories_.homeDirectory();
  constexpr std::string_view kOwnKey = "XDG_SCREENSHOTS_DIR";
  for (const std::string_view name : {kOwnKey, std::string_view("GRIM_DEFAULT_DIR")}) {
    const auto value = process_.environment(name);
    if (auto folder = value ? folderOfSetting(*value, home) : std::nullopt) {
      return folder;
    }
  }
  // Some tools look for that name among the user's folders too.
  return userDirectory(text(settingsFolder().appending("user-dirs.dirs")), kOwnKey, home);
}

std::optional<FileURL> DesktopScreenshotFolder::byDefault() {
  const FileURL parent = pictures();
  const std::string translated = translatedName();
  std::vector<std::string_view> names{translated};
  const auto known = screenshotFolderWords();
  names.insert(names.end(), known.begin(), known.end());
  for (const std::string_view name : names) {
    if (FileURL folder = parent.appending(name); isFolder(folder)) {
      return folder;
    }
  }
  if (!isDesktop("gnome") && !isDesktop("kde")) {
    const bool usesPictures = std::ranges::any_of(kUsePictures, [this](auto name) { return isDesktop(name); });
    return usesPictures && isFolder(parent) ? std::optional(parent) : std::nullopt;
  }
  FileURL folder = parent.appending(translated);
  std::error_code error;
  std::filesystem::create_directories(folder.path(), error);
  return isFolder(folder) ? std::optional(std::move(folder)) : std::nullopt;
}

FileURL DesktopScreenshotFolder::pictures() {
  const FileURL home = directories_.homeDirectory();
  const auto set = userDirectory(text(settingsFolder().appending("user-dirs.dirs")), "XDG_PICTURES_DIR", home);
  return set.value_or(home.appending("Pictures"));
}

// By the language of messages, as "pt_BR.UTF-8" tells it: the whole before the dot first, then the language alone.
std::string DesktopScreenshotFolder::translatedName() const {
  std::string locale;
  for (const std::string_view variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (locale.empty()) {
      locale = process_.environment(variable).value_or("");
    }
  }
  locale = locale.substr(0, locale.find_first_of(".@"));
  for (const std::string& candidate : {locale, locale.substr(0, locale.find('_'))}) {
    const auto names = screenshotFolderNames();
    const auto found = std::ranges::find(names, candidate, &ScreenshotFolderName::locale);
    if (found != names.end()) {
      return std::string(found->name);
    }
  }
  return "Screenshots";
}

const std::string& DesktopScreenshotFolder::text(const FileURL& file) {
  ReadFile& read = files_[file];
  const auto stamp = stampOfFile(file);
  if (stamp != read.stamp) {
    read.stamp = stamp;
    const auto contents = LinuxFileContents().read(file);
    read.text = contents ? contents.value() : std::string();
  }
  return read.text;
}

}  // namespace quenlio
