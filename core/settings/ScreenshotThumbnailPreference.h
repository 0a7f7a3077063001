// Switches the desktop's own thumbnail after a capture off while this program runs, and gives it back. Main thread.
#pragma once

namespace quenlio {

class UserDefaults;

struct ScreenshotThumbnailPreference {
  static constexpr const char* requestedKey = "settings.disableFloatingThumbnail.requested";

  // Both are called at launch and at termination and do nothing yet: the preference is never touched.
  static void restoreSystemDefaultIfManaged(UserDefaults&) {}
  static void applyRequestedLaunchState(UserDefaults&) {}
};

}  // namespace quenlio
