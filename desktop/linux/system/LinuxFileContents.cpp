#include "desktop/linux/system/LinuxFileContents.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

#include "desktop/linux/system/FileError.h"
#include "desktop/linux/system/FileTransfer.h"
#include "desktop/linux/system/HiddenFile.h"
#include "desktop/linux/system/RegularFile.h"

namespace quenlio {
namespace {

constexpr mode_t kNewFileMode = S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH | S_IWGRP | S_IWOTH;

// Where a link leads; anything else is its own target, whether it exists or not.
FileURL target(const FileURL& url) {
  struct stat status {};
  if (::lstat(url.path().c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) {
    return url;
  }
  const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(url.path().c_str(), nullptr), &std::free);
  return resolved != nullptr ? FileURL(resolved.get()) : url;
}

// What a file made in the ordinary way would have. The mask can only be asked for by setting it, which other threads
// would feel: the kernel tells it here instead.
mode_t maskedNewFileMode() {
  mode_t mask = S_IWGRP | S_IWOTH;
  if (const std::unique_ptr<FILE, decltype(&std::fclose)> file(std::fopen("/proc/self/status", "re"), &std::fclose);
      file != nullptr) {
    std::array<char, 256> line{};
    while (std::fgets(line.data(), static_cast<int>(line.size()), file.get()) != nullptr) {
      if (const std::string_view text(line.data()); text.starts_with("Umask:")) {
        mask = static_cast<mode_t>(std::strtoul(line.data() + 6, nullptr, 8));
        break;
      }
    }
  }
  return kNewFileMode & ~mask;
}

// No flush to the disk: these files are written on the main thread and on the way of every screenshot. A killed program
// leaves one of the two contents whole all the same; a power cut may cost the newest.
int writeWithMode(int fd, mode_t mode, std::string_view data) {
  if (const int error = writeAll(fd, data); error != 0) {
    return error;
  }
  return ::fchmod(fd, mode) == 0 ? 0 : errno;
}

}  // namespace

PlatformResult<std::string> LinuxFileContents::read(const FileURL& url) const {
  const UniqueFd fd = openRegularFile(AT_FDCWD, url.path().c_str());
  if (!fd) {
    return fileError(url, "could not be read", errno);
  }
  std::string contents;
  std::array<char, 16384> piece{};
  while (true) {
    const ssize_t got = ::read(fd.get(), piece.data(), piece.size());
    if (got == 0) {
      return contents;
    }
    if (got < 0 && errno != EINTR) {
      return fileError(url, "could not be read", errno);
    }
    contents.append(piece.data(), got > 0 ? static_cast<std::size_t>(got) : 0);
  }
}

PlatformResult<Done> LinuxFileContents::writeAtomically(const FileURL& url, std::string_view data) {
  const FileURL place = target(url);
  struct stat old {};
  const mode_t mode = ::stat(place.path().c_str(), &old) == 0 ? old.st_mode & ALLPERMS : maskedNewFileMode();
  std::string hidden;
  const UniqueFd fd = makeHiddenFile(place.parent(), place.lastPathComponent(), hidden);
  if (!fd) {
    return fileError(url, "could not be written", errno);
  }
  int error = writeWithMode(fd.get(), mode, data);
  if (error == 0 && ::rename(hidden.c_str(), place.path().c_str()) != 0) {
    error = errno;
  }
  if (error != 0) {
    (void)::unlink(hidden.c_str());
    return fileError(url, "could not be written", error);
  }
  return Done{};
}

PlatformResult<Done> LinuxFileContents::append(const FileURL& url, std::string_view data) {
  // Nothing blocks here either: a fifo without a reader is refused.
  const UniqueFd fd(::open(url.path().c_str(), O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK | O_CLOEXEC, kNewFileMode));
  struct stat before {};
  const int error = fd && ::fstat(fd.get(), &before) == 0 ? writeAll(fd.get(), data) : errno;
  if (error != 0) {
    // A part of it would spoil what is appended next.
    if (S_ISREG(before.st_mode)) {
      (void)::ftruncate(fd.get(), before.st_size);
    }
    return fileError(url, "could not be written", error);
  }
  return Done{};
}

}  // namespace quenlio
