// Which screen is meant. Main thread.
#pragma once

#include <cstdint>
#include <optional>

#include "core/platform/Screens.h"

namespace quenlio {

// A display's identity; as a map key it is its decimal text.
using DisplayID = std::uint32_t;

struct ScreenUtilities {
  // The first screen whose frame holds the pointer, else the main screen.
  [[nodiscard]] static std::optional<ScreenInfo> activeScreen(const Screens& screens);

  // The screen's number cut to 32 bits; nothing when it has none.
  [[nodiscard]] static std::optional<DisplayID> displayID(const ScreenInfo& screen);

  // The display of activeScreen().
  [[nodiscard]] static std::optional<DisplayID> activeDisplayID(const Screens& screens);
};

}  // namespace quenlio
