#include "desktop/linux/system/LinuxFileManager.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include "core/base/ImageExtensions.h"

#include "desktop/linux/system/FileError.h"
#include "desktop/linux/system/FileTransfer.h"
#include "desktop/linux/system/FinishedFile.h"
#include "desktop/linux/system/OpenDirectory.h"
#include "desktop/linux/system/XdgTrash.h"

namespace quenlio {
namespace {

// More than any folder of screenshots; past it the memory starts anew.
constexpr std::size_t kMostKnown = 32 * 1024;

FileStamp stampOf(const struct statx& status) {
  const auto date = [](const statx_timestamp& time) {
    return dateFromTimespec({.tv_sec = time.tv_sec, .tv_nsec = time.tv_nsec});
  };
  return {.device = makedev(status.stx_dev_major, status.stx_dev_minor),
          .inode = status.stx_ino,
          .size = static_cast<std::int64_t>(status.stx_size),
          .modified = date(status.stx_mtime),
          .changed = date(status.stx_ctime)};
}

bool isDirectoryItself(const std::string& path, const dirent& entry) {
  if (entry.d_type != DT_UNKNOWN) {
    return entry.d_type == DT_DIR;
  }
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool enumerate(const FileURL& folder, const std::function<void(const FileURL&, bool isDirectory)>& visit) {
  std::vector<std::pair<FileURL, bool>> items;
  {
    // Read to the end and closed first: the depth of a tree costs no descriptors.
    const OpenDirectory directory(::opendir(folder.path().c_str()));
    if (directory == nullptr) {
      return false;
    }
    while (const dirent* entry = nextEntry(directory)) {
      FileURL url = folder.appending(entry->d_name);
      const bool isDirectory = isDirectoryItself(url.path(), *entry);
      items.emplace_back(std::move(url), isDirectory);
    }
  }
  for (const auto& [url, isDirectory] : items) {
    visit(url, isDirectory);
    if (isDirectory) {
      (void)enumerate(url, visit);
    }
  }
  return true;
}

PlatformResult<Done> answer(const FileURL& url, std::string_view whatFailed, int error) {
  return error == 0 ? PlatformResult<Done>(Done{}) : fileError(url, whatFailed, error);
}

}  // namespace

// Not to be allowed to look is no proof that nothing is there: a folder that is locked for a while must not empty the
// library.
bool LinuxFileManager::fileExistsAtPath(const FileURL& url) const {
  struct stat status {};
  return ::stat(url.path().c_str(), &status) == 0 || errno == EACCES;
}

std::optional<FileIdentity> LinuxFileManager::identityOfItemAtPath(const FileURL& url) const {
  return fileIdentity(AT_FDCWD, url.path().c_str(), AT_SYMLINK_NOFOLLOW);
}

bool LinuxFileManager::isDirectory(const FileURL& url) const {
  struct stat status {};
  return ::stat(url.path().c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool LinuxFileManager::isReadableFileAtPath(const FileURL& url) const {
  return ::faccessat(AT_FDCWD, url.path().c_str(), R_OK, AT_EACCESS) == 0;
}

PlatformResult<FileAttributes> LinuxFileManager::attributesOfItemAtPath(const FileURL& url) const {
  struct statx status {};
  if (::statx(AT_FDCWD, url.path().c_str(), 0, STATX_BASIC_STATS | STATX_BTIME, &status) != 0) {
    return fileError(url, "could not be read", errno);
  }
  return FileAttributes{.creationDate = creationDate(url.path(), status),
                        .size = static_cast<std::int64_t>(status.stx_size)};
}

PlatformResult<std::vector<DirectoryEntry>> LinuxFileManager::contentsOfDirectoryAtURL(const FileURL& url,
                                                                                       HiddenFiles hidden) const {
  // Taken first: what is touched from here on counts as touched just now.
  const Date now = clock_.now();
  const OpenDirectory directory(::opendir(url.path().c_str()));
  if (directory == nullptr) {
    return fileError(url, "could not be listed", errno);
  }
  std::vector<DirectoryEntry> entries;
  while (const dirent* entry = nextEntry(directory)) {
    if (hidden == HiddenFiles::skip && entry->d_name[0] == '.') {
      continue;
    }
    entries.push_back({.url = url.appending(entry->d_name), .isRegularFile = {}, .creationDate = {}});
    fillIn(entries.back(), ::dirfd(directory.get()), entry->d_name, now);
  }
  if (errno != 0) {
    return fileError(url, "could not be listed", errno);
  }
  return entries;
}

// The first entry tells: a folder that can be opened and not read fails there.
bool LinuxFileManager::canListDirectoryAtURL(const FileURL& url) const {
  const OpenDirectory directory(::opendir(url.path().c_str()));
  return directory != nullptr && (nextEntry(directory) != nullptr || errno == 0);
}

void LinuxFileManager::fillIn(DirectoryEntry& entry, int folder, const char* name, Date now) const {
  struct statx status {};
  if (::statx(folder, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, STATX_BASIC_STATS | STATX_BTIME, &status) != 0) {
    return;
  }
  if (!S_ISREG(status.stx_mode)) {
    entry.isRegularFile = false;
    entry.creationDate = creationDate(entry.url.path(), status);
    return;
  }
  const FileStamp stamp = stampOf(status);
  if (const auto file = known(stamp)) {
    entry.isRegularFile = true;
    entry.creationDate = file->creationDate;
    return;
  }
  // The watcher takes pictures alone; all else need not be finished.
  if (hasImageExtension(std::string_view(name))) {
    const FinishedState state = finishedState(folder, name, now);
    // Another state than the one whose values are at hand is judged at the next listing.
    if (!state.isFinished() || state.stamp != stamp) {
      return;
    }
  }
  entry.isRegularFile = true;
  entry.creationDate = creationDate(entry.url.path(), status);
  remember({.stamp = stamp, .creationDate = entry.creationDate});
}

std::optional<LinuxFileManager::Known> LinuxFileManager::known(const FileStamp& stamp) const {
  const std::lock_guard lock(mutex_);
  const auto found = finished_.find({.device = stamp.device, .inode = stamp.inode});
  return found != finished_.end() && found->second.stamp == stamp ? std::optional(found->second) : std::nullopt;
}

void LinuxFileManager::remember(const Known& file) const {
  const std::lock_guard lock(mutex_);
  if (finished_.size() >= kMostKnown) {
    finished_.clear();
  }
  finished_.insert_or_assign({.device = file.stamp.device, .inode = file.stamp.inode}, file);
}

bool LinuxFileManager::enumerateAtURL(const FileURL& url,
                                      const std::function<void(const FileURL&, bool isDirectory)>& visit) const {
  return enumerate(url, visit);
}

PlatformResult<Done> LinuxFileManager::createDirectoryAtURL(const FileURL& url) {
  if (isDirectory(url)) {
    return Done{};
  }
  const FileURL parent = url.parent();
  if (parent != url && !isDirectory(parent)) {
    if (auto made = createDirectoryAtURL(parent); !made) {
      return made;
    }
  }
  const int error = ::mkdir(url.path().c_str(), ACCESSPERMS) == 0 ? 0 : errno;
  return answer(url, "could not be created", isDirectory(url) ? 0 : error);
}

PlatformResult<Done> LinuxFileManager::moveItemAtURL(const FileURL& from, const FileURL& to) {
  own_.note(from);
  int error = renameWithoutReplacing(from.path(), to.path());
  if (error == EXDEV) {
    error = moveAcrossFileSystems(from, to, own_);
  }
  if (error == 0) {
    forgetInTrash(from);
  }
  return answer(from, "could not be moved", error);
}

PlatformResult<Done> LinuxFileManager::copyItemAtURL(const FileURL& from, const FileURL& to) {
  return answer(from, "could not be copied", copyFileOrLink(from, to, own_));
}

PlatformResult<Done> LinuxFileManager::removeItemAtURL(const FileURL& url) {
  std::error_code error;
  if (std::filesystem::remove_all(url.path(), error) == 0 && !error) {
    return fileError(url, "could not be removed", ENOENT);
  }
  return answer(url, "could not be removed", error.value());
}

PlatformResult<std::optional<FileURL>> LinuxFileManager::trashItemAtURL(const FileURL& url) {
  const std::string_view whatFailed = "could not be moved to the trash";
  const auto data = directories_.applicationSupportDirectory();
  if (!data) {
    return fileError(url, whatFailed, ENOENT);
  }
  FileURL place;
  const int error = moveToTrash(url, {.homeTrash = data->appending("Trash"), .now = clock_.now(), .own = own_}, place);
  if (error != 0) {
    return fileError(url, whatFailed, error);
  }
  return std::optional(place);
}

}  // namespace quenlio
