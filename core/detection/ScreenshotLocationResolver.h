// In which folder do new screenshots land? Main thread. Owned by the composition root.
#pragma once

#include "core/base/FileURL.h"

namespace quenlio {

class AppSettings;
class Bookmarks;
class FileManager;
class Preferences;
class StandardDirectories;
class SystemLog;

class ScreenshotLocationResolver {
 public:
  struct Dependencies {
    Bookmarks& bookmarks;
    Preferences& preferences;
    const FileManager& files;
    const StandardDirectories& directories;
    SystemLog& log;
  };

  explicit ScreenshotLocationResolver(const Dependencies& dependencies) : dependencies_(dependencies) {}

  // Always gives a folder: the user's own choice, else what the desktop is set to, else the Desktop. Asked for anew
  // each time, so a change of the desktop's setting shows at the next call. The folder need not exist or be readable.
  // Each resolved bookmark opens access to its folder, which ends with the process.
  [[nodiscard]] FileURL resolveFolder(const AppSettings& settings) const;

 private:
  [[nodiscard]] FileURL automaticFolder() const;

  Dependencies dependencies_;
};

}  // namespace quenlio
