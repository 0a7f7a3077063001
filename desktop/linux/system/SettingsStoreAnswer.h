// What the desktop's settings store says about one key, asked anew when the store's file has changed. Main thread; the
// asking goes on on another one.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "desktop/linux/system/GSettings.h"
#include "desktop/linux/system/RegularFile.h"
#include "desktop/linux/system/WorkerPool.h"

namespace quenlio {

class SettingsStoreAnswer {
 public:
  // The function is called on any thread, one call at a time. Letting go of this object waits for a call that runs.
  explicit SettingsStoreAnswer(GSettingsGet gsettings) : gsettings_(std::move(gsettings)) {}

  // The state is that of the store's file now; the key is the same each time. Only the first call waits for the store.
  // Later ones answer at once; where the state has changed, they have the store asked, and the first call after it has
  // answered gives its word.
  [[nodiscard]] std::optional<std::string> get(std::string_view schema, std::string_view key,
                                               const std::optional<FileStamp>& state);

 private:
  struct Asking;

  GSettingsGet gsettings_;
  bool isKnown_ = false;
  std::optional<FileStamp> state_;  // before the asking: a change meanwhile is seen afterwards
  std::optional<std::string> printed_;
  std::shared_ptr<Asking> asking_;  // while the store is asked
  // On the heap, so that this can be moved.
  std::unique_ptr<WorkerPool> worker_ = std::make_unique<WorkerPool>(WorkerPool::Priority::background);
};

}  // namespace quenlio
