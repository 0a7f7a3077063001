#include "core/detection/ScreenshotLocationResolver.h"

#include <variant>

#include "core/platform/Bookmarks.h"
#include "core/platform/FileManager.h"
#include "core/platform/Preferences.h"
#include "core/platform/SystemLog.h"
#include "core/settings/AppSettings.h"

namespace quenlio {
namespace {

// "~" and "~/…" lead to the home folder; any other path stays.
FileURL expandingTilde(const std::string& path, const FileURL& home) {
  if (path == "~") {
    return home;
  }
  return path.starts_with("~/") ? home.appending(path.substr(2)) : FileURL(path);
}

}  // namespace

FileURL ScreenshotLocationResolver::resolveFolder(const AppSettings& settings) const {
  const auto& bookmark = settings.manualScreenshotFolderBookmark.get();
  if (settings.detectLocationMode.get() != ScreenshotLocationMode::manual || !bookmark || bookmark->empty()) {
    return automaticFolder();
  }
  const auto resolved = dependencies_.bookmarks.resolveBookmarkData(*bookmark);
  if (!resolved.ok()) {
    dependencies_.log.NSLog("Failed to resolve screenshot folder bookmark: " + resolved.error().localizedDescription);
    return automaticFolder();
  }
  if (resolved.value().isStale) {
    dependencies_.log.NSLog("Screenshot folder bookmark is stale");
  }
  (void)dependencies_.bookmarks.startAccessingSecurityScopedResource(resolved.value().url);
  return resolved.value().url;
}

FileURL ScreenshotLocationResolver::automaticFolder() const {
  const auto& [bookmarks, preferences, files, directories, log] = dependencies_;
  const auto location = preferences.CFPreferencesCopyAppValue("location", kScreenCaptureDomain);
  const auto* path = location ? std::get_if<std::string>(&*location) : nullptr;
  if (path != nullptr && !path->empty()) {
    const FileURL folder = expandingTilde(*path, directories.homeDirectory());
    if (files.fileExistsAtPath(folder)) {
      return folder;
    }
  }
  return directories.desktopDirectory().value_or(directories.homeDirectory().appending("Desktop"));
}

}  // namespace quenlio
