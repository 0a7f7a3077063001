// Settings that belong to the desktop and not to this program. Main thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace quenlio {

using PreferenceValue = std::variant<bool, std::int64_t, std::string>;

class Preferences {
 public:
  virtual ~Preferences() = default;
  // The live value, asked for anew each time; the last one known where the desktop is slow to answer. Nothing when it
  // is not set.
  [[nodiscard]] virtual std::optional<PreferenceValue> CFPreferencesCopyAppValue(std::string_view key,
                                                                                 std::string_view domain) = 0;
};

// The domain of the desktop's screenshot settings.
inline constexpr std::string_view kScreenCaptureDomain = "com.apple.screencapture";

}  // namespace quenlio
