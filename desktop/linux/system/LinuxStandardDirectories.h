// Where the user's folders are, as the environment and the desktop's own settings say. Any thread.
#pragma once

#include "core/platform/FileManager.h"
#include "core/platform/ProcessInfo.h"

namespace quenlio {

class LinuxStandardDirectories final : public StandardDirectories {
 public:
  // The process outlives this object.
  explicit LinuxStandardDirectories(const ProcessInfo& process) : process_(process) {}

  // $HOME, else what the system's user list says.
  [[nodiscard]] FileURL homeDirectory() const override;
  // $TMPDIR, else /tmp.
  [[nodiscard]] FileURL temporaryDirectory() const override;
  // $XDG_DATA_HOME, else .local/share in the home folder.
  [[nodiscard]] std::optional<FileURL> applicationSupportDirectory() const override;
  // What the desktop is set to in user-dirs.dirs, else Desktop in the home folder. Read anew each time.
  [[nodiscard]] std::optional<FileURL> desktopDirectory() const override;

 private:
  const ProcessInfo& process_;
};

// Where the user's settings are: $XDG_CONFIG_HOME, when it is an absolute path, else .config in the home folder.
[[nodiscard]] FileURL settingsDirectory(const ProcessInfo& process, const FileURL& home);

// The path with the name of the home folder ("~", "$HOME") replaced, when it stands alone or before a slash; nothing
// when the path does not begin so.
[[nodiscard]] std::optional<std::string> withHomeFor(std::string_view name, std::string_view path, const FileURL& home);

// The folder of that key ("XDG_DESKTOP_DIR") in the text of a user-dirs.dirs file, whose lines look like
// XDG_DESKTOP_DIR="$HOME/Desktop". The last one wins; nothing when there is none or its value is no such path.
[[nodiscard]] std::optional<FileURL> userDirectory(std::string_view text, std::string_view key, const FileURL& home);

}  // namespace quenlio
