#include "core/library/PinnedPaths.h"

#include <optional>

#include "core/base/Json.h"
#include "core/platform/FileManager.h"
#include "core/platform/SystemLog.h"

namespace quenlio {
namespace {

struct PinnedRecord {
  std::string path;
  bool isPinned = false;
};

std::optional<PinnedRecord> decode(const json::Value& value) {
  const bool whole = value.is_object() && value.contains("path") && value["path"].is_string() &&
                     value.contains("isPinned") && value["isPinned"].is_boolean();
  if (!whole) {
    return std::nullopt;
  }
  return PinnedRecord{value["path"].get<std::string>(), value["isPinned"].get<bool>()};
}

}  // namespace

void PinnedPaths::load() {
  paths_.clear();
  const auto text = contents_.read(file_);
  const auto records = text.ok() ? json::read(text.value()) : std::nullopt;
  if (!records || !records->is_array()) {
    return;
  }
  std::set<std::string> loaded;
  for (const json::Value& value : *records) {
    const auto record = decode(value);
    if (!record) {
      return;
    }
    if (record->isPinned && files_.fileExistsAtPath(FileURL(record->path))) {
      loaded.insert(record->path);
    }
  }
  paths_ = std::move(loaded);
}

void PinnedPaths::persist() {
  json::Value records = json::Value::array();
  for (const std::string& path : paths_) {
    records.push_back({{"path", path}, {"isPinned", true}});
  }
  const auto written = contents_.writeAtomically(file_, json::write(records, json::Style::compact));
  if (!written.ok()) {
    log_.NSLog("Failed to persist pinned items: " + written.error().localizedDescription);
  }
}

}  // namespace quenlio
