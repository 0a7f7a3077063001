// The deletions of this run that can be undone, up to a limit. The oldest are forgotten beyond it: their files stay in
// the trash. Kept in memory alone. Main thread. Part of ScreenshotStore.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <utility>

#include "core/library/ScreenshotItem.h"
#include "core/platform/FileManager.h"

namespace quenlio {

struct DeletedScreenshotRecord {
  ScreenshotItem item;  // as it was
  FileURL originalURL;
  FileURL trashedURL;
  // In the trash. Once it is emptied, another file may lie there by the same name.
  std::optional<FileIdentity> identity = {};
};

class DeletedScreenshots {
 public:
  static constexpr std::size_t kLimit = 30;

  void push(DeletedScreenshotRecord record) {
    records_.push_back(std::move(record));
    while (records_.size() > kLimit) {
      records_.pop_front();
    }
  }

  // The latest one, which is forgotten by that.
  [[nodiscard]] std::optional<DeletedScreenshotRecord> takeLast() {
    if (records_.empty()) {
      return std::nullopt;
    }
    DeletedScreenshotRecord record = std::move(records_.back());
    records_.pop_back();
    return record;
  }

 private:
  std::deque<DeletedScreenshotRecord> records_;  // oldest first
};

}  // namespace quenlio
