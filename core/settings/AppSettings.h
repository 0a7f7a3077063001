// The user's settings: read and written in the user defaults, announced to all who subscribe. Main thread. One shared
// instance, owned by the composition root.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Published.h"
#include "core/base/WeakOwner.h"
#include "core/platform/UserDefaults.h"

namespace quenlio {

class Bookmarks;
class LoginItem;
class MainBundle;
class OpenPanel;
class SystemLog;

enum class IslandDurationMode { timed, neverHide, hideWhenInactive };
enum class IslandSize { extraSmall, small, medium, large, xLarge };
enum class IslandSide { right, left };
enum class ScreenshotLocationMode { automatic, manual };  // raw values "auto" and "manual"

[[nodiscard]] std::string_view rawValue(IslandDurationMode mode);
[[nodiscard]] std::string_view rawValue(IslandSize size);
[[nodiscard]] std::string_view rawValue(IslandSide side);
[[nodiscard]] std::string_view rawValue(ScreenshotLocationMode mode);

// Every case of one of the four enumerations, in order.
template <class Enumeration>
[[nodiscard]] std::vector<Enumeration> allCases();

// The case of this raw value, if there is one. For each of the four enumerations.
template <class Enumeration>
[[nodiscard]] std::optional<Enumeration> fromRawValue(std::string_view raw);

// The island's origin after a drag, in screen coordinates.
struct DisplayPosition {
  double x = 0;
  double y = 0;
  bool operator==(const DisplayPosition&) const = default;
};

// A published setting: a write announces the value, stores it, then saves.
template <class T>
class Setting : public Published<T> {
 public:
  Setting(T value, std::function<void()> save) : Published<T>(std::move(value)), save_(std::move(save)) {}
  void set(T next) override {
    Published<T>::set(std::move(next));
    save_();
  }

 private:
  std::function<void()> save_;
};

class AppSettings {
  WeakOwner<AppSettings> weak_{this};  // first, since each setting is given its saver as it is made

 public:
  struct Dependencies {
    UserDefaults& defaults;
    UserDefaults* previousDefaults;  // the store of the product's earlier name, or none
    const MainBundle& bundle;
    LoginItem& loginItem;
    OpenPanel& openPanel;
    Bookmarks& bookmarks;
    SystemLog& log;
  };

  // Takes over keys of the earlier name, then loads.
  explicit AppSettings(const Dependencies& dependencies);
  ~AppSettings() { weak_.letGo(); }
  AppSettings(const AppSettings&) = delete;
  AppSettings& operator=(const AppSettings&) = delete;

  [[nodiscard]] static AppSettings& shared();

  Setting<bool> islandEnabled;
  Setting<IslandDurationMode> islandDurationMode;
  Setting<double> islandDurationSeconds;  // for the mode timed
  Setting<std::int64_t> maxHistory;       // a value below 1 acts as 1 and is written as 1
  Setting<IslandSize> islandSize;
  Setting<IslandSide> islandSide;
  Setting<bool> pinnedKeepsVisible;
  Setting<ScreenshotLocationMode> detectLocationMode;
  Setting<std::optional<Bytes>> manualScreenshotFolderBookmark;
  Setting<bool> launchAtLogin;

  // Where the island was dragged to, by display id in decimal text. Not observable; storePositions() saves it.
  std::map<std::string, DisplayPosition> displayPositions;

  // Writes the first nine settings, all of them, whichever has changed.
  void store();
  void storePositions();

  // Lets the user choose a folder. Confirmed, it becomes the manual screenshot folder; otherwise nothing changes.
  void chooseManualFolder();

 private:
  void migrateLegacyDefaultsIfNeeded();
  void load();
  [[nodiscard]] std::function<void()> saverOfAll() const;
  void storeLaunchAtLogin();
  void applyLaunchAtLogin(bool enabled);

  Dependencies dependencies_;
};

}  // namespace quenlio
