#include "core/identity/AppPaths.h"

#include "core/diagnostics/QuenlioReleaseTestConfiguration.h"
#include "core/identity/LegacyIdentifiers.h"
#include "core/platform/FileManager.h"

namespace quenlio {
namespace {
constexpr std::string_view kFolderName = "Quenlio";
}

FileURL AppPaths::applicationSupportRoot() const {
  return directories_.applicationSupportDirectory().value_or(directories_.temporaryDirectory());
}

FileURL AppPaths::appSupportDirectoryURL() const {
  if (configuration_.appSupportDirectory) {
    return *configuration_.appSupportDirectory;
  }
  const auto root = directories_.applicationSupportDirectory();
  if (!root) {
    return directories_.temporaryDirectory();
  }
  const FileURL current = root->appending(kFolderName);
  const FileURL legacy = root->appending(LegacyIdentifiers::previousAppSupportFolderName);
  if (!files_.fileExistsAtPath(legacy)) {
    return current;
  }
  if (!files_.fileExistsAtPath(current)) {
    return files_.moveItemAtURL(legacy, current).ok() ? current : legacy;
  }
  mergeLegacyDirectory(legacy, current);
  return current;
}

void AppPaths::mergeLegacyDirectory(const FileURL& from, const FileURL& into) const {
  files_.enumerateAtURL(from, [&](const FileURL& url, bool isDirectory) {
    const std::string prefix = from.path() + "/";
    const std::string relative =
        url.path().starts_with(prefix) ? url.path().substr(prefix.size()) : url.lastPathComponent();
    const FileURL target = into.appending(relative);
    if (files_.fileExistsAtPath(target)) {
      return;
    }
    if (isDirectory) {
      (void)files_.createDirectoryAtURL(target);
    } else if (files_.createDirectoryAtURL(target.parent()).ok()) {
      (void)files_.copyItemAtURL(url, target);
    }
  });
}

bool AppPaths::hasCurrentAppSupportFolder() const {
  const FileURL folder = configuration_.appSupportDirectory.value_or(applicationSupportRoot().appending(kFolderName));
  if (!files_.isDirectory(folder)) {
    return false;
  }
  const auto contents = files_.contentsOfDirectoryAtURL(folder, HiddenFiles::include);
  return contents.ok() && !contents.value().empty();
}

}  // namespace quenlio
