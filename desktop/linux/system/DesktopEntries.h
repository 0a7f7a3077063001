// Which programs open which type of file, as this user and this desktop have it: what the user has set comes before the
// system's own, and what the user has taken away is gone. Nothing is read before it is asked for, and nothing is kept.
// Immutable; any thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/platform/FileManager.h"
#include "core/platform/ProcessInfo.h"

#include "desktop/linux/system/DesktopEntry.h"

namespace quenlio {

// A type of file under all the names that it has, the proper one first: {"image/heic", "image/heif"}.
using FileType = std::vector<std::string>;

class DesktopEntries {
 public:
  struct Surroundings {
    std::vector<FileURL> settings;      // where mimeapps.list may be, the user's own first
    std::vector<FileURL> data;          // where "applications" may be, the user's own first
    std::vector<FileURL> programs;      // where programs are looked for by their names
    std::vector<std::string> desktops;  // the names of this desktop
    std::string locale;
  };
  // As the environment says.
  [[nodiscard]] static Surroundings surroundings(const ProcessInfo& process, const StandardDirectories& directories);

  explicit DesktopEntries(Surroundings surroundings) : surroundings_(std::move(surroundings)) {}

  // The programs that open files of every one of these types, what the user prefers first. Left out: what is not
  // installed, runs in a terminal or does not belong on this desktop; and what does not want to be in menus, unless
  // somebody has set it to open the type.
  [[nodiscard]] std::vector<DesktopEntry> programsFor(const std::vector<FileType>& types) const;

  [[nodiscard]] const std::vector<FileURL>& dataFolders() const { return surroundings_.data; }

  // The program itself, by its name or path; nothing when there is none that could be run.
  [[nodiscard]] std::optional<FileURL> findProgram(const std::string& name) const;

 private:
  struct Choice {
    std::string id;
    bool isSet = false;  // to open the type, and not merely able to
  };
  class Choices;

  [[nodiscard]] std::vector<Choice> choicesFor(const FileType& type) const;
  [[nodiscard]] std::optional<DesktopEntry> entryOf(const Choice& choice) const;
  [[nodiscard]] std::optional<DesktopEntry> read(const std::string& id) const;

  Surroundings surroundings_;
};

// The type of a picture or document by its contents, else by its name. Reads the head of the file.
[[nodiscard]] FileType fileTypeOf(const FileURL& url);

}  // namespace quenlio
