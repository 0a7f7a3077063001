#include "desktop/linux/system/LinuxProcess.h"

#include <cstdlib>
#include <filesystem>

#include "core/base/Json.h"

#include "desktop/linux/system/LinuxFileContents.h"

namespace quenlio {

std::optional<std::string> LinuxProcessInfo::environment(std::string_view name) const {
  const char* value = std::getenv(std::string(name).c_str());
  return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

LinuxMainBundle::LinuxMainBundle(const FileURL& program) : bundleURL_(program.parent()) {
  for (FileURL folder = program.parent(); folder != folder.parent(); folder = folder.parent()) {
    if (folder.pathExtension() != "app") {
      continue;
    }
    if (const auto info = LinuxFileContents().read(folder.appending("Info.json"))) {
      bundleURL_ = folder;
      readInfo(info.value());
      return;
    }
  }
}

void LinuxMainBundle::readInfo(const std::string& text) {
  const auto dictionary = json::read(text);
  if (!dictionary || !dictionary->is_object()) {
    return;
  }
  for (const auto& [key, value] : dictionary->items()) {
    if (value.is_string()) {
      info_[key] = value.get<std::string>();
    }
  }
}

FileURL LinuxMainBundle::executableURL() {
  std::error_code error;
  return FileURL(std::filesystem::read_symlink("/proc/self/exe", error).string());
}

std::optional<std::string> LinuxMainBundle::infoString(std::string_view key) const {
  const auto found = info_.find(key);
  return found != info_.end() ? std::optional(found->second) : std::nullopt;
}

}  // namespace quenlio
