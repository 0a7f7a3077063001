#include "core/permissions/OnboardingPermissionService.h"

#include "core/platform/FileManager.h"
#include "core/platform/ScreenCaptureAccess.h"

namespace quenlio {

bool OnboardingPermissionService::isReadableFolder(const FileManager& files, const FileURL& folder) {
  return files.isDirectory(folder) && files.isReadableFileAtPath(folder) && files.canListDirectoryAtURL(folder);
}

OnboardingPermissionState OnboardingPermissionService::probe() const {
  const FileURL desktop = directories_.homeDirectory().appending("Desktop");
  const bool readable = isReadableFolder(files_, desktop);
  return {screenCapture_.CGPreflightScreenCaptureAccess(), desktop, readable};
}

void OnboardingPermissionService::openFilesAndFoldersSettings() {}

}  // namespace quenlio
