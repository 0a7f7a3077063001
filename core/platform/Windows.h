// The application's own windows as they stand on the desktop, and the pointer's event that is being handled. Main
// thread.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "core/geometry/Geometry.h"
#include "core/platform/Panel.h"

namespace quenlio {

// A window's content view: points from its bottom left corner, y growing upward.
struct WindowContent;

using WindowID = std::uint64_t;

struct WindowInfo {
  WindowID id = 0;
  Rect<Screen> frame;
  int level = 0;
  bool isKeyWindow = false;
  bool isMainWindow = false;
  bool hasContentView = true;
  bool operator==(const WindowInfo&) const = default;
};

enum class PointerEventType { leftMouseDown, leftMouseDragged, other };

struct PointerEvent {
  PointerEventType type = PointerEventType::other;
  std::optional<WindowID> window;
  Point<WindowContent> locationInWindow;
  ModifierFlags modifierFlags = 0;
  Seconds timestamp{0};  // of the system's uptime
  bool operator==(const PointerEvent&) const = default;
};

class Windows {
 public:
  virtual ~Windows() = default;
  // In the order in which they came to be.
  [[nodiscard]] virtual std::vector<WindowInfo> visibleWindows() const = 0;
  // Nothing when no pointer event is being handled.
  [[nodiscard]] virtual std::optional<PointerEvent> currentEvent() const = 0;
  [[nodiscard]] virtual ModifierFlags modifierFlags() const = 0;
  [[nodiscard]] virtual Seconds systemUptime() const = 0;
};

// A point of the screen as a window's content sees it, and back; the content fills the frame.
[[nodiscard]] inline Point<WindowContent> toWindowContent(const WindowInfo& window, Point<Screen> point) {
  return {point.x - window.frame.minX(), point.y - window.frame.minY()};
}

}  // namespace quenlio
