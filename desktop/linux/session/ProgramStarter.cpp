#include "desktop/linux/session/ProgramStarter.h"

#include "desktop/linux/system/DetachedProgram.h"

namespace quenlio {

bool ProgramStarter::open(const DesktopEntry& entry, const std::vector<FileURL>& files) {
  bool isStarted = false;
  for (Command& command : commandsToOpen(entry, files)) {
    if (const auto program = programs().findProgram(command.front())) {
      command.erase(command.begin());
      isStarted = start(*program, command, entry.workingDirectory) || isStarted;
    }
  }
  return isStarted;
}

bool ProgramStarter::start(const FileURL& program, const std::vector<std::string>& arguments,
                           const std::string& workingDirectory) {
  const std::string identifier = makeStartupID();
  return startDetached({.program = program,
                        .arguments = arguments,
                        .workingDirectory = workingDirectory,
                        .environment = {{"DESKTOP_STARTUP_ID", identifier}, {"XDG_ACTIVATION_TOKEN", identifier}}});
}

}  // namespace quenlio
