#include "desktop/linux/system/FolderChanges.h"

#include <algorithm>
#include <sys/inotify.h>
#include <utility>

namespace quenlio {
namespace {

// Past this many the memory of reports starts anew: a file may then be told of twice, never not at all.
constexpr std::size_t kMostReported = 4096;

std::chrono::nanoseconds nanoseconds(Seconds seconds) {
  return std::chrono::ceil<std::chrono::nanoseconds>(seconds);
}

// No more than the poll's own resolution before the end: a look a moment too early would only be made again.
constexpr std::chrono::milliseconds kGrace{2};

FSEventBatch emptyBatch() {
  return {.numEvents = 0, .paths = std::vector<std::optional<std::string>>{}, .flags = std::vector<FSEventFlags>{}};
}

void add(FSEventBatch& batch, std::string path, FSEventFlags flags) {
  batch.paths->emplace_back(std::move(path));
  batch.flags->push_back(flags);
  ++batch.numEvents;
}

FSEventFlags flagsOf(std::uint32_t mask) {
  FSEventFlags flags = 0;
  flags |= (mask & IN_CREATE) != 0 ? kFSEventStreamEventFlagItemCreated : 0;
  flags |= (mask & (IN_MODIFY | IN_CLOSE_WRITE)) != 0 ? kFSEventStreamEventFlagItemModified : 0;
  flags |= (mask & IN_MOVED_TO) != 0 ? kFSEventStreamEventFlagItemRenamed : 0;
  return flags;
}

}  // namespace

FolderChanges::FolderChanges(FileURL folder, const FSEventStreamOptions& options, Look look)
    : folder_(std::move(folder)),
      latency_(nanoseconds(options.latency)),
      isDeferred_((options.flags & kFSEventStreamCreateFlagNoDefer) == 0),
      look_(std::move(look)),
      ready_(emptyBatch()) {}

void FolderChanges::note(const InotifyEvent& event, Moment now) {
  if (event.name.empty() || event.name.front() == '.' || (event.mask & IN_ISDIR) != 0) {
    return;
  }
  if ((event.mask & IN_DELETE) != 0) {
    noteRemoved(event.name);
  } else if ((event.mask & IN_MOVED_FROM) != 0) {
    noteMovedAway(event.name);
  } else if (const FSEventFlags flags = flagsOf(event.mask); flags != 0) {
    noteTouched(event.name, flags, (event.mask & (IN_CLOSE_WRITE | IN_MOVED_TO)) != 0, now);
  }
}

void FolderChanges::noteTouched(const std::string& name, FSEventFlags flags, bool isUrgent, Moment now) {
  if (!windowEnd_ || now >= *windowEnd_) {
    windowEnd_ = isDeferred_ ? now + latency_ : now;
  }
  const Moment lookAt = isUrgent ? now : *windowEnd_;
  const auto [found, isNew] = waiting_.try_emplace(name);
  Waiting& waiting = found->second;
  if (isNew) {
    waiting.order = nextOrder_++;
  }
  waiting.flags |= flags;
  // Never later than before: a writer that goes on and on does not put the look off.
  waiting.lookAt = std::min(waiting.lookAt.value_or(lookAt), lookAt);
}

void FolderChanges::noteRemoved(const std::string& name) {
  // A look sees the folder as it is, which may be ahead of the records of changes: when the very file that was reported
  // is still there, this is the removal of one before it. To tell it now would make that file new once more.
  if (reported_.contains(name) && isReported(name, look_(name).stamp)) {
    return;
  }
  waiting_.erase(name);
  reported_.erase(name);
  report(name, kFSEventStreamEventFlagItemRemoved, ready_);
}

void FolderChanges::noteMovedAway(const std::string& name) {
  // Nobody has heard of a file that was not finished here. (Most writers that rename do so with a temporary file.)
  const bool wasWaiting = waiting_.erase(name) != 0;
  const bool wasReported = reported_.erase(name) != 0;
  if (wasReported || !wasWaiting) {
    report(name, kFSEventStreamEventFlagItemRenamed, ready_);
  }
}

void FolderChanges::noteLost() {
  add(ready_, folder_.path(), kFSEventStreamEventFlagMustScanSubDirs);
}

void FolderChanges::noteFound(const std::string& name, Moment now) {
  if (name.empty() || name.front() == '.' || waiting_.contains(name)) {
    return;
  }
  const FinishedState state = look_(name);
  if (state.stamp && !state.isFinished()) {
    Waiting waiting{.flags = kFSEventStreamEventFlagItemModified, .lookAt = {}, .order = nextOrder_++};
    if (state.untilSettled) {
      waiting.lookAt = now + nanoseconds(*state.untilSettled) + kGrace;
    }
    waiting_.emplace(name, waiting);
  }
}

FSEventBatch FolderChanges::collect(Moment now) {
  FSEventBatch batch = std::exchange(ready_, emptyBatch());
  std::vector<std::pair<std::uint64_t, std::string>> due;
  for (const auto& [name, waiting] : waiting_) {
    if (waiting.lookAt && *waiting.lookAt <= now) {
      due.emplace_back(waiting.order, name);
    }
  }
  std::ranges::sort(due);
  for (const auto& [order, name] : due) {
    settle(name, now, batch);
  }
  if (!due.empty()) {
    windowEnd_ = now + latency_;
  }
  return batch;
}

void FolderChanges::settle(const std::string& name, Moment now, FSEventBatch& batch) {
  const auto found = waiting_.find(name);
  const FinishedState state = look_(name);
  if (state.stamp && !state.isFinished()) {
    found->second.lookAt.reset();
    if (state.untilSettled) {
      found->second.lookAt = now + nanoseconds(*state.untilSettled) + kGrace;
    }
    return;
  }
  const FSEventFlags flags = found->second.flags;
  waiting_.erase(found);
  if (!state.stamp || isReported(name, state.stamp)) {
    return;
  }
  if (reported_.size() >= kMostReported) {
    reported_.clear();
  }
  reported_.insert_or_assign(name, *state.stamp);
  report(name, flags, batch);
}

bool FolderChanges::isReported(const std::string& name, const std::optional<FileStamp>& stamp) const {
  const auto found = reported_.find(name);
  if (found == reported_.end() || !stamp) {
    return false;
  }
  // Not the time of the last change of attributes: a writer that sets the mode before it closes changes no contents.
  FileStamp now = *stamp;
  now.changed = found->second.changed;
  return found->second == now;
}

void FolderChanges::report(const std::string& name, FSEventFlags flags, FSEventBatch& batch) const {
  add(batch, folder_.appending(name).path(), flags);
}

std::optional<FolderChanges::Moment> FolderChanges::nextLook() const {
  std::optional<Moment> next;
  for (const auto& [name, waiting] : waiting_) {
    if (waiting.lookAt) {
      next = std::min(next.value_or(*waiting.lookAt), *waiting.lookAt);
    }
  }
  return next;
}

}  // namespace quenlio
