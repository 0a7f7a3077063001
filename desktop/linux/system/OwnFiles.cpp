#include "desktop/linux/system/OwnFiles.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace quenlio {
namespace {

constexpr std::size_t kMostFiles = 256;
constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

}  // namespace

bool OwnFiles::identify(int folder, const char* path, int flags, Identity& identity) {
  struct statx status {};
  if (::statx(folder, path, flags, STATX_INO | STATX_BTIME | STATX_MTIME, &status) != 0) {
    return false;
  }
  const auto& time = (status.stx_mask & STATX_BTIME) != 0 ? status.stx_btime : status.stx_mtime;
  identity = {.device = makedev(status.stx_dev_major, status.stx_dev_minor),
              .inode = status.stx_ino,
              .birth = time.tv_sec * kNanosecondsPerSecond + time.tv_nsec};
  return true;
}

void OwnFiles::note(const FileURL& url) {
  Identity identity;
  if (identify(AT_FDCWD, url.path().c_str(), AT_SYMLINK_NOFOLLOW, identity)) {
    keep(identity);
  }
}

void OwnFiles::note(int fd) {
  Identity identity;
  if (identify(fd, "", AT_EMPTY_PATH, identity)) {
    keep(identity);
  }
}

void OwnFiles::keep(const Identity& identity) {
  const std::lock_guard lock(mutex_);
  std::erase(newest_, identity);
  newest_.push_back(identity);
  if (newest_.size() > kMostFiles) {
    newest_.pop_front();
  }
}

bool OwnFiles::contains(const FileURL& url) const {
  Identity identity;
  if (!identify(AT_FDCWD, url.path().c_str(), AT_SYMLINK_NOFOLLOW, identity)) {
    return false;
  }
  const std::lock_guard lock(mutex_);
  return std::ranges::find(newest_, identity) != newest_.end();
}

}  // namespace quenlio
