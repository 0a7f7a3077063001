#include "desktop/linux/system/LinuxStandardDirectories.h"

#include <array>
#include <pwd.h>
#include <unistd.h>

#include "core/base/Text.h"

#include "desktop/linux/system/LinuxFileContents.h"

namespace quenlio {
namespace {

// The folder that the variable names; nothing unless it is an absolute path.
std::optional<FileURL> folderOf(const ProcessInfo& process, std::string_view variable) {
  const auto value = process.environment(variable);
  return value && value->starts_with('/') ? std::optional(FileURL(*value)) : std::nullopt;
}

// A value in double quotes as a shell reads it; nothing without its quotes.
std::optional<std::string> unquoted(std::string_view text) {
  if (!text.starts_with('"')) {
    return std::nullopt;
  }
  std::string value;
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (text[i] == '"') {
      return value;
    }
    if (text[i] == '\\' && i + 1 < text.size()) {
      ++i;
    }
    value += text[i];
  }
  return std::nullopt;
}

std::optional<FileURL> directoryOfValue(std::string_view quoted, const FileURL& home) {
  const auto value = unquoted(quoted);
  if (value && value->starts_with('/')) {
    return FileURL(*value);
  }
  const auto path = value ? withHomeFor("$HOME", *value, home) : std::nullopt;
  return path ? std::optional(FileURL(*path)) : std::nullopt;
}

}  // namespace

std::optional<std::string> withHomeFor(std::string_view name, std::string_view path, const FileURL& home) {
  if (!path.starts_with(name)) {
    return std::nullopt;
  }
  const std::string_view rest = path.substr(name.size());
  return rest.empty() || rest.starts_with('/') ? std::optional(home.path() + std::string(rest)) : std::nullopt;
}

std::optional<FileURL> userDirectory(std::string_view text, std::string_view key, const FileURL& home) {
  std::optional<FileURL> result;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    std::string_view line = trimmed(text.substr(0, end));
    text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
    if (!line.starts_with(key)) {
      continue;
    }
    line = trimmed(line.substr(key.size()));
    if (line.starts_with('=')) {
      if (auto directory = directoryOfValue(trimmed(line.substr(1)), home)) {
        result = std::move(directory);
      }
    }
  }
  return result;
}

FileURL settingsDirectory(const ProcessInfo& process, const FileURL& home) {
  return folderOf(process, "XDG_CONFIG_HOME").value_or(home.appending(".config"));
}

FileURL LinuxStandardDirectories::homeDirectory() const {
  if (auto home = folderOf(process_, "HOME")) {
    return *home;
  }
  std::array<char, 16384> buffer{};
  passwd entry{};
  passwd* found = nullptr;
  const bool isListed = ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 &&
                        found != nullptr && found->pw_dir != nullptr;
  return FileURL(isListed ? found->pw_dir : "/");
}

FileURL LinuxStandardDirectories::temporaryDirectory() const {
  return folderOf(process_, "TMPDIR").value_or(FileURL("/tmp"));
}

std::optional<FileURL> LinuxStandardDirectories::applicationSupportDirectory() const {
  return folderOf(process_, "XDG_DATA_HOME").value_or(homeDirectory().appending(".local/share"));
}

std::optional<FileURL> LinuxStandardDirectories::desktopDirectory() const {
  const FileURL home = homeDirectory();
  const auto text = LinuxFileContents().read(settingsDirectory(process_, home).appending("user-dirs.dirs"));
  const auto set = text ? userDirectory(text.value(), "XDG_DESKTOP_DIR", home) : std::nullopt;
  return set.value_or(home.appending("Desktop"));
}

}  // namespace quenlio
