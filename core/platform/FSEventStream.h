// Changes of one folder's files, as they happen.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Date.h"
#include "core/base/FileURL.h"
#include "core/platform/Scheduler.h"

namespace quenlio {

using FSEventFlags = std::uint32_t;
inline constexpr FSEventFlags kFSEventStreamEventFlagMustScanSubDirs = 0x1;
inline constexpr FSEventFlags kFSEventStreamEventFlagItemCreated = 0x100;
inline constexpr FSEventFlags kFSEventStreamEventFlagItemRemoved = 0x200;
inline constexpr FSEventFlags kFSEventStreamEventFlagItemRenamed = 0x800;
inline constexpr FSEventFlags kFSEventStreamEventFlagItemModified = 0x1000;

inline constexpr std::uint32_t kFSEventStreamCreateFlagUseCFTypes = 0x1;
inline constexpr std::uint32_t kFSEventStreamCreateFlagNoDefer = 0x2;
inline constexpr std::uint32_t kFSEventStreamCreateFlagFileEvents = 0x10;

// One delivery. A path that is no string arrives as nothing; paths or flags as a whole may be missing.
struct FSEventBatch {
  int numEvents = 0;
  std::optional<std::vector<std::optional<std::string>>> paths;
  std::optional<std::vector<FSEventFlags>> flags;
};

using FSEventStreamCallback = std::function<void(const FSEventBatch&)>;

// A file is reported when it is finished: complete by its own format, or untouched for two seconds. While it is being
// written the stream is silent about it. A move away is no removal. Destroying it releases it.
class FSEventStream {
 public:
  virtual ~FSEventStream() = default;
  // Where the callback runs. Before start.
  virtual void FSEventStreamSetDispatchQueue(SerialQueue& queue) = 0;
  // False when the folder cannot be watched.
  [[nodiscard]] virtual bool FSEventStreamStart() = 0;
  // No delivery begins after this returns, unless it stood in the queue already.
  virtual void FSEventStreamStop() = 0;
  virtual void FSEventStreamInvalidate() = 0;
};

struct FSEventStreamOptions {
  Seconds latency;  // changes that follow within it come together; the first comes at once under NoDefer
  std::uint32_t flags;
};

class FSEventStreams {
 public:
  virtual ~FSEventStreams() = default;
  // Nothing when no stream can be had.
  [[nodiscard]] virtual std::unique_ptr<FSEventStream> FSEventStreamCreate(FSEventStreamCallback callback,
                                                                           const FileURL& folder,
                                                                           const FSEventStreamOptions& options) = 0;
};

}  // namespace quenlio
