#include "desktop/linux/system/XdgLoginItem.h"

#include <string>
#include <string_view>

#include "desktop/linux/system/KeyFile.h"
#include "desktop/linux/system/LinuxStandardDirectories.h"

namespace quenlio {
namespace {

bool isSwitchedOff(const std::string& text) {
  const KeyFileGroup entry = keyFileGroup(text, "Desktop Entry");
  const auto says = [&entry](std::string_view key, std::string_view value) {
    const auto found = entry.find(key);
    return found != entry.end() && found->second == value;
  };
  return says("Hidden", "true") || says("X-GNOME-Autostart-enabled", "false");
}

}  // namespace

std::string quotedForExec(const std::string& path) {
  std::string quoted = "\"";
  for (const char byte : path) {
    switch (byte) {
      case '\\':
        // A backslash within the quotes, and each of the two once more for the file's own escapes.
        quoted += "\\\\\\\\";
        break;
      case '"':
      case '`':
      case '$':
        quoted += "\\\\";
        quoted += byte;
        break;
      case '%':
        quoted += "%%";  // alone it introduces a field
        break;
      case '\n':
        quoted += "\\n";
        break;
      default:
        quoted += byte;
    }
  }
  return quoted + "\"";
}

FileURL XdgLoginItem::entry() const {
  const FileURL settings = settingsDirectory(dependencies_.process, dependencies_.directories.homeDirectory());
  return settings.appending("autostart").appending("quenlio.desktop");
}

LoginItemStatus XdgLoginItem::status() const {
  const auto text = dependencies_.contents.read(entry());
  if (!text.ok()) {
    return LoginItemStatus::notRegistered;
  }
  return isSwitchedOff(text.value()) ? LoginItemStatus::requiresApproval : LoginItemStatus::enabled;
}

PlatformResult<Done> XdgLoginItem::registerItem() {
  if (auto made = dependencies_.files.createDirectoryAtURL(entry().parent()); !made.ok()) {
    return made;
  }
  return dependencies_.contents.writeAtomically(entry(),
                                                "[Desktop Entry]\n"
                                                "Type=Application\n"
                                                "Name=Quenlio\n"
                                                "Exec=" +
                                                    quotedForExec(program_.path()) +
                                                    "\n"
                                                    "Terminal=false\n"
                                                    "X-GNOME-Autostart-enabled=true\n");
}

PlatformResult<Done> XdgLoginItem::unregisterItem() {
  if (!dependencies_.files.fileExistsAtPath(entry())) {
    return Done{};
  }
  return dependencies_.files.removeItemAtURL(entry());
}

}  // namespace quenlio
