#include "desktop/linux/system/InotifyEventStream.h"

#include <utility>

#include "desktop/linux/system/FolderReader.h"

namespace quenlio {

InotifyEventStream::InotifyEventStream(FSEventStreamCallback callback, FileURL folder,
                                       const FSEventStreamOptions& options, const Clock& clock)
    : callback_(std::make_shared<const FSEventStreamCallback>(std::move(callback))),
      folder_(std::move(folder)),
      options_(options),
      clock_(clock) {}

InotifyEventStream::~InotifyEventStream() = default;

void InotifyEventStream::FSEventStreamSetDispatchQueue(SerialQueue& queue) {
  queue_ = &queue;
}

bool InotifyEventStream::FSEventStreamStart() {
  if (reader_ == nullptr && queue_ != nullptr) {
    reader_ =
        FolderReader::start(folder_, options_, clock_, [queue = queue_, callback = callback_](FSEventBatch batch) {
          queue->async([callback, batch = std::move(batch)] { (*callback)(batch); });
        });
  }
  return reader_ != nullptr;
}

void InotifyEventStream::FSEventStreamStop() {
  reader_.reset();
}

void InotifyEventStream::FSEventStreamInvalidate() {
  FSEventStreamStop();
  queue_ = nullptr;
}

std::unique_ptr<FSEventStream> InotifyEventStreams::FSEventStreamCreate(FSEventStreamCallback callback,
                                                                        const FileURL& folder,
                                                                        const FSEventStreamOptions& options) {
  if (!callback || folder.path().empty()) {
    return nullptr;
  }
  return std::make_unique<InotifyEventStream>(std::move(callback), folder, options, clock_);
}

}  // namespace quenlio
