#include "desktop/linux/system/TrashFolders.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace quenlio {
namespace {

// Only a place to work in; that needs no right to list it.
constexpr int kAsFolder = O_PATH | O_DIRECTORY | O_CLOEXEC;

int makeFolders(const FileURL& url) {
  if (::mkdir(url.path().c_str(), S_IRWXU) == 0 || errno == EEXIST) {
    return 0;
  }
  const FileURL parent = url.parent();
  if (errno != ENOENT || parent == url) {
    return errno;
  }
  const int error = makeFolders(parent);
  return error == 0 && ::mkdir(url.path().c_str(), S_IRWXU) != 0 && errno != EEXIST ? errno : error;
}

int openSubfolders(int folder, TrashFolder& trash) {
  for (const auto& [name, fd] : {std::pair("files", &trash.files), std::pair("info", &trash.info)}) {
    if (::mkdirat(folder, name, S_IRWXU) != 0 && errno != EEXIST) {
      return errno;
    }
    *fd = UniqueFd(::openat(folder, name, kAsFolder));
    if (!*fd) {
      return errno;
    }
  }
  return 0;
}

bool isOwn(const UniqueFd& folder) {
  struct stat status {};
  return ::fstat(folder.get(), &status) == 0 && status.st_uid == ::geteuid();
}

// The trash itself, as a folder of this user's in a folder that may be everyone's.
int openOwnTrash(int parent, const std::string& name, TrashFolder& trash) {
  const bool isNew = ::mkdirat(parent, name.c_str(), S_IRWXU) == 0;
  if (!isNew && errno != EEXIST) {
    return errno;
  }
  const UniqueFd folder(::openat(parent, name.c_str(), kAsFolder | O_NOFOLLOW));
  const int error = !folder ? errno : isOwn(folder) ? openSubfolders(folder.get(), trash) : EPERM;
  if (error != 0 && isNew) {
    // Some file systems give everything to one owner, whoever makes it.
    (void)::unlinkat(parent, name.c_str(), AT_REMOVEDIR);
  }
  return error;
}

// Without the sticky bit any user could take away another's folder.
bool isTrashForAll(const UniqueFd& folder) {
  struct stat status {};
  return folder && ::fstat(folder.get(), &status) == 0 && (status.st_mode & S_ISVTX) != 0;
}

// The kernel's number of the mount; a kernel that has none to tell is asked for the device.
std::uint64_t mountNumber(const FileURL& folder) {
  struct statx status {};
  if (::statx(AT_FDCWD, folder.path().c_str(), AT_NO_AUTOMOUNT, STATX_BASIC_STATS | STATX_MNT_ID, &status) != 0) {
    return 0;
  }
  return (status.stx_mask & STATX_MNT_ID) != 0 ? status.stx_mnt_id
                                               : makedev(status.stx_dev_major, status.stx_dev_minor);
}

}  // namespace

int openHomeTrash(const FileURL& url, TrashFolder& trash) {
  if (const int error = makeFolders(url); error != 0) {
    return error;
  }
  trash.url = url;
  const UniqueFd folder(::open(url.path().c_str(), kAsFolder));
  return folder ? openSubfolders(folder.get(), trash) : errno;
}

int openMountTrash(const FileURL& top, TrashFolder& trash) {
  const UniqueFd folder(::open(top.path().c_str(), kAsFolder));
  if (!folder) {
    return errno;
  }
  const std::string user = std::to_string(::geteuid());
  if (const UniqueFd all(::openat(folder.get(), ".Trash", kAsFolder | O_NOFOLLOW));
      isTrashForAll(all) && openOwnTrash(all.get(), user, trash) == 0) {
    trash.url = top.appending(".Trash").appending(user);
    return 0;
  }
  trash.url = top.appending(".Trash-" + user);
  return openOwnTrash(folder.get(), ".Trash-" + user, trash);
}

FileURL mountPointOf(const FileURL& folder) {
  const std::uint64_t mount = mountNumber(folder);
  FileURL top = folder;
  while (top.parent() != top && mountNumber(top.parent()) == mount) {
    top = top.parent();
  }
  return top;
}

bool areOnOneDevice(const FileURL& folder, const FileURL& perhapsMissing) {
  struct stat here {};
  struct stat there {};
  FileURL nearest = perhapsMissing;
  while (::stat(nearest.path().c_str(), &there) != 0) {
    if (errno != ENOENT || nearest.parent() == nearest) {
      return false;
    }
    nearest = nearest.parent();
  }
  return ::stat(folder.path().c_str(), &here) == 0 && here.st_dev == there.st_dev;
}

}  // namespace quenlio
