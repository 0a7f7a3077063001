// The selection half of ScreenshotStore.
#include <algorithm>

#include "core/library/ScreenshotStore.h"

namespace quenlio {

const ScreenshotItem* ScreenshotStore::selectedItem() const {
  const auto& list = items.get();
  const auto& primary = selectedItemID.get();
  if (const ScreenshotItem* item = primary ? find(*primary) : nullptr) {
    return item;
  }
  const auto first =
      std::ranges::find_if(list, [&](const ScreenshotItem& item) { return selectedItemIDs.get().contains(item.id); });
  if (first != list.end()) {
    return &*first;
  }
  return list.empty() ? nullptr : &list.front();
}

std::vector<ScreenshotItem> ScreenshotStore::selectedItems() const {
  std::vector<ScreenshotItem> selected;
  std::ranges::copy_if(items.get(), std::back_inserter(selected),
                       [&](const ScreenshotItem& item) { return selectedItemIDs.get().contains(item.id); });
  if (const ScreenshotItem* item = selectedItem(); selected.empty() && item != nullptr) {
    selected.push_back(*item);
  }
  return selected;
}

void ScreenshotStore::select(const Uuid& id) {
  selectedItemID.set(id);
  selectedItemIDs.set({id});
  selectionAnchorID = id;
}

void ScreenshotStore::normalizeSelection(std::optional<Uuid> preferredSelectedID, bool allowEmpty) {
  const auto& list = items.get();
  const auto isListed = [&](const std::optional<Uuid>& id) { return id && find(*id) != nullptr; };

  std::set<Uuid> kept = selectedItemIDs.get();
  std::erase_if(kept, [&](const Uuid& id) { return !isListed(id); });
  selectedItemIDs.set(std::move(kept));
  if (selectedItemID.get() && !isListed(selectedItemID.get())) {
    selectedItemID.set(std::nullopt);
  }
  if (isListed(preferredSelectedID)) {
    selectedItemID.set(preferredSelectedID);
    selectedItemIDs.mutate([&](auto& ids) { ids.insert(*preferredSelectedID); });
  }
  if (!selectedItemID.get()) {
    const auto first =
        std::ranges::find_if(list, [&](const ScreenshotItem& item) { return selectedItemIDs.get().contains(item.id); });
    if (first != list.end()) {
      selectedItemID.set(first->id);
    } else if (!allowEmpty && !list.empty()) {
      selectedItemID.set(list.front().id);
    }
  }
  if (const auto primary = selectedItemID.get()) {
    selectedItemIDs.mutate([&](auto& ids) { ids.insert(*primary); });
    if (!isListed(selectionAnchorID)) {
      selectionAnchorID = primary;
    }
  } else if (selectedItemIDs.get().empty()) {
    selectionAnchorID.reset();
  }
}

}  // namespace quenlio
