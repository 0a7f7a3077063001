// One program as the desktop knows it, read from its .desktop file, and the commands that open files with it. Pure; any
// thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/FileURL.h"

namespace quenlio {

struct DesktopEntry {
  std::string id;  // such as "org.example.Viewer.desktop"
  FileURL file;
  std::string name;  // in the user's language where the file has it
  std::string icon;  // a name of the icon theme or a path; may be empty
  std::string exec;  // with its quotes and field codes
  std::string tryExec;
  std::string workingDirectory;  // empty: that of whoever starts it
  bool isHidden = false;         // as good as not there
  bool isLeftOutOfMenus = false;
  bool runsInTerminal = false;
  std::optional<std::vector<std::string>> onlyShowIn;
  std::vector<std::string> notShowIn;
  bool operator==(const DesktopEntry&) const = default;

  // On a desktop of these names.
  [[nodiscard]] bool isShownIn(const std::vector<std::string>& desktops) const;
};

// The entry without its id and file. The locale is as the environment has it, such as "de_DE.UTF-8". Nothing when the
// text is no program's entry.
[[nodiscard]] std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, std::string_view locale);

using Command = std::vector<std::string>;  // the program, then its arguments

// The words of a command line as a shell divides it, but for nothing being replaced. Nothing when a quote is left open.
[[nodiscard]] std::optional<Command> commandWords(std::string_view line);

// What starts the program with these files: one command, or one for each file with a program that takes only one. A
// program that says nothing of files is given them at the end, one a command. None for a line that cannot be read.
[[nodiscard]] std::vector<Command> commandsToOpen(const DesktopEntry& entry, const std::vector<FileURL>& files);

}  // namespace quenlio
