#include "desktop/linux/system/RenameWithoutReplacing.h"

#include <cerrno>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

#include "core/base/FileURL.h"
#include "core/base/Uuid.h"

namespace quenlio {
namespace {

int statusOf(const FilePlace& place, struct stat& status) {
  return ::fstatat(place.folder, place.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 ? 0 : errno;
}

int removeName(const FilePlace& place, int flags = 0) {
  return ::unlinkat(place.folder, place.name.c_str(), flags) == 0 ? 0 : errno;
}

// Any file, without opening what is in it; a link itself.
UniqueFd openName(const FilePlace& place) {
  return UniqueFd(::openat(place.folder, place.name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
}

// Another name for the open file, and for no other that has taken its name since.
int linkOpenFile(const UniqueFd& file, const FilePlace& to) {
  const std::string open = "/proc/self/fd/" + std::to_string(file.get());
  return ::linkat(AT_FDCWD, open.c_str(), to.folder, to.name.c_str(), AT_SYMLINK_FOLLOW) == 0 ? 0 : errno;
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
  return ::fstat(claim.get(), &open) == 0 && open.st_size == 0 && isNamed(claim, place);
}

}  // namespace

bool isNamed(const UniqueFd& file, const FilePlace& place) {
  struct stat open {};
  struct stat there {};
  return ::fstat(file.get(), &open) == 0 && statusOf(place, there) == 0 && open.st_dev == there.st_dev &&
         open.st_ino == there.st_ino;
}

int removeNameOf(const UniqueFd& file, const FilePlace& place) {
  struct stat there {};
  if (const int error = statusOf(place, there); error != 0) {
    return error;
  }
  if (!isNamed(file, place)) {
    return EBUSY;
  }
  // Looked at once more under a name that nobody else knows, where nothing comes between the look and the removal.
  const std::string unknown = ".quenlio-" + Uuid::random().string();
  const FilePlace aside(place.folder, FileURL(place.name).parent().appending(unknown).path());
  if (const int error = plainRename(place, aside); error != 0) {
    return error;
  }
  const int error = isNamed(file, aside) ? removeName(aside) : EBUSY;
  if (error != 0) {
    (void)renameWithoutReplacing(aside, place);
  }
  return error;
}

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
  const UniqueFd file = openName(from);
  if (!file) {
    return errno;
  }
  if (const int error = linkOpenFile(file, to); error != 0) {
    return error;
  }
  // Should somebody have put something else there at once, the file keeps its only name.
  if (!isNamed(file, to)) {
    return EEXIST;
  }
  const int error = removeNameOf(file, from);
  // What has taken the old name meanwhile is somebody else's and stays: the file has its new one.
  if (error == 0 || error == ENOENT || error == EBUSY) {
    return 0;
  }
  (void)removeNameOf(file, to);
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
