// Drags of screenshots out to other programs, as copies of their files. Main thread; owned by the composition root.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "core/base/WeakOwner.h"
#include "core/library/ScreenshotItem.h"
#include "core/platform/Dragging.h"

namespace quenlio {

class FileManager;
class Scheduler;
class Screens;

class DragDropProvider {
 public:
  struct Dependencies {
    const FileManager& files;
    const Windows& windows;
    const Screens& screens;
    DraggingSessions& sessions;
    Scheduler& scheduler;
  };
  explicit DragDropProvider(const Dependencies& dependencies) : dependencies_(dependencies) {}
  DragDropProvider(const DragDropProvider&) = delete;
  DragDropProvider& operator=(const DragDropProvider&) = delete;

  // Starts a drag of those of the items' files that are there. False, and the callback is not kept, when none is or
  // when there is no window to drag from. Else the callback comes once, on the main queue, after the drag has ended.
  bool beginDraggingSession(const std::vector<ScreenshotItem>& items, std::function<void()> onSessionEnded);

 private:
  // Where a drag starts from.
  struct Context {
    WindowID window;
    Point<WindowContent> location;
  };
  [[nodiscard]] std::optional<Context> resolveDragContext() const;
  // The event that is being handled, when a button is down in it; else one made up.
  [[nodiscard]] PointerEvent eventFor(const Context& context) const;
  void sessionEnded(DraggingSessionID session);

  Dependencies dependencies_;
  std::map<DraggingSessionID, std::function<void()>> sessionEndHandlers_;
  WeakOwner<DragDropProvider> weak_{this};
};

}  // namespace quenlio
