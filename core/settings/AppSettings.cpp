#include "core/settings/AppSettings.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "core/base/FileURL.h"
#include "core/base/Json.h"
#include "core/base/SharedBinding.h"
#include "core/platform/Bookmarks.h"
#include "core/platform/LoginItem.h"
#include "core/platform/OpenPanel.h"
#include "core/platform/ProcessInfo.h"
#include "core/platform/SystemLog.h"

namespace quenlio {
namespace {

constexpr std::string_view kKeyPrefix = "settings.";

std::string key(std::string_view name) {
  return std::string(kKeyPrefix).append(name);
}

template <class Enumeration>
struct RawValues;
template <>
struct RawValues<IslandDurationMode> {
  static constexpr auto names = std::to_array<std::string_view>({"timed", "neverHide", "hideWhenInactive"});
};
template <>
struct RawValues<IslandSize> {
  static constexpr auto names = std::to_array<std::string_view>({"extraSmall", "small", "medium", "large", "xLarge"});
};
template <>
struct RawValues<IslandSide> {
  static constexpr auto names = std::to_array<std::string_view>({"right", "left"});
};
template <>
struct RawValues<ScreenshotLocationMode> {
  static constexpr auto names = std::to_array<std::string_view>({"auto", "manual"});
};

template <class Enumeration>
std::string_view nameOf(Enumeration value) {
  return RawValues<Enumeration>::names.at(static_cast<std::size_t>(value));
}

template <class Enumeration>
Enumeration readCase(const UserDefaults& defaults, std::string_view name, Enumeration fallback) {
  const auto raw = defaults.object<std::string>(key(name));
  return raw ? fromRawValue<Enumeration>(*raw).value_or(fallback) : fallback;
}

Bytes bytesOf(std::string_view text) {
  const auto* begin = reinterpret_cast<const std::byte*>(text.data());
  return {begin, begin + text.size()};
}

std::string textOf(const Bytes& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

using DisplayPositions = std::map<std::string, DisplayPosition>;

// Nothing when a coordinate is no finite number, which JSON cannot hold.
std::optional<std::string> encode(const DisplayPositions& positions) {
  json::Value object = json::Value::object();
  for (const auto& [display, position] : positions) {
    if (!std::isfinite(position.x) || !std::isfinite(position.y)) {
      return std::nullopt;
    }
    object[display] = {{"x", position.x}, {"y", position.y}};
  }
  return json::write(object, json::Style::compact);
}

// All or nothing: one position that cannot be read spoils the map.
std::optional<DisplayPositions> decodePositions(std::string_view text) {
  const auto object = json::read(text);
  if (!object || !object->is_object()) {
    return std::nullopt;
  }
  DisplayPositions positions;
  for (const auto& [display, value] : object->items()) {
    const bool whole = value.is_object() && value.contains("x") && value["x"].is_number() && value.contains("y") &&
                       value["y"].is_number();
    if (!whole) {
      return std::nullopt;
    }
    positions[display] = {value["x"].get<double>(), value["y"].get<double>()};
  }
  return positions;
}

}  // namespace

std::string_view rawValue(IslandDurationMode mode) {
  return nameOf(mode);
}
std::string_view rawValue(IslandSize size) {
  return nameOf(size);
}
std::string_view rawValue(IslandSide side) {
  return nameOf(side);
}
std::string_view rawValue(ScreenshotLocationMode mode) {
  return nameOf(mode);
}

template <class Enumeration>
std::optional<Enumeration> fromRawValue(std::string_view raw) {
  const auto& names = RawValues<Enumeration>::names;
  const auto found = std::ranges::find(names, raw);
  return found != names.end() ? std::optional(static_cast<Enumeration>(found - names.begin())) : std::nullopt;
}

template <class Enumeration>
std::vector<Enumeration> allCases() {
  std::vector<Enumeration> cases;
  cases.reserve(RawValues<Enumeration>::names.size());
  for (const std::string_view raw : RawValues<Enumeration>::names) {
    cases.push_back(*fromRawValue<Enumeration>(raw));
  }
  return cases;
}

template std::optional<IslandDurationMode> fromRawValue(std::string_view);
template std::optional<IslandSize> fromRawValue(std::string_view);
template std::optional<IslandSide> fromRawValue(std::string_view);
template std::optional<ScreenshotLocationMode> fromRawValue(std::string_view);
template std::vector<IslandDurationMode> allCases();
template std::vector<IslandSize> allCases();
template std::vector<IslandSide> allCases();
template std::vector<ScreenshotLocationMode> allCases();

AppSettings::AppSettings(const Dependencies& dependencies)
    : islandEnabled(true, saverOfAll()),
      islandDurationMode(IslandDurationMode::timed, saverOfAll()),
      islandDurationSeconds(30.0, saverOfAll()),
      maxHistory(10, saverOfAll()),
      islandSize(IslandSize::extraSmall, saverOfAll()),
      islandSide(IslandSide::right, saverOfAll()),
      pinnedKeepsVisible(true, saverOfAll()),
      detectLocationMode(ScreenshotLocationMode::automatic, saverOfAll()),
      manualScreenshotFolderBookmark(std::nullopt, saverOfAll()),
      launchAtLogin(false, weak_.bind([](AppSettings& self) { self.storeLaunchAtLogin(); })),
      dependencies_(dependencies) {
  migrateLegacyDefaultsIfNeeded();
  load();
}

std::function<void()> AppSettings::saverOfAll() const {
  return weak_.bind([](AppSettings& self) { self.store(); });
}

AppSettings& AppSettings::shared() {
  return SharedBinding<AppSettings>::shared();
}

void AppSettings::migrateLegacyDefaultsIfNeeded() {
  if (dependencies_.previousDefaults == nullptr) {
    return;
  }
  for (const auto& [name, object] : dependencies_.previousDefaults->dictionaryRepresentation()) {
    if (name.starts_with(kKeyPrefix) && !dependencies_.defaults.objectForKey(name)) {
      dependencies_.defaults.setObject(name, object);
    }
  }
}

void AppSettings::store() {
  UserDefaults& defaults = dependencies_.defaults;
  defaults.setObject(key("islandEnabled"), islandEnabled.get());
  defaults.setObject(key("islandDurationMode"), std::string(rawValue(islandDurationMode.get())));
  defaults.setObject(key("islandDurationSeconds"), islandDurationSeconds.get());
  defaults.setObject(key("maxHistory"), std::max<std::int64_t>(maxHistory.get(), 1));
  defaults.setObject(key("islandSize"), std::string(rawValue(islandSize.get())));
  defaults.setObject(key("islandSide"), std::string(rawValue(islandSide.get())));
  defaults.setObject(key("pinnedKeepsVisible"), pinnedKeepsVisible.get());
  defaults.setObject(key("detectLocationMode"), std::string(rawValue(detectLocationMode.get())));
  if (const auto& bookmark = manualScreenshotFolderBookmark.get()) {
    defaults.setObject(key("manualScreenshotFolderBookmark"), *bookmark);
  } else {
    defaults.removeObjectForKey(key("manualScreenshotFolderBookmark"));
  }
}

void AppSettings::storeLaunchAtLogin() {
  dependencies_.defaults.setObject(key("launchAtLogin"), launchAtLogin.get());
  applyLaunchAtLogin(launchAtLogin.get());
}

void AppSettings::storePositions() {
  if (const auto text = encode(displayPositions)) {
    dependencies_.defaults.setObject(key("displayPositions"), bytesOf(*text));
  }
}

// Each assignment saves all nine settings, and the keys after the first are read only then: so each of those eight
// holds for one run and is back at its default at the next start. That is meant; the order of the lines below decides
// it.
void AppSettings::load() {
  const UserDefaults& defaults = dependencies_.defaults;
  islandEnabled.set(defaults.object<bool>(key("islandEnabled")).value_or(true));
  islandDurationMode.set(readCase(defaults, "islandDurationMode", IslandDurationMode::timed));
  islandDurationSeconds.set(defaults.object<double>(key("islandDurationSeconds")).value_or(30.0));
  maxHistory.set(std::max<std::int64_t>(defaults.object<std::int64_t>(key("maxHistory")).value_or(10), 1));
  islandSize.set(readCase(defaults, "islandSize", IslandSize::extraSmall));
  islandSide.set(readCase(defaults, "islandSide", IslandSide::right));
  pinnedKeepsVisible.set(defaults.object<bool>(key("pinnedKeepsVisible")).value_or(true));
  detectLocationMode.set(readCase(defaults, "detectLocationMode", ScreenshotLocationMode::automatic));
  manualScreenshotFolderBookmark.set(defaults.object<Bytes>(key("manualScreenshotFolderBookmark")));
  launchAtLogin.set(defaults.object<bool>(key("launchAtLogin")).value_or(false));
  if (const auto bytes = defaults.object<Bytes>(key("displayPositions"))) {
    displayPositions = decodePositions(textOf(*bytes)).value_or(DisplayPositions{});
  }
  applyLaunchAtLogin(launchAtLogin.get());
}

void AppSettings::applyLaunchAtLogin(bool enabled) {
  if (dependencies_.bundle.bundleURL().pathExtension() != "app") {
    return;  // a development build, which is in no bundle
  }
  const LoginItemStatus status = dependencies_.loginItem.status();
  const bool settled = enabled ? status == LoginItemStatus::enabled || status == LoginItemStatus::requiresApproval
                               : status == LoginItemStatus::notFound || status == LoginItemStatus::notRegistered;
  if (settled) {
    return;
  }
  const auto outcome = enabled ? dependencies_.loginItem.registerItem() : dependencies_.loginItem.unregisterItem();
  if (!outcome.ok()) {
    dependencies_.log.NSLog("Failed to set launch-at-login: " + outcome.error().localizedDescription);
  }
}

void AppSettings::chooseManualFolder() {
  const auto folder = dependencies_.openPanel.runModal({
      .message = "Choose the folder where screenshots are saved.",
      .prompt = "Select",
      .canChooseDirectories = true,
      .canCreateDirectories = true,
  });
  if (!folder) {
    return;
  }
  const auto bookmark = dependencies_.bookmarks.bookmarkDataWithSecurityScope(*folder);
  if (!bookmark.ok()) {
    dependencies_.log.NSLog("Failed to create security-scoped bookmark: " + bookmark.error().localizedDescription);
    return;
  }
  manualScreenshotFolderBookmark.set(bookmark.value());
  detectLocationMode.set(ScreenshotLocationMode::manual);
}

}  // namespace quenlio
