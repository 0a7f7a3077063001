// What the desktop's settings store says about one key, asked anew when the store's file has changed. Main thread; the
// asking goes on on another one.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "desktop/linux/system/GSettings.h"
#include "desktop/linux/system/RegularFile.h"
#include "desktop/linux/system/WorkerPool.h"

namespace quenlio {

// How long a question about a change may hold up the main thread: several times what the store takes, and too short to
// be noticed.
inline constexpr std::chrono::milliseconds kPatienceAfterChange(100);

class SettingsStoreAnswer {
 public:
  // The function is called on any thread, one call at a time. Letting go of this object waits for a call that runs.
  explicit SettingsStoreAnswer(GSettingsGet gsettings, std::chrono::milliseconds patience = kPatienceAfterChange)
      : gsettings_(std::move(gsettings)), patience_(patience) {}

  // The state is that of the store's file now; the key is the same each time. The first call waits for the store, since
  // it has no answer without it. A later one whose state has changed has the store asked and waits for its word too,
  // but no longer than the patience: from then on the old answer holds until the store has answered.
  [[nodiscard]] std::optional<std::string> get(std::string_view schema, std::string_view key,
                                               const std::optional<FileStamp>& state);

 private:
  class Asking;

  void ask(std::string_view schema, std::string_view key);
  // Takes up what was asked for, if it is there by the deadline. False while it is not.
  bool takeAnswer(std::chrono::steady_clock::time_point deadline);

  GSettingsGet gsettings_;
  std::chrono::milliseconds patience_;
  bool isKnown_ = false;
  std::optional<FileStamp> state_;  // before the asking: a change meanwhile is seen afterwards
  std::optional<std::string> printed_;
  std::shared_ptr<Asking> asking_;  // while the store is asked
  // Waited for, so at normal priority. On the heap, so that this can be moved.
  std::unique_ptr<WorkerPool> worker_ = std::make_unique<WorkerPool>(WorkerPool::Priority::normal, 1);
};

}  // namespace quenlio
