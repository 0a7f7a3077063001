// Whether this desktop lets programs see the screen. Main thread; never shows a prompt.
#pragma once

namespace quenlio {

class ScreenCaptureAccess {
 public:
  virtual ~ScreenCaptureAccess() = default;
  [[nodiscard]] virtual bool CGPreflightScreenCaptureAccess() const = 0;
};

}  // namespace quenlio
