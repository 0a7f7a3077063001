// Asks the desktop's own tool for a capture; the file arrives like any other. Main thread; owned by the composition
// root.
#pragma once

#include <optional>
#include <string>

namespace quenlio {

class CaptureTrigger {
 public:
  // Starts the desktop's interactive capture. Does nothing yet.
  void trigger() {}
  // Gives up what waits to be tried again. Nothing ever waits yet.
  void cancelPendingInteractiveScreenshotTrigger() {}
  // How the latest capture was started; nothing yet.
  [[nodiscard]] std::optional<std::string> lastInteractiveScreenshotTrigger() const { return std::nullopt; }
};

}  // namespace quenlio
