#include "desktop/linux/system/FolderWatch.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>

namespace quenlio {
namespace {

constexpr std::uint32_t kEntryMask = IN_CREATE | IN_MODIFY | IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE;
constexpr std::uint32_t kSelfMask = IN_DELETE_SELF | IN_MOVE_SELF;
// Of the folder above one that is awaited: its entries' modes too, since one may have to become readable first.
constexpr std::uint32_t kAwaitMask = IN_CREATE | IN_MOVED_TO | IN_ATTRIB;

// A folder that keeps changing its place faster than it can be watched is taken as it is.
constexpr int kMostAttempts = 16;

bool isFolder(const FileURL& url) {
  struct stat status {};
  return ::stat(url.path().c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

FolderWatch::State FolderWatch::start() {
  inotify_ = UniqueFd(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  mounts_ = UniqueFd(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC));
  state_ = inotify_ ? arm() : State::failed;
  return state_;
}

std::optional<FolderWatch::Identity> FolderWatch::identity() const {
  struct stat status {};
  if (::stat(folder_.path().c_str(), &status) != 0) {
    return std::nullopt;
  }
  return Identity(status.st_dev, status.st_ino);
}

int FolderWatch::add(const FileURL& folder, std::uint32_t mask) {
  const int watch = ::inotify_add_watch(inotify_.get(), folder.path().c_str(), mask | IN_ONLYDIR);
  if (watch >= 0) {
    watches_.push_back(watch);
  }
  return watch;
}

void FolderWatch::removeAll() {
  for (const int watch : watches_) {
    (void)::inotify_rm_watch(inotify_.get(), watch);  // fails for one that the kernel has ended
  }
  watches_.clear();
  watch_ = parentWatch_ = -1;
  watched_.reset();
  isDead_ = false;
}

FolderWatch::State FolderWatch::arm() {
  for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
    removeAll();
    const auto before = identity();
    watch_ = add(folder_, kEntryMask | kSelfMask | IN_ATTRIB);
    if (watch_ >= 0) {
      watchPlacesAbove(folder_);
      if (before && identity() == before) {
        watched_ = before;
        return State::watching;
      }
      continue;  // something else came to the path meanwhile
    }
    const int error = errno;
    const auto missing = error == ENOSPC || error == ENOMEM ? std::nullopt : armAbove();
    if (!missing) {
      removeAll();
      return State::failed;
    }
    // It may have come before the folder above was watched.
    if (!isFolder(*missing) || add(*missing, kSelfMask) < 0) {
      return error == EACCES ? State::unreadable : State::waiting;
    }
  }
  return State::waiting;
}

std::optional<FileURL> FolderWatch::armAbove() {
  FileURL missing = folder_;
  while (missing.parent() != missing) {
    const FileURL above = missing.parent();
    if (add(above, kAwaitMask | kSelfMask) >= 0) {
      watchPlacesAbove(above);
      return missing;
    }
    if (errno != ENOENT && errno != ENOTDIR) {
      return std::nullopt;
    }
    missing = above;
  }
  return std::nullopt;
}

void FolderWatch::watchPlacesAbove(const FileURL& folder) {
  // A folder hears of its own move only, not of one above it; and while some program is still inside, not even of its
  // own removal, which the folder above does tell. What cannot be watched here is done without.
  FileURL place = folder;
  while (place.parent() != place) {
    place = place.parent();
    const bool isParent = place == folder_.parent();
    const int watch = add(place, kSelfMask | IN_MASK_ADD | (isParent ? IN_DELETE : 0));
    if (isParent) {
      parentWatch_ = watch;
    }
  }
}

FolderWatch::Meaning FolderWatch::meaning(const InotifyEvent& event) {
  if ((event.mask & IN_Q_OVERFLOW) != 0) {
    return Meaning::lost;
  }
  if (std::ranges::find(watches_, event.watch) == watches_.end()) {
    return Meaning::nothing;
  }
  if (event.watch == watch_) {
    if ((event.mask & (IN_IGNORED | IN_UNMOUNT | IN_DELETE_SELF)) != 0) {
      isDead_ = true;
      return Meaning::placeChanged;
    }
    if ((event.mask & IN_MOVE_SELF) != 0) {
      return Meaning::placeChanged;
    }
    if ((event.mask & IN_ATTRIB) != 0) {
      return event.name.empty() ? Meaning::lost : Meaning::nothing;
    }
    return Meaning::entryChanged;
  }
  const bool isSibling =
      event.watch == parentWatch_ && !event.name.empty() && event.name != folder_.lastPathComponent();
  return isSibling ? Meaning::nothing : Meaning::placeChanged;
}

bool FolderWatch::refresh() {
  if (state_ == State::watching && !isDead_ && identity() == watched_) {
    return false;
  }
  state_ = arm();
  return state_ == State::watching;
}

}  // namespace quenlio
