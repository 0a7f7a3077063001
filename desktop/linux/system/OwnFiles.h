// The files that this program's own operations have just put somewhere: what is in here is no new screenshot.
//
// A file is known by its identity on the disk, not by its path, and is noted before it can be seen at its new place.
// File systems give the number of a removed file to the next one at once, so the moment of birth is part of the
// identity: a new screenshot is never taken for an old file of ours. The newest 256 are kept. Any thread.
#pragma once

#include <deque>
#include <mutex>
#include <optional>

#include "core/platform/FileManager.h"

namespace quenlio {

// Of what is at the path, relative to the folder's descriptor, by statx() with these flags; nothing when nothing is.
// Where the file system keeps no moment of birth, that of the last writing stands in for it.
[[nodiscard]] std::optional<FileIdentity> fileIdentity(int folder, const char* path, int flags);

class OwnFiles {
 public:
  // The file that is at the path now; a link itself, not where it leads. Does nothing when there is none.
  void note(const FileURL& url);
  // An open file, which may not have its final name yet.
  void note(int fd);
  [[nodiscard]] bool contains(const FileURL& url) const;

 private:
  void keep(const FileIdentity& identity);

  mutable std::mutex mutex_;
  std::deque<FileIdentity> newest_;  // guarded by mutex_
};

}  // namespace quenlio
