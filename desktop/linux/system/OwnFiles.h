// The files that this program's own operations have just put somewhere: what is in here is no new screenshot.
//
// A file is known by its identity on the disk, not by its path, and is noted before it can be seen at its new place.
// File systems give the number of a removed file to the next one at once, so the moment of birth is part of the
// identity: a new screenshot is never taken for an old file of ours. The newest 256 are kept. Any thread.
#pragma once

#include <cstdint>
#include <deque>
#include <mutex>

#include "core/base/FileURL.h"

namespace quenlio {

class OwnFiles {
 public:
  // The file that is at the path now; a link itself, not where it leads. Does nothing when there is none.
  void note(const FileURL& url);
  // An open file, which may not have its final name yet.
  void note(int fd);
  [[nodiscard]] bool contains(const FileURL& url) const;

 private:
  struct Identity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t birth = 0;  // nanoseconds; where the file system has none, the time of the last writing
    bool operator==(const Identity&) const = default;
  };
  static bool identify(int folder, const char* path, int flags, Identity& identity);
  void keep(const Identity& identity);

  mutable std::mutex mutex_;
  std::deque<Identity> newest_;  // guarded by mutex_
};

}  // namespace quenlio
