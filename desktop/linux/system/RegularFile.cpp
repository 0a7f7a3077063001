#include "desktop/linux/system/RegularFile.h"

#include <cerrno>
#include <fcntl.h>

namespace quenlio {

Date dateFromTimespec(const timespec& time) {
  return Date(std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
}

FileStamp stampOf(const struct stat& status) {
  return {.device = status.st_dev,
          .inode = status.st_ino,
          .size = status.st_size,
          .modified = dateFromTimespec(status.st_mtim),
          .changed = dateFromTimespec(status.st_ctim)};
}

UniqueFd openRegularFile(int folder, const char* path) {
  struct stat status {};
  if (::fstatat(folder, path, &status, 0) != 0) {
    return {};
  }
  if (!S_ISREG(status.st_mode)) {
    errno = EINVAL;
    return {};
  }
  // Something else may have taken the name by now: nothing that is opened like this blocks.
  UniqueFd fd(::openat(folder, path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (fd && (::fstat(fd.get(), &status) != 0 || !S_ISREG(status.st_mode))) {
    fd.reset();
    errno = EINVAL;
  }
  return fd;
}

bool FileSource::readBytes(std::uint64_t offset, std::string& bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t got =
        ::pread(fd_, bytes.data() + done, bytes.size() - done, static_cast<off_t>(offset) + static_cast<off_t>(done));
    if (got > 0) {
      done += static_cast<std::size_t>(got);
    } else if (got == 0 || errno != EINTR) {
      return false;
    }
  }
  return true;
}

}  // namespace quenlio
