// The selection half of ScreenshotStore. Each field is announced in its turn, so that observers see the states between;
// what an announcement may change is never kept by reference over it.
#include <algorithm>
#include <iterator>

#include "core/library/ItemHandOut.h"
#include "core/library/ScreenshotStore.h"

namespace quenlio {

const ScreenshotItem* ScreenshotStore::selectedItem() const {
  const auto& primary = selectedItemID.get();
  if (const ScreenshotItem* item = primary ? find(*primary) : nullptr) {
    return item;
  }
  if (const auto first = firstSelectedID()) {
    return find(*first);
  }
  return items.get().empty() ? nullptr : &items.get().front();
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

void ScreenshotStore::startRange(const Uuid& id) {
  selectedItemID.set(id);
  selectionAnchorID = id;
  selectedItemIDs.set({id});
}

bool ScreenshotStore::moveSelection(int step, bool extendSelection) {
  const auto& list = items.get();
  if (list.empty()) {
    return false;
  }
  const std::optional<Uuid> primary = selectedItemID.get();
  const std::size_t current = (primary ? indexOf(*primary) : std::nullopt).value_or(0);
  const auto target = static_cast<std::size_t>(std::clamp<std::int64_t>(static_cast<std::int64_t>(current) + step, 0,
                                                                        static_cast<std::int64_t>(list.size()) - 1));
  if (target == current && primary) {
    return false;
  }
  const Uuid targetID = list[target].id;
  const Uuid anchor = selectionAnchorID.value_or(primary.value_or(targetID));
  const auto anchorIndex = indexOf(anchor);
  if (extendSelection && anchorIndex) {
    selectedItemIDs.set(idsBetween(*anchorIndex, target));
    selectedItemID.set(targetID);
    selectionAnchorID = anchor;
  } else {
    startRange(targetID);
  }
  normalizeSelection(targetID, false);
  return true;
}

void ScreenshotStore::selectRange(const ScreenshotItem& to, bool additive) {
  const Uuid id = to.id;
  const auto index = indexOf(id);
  if (!index) {
    return;
  }
  const Uuid anchor = selectionAnchorID.value_or(selectedItemID.get().value_or(id));
  const auto anchorIndex = indexOf(anchor);
  if (!anchorIndex) {
    startRange(id);
    return;
  }
  std::set<Uuid> selected = idsBetween(*anchorIndex, *index);
  if (additive) {
    selected.insert(selectedItemIDs.get().begin(), selectedItemIDs.get().end());
  }
  selectedItemIDs.set(std::move(selected));
  selectedItemID.set(id);
  selectionAnchorID = anchor;
  normalizeSelection(id, false);
}

void ScreenshotStore::toggleSelection(const ScreenshotItem& item) {
  const Uuid id = item.id;
  if (!selectedItemIDs.get().contains(id)) {
    selectedItemIDs.mutate([&](auto& ids) { ids.insert(id); });
    selectedItemID.set(id);
    selectionAnchorID = id;
    return;
  }
  selectedItemIDs.mutate([&](auto& ids) { ids.erase(id); });
  if (selectedItemID.get() == id) {
    selectedItemID.set(firstSelectedID());
  }
  if (selectedItemIDs.get().empty()) {
    selectedItemID.set(std::nullopt);
    selectionAnchorID.reset();
    return;
  }
  normalizeSelection(std::nullopt, true);
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
    if (const auto first = firstSelectedID()) {
      selectedItemID.set(first);
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

std::optional<Uuid> ScreenshotStore::firstSelectedID() const {
  const auto& list = items.get();
  const auto first =
      std::ranges::find_if(list, [&](const ScreenshotItem& item) { return selectedItemIDs.get().contains(item.id); });
  return first != list.end() ? std::optional(first->id) : std::nullopt;
}

std::optional<std::size_t> ScreenshotStore::indexOf(const Uuid& id) const {
  const auto& list = items.get();
  const auto found = std::ranges::find(list, id, &ScreenshotItem::id);
  return found != list.end() ? std::optional(static_cast<std::size_t>(found - list.begin())) : std::nullopt;
}

std::set<Uuid> ScreenshotStore::idsBetween(std::size_t oneEnd, std::size_t otherEnd) const {
  std::set<Uuid> ids;
  for (std::size_t index = std::min(oneEnd, otherEnd); index <= std::max(oneEnd, otherEnd); ++index) {
    ids.insert(items.get()[index].id);
  }
  return ids;
}

void ScreenshotStore::copySelection() {
  dependencies_.handOut.copy(selectedItems());
}

void ScreenshotStore::shareSelection() {
  dependencies_.handOut.share(selectedItems());
}

void ScreenshotStore::revealSelectionInFinder() {
  dependencies_.handOut.reveal(selectedItems());
}

}  // namespace quenlio
