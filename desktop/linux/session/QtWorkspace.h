// The file manager, asked over the session bus; where none answers, the folders are opened by whatever opens folders.
// Main thread.
#pragma once

#include "core/base/WeakOwner.h"
#include "core/platform/Sharing.h"

#include "desktop/linux/session/ProgramStarter.h"

namespace quenlio {

class QtWorkspace final : public Workspace {
 public:
  // The starter outlives this.
  explicit QtWorkspace(ProgramStarter& starter) : starter_(starter) {}

  // A file manager that the bus has to start may answer late, and only then are the folders opened instead.
  void activateFileViewerSelectingURLs(const std::vector<FileURL>& urls) override;

 private:
  void openFolders(const std::vector<FileURL>& urls);
  void openFolder(const FileURL& folder);

  ProgramStarter& starter_;
  WeakOwner<QtWorkspace> weak_{this};
};

}  // namespace quenlio
