// Bookmarks as bytes that hold a folder's path, device and inode. The folder at that path may be another one by now, or
// gone: then the bookmark is stale.
#pragma once

#include "core/platform/Bookmarks.h"

namespace quenlio {

class LinuxBookmarks final : public Bookmarks {
 public:
  [[nodiscard]] PlatformResult<Bytes> bookmarkDataWithSecurityScope(const FileURL& url) override;
  [[nodiscard]] PlatformResult<ResolvedBookmark> resolveBookmarkData(const Bytes& data) override;
  // No program needs leave for a folder here: true when it is there.
  bool startAccessingSecurityScopedResource(const FileURL& url) override;
};

}  // namespace quenlio
