// Tells of the finished files of one folder, by the kernel's notice of changes.
//
// Each stream has one thread, from start to stop. It sleeps until the folder changes or a look at a file is due, and
// never waits for the queue that it delivers on. Subfolders are not watched. A folder that goes away and comes back is
// watched again, and whoever listens is told to list it; so it is when the kernel has lost records of changes.
//
// Start, stop and the rest: one thread at a time.
#pragma once

#include <memory>

#include "core/platform/FSEventStream.h"

namespace quenlio {

class FolderReader;

class InotifyEventStream final : public FSEventStream {
 public:
  // The clock outlives this object.
  InotifyEventStream(FSEventStreamCallback callback, FileURL folder, const FSEventStreamOptions& options,
                     const Clock& clock);
  InotifyEventStream(const InotifyEventStream&) = delete;
  InotifyEventStream& operator=(const InotifyEventStream&) = delete;
  ~InotifyEventStream() override;

  // The queue outlives the running stream.
  void FSEventStreamSetDispatchQueue(SerialQueue& queue) override;
  // False without a queue, when the system's limit of watches is used up, or when the folder must not be read. A
  // folder that is not there is waited for.
  [[nodiscard]] bool FSEventStreamStart() override;
  void FSEventStreamStop() override;
  void FSEventStreamInvalidate() override;

 private:
  const std::shared_ptr<const FSEventStreamCallback> callback_;  // shared with deliveries that stand in the queue
  const FileURL folder_;
  const FSEventStreamOptions options_;
  const Clock& clock_;
  SerialQueue* queue_ = nullptr;
  std::unique_ptr<FolderReader> reader_;  // while running
};

class InotifyEventStreams final : public FSEventStreams {
 public:
  // The clock outlives the streams.
  explicit InotifyEventStreams(const Clock& clock) : clock_(clock) {}

  // Nothing without a callback or a folder.
  [[nodiscard]] std::unique_ptr<FSEventStream> FSEventStreamCreate(FSEventStreamCallback callback,
                                                                   const FileURL& folder,
                                                                   const FSEventStreamOptions& options) override;

 private:
  const Clock& clock_;
};

}  // namespace quenlio
