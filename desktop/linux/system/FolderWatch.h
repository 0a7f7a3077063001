// The kernel's watch on one folder, that survives the folder: when it is deleted, moved, replaced or its disk taken
// away, the nearest folder above it that exists is watched instead, until it is back. Nothing is polled meanwhile.
//
// One thread at a time. Nothing is held open inside the folder, so that its disk can be unmounted.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "core/base/FileURL.h"

#include "desktop/linux/system/InotifyEvents.h"
#include "desktop/linux/system/UniqueFd.h"

namespace quenlio {

class FolderWatch {
 public:
  enum class State {
    watching,    // the folder itself
    waiting,     // for the folder to come: a folder above it is watched
    unreadable,  // the folder is there and must not be read: its change of mode is waited for
    failed,      // nothing can be watched
  };

  explicit FolderWatch(FileURL folder) : folder_(std::move(folder)) {}

  // Begins. `failed` when the system gives no watch.
  [[nodiscard]] State start();
  // Readable when there are events.
  [[nodiscard]] int descriptor() const { return inotify_.get(); }
  // Ready with an exceptional condition when something was mounted or unmounted; -1 when that cannot be known.
  [[nodiscard]] int mountsDescriptor() const { return mounts_.get(); }

  enum class Meaning {
    nothing,       // not about this folder, or out of date
    entryChanged,  // an entry of the folder
    lost,          // records of changes were lost, or the folder's mode changed
    placeChanged,  // the folder may not be where it was: refresh()
  };
  [[nodiscard]] Meaning meaning(const InotifyEvent& event);

  // Asks whether the path still leads to the watched folder, and watches anew when it does not. True when the folder
  // is watched now and was not before, or is another one: what happened in between is unknown.
  [[nodiscard]] bool refresh();
  [[nodiscard]] State state() const { return state_; }

 private:
  using Identity = std::pair<std::uint64_t, std::uint64_t>;  // device and inode
  [[nodiscard]] std::optional<Identity> identity() const;
  // The watch, or -1 with errno set.
  int add(const FileURL& folder, std::uint32_t mask);
  void removeAll();
  [[nodiscard]] State arm();
  // Watches the nearest folder above. Gives the missing one right below it; nothing when no watch can be had.
  [[nodiscard]] std::optional<FileURL> armAbove();
  void watchPlacesAbove(const FileURL& folder);

  const FileURL folder_;
  UniqueFd inotify_;
  UniqueFd mounts_;
  State state_ = State::failed;
  int watch_ = -1;            // of the folder itself
  int parentWatch_ = -1;      // of the folder right above a watched one
  std::vector<int> watches_;  // all
  std::optional<Identity> watched_;
  bool isDead_ = false;  // the kernel has ended the folder's watch
};

}  // namespace quenlio
