#include "desktop/linux/system/FileTransfer.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdint>
#include <fcntl.h>
#include <sys/xattr.h>
#include <vector>

#include "desktop/linux/system/HiddenFile.h"
#include "desktop/linux/system/RegularFile.h"

namespace quenlio {
namespace {

constexpr std::size_t kCopyBytes = 256 * 1024;

int resultOf(int answer) {
  return answer == 0 ? 0 : errno;
}

int copyBytes(int from, int to) {
  std::vector<char> buffer(kCopyBytes);
  while (true) {
    const ssize_t got = ::read(from, buffer.data(), buffer.size());
    if (got == 0) {
      return 0;
    }
    if (got < 0 && errno != EINTR) {
      return errno;
    }
    if (got > 0) {
      if (const int error = writeAll(to, {buffer.data(), static_cast<std::size_t>(got)}); error != 0) {
        return error;
      }
    }
  }
}

// As far as the destination's file system can hold them.
void copyUserAttributes(int from, int to) {
  const ssize_t listed = ::flistxattr(from, nullptr, 0);
  if (listed <= 0) {
    return;
  }
  std::vector<char> names(static_cast<std::size_t>(listed));
  const ssize_t length = ::flistxattr(from, names.data(), names.size());
  std::string_view rest(names.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
  while (!rest.empty()) {
    const std::string name(rest.substr(0, rest.find('\0')));
    rest.remove_prefix(std::min(name.size() + 1, rest.size()));
    const ssize_t size = name.starts_with("user.") ? ::fgetxattr(from, name.c_str(), nullptr, 0) : -1;
    if (size >= 0) {
      std::vector<char> value(static_cast<std::size_t>(size));
      const ssize_t got = ::fgetxattr(from, name.c_str(), value.data(), value.size());
      if (got >= 0) {
        (void)::fsetxattr(to, name.c_str(), value.data(), static_cast<std::size_t>(got), 0);
      }
    }
  }
}

void copyCreationDate(const std::string& from, int to) {
  struct statx status {};
  if (::statx(AT_FDCWD, from.c_str(), 0, STATX_BASIC_STATS | STATX_BTIME, &status) != 0) {
    return;
  }
  if (const auto created = creationDate(from, status)) {
    const std::string text = std::to_string(created->time_since_epoch().count());
    (void)::fsetxattr(to, kCreatedMark, text.data(), text.size(), 0);
  }
}

int copyEverything(const std::string& from, int source, int destination) {
  struct stat status {};
  if (::fstat(source, &status) != 0) {
    return errno;
  }
  if (const int error = copyBytes(source, destination); error != 0) {
    return error;
  }
  copyUserAttributes(source, destination);
  copyCreationDate(from, destination);
  // Only the superuser may give files away; for everyone else the copy is their own, as any copy is.
  (void)!::fchown(destination, status.st_uid, status.st_gid);
  if (::fchmod(destination, status.st_mode & ALLPERMS) != 0) {
    return errno;
  }
  const std::array times{status.st_atim, status.st_mtim};
  return resultOf(::futimens(destination, times.data()));
}

// So that the name outlasts a loss of power. Not every file system can do that, nor every folder be opened for it.
int syncName(const FilePlace& place) {
  const UniqueFd folder(
      ::openat(place.folder, FileURL(place.name).parent().path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const int error = folder ? resultOf(::fsync(folder.get())) : 0;
  return error == EINVAL || error == EOPNOTSUPP ? 0 : error;
}

UniqueFd openLink(const std::string& path) {
  return UniqueFd(::open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
}

// Wherever it leads, if anywhere.
int copyLink(const UniqueFd& link, const std::string& to) {
  std::array<char, PATH_MAX> target{};
  const ssize_t length = link ? ::readlinkat(link.get(), "", target.data(), target.size() - 1) : -1;
  return length < 0 ? errno : resultOf(::symlink(target.data(), to.c_str()));  // making a link never replaces
}

int moveLinkAcross(const std::string& from, const std::string& to) {
  const UniqueFd link = openLink(from);
  if (const int error = copyLink(link, to); error != 0) {
    return error;
  }
  const UniqueFd made = openLink(to);
  const int error = removeNameOf(link, from);
  if (error != 0) {
    (void)removeNameOf(made, to);
  }
  return error;
}

}  // namespace

std::optional<Date> creationDate(const std::string& path, const struct statx& status) {
  std::array<char, 32> text{};
  const ssize_t length =
      S_ISLNK(status.stx_mode) ? -1 : ::getxattr(path.c_str(), kCreatedMark, text.data(), text.size());
  if (length > 0) {
    std::int64_t nanoseconds = 0;
    const char* end = text.data() + length;
    if (const auto [stop, error] = std::from_chars(text.data(), end, nanoseconds);
        error == std::errc{} && stop == end) {
      return Date(std::chrono::nanoseconds(nanoseconds));
    }
  }
  if ((status.stx_mask & STATX_BTIME) == 0) {
    return std::nullopt;
  }
  return dateFromTimespec({.tv_sec = status.stx_btime.tv_sec, .tv_nsec = status.stx_btime.tv_nsec});
}

int writeAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(fd, bytes.data(), bytes.size());
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

FileCopy::~FileCopy() {
  if (!hidden_.empty()) {
    (void)::unlink(hidden_.c_str());
  }
}

int FileCopy::make(const FileURL& from, const FileURL& folder, Durability durability) {
  source_ = openRegularFile(AT_FDCWD, from.path().c_str());
  struct stat status {};
  if (!source_ || ::fstat(source_.get(), &status) != 0) {
    return errno;
  }
  from_ = from;
  copied_ = stampOf(status);
  std::string hidden;
  fd_ = makeHiddenFile(folder, "copy", hidden);
  if (!fd_) {
    return errno;
  }
  hidden_ = std::move(hidden);
  const int error = copyEverything(from.path(), source_.get(), fd_.get());
  return error == 0 && durability == Durability::onDisk ? resultOf(::fsync(fd_.get())) : error;
}

int FileCopy::giveName(const FilePlace& to) {
  own_.note(fd_.get());
  const int error = renameWithoutReplacing(hidden_, to);
  if (error == 0) {
    hidden_.clear();
  }
  return error;
}

int FileCopy::takeOver(const FilePlace& to) {
  if (const int error = giveName(to); error != 0) {
    return error;
  }
  int error = syncName(to);
  if (error == 0) {
    error = removeSource();
  }
  if (error != 0) {
    (void)removeNameOf(fd_, to);
  }
  return error;
}

int FileCopy::removeSource() const {
  struct stat status {};
  if (::lstat(from_.path().c_str(), &status) != 0) {
    return errno == ENOENT ? 0 : errno;  // somebody else has moved or removed it
  }
  if (stampOf(status) != copied_) {
    return EBUSY;
  }
  const int error = removeNameOf(source_, from_.path());
  return error == ENOENT ? 0 : error;
}

int copyFile(const FileURL& from, const FileURL& to, OwnFiles& own, Durability durability) {
  struct stat status {};
  if (::lstat(to.path().c_str(), &status) == 0) {
    return EEXIST;  // told before the work; giving the name is what makes sure
  }
  FileCopy copy(own);
  const int error = copy.make(from, to.parent(), durability);
  return error != 0 ? error : copy.giveName(to.path());
}

int copyFileOrLink(const FileURL& from, const FileURL& to, OwnFiles& own) {
  struct stat status {};
  if (::lstat(from.path().c_str(), &status) != 0) {
    return errno;
  }
  return S_ISLNK(status.st_mode) ? copyLink(openLink(from.path()), to.path())
                                 : copyFile(from, to, own, Durability::whenTheSystemLikes);
}

int moveAcrossFileSystems(const FileURL& from, const FileURL& to, OwnFiles& own) {
  struct stat status {};
  if (::lstat(from.path().c_str(), &status) != 0) {
    return errno;
  }
  if (S_ISLNK(status.st_mode)) {
    return moveLinkAcross(from.path(), to.path());
  }
  if (!S_ISREG(status.st_mode)) {
    return EXDEV;  // folders stay on their file system
  }
  if (::lstat(to.path().c_str(), &status) == 0) {
    return EEXIST;  // as in copyFile()
  }
  FileCopy copy(own);
  const int error = copy.make(from, to.parent(), Durability::onDisk);
  return error != 0 ? error : copy.takeOver(to.path());
}

}  // namespace quenlio
