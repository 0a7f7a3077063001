// Lasting references to a folder that the user has chosen. Main thread.
#pragma once

#include "core/base/FileURL.h"
#include "core/platform/PlatformError.h"
#include "core/platform/UserDefaults.h"

namespace quenlio {

struct ResolvedBookmark {
  FileURL url;
  bool isStale = false;  // something else is at the place now, or nothing
};

class Bookmarks {
 public:
  virtual ~Bookmarks() = default;
  [[nodiscard]] virtual PlatformResult<Bytes> bookmarkDataWithSecurityScope(const FileURL& url) = 0;
  // Fails on bytes that are no bookmark.
  [[nodiscard]] virtual PlatformResult<ResolvedBookmark> resolveBookmarkData(const Bytes& data) = 0;
  // Access is released when the process ends.
  virtual bool startAccessingSecurityScopedResource(const FileURL& url) = 0;
};

}  // namespace quenlio
