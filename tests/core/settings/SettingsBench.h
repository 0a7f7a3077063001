// Settings on fake stores, to be arranged before and looked at after.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/settings/AppSettings.h"

#include "tests/fakes/CallLog.h"
#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakeSettingsStores.h"

namespace quenlio {

class SettingsBench {
 public:
  FakeUserDefaults defaults;
  FakeUserDefaults previous;
  bool hasPrevious = true;
  FakeMainBundle bundle;
  FakeLoginItem loginItem;
  FakeOpenPanel openPanel;
  FakeBookmarks bookmarks;
  FakeSystemLog systemLog;
  std::unique_ptr<AppSettings> settings;

  // A new run of the program on the same stores.
  AppSettings& start() {
    settings =
        std::make_unique<AppSettings>(AppSettings::Dependencies{.defaults = defaults,
                                                                .previousDefaults = hasPrevious ? &previous : nullptr,
                                                                .bundle = bundle,
                                                                .loginItem = loginItem,
                                                                .openPanel = openPanel,
                                                                .bookmarks = bookmarks,
                                                                .log = systemLog});
    return *settings;
  }

  // What the store holds under the settings' prefix.
  template <class T>
  [[nodiscard]] std::optional<T> stored(const std::string& name) const {
    return defaults.object<T>("settings." + name);
  }

  [[nodiscard]] std::vector<std::string> writes() { return defaults.writes().calls(); }
};

// The keys that one save writes, in order, without a manual folder.
inline std::vector<std::string> keysOfOneStore() {
  return {
      "settings.islandEnabled",      "settings.islandDurationMode", "settings.islandDurationSeconds",
      "settings.maxHistory",         "settings.islandSize",         "settings.islandSide",
      "settings.pinnedKeepsVisible", "settings.detectLocationMode", "remove settings.manualScreenshotFolderBookmark"};
}

}  // namespace quenlio
