// What the user does in the island's views, and the state that belongs to no single one of them. Owned by the root
// view; knows nothing of pixels. Main thread.
#pragma once

#include <functional>
#include <optional>
#include <utility>

#include "core/base/Published.h"
#include "core/base/Uuid.h"
#include "core/base/WeakOwner.h"
#include "core/platform/Panel.h"
#include "core/platform/Scheduler.h"

namespace quenlio {

class DragDropProvider;
class ScreenshotStore;
struct ScreenshotItem;

class IslandOverlayRoot {
 public:
  struct Dependencies {
    ScreenshotStore& store;
    DragDropProvider& dragDrop;
    Scheduler& scheduler;
    std::function<void(const ScreenshotItem&)> onOpenEditor;
    std::function<void(bool dragging)> onItemDragStateChanged;
  };
  explicit IslandOverlayRoot(Dependencies dependencies) : dependencies_(std::move(dependencies)) {}
  IslandOverlayRoot(const IslandOverlayRoot&) = delete;
  IslandOverlayRoot& operator=(const IslandOverlayRoot&) = delete;

  Published<bool> isExportDragging{false};
  Published<bool> isPreviewHolding{false};

  // A click on a cell of the strip: alone, a range with Shift, one more or less with Command.
  void select(const ScreenshotItem& item, ModifierFlags flags);

  // The toolbar's actions, on the selection.
  void copy();
  void share();
  void viewInFolder();
  void edit();  // the selected item
  void trash();

  // Drags the item out, and with it all that is selected when it is itself. False when no drag has begun.
  bool beginItemDrag(const ScreenshotItem& item);

  // How opaque the island's content is drawn: a little less while something is held or dragged out, 0.78 to 0.90.
  [[nodiscard]] double containerOpacity() const;

 private:
  void dragEnded(const Uuid& token);
  void resetDrag(const Uuid& token);

  Dependencies dependencies_;
  std::optional<Uuid> activeDragToken_;
  ScheduledTask dragResetWorkItem_;
  WeakOwner<IslandOverlayRoot> weak_{this};
};

}  // namespace quenlio
