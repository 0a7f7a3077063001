// Drags of files out to other programs. Main thread.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "core/base/FileURL.h"
#include "core/platform/Image.h"
#include "core/platform/Windows.h"

namespace quenlio {

using DragOperationMask = std::uint32_t;
inline constexpr DragOperationMask kDragOperationCopy = 1;

enum class DraggingFormation { standard, stack };

struct DraggingItem {
  FileURL fileURL;
  ImageRef image;             // what is seen under the pointer; for none the desktop's icon of the file is
  Rect<WindowContent> frame;  // where the image starts
};

using DraggingSessionID = std::uint64_t;

struct DraggingRequest {
  WindowID window = 0;              // from whose content view
  Point<WindowContent> location{};  // of the pointer in it, which the frames are about
  PointerEvent event;               // a left mouse down or dragged, perhaps in another window
  std::vector<DraggingItem> items;
  // Whatever modifier keys are held, and whatever the drag is over.
  DragOperationMask allowedOperations = kDragOperationCopy;
  // What a desktop that moves the images by itself does with them. Where none does, they stay as their frames say, and
  // are gone once the pointer lets go of them.
  bool animatesToStartingPositionsOnCancelOrFail = true;
  DraggingFormation draggingFormation = DraggingFormation::standard;
};

class DraggingSessions {
 public:
  virtual ~DraggingSessions() = default;
  // Returns at once; the session runs on its own. ended is called once, when it is over, however it ended, and never
  // from within this call.
  virtual DraggingSessionID beginDraggingSession(const DraggingRequest& request,
                                                 std::function<void(DraggingSessionID)> ended) = 0;
};

}  // namespace quenlio
