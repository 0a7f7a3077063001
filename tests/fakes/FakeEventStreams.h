// Event streams that a test speaks through.
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "core/platform/FSEventStream.h"

#include "tests/fakes/CallLog.h"

namespace quenlio {

class FakeEventStreams final : public FSEventStreams {
 public:
  explicit FakeEventStreams(CallLog& log) : log_(log) {}

  [[nodiscard]] std::unique_ptr<FSEventStream> FSEventStreamCreate(FSEventStreamCallback callback,
                                                                   const FileURL& folder,
                                                                   const FSEventStreamOptions& options) override {
    log_.add("FSEventStreamCreate " + folder.path());
    if (creationFails || !callback || folder.path().empty()) {
      return nullptr;
    }
    lastOptions = options;
    auto stream = std::make_unique<Stream>(*this, std::move(callback), folder);
    return stream;
  }

  // Delivers on the queue of each running stream.
  void deliver(const FSEventBatch& batch) {
    for (const Stream* stream : running_) {
      stream->deliver(batch);
    }
  }
  // A change of the folder itself, or of a finished file right in it, told to the streams of that folder.
  void changed(const std::string& path, FSEventFlags flags = kFSEventStreamEventFlagItemCreated) {
    const FSEventBatch batch{1, std::vector<std::optional<std::string>>{path}, std::vector<FSEventFlags>{flags}};
    for (const Stream* stream : running_) {
      if (stream->folder_ == FileURL(path) || stream->folder_ == FileURL(path).parent()) {
        stream->deliver(batch);
      }
    }
  }
  [[nodiscard]] std::size_t runningCount() const { return running_.size(); }

  bool creationFails = false;
  bool startFails = false;
  FSEventStreamOptions lastOptions{};

 private:
  class Stream final : public FSEventStream {
   public:
    Stream(FakeEventStreams& owner, FSEventStreamCallback callback, FileURL folder)
        : owner_(owner), callback_(std::move(callback)), folder_(std::move(folder)) {}
    ~Stream() override {
      owner_.log_.add("FSEventStreamRelease " + folder_.path());
      std::erase(owner_.running_, this);
    }
    void FSEventStreamSetDispatchQueue(SerialQueue& queue) override {
      owner_.log_.add("FSEventStreamSetDispatchQueue " + queue.label());
      queue_ = &queue;
    }
    [[nodiscard]] bool FSEventStreamStart() override {
      owner_.log_.add("FSEventStreamStart " + folder_.path());
      if (owner_.startFails || queue_ == nullptr) {
        return false;
      }
      if (std::ranges::find(owner_.running_, this) == owner_.running_.end()) {
        owner_.running_.push_back(this);
      }
      return true;
    }
    void FSEventStreamStop() override {
      owner_.log_.add("FSEventStreamStop " + folder_.path());
      std::erase(owner_.running_, this);
    }
    void FSEventStreamInvalidate() override {
      owner_.log_.add("FSEventStreamInvalidate " + folder_.path());
      std::erase(owner_.running_, this);
      queue_ = nullptr;
    }
    void deliver(const FSEventBatch& batch) const {
      queue_->async([callback = callback_, batch] { callback(batch); });
    }

    FakeEventStreams& owner_;
    FSEventStreamCallback callback_;
    FileURL folder_;
    SerialQueue* queue_ = nullptr;
  };

  CallLog& log_;
  std::vector<Stream*> running_;
};

}  // namespace quenlio
