#include "desktop/linux/system/SettingsStoreAnswer.h"

#include <condition_variable>
#include <mutex>

namespace quenlio {

using Deadline = std::chrono::steady_clock::time_point;

// One question, shared by the thread that asks the store and the one that waits.
class SettingsStoreAnswer::Asking {
 public:
  void answer(std::optional<std::string> printed) {
    const std::scoped_lock lock(mutex_);
    printed_ = std::move(printed);
    isDone_ = true;
    done_.notify_all();
  }
  // False when there is no answer by then.
  bool waitUntil(Deadline deadline) {
    std::unique_lock lock(mutex_);
    return done_.wait_until(lock, deadline, [this] { return isDone_; });
  }
  // Once it is done.
  [[nodiscard]] std::optional<std::string> printed() {
    const std::scoped_lock lock(mutex_);
    return printed_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable done_;
  std::optional<std::string> printed_;  // guarded by mutex_
  bool isDone_ = false;                 // guarded by mutex_
};

void SettingsStoreAnswer::ask(std::string_view schema, std::string_view key) {
  auto asking = std::make_shared<Asking>();
  worker_->run([gsettings = gsettings_, schema = std::string(schema), key = std::string(key), asking] {
    asking->answer(gsettings(schema, key));
  });
  asking_ = std::move(asking);
}

bool SettingsStoreAnswer::takeAnswer(Deadline deadline) {
  if (asking_ != nullptr && !asking_->waitUntil(deadline)) {
    return false;
  }
  if (asking_ != nullptr) {
    printed_ = asking_->printed();
    asking_.reset();
  }
  return true;
}

std::optional<std::string> SettingsStoreAnswer::get(std::string_view schema, std::string_view key,
                                                    const std::optional<FileStamp>& state) {
  if (!isKnown_) {
    isKnown_ = true;
    state_ = state;
    printed_ = gsettings_(schema, key);
    return printed_;
  }
  const auto now = std::chrono::steady_clock::now();
  const bool hasChanged = state != state_;
  const Deadline deadline = hasChanged ? now + patience_ : now;
  // A question about an earlier change may still be on its way: one at a time.
  if (takeAnswer(deadline) && hasChanged) {
    ask(schema, key);
    state_ = state;
    (void)takeAnswer(deadline);
  }
  return printed_;
}

}  // namespace quenlio
