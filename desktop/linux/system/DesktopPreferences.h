// The settings of the desktop that this program asks for. Main thread.
#pragma once

#include <optional>
#include <string_view>

#include "core/base/FileURL.h"
#include "core/platform/Preferences.h"
#include "core/platform/UserDefaults.h"

#include "desktop/linux/system/DesktopScreenshotFolder.h"

namespace quenlio {

inline constexpr std::string_view kLocationKey = "location";

class DesktopPreferences final : public Preferences {
 public:
  struct Sources {
    UserDefaultsSuites& suites;  // where our own values of a domain are; outlives this object
    // The folder that a diagnostics run is told to watch.
    std::optional<FileURL> diagnosticsFolder;
    DesktopScreenshotFolder desktop;
  };
  explicit DesktopPreferences(Sources sources) : sources_(std::move(sources)) {}

  // Our own value, in the suite with the domain's name, wins over the desktop's; where screenshots land in a
  // diagnostics run wins over both. The desktop itself is asked for that place and for nothing else.
  [[nodiscard]] std::optional<PreferenceValue> CFPreferencesCopyAppValue(std::string_view key,
                                                                         std::string_view domain) override;

 private:
  Sources sources_;
};

}  // namespace quenlio
