#include "core/tooltip/TooltipEntries.h"

#include <algorithm>
#include <utility>

namespace quenlio {

void TooltipEntries::report(TooltipEntry entry) {
  const auto found = std::ranges::find(entries_, entry.id, &TooltipEntry::id);
  if (found != entries_.end()) {
    *found = std::move(entry);
  } else {
    entries_.push_back(std::move(entry));
  }
}

void TooltipEntries::withdraw(const Uuid& id) {
  std::erase_if(entries_, [&id](const TooltipEntry& entry) { return entry.id == id; });
}

void TooltipEntries::withdrawHelp() {
  std::erase_if(entries_, [](const TooltipEntry& entry) { return !entry.isUrgent; });
}

bool TooltipEntries::contains(const Uuid& id) const {
  return std::ranges::find(entries_, id, &TooltipEntry::id) != entries_.end();
}

std::optional<TooltipEntry> TooltipEntries::active() const {
  const TooltipEntry* active = nullptr;
  for (const TooltipEntry& entry : entries_) {
    if (active == nullptr || entry.isUrgent || !active->isUrgent) {
      active = &entry;
    }
  }
  return active != nullptr ? std::optional(*active) : std::nullopt;
}

}  // namespace quenlio
