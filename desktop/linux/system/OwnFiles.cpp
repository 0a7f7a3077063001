#include "desktop/linux/system/OwnFiles.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include "desktop/linux/system/RegularFile.h"

namespace quenlio {
namespace {

constexpr std::size_t kMostFiles = 256;

}  // namespace

std::optional<FileIdentity> fileIdentity(int folder, const char* path, int flags) {
  struct statx status {};
  if (::statx(folder, path, flags, STATX_INO | STATX_BTIME | STATX_MTIME, &status) != 0) {
    return std::nullopt;
  }
  const auto& time = (status.stx_mask & STATX_BTIME) != 0 ? status.stx_btime : status.stx_mtime;
  return FileIdentity{.device = makedev(status.stx_dev_major, status.stx_dev_minor),
                      .number = status.stx_ino,
                      .birth = dateFromTimespec({.tv_sec = time.tv_sec, .tv_nsec = time.tv_nsec})};
}

void OwnFiles::note(const FileURL& url) {
  if (const auto identity = fileIdentity(AT_FDCWD, url.path().c_str(), AT_SYMLINK_NOFOLLOW)) {
    keep(*identity);
  }
}

void OwnFiles::note(int fd) {
  if (const auto identity = fileIdentity(fd, "", AT_EMPTY_PATH)) {
    keep(*identity);
  }
}

void OwnFiles::keep(const FileIdentity& identity) {
  const std::lock_guard lock(mutex_);
  std::erase(newest_, identity);
  newest_.push_back(identity);
  if (newest_.size() > kMostFiles) {
    newest_.pop_front();
  }
}

bool OwnFiles::contains(const FileURL& url) const {
  const auto identity = fileIdentity(AT_FDCWD, url.path().c_str(), AT_SYMLINK_NOFOLLOW);
  const std::lock_guard lock(mutex_);
  return identity && std::ranges::find(newest_, *identity) != newest_.end();
}

}  // namespace quenlio
