#include "desktop/linux/system/RenameWithoutReplacing.h"

#include <cerrno>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

#include "desktop/linux/system/UniqueFd.h"

namespace quenlio {
namespace {

int statusOf(const FilePlace& place, struct stat& status) {
  return ::fstatat(place.folder, place.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 ? 0 : errno;
}

int removeName(const FilePlace& place, int flags = 0) {
  return ::unlinkat(place.folder, place.name.c_str(), flags) == 0 ? 0 : errno;
}

bool isSameFile(const struct stat& one, const struct stat& other) {
  return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

bool areSameFile(const FilePlace& one, const FilePlace& other) {
  struct stat first {};
  struct stat second {};
  return statusOf(one, first) == 0 && statusOf(other, second) == 0 && isSameFile(first, second);
}

int plainRename(const FilePlace& from, const FilePlace& to) {
  return ::renameat(from.folder, from.name.c_str(), to.folder, to.name.c_str()) == 0 ? 0 : errno;
}

// The name is taken by an empty folder, which is all that the rename may replace.
int claimAndRenameFolder(const FilePlace& from, const FilePlace& to) {
  if (::mkdirat(to.folder, to.name.c_str(), S_IRWXU) != 0) {
    return errno;
  }
  const int error = plainRename(from, to);
  if (error != 0) {
    (void)removeName(to, AT_REMOVEDIR);
  }
  return error;
}

// Still empty, and still what has the name: nobody has written into it or put something else in its place.
bool isUntouched(const UniqueFd& claim, const FilePlace& place) {
  struct stat open {};
  struct stat there {};
  return ::fstat(claim.get(), &open) == 0 && open.st_size == 0 && statusOf(place, there) == 0 &&
         isSameFile(open, there);
}

}  // namespace

int renameWithoutReplacing(const FilePlace& from, const FilePlace& to) {
  if (::renameat2(from.folder, from.name.c_str(), to.folder, to.name.c_str(), RENAME_NOREPLACE) == 0) {
    return 0;
  }
  if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP) {
    return errno;
  }
  const int error = linkAndUnlink(from, to);
  const bool knowsNoLinks = error == EPERM || error == ENOSYS || error == EOPNOTSUPP || error == EMLINK;
  return knowsNoLinks ? claimAndRename(from, to) : error;
}

int linkAndUnlink(const FilePlace& from, const FilePlace& to) {
  if (::linkat(from.folder, from.name.c_str(), to.folder, to.name.c_str(), 0) != 0) {
    return errno;
  }
  // What has taken the old name meanwhile is somebody else's and stays.
  const int error = areSameFile(from, to) ? removeName(from) : 0;
  if (error == 0 || error == ENOENT) {
    return 0;
  }
  (void)removeName(to);
  return error;
}

int claimAndRename(const FilePlace& from, const FilePlace& to) {
  struct stat status {};
  if (const int error = statusOf(from, status); error != 0) {
    return error;
  }
  if (S_ISDIR(status.st_mode)) {
    return claimAndRenameFolder(from, to);
  }
  const UniqueFd claim(
      ::openat(to.folder, to.name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (!claim) {
    return errno;
  }
  const int error = isUntouched(claim, to) ? plainRename(from, to) : EEXIST;
  if (error != 0 && isUntouched(claim, to)) {
    (void)removeName(to);
  }
  return error;
}

}  // namespace quenlio
