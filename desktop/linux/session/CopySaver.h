// Saves copies of files where the user says: one under a name, several in a folder. What is there already is replaced
// only after the dialog has asked; in a folder the copies get names that are free. Owned by the share menu; main
// thread.
#pragma once

#include <QtCore/QtGlobal>
#include <memory>
#include <vector>

#include "core/base/WeakOwner.h"
#include "core/platform/FileManager.h"
#include "core/platform/Scheduler.h"

QT_BEGIN_NAMESPACE
class QFileDialog;
QT_END_NAMESPACE

namespace quenlio {

class CopySaver {
 public:
  // Both outlive this.
  CopySaver(FileManager& files, Scheduler& scheduler);
  CopySaver(const CopySaver&) = delete;
  CopySaver& operator=(const CopySaver&) = delete;
  ~CopySaver();

  // Shows a dialog and returns at once; one that is still open goes.
  void save(const std::vector<FileURL>& urls);

 private:
  void closed(const std::vector<FileURL>& urls, bool isAccepted);

  FileManager& files_;
  Scheduler& scheduler_;
  std::unique_ptr<QFileDialog> dialog_;
  WeakOwner<CopySaver> weak_{this};
};

}  // namespace quenlio
