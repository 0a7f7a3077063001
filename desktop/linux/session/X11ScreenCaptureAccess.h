// X11 lets every program see the screen. Main thread.
#pragma once

#include "core/platform/ScreenCaptureAccess.h"

namespace quenlio {

class X11ScreenCaptureAccess final : public ScreenCaptureAccess {
 public:
  [[nodiscard]] bool CGPreflightScreenCaptureAccess() const override { return true; }
};

}  // namespace quenlio
