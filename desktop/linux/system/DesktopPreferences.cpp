#include "desktop/linux/system/DesktopPreferences.h"

namespace quenlio {
namespace {

// Numbers with a fraction and bytes are no values of a preference.
struct AsPreference {
  std::optional<PreferenceValue> operator()(bool value) const { return value; }
  std::optional<PreferenceValue> operator()(std::int64_t value) const { return value; }
  std::optional<PreferenceValue> operator()(const std::string& value) const { return value; }
  std::optional<PreferenceValue> operator()(double) const { return std::nullopt; }
  std::optional<PreferenceValue> operator()(const Bytes&) const { return std::nullopt; }
};

std::optional<PreferenceValue> pathOf(const std::optional<FileURL>& folder) {
  return folder ? std::optional<PreferenceValue>(folder->path()) : std::nullopt;
}

}  // namespace

std::optional<PreferenceValue> DesktopPreferences::CFPreferencesCopyAppValue(std::string_view key,
                                                                             std::string_view domain) {
  const bool isLocation = domain == kScreenCaptureDomain && key == kLocationKey;
  if (isLocation && sources_.diagnosticsFolder) {
    return pathOf(sources_.diagnosticsFolder);
  }
  const UserDefaults* const own = sources_.suites.initWithSuiteName(domain);
  const auto object = own != nullptr ? own->objectForKey(key) : std::nullopt;
  if (const auto value = object ? std::visit(AsPreference{}, *object) : std::nullopt) {
    return value;
  }
  return isLocation ? pathOf(sources_.desktop.current()) : std::nullopt;
}

}  // namespace quenlio
