// The folder into which this desktop's own tools put screenshots. Main thread; cheap enough to be asked every few
// seconds of an idle program: files are read again only when they have changed, and a program is started only when the
// desktop's settings store has. The first question waits for that program, since the launch needs its answer; the one
// that notices a change waits for a moment, after which the old answer holds until the new one is there.
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "core/base/FileURL.h"
#include "core/platform/FileManager.h"
#include "core/platform/ProcessInfo.h"

#include "desktop/linux/system/GSettings.h"
#include "desktop/linux/system/RegularFile.h"
#include "desktop/linux/system/SettingsStoreAnswer.h"

namespace quenlio {

class DesktopScreenshotFolder {
 public:
  // The process and the directories outlive this object. The patience is that with the store after a change.
  DesktopScreenshotFolder(const ProcessInfo& process, const StandardDirectories& directories, GSettingsGet gsettings,
                          std::chrono::milliseconds patience = kPatienceAfterChange)
      : process_(process), directories_(directories), store_(std::move(gsettings), patience) {}

  // In this order: what the desktop in use is set to, what the environment says, the desktop's default. A folder kept
  // for screenshots that the desktop's tool would make at the first capture is made now, or that capture would be
  // missed, with the pictures folder above it; where other desktops' tools put theirs right into the user's pictures,
  // these are not made for their sake. A path or nothing; whether anything is there is not asked for what has been set.
  [[nodiscard]] std::optional<FileURL> current();

 private:
  // A file's text as of its last change.
  struct ReadFile {
    std::optional<FileStamp> stamp;
    std::string text;
  };

  [[nodiscard]] FileURL settingsFolder() const;
  [[nodiscard]] bool isDesktop(std::string_view name) const;
  [[nodiscard]] std::optional<FileURL> configured();
  [[nodiscard]] std::optional<FileURL> fromStore(std::string_view schema, std::string_view key);
  [[nodiscard]] std::optional<FileURL> fromEnvironment();
  [[nodiscard]] std::optional<FileURL> byDefault();
  [[nodiscard]] FileURL pictures();
  [[nodiscard]] std::string translatedName() const;
  [[nodiscard]] const std::string& text(const FileURL& file);

  const ProcessInfo& process_;
  const StandardDirectories& directories_;
  std::map<FileURL, ReadFile> files_;
  SettingsStoreAnswer store_;
};

// The value of the key in the group of a settings file in the form of desktop entries. Brackets behind the key (a
// language or a mark) do not count. Nothing when there is none.
[[nodiscard]] std::optional<std::string> valueInGroup(std::string_view text, std::string_view group,
                                                      std::string_view key);

// The folder that a setting names: a file URL with its escapes undone, or a path that begins with a slash, a tilde or
// $HOME. Nothing for anything else.
[[nodiscard]] std::optional<FileURL> folderOfSetting(std::string_view value, const FileURL& home);

}  // namespace quenlio
