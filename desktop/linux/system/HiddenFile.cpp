#include "desktop/linux/system/HiddenFile.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>

#include "desktop/linux/system/RenameWithoutReplacing.h"

namespace quenlio {
namespace {

constexpr int kAttempts = 16;

FileURL hidden(const FileURL& folder, std::string_view name) {
  return folder.appending(std::string(".quenlio-").append(name).append(".unfinished"));
}

std::string randomName() {
  std::uint64_t random = 0;
  if (::getrandom(&random, sizeof random, 0) != static_cast<ssize_t>(sizeof random)) {
    random = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
  }
  std::array<char, 17> digits{};
  (void)std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(random));
  return digits.data();
}

UniqueFd create(const std::string& path) {
  return UniqueFd(::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
}

// Never waits.
bool lock(const UniqueFd& fd) {
  return ::flock(fd.get(), LOCK_EX | LOCK_NB) == 0;
}

bool mayBeARemnant(const struct stat& status) {
  return S_ISREG(status.st_mode) && status.st_uid == ::geteuid() && status.st_nlink == 1;
}

// True when the name may be free now.
bool removeRemnant(const std::string& path) {
  struct stat status {};
  // Looked at before it is opened: opening a fifo or a device can set something off.
  if (::lstat(path.c_str(), &status) != 0) {
    return errno == ENOENT;
  }
  if (!mayBeARemnant(status)) {
    return false;
  }
  UniqueFd fd(::open(path.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!fd && errno == EACCES) {  // it may have been given the mode of a file that is only read
    fd = UniqueFd(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  }
  if (!fd || !lock(fd)) {
    return !fd && errno == ENOENT;
  }
  // Once more, now that nobody else takes it for a remnant or renames it: until the lock was had, it could go on to its
  // own name.
  if (!isNamed(fd, path) || ::fstat(fd.get(), &status) != 0 || !mayBeARemnant(status)) {
    return !isNamed(fd, path);
  }
  return ::unlink(path.c_str()) == 0;
}

// The file under the name that is the same each time, or nothing when that is not to be had now.
UniqueFd claim(const std::string& path) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    UniqueFd fd = create(path);
    if (fd) {
      // Between its making and its lock another may have taken it for a remnant.
      const bool isLockedByAnother = !lock(fd) && errno == EWOULDBLOCK;
      if (!isLockedByAnother && isNamed(fd, path)) {
        return fd;
      }
    } else if (errno != EEXIST || !removeRemnant(path)) {
      return {};
    }
  }
  return {};
}

}  // namespace

UniqueFd makeHiddenFile(const FileURL& folder, std::string_view name, std::string& path) {
  path = hidden(folder, name).path();
  UniqueFd fd = claim(path);
  for (int attempt = 0; !fd && attempt < kAttempts; ++attempt) {
    path = hidden(folder, randomName()).path();
    fd = create(path);
    if (!fd && errno != EEXIST) {
      return fd;
    }
  }
  return fd;
}

}  // namespace quenlio
