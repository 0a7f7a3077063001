// What the program needs of the desktop: to see captures made, and to read the folder they land in. Main thread;
// stateless.
#pragma once

#include "core/base/FileURL.h"

namespace quenlio {

class FileManager;
class ScreenCaptureAccess;
class StandardDirectories;

struct OnboardingPermissionState {
  bool screenRecordingGranted = false;
  FileURL desktopFolderURL;
  bool desktopFolderReadable = false;
  bool operator==(const OnboardingPermissionState&) const = default;
};

class OnboardingPermissionService {
 public:
  OnboardingPermissionService(const FileManager& files, const StandardDirectories& directories,
                              const ScreenCaptureAccess& screenCapture)
      : files_(files), directories_(directories), screenCapture_(screenCapture) {}

  // Whether a folder is one, may be read and can be listed, asked in that order. An error is the answer no.
  [[nodiscard]] static bool isReadableFolder(const FileManager& files, const FileURL& folder);

  // The state as it is now: "Desktop" in the user's home, and the right to see the screen.
  [[nodiscard]] OnboardingPermissionState probe() const;

  // Opens the desktop's own settings. Does nothing yet: no settings panel is known to it.
  void openFilesAndFoldersSettings();

 private:
  const FileManager& files_;
  const StandardDirectories& directories_;
  const ScreenCaptureAccess& screenCapture_;
};

}  // namespace quenlio
