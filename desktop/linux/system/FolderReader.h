// The thread behind one event stream: reads the kernel's records, looks at files when that is due, and hands on what
// there is to report. Owned by the stream; made running, and joined by the destructor.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "core/platform/FSEventStream.h"

#include "desktop/linux/system/FolderChanges.h"
#include "desktop/linux/system/FolderWatch.h"
#include "desktop/linux/system/UniqueFd.h"

namespace quenlio {

class FolderReader {
 public:
  // Called on the reader's thread, in order; must not wait for it.
  using Deliver = std::function<void(FSEventBatch)>;

  // Nothing when the folder cannot be watched or no thread can be had. From here on no change is missed.
  [[nodiscard]] static std::unique_ptr<FolderReader> start(const FileURL& folder, const FSEventStreamOptions& options,
                                                           const Clock& clock, Deliver deliver);
  FolderReader(const FolderReader&) = delete;
  FolderReader& operator=(const FolderReader&) = delete;
  // Ends the thread; nothing is delivered once this returns.
  ~FolderReader();

 private:
  FolderReader(const FileURL& folder, const FSEventStreamOptions& options, const Clock& clock, Deliver deliver);

  void run();
  [[nodiscard]] bool sleep();  // false when it is time to end
  [[nodiscard]] int timeout() const;
  void readEvents();
  void take(const InotifyEvent& event);
  void followFolder();
  void findUnfinished();

  const FileURL folder_;
  const Clock& clock_;
  const Deliver deliver_;
  FolderWatch watch_;
  FolderChanges changes_;
  UniqueFd ending_;  // an event descriptor, readable when it is time to end
  bool hasPlaceChanged_ = false;
  bool hasLost_ = false;
  std::string buffer_;
  std::thread thread_;
};

}  // namespace quenlio
