// From the raw changes of one folder to what the event stream tells: which file to look at when, and what to report.
//
// No file is reported before it is finished. A look is made at the first change, then once for all changes within the
// latency; at once when a writer closes a file or one is moved in; and, for a file that is still not finished, when it
// may have been left alone for long enough. While nothing is waiting there is nothing to wake up for. Hidden names and
// folders are not spoken of: a writer's temporary file is not to be taken for a second picture.
//
// Knows neither the kernel nor a clock: time and looks are handed in. One thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/platform/FSEventStream.h"

#include "desktop/linux/system/FinishedFile.h"
#include "desktop/linux/system/InotifyEvents.h"

namespace quenlio {

class FolderChanges {
 public:
  using Moment = std::chrono::nanoseconds;  // of the monotonic clock
  using Look = std::function<FinishedState(const std::string& name)>;

  FolderChanges(FileURL folder, const FSEventStreamOptions& options, Look look);

  // A change of an entry of the folder.
  void note(const InotifyEvent& event, Moment now);
  // Changes were lost, or the folder has come back: whoever listens has to list it.
  void noteLost();
  // A file that was there before the changes were followed. It is waited for if it is not finished, else left alone.
  void noteFound(const std::string& name, Moment now);

  // Makes the looks that are due and gives what is to be reported now, removals first.
  [[nodiscard]] FSEventBatch collect(Moment now);
  // When the next look is due; nothing while none is.
  [[nodiscard]] std::optional<Moment> nextLook() const;

 private:
  struct Waiting {
    FSEventFlags flags = 0;
    std::optional<Moment> lookAt;  // nothing: only another change can finish it
    std::uint64_t order = 0;       // of the first change
  };

  void noteTouched(const std::string& name, FSEventFlags flags, bool isUrgent, Moment now);
  void noteRemoved(const std::string& name);
  void noteMovedAway(const std::string& name);
  void settle(const std::string& name, Moment now, FSEventBatch& batch);
  [[nodiscard]] bool isReported(const std::string& name, const std::optional<FileStamp>& stamp) const;
  void report(const std::string& name, FSEventFlags flags, FSEventBatch& batch) const;

  const FileURL folder_;
  const std::chrono::nanoseconds latency_;
  const bool isDeferred_;
  const Look look_;
  FSEventBatch ready_;  // needs no look
  std::map<std::string, Waiting> waiting_;
  std::unordered_map<std::string, FileStamp> reported_;
  std::optional<Moment> windowEnd_;  // of the changes that come together
  std::uint64_t nextOrder_ = 0;
};

}  // namespace quenlio
