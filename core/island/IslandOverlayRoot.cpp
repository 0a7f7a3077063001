#include "core/island/IslandOverlayRoot.h"

#include <algorithm>

#include "core/library/DragDropProvider.h"
#include "core/library/ScreenshotStore.h"

namespace quenlio {
namespace {

// As long as the island takes to come back from its look while something is dragged out.
constexpr Seconds kDragResetDelay{0.12};

}  // namespace

void IslandOverlayRoot::select(const ScreenshotItem& item, ModifierFlags flags) {
  const auto& listed = dependencies_.store.items.get();
  if (std::ranges::find(listed, item.id, &ScreenshotItem::id) == listed.end()) {
    return;  // it has left since it was painted
  }
  const bool command = (flags & kModifierCommand) != 0;
  if ((flags & kModifierShift) != 0) {
    dependencies_.store.selectRange(item, command);
  } else if (command) {
    dependencies_.store.toggleSelection(item);
  } else {
    dependencies_.store.select(item.id);
  }
}

void IslandOverlayRoot::copy() {
  dependencies_.store.copySelection();
}

void IslandOverlayRoot::share() {
  dependencies_.store.shareSelection();
}

void IslandOverlayRoot::viewInFolder() {
  dependencies_.store.revealSelectionInFinder();
}

void IslandOverlayRoot::edit() {
  if (const ScreenshotItem* selected = dependencies_.store.selectedItem()) {
    dependencies_.onOpenEditor(*selected);
  }
}

void IslandOverlayRoot::trash() {
  dependencies_.store.moveSelectedToTrash();
}

bool IslandOverlayRoot::beginItemDrag(const ScreenshotItem& item) {
  const bool isSelected = dependencies_.store.selectedItemIDs.get().contains(item.id);
  const std::vector<ScreenshotItem> items =
      isSelected ? dependencies_.store.selectedItems() : std::vector<ScreenshotItem>{item};
  dragResetWorkItem_.cancel();
  const Uuid token = Uuid::random();
  isExportDragging.set(true);
  activeDragToken_ = token;
  dependencies_.onItemDragStateChanged(true);
  const bool hasBegun = dependencies_.dragDrop.beginDraggingSession(
      items, weak_.bind([token](IslandOverlayRoot& self) { self.dragEnded(token); }));
  if (!hasBegun) {
    resetDrag(token);
  }
  return hasBegun;
}

void IslandOverlayRoot::dragEnded(const Uuid& token) {
  if (activeDragToken_ == token) {
    dragResetWorkItem_ = dependencies_.scheduler.after(
        kDragResetDelay, weak_.bind([token](IslandOverlayRoot& self) { self.resetDrag(token); }));
  }
}

// The late reset of an old drag must not end a new one.
void IslandOverlayRoot::resetDrag(const Uuid& token) {
  if (activeDragToken_ != token) {
    return;
  }
  activeDragToken_.reset();
  isExportDragging.set(false);
  dependencies_.onItemDragStateChanged(false);
}

double IslandOverlayRoot::containerOpacity() const {
  const ScreenshotItem* selected = dependencies_.store.selectedItem();
  const double base = selected != nullptr && selected->isPinned ? 0.90 : 0.88;
  if (isExportDragging.get()) {
    return std::max(base - 0.05, 0.78);
  }
  return isPreviewHolding.get() ? std::max(base - 0.03, 0.80) : base;
}

}  // namespace quenlio
