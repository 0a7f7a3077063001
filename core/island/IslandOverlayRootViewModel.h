// All that the island's root view is given: what it shows, and whom it tells of what the user does.
//
// The references outlive the view. The callbacks hold their owner weakly and may be called at any time. Main thread.
#pragma once

#include <functional>

#include "core/geometry/Geometry.h"

namespace quenlio {

class AppSettings;
class Clock;
class DragDropProvider;
class Scheduler;
class ScreenshotStore;
struct IslandOverlayPresentationState;
struct ScreenshotItem;

struct IslandOverlayRootViewModel {
  ScreenshotStore& store;
  AppSettings& settings;
  IslandOverlayPresentationState& presentationState;
  DragDropProvider& dragDrop;
  Scheduler& scheduler;
  const Clock& clock;

  std::function<void(bool hovering)> onHoverChanged;
  // What had taken the pointer from the island, a menu or a drag, is over, and the pointer may be anywhere by now.
  std::function<void()> onPointerFreed;
  std::function<void()> onClose;
  std::function<void(const ScreenshotItem&)> onOpenQuickLook;
  // The item may be opened so in a moment, and then: it is not after all.
  std::function<void(const ScreenshotItem&)> onPrepareQuickLook;
  std::function<void()> onDropPreparedQuickLook;
  std::function<void(const ScreenshotItem&)> onOpenEditor;
  // The distance dragged since the gesture began, in points, y growing downward.
  std::function<void(Size translation, bool ended)> onWindowDrag;
  std::function<void(bool dragging)> onItemDragStateChanged;
  std::function<void()> onRequestNewScreenshot;
  std::function<void()> onRequestFolderAccess;
};

}  // namespace quenlio
