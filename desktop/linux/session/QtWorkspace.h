// The file manager, asked over the session bus; where none answers, the folders are opened by whatever opens folders.
// What cannot be opened is logged. Main thread.
#pragma once

#include "core/base/WeakOwner.h"
#include "core/platform/Sharing.h"
#include "core/platform/SystemLog.h"

#include "desktop/linux/session/ProgramStarter.h"

namespace quenlio {

class QtWorkspace final : public Workspace {
 public:
  // Both outlive this.
  QtWorkspace(ProgramStarter& starter, SystemLog& log) : starter_(starter), log_(log) {}

  // A file manager that the bus has to start may answer late, and only then are the folders opened instead.
  void activateFileViewerSelectingURLs(const std::vector<FileURL>& urls) override;

 private:
  void openFolders(const std::vector<FileURL>& urls);
  // False when there is no program for that.
  bool openFolder(const FileURL& folder);

  ProgramStarter& starter_;
  SystemLog& log_;
  WeakOwner<QtWorkspace> weak_{this};
};

}  // namespace quenlio
