// Which of the application's windows a menu or a drag belongs to. Pure; any thread.
#pragma once

#include <functional>
#include <initializer_list>
#include <vector>

#include "core/platform/Windows.h"

namespace quenlio {

using WindowRule = std::function<bool(const WindowInfo&)>;

[[nodiscard]] inline WindowRule containing(Point<Screen> point) {
  return [point](const WindowInfo& window) { return window.frame.contains(point); };
}

// The first window by the first rule that any window meets. nullptr when none meets any.
[[nodiscard]] inline const WindowInfo* firstOf(const std::vector<WindowInfo>& windows,
                                               std::initializer_list<WindowRule> rules) {
  for (const WindowRule& rule : rules) {
    for (const WindowInfo& window : windows) {
      if (rule(window)) {
        return &window;
      }
    }
  }
  return nullptr;
}

}  // namespace quenlio
