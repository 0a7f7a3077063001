// Saves copies of files where the user says: one under a name, for which a free one is proposed, several in a folder.
// What is there already is replaced only if a dialog has asked about this very file; in a folder the copies get names
// that are free. Names need not be UTF-8, though dialogs can show no others as they are. Owned by the share menu; main
// thread.
#pragma once

#include <memory>
#include <vector>

#include "core/base/WeakOwner.h"
#include "core/platform/FileManager.h"
#include "core/platform/Scheduler.h"

namespace quenlio {

class CopySaver {
 public:
  // Both outlive this.
  CopySaver(FileManager& files, Scheduler& scheduler);
  CopySaver(const CopySaver&) = delete;
  CopySaver& operator=(const CopySaver&) = delete;
  ~CopySaver();

  // Shows a dialog and returns at once. Others that are open stay.
  void save(const std::vector<FileURL>& urls);

 private:
  class Dialog;
  void closed(const Dialog* dialog, bool isAccepted);

  FileManager& files_;
  Scheduler& scheduler_;
  std::vector<std::unique_ptr<Dialog>> open_;
  WeakOwner<CopySaver> weak_{this};
};

}  // namespace quenlio
