// Where the application keeps its files. Main thread. Owned by the composition root.
#pragma once

#include "core/base/FileURL.h"

namespace quenlio {

class FileManager;
class StandardDirectories;
struct QuenlioReleaseTestConfiguration;

class AppPaths {
 public:
  AppPaths(const QuenlioReleaseTestConfiguration& configuration, FileManager& files,
           const StandardDirectories& directories)
      : configuration_(configuration), files_(files), directories_(directories) {}

  // The data folder. Files of the product's earlier name are carried over each time it is asked for: the old folder
  // becomes this one, or, where both exist, what is missing here is copied from there. Nothing is overwritten or
  // deleted, and no failure is reported: the answer is always usable. The folder itself is not made here.
  [[nodiscard]] FileURL appSupportDirectoryURL() const;

  // Whether the data folder under the present name exists and holds something. Carries nothing over.
  [[nodiscard]] bool hasCurrentAppSupportFolder() const;

 private:
  [[nodiscard]] FileURL applicationSupportRoot() const;
  void mergeLegacyDirectory(const FileURL& from, const FileURL& into) const;

  const QuenlioReleaseTestConfiguration& configuration_;
  FileManager& files_;
  const StandardDirectories& directories_;
};

}  // namespace quenlio
