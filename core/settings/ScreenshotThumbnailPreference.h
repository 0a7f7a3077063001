// Switches the desktop's own thumbnail after a capture off while this program runs, and gives it back. Main thread.
#pragma once

#include <functional>

namespace quenlio {

class UserDefaults;

struct ScreenshotThumbnailPreference {
  static constexpr const char* requestedKey = "settings.disableFloatingThumbnail.requested";

  // Switches the desktop's thumbnail on or off; false when the desktop does not take it.
  using ApplyEnabled = std::function<bool(bool)>;

  // Each answers whether it has changed the desktop's preference. None does anything yet, so each says no.

  // At launch and at termination: gives the thumbnail back where this program has taken it away.
  static bool restoreSystemDefaultIfManaged(UserDefaults&, const ApplyEnabled& = {}) { return false; }
  // At launch: takes the thumbnail away where the user asks for that.
  static bool applyRequestedLaunchState(UserDefaults&, const ApplyEnabled& = {}) { return false; }
  // When the first run waits for its first capture: asks for it where the user has never chosen.
  static bool seedFreshInstallDefaultIfNeeded(UserDefaults&, const ApplyEnabled& = {}) { return false; }
};

}  // namespace quenlio
