// Starts the programs that files are handed to, each so that its window may come to the front. Owned by LinuxPlatform;
// main thread.
#pragma once

#include "core/platform/FileManager.h"
#include "core/platform/ProcessInfo.h"

#include "desktop/linux/session/QtWindows.h"
#include "desktop/linux/system/DesktopEntries.h"

namespace quenlio {

class ProgramStarter {
 public:
  // All outlive this.
  ProgramStarter(const ProcessInfo& process, const StandardDirectories& directories, QtWindows& windows)
      : process_(process), directories_(directories), windows_(windows) {}

  // What is installed, as of now.
  [[nodiscard]] DesktopEntries programs() const {
    return DesktopEntries(DesktopEntries::surroundings(process_, directories_));
  }
  // False when nothing could be started.
  bool open(const DesktopEntry& entry, const std::vector<FileURL>& files);
  bool start(const FileURL& program, const std::vector<std::string>& arguments,
             const std::string& workingDirectory = {});
  // For programs that are told of it otherwise.
  [[nodiscard]] std::string makeStartupID() { return windows_.makeStartupID(); }

 private:
  const ProcessInfo& process_;
  const StandardDirectories& directories_;
  QtWindows& windows_;
};

}  // namespace quenlio
