// An island that is up with screenshots in it, and the keys that are pressed on it.
#pragma once

#include <initializer_list>
#include <set>
#include <string>

#include "tests/core/island/IslandTest.h"

namespace quenlio {

inline constexpr std::uint16_t kReturn = 36;
inline constexpr std::uint16_t kEnter = 76;
inline constexpr std::uint16_t kSpace = 49;
inline constexpr std::uint16_t kEscape = 53;
inline constexpr std::uint16_t kLeft = 123;
inline constexpr std::uint16_t kRight = 124;
inline constexpr std::uint16_t kBackspace = 51;
inline constexpr std::uint16_t kForwardDelete = 117;
inline constexpr ModifierFlags kFunction = 0x800000;
inline constexpr ModifierFlags kCapsLock = 0x10000;
inline constexpr ModifierFlags kNumericPad = 0x200000;

class Keys : public IslandTest {
 protected:
  // An island that is up, timed, with these screenshots, the last the newest and selected alone.
  void openWith(std::initializer_list<std::string> names) {
    settings.islandDurationMode.set(IslandDurationMode::timed);
    settings.islandDurationSeconds.set(5);
    open();
    for (const std::string& name : names) {
      platform.time.advanceBy(1s);
      addItem(name);
    }
    platform.time.advanceBy(200ms);
    island->show(std::nullopt);
    platform.log.clear();
  }
  bool key(std::uint16_t code, ModifierFlags flags = 0) const {
    return panel().handKeyDown({flags, code, std::nullopt});
  }
  // As the keyboard sends it while the key is held down.
  bool heldKey(std::uint16_t code, ModifierFlags flags = 0) const {
    return panel().handKeyDown({flags, code, std::nullopt, true});
  }
  bool letter(const std::string& characters, ModifierFlags flags) const {
    return panel().handKeyDown({flags, 200, characters});
  }
  void selectAll() {
    std::set<Uuid> ids;
    for (const ScreenshotItem& item : store.items.get()) {
      ids.insert(item.id);
    }
    store.selectedItemIDs.set(ids);
  }
  [[nodiscard]] std::string selectedName() const {
    const ScreenshotItem* item = store.selectedItem();
    return item != nullptr ? item->fileURL.lastPathComponent() : "";
  }
  [[nodiscard]] FileURL url(const std::string& name) const { return FileURL("/shots/" + name); }
  // Whether the countdown begins anew with what act does.
  template <class Act>
  [[nodiscard]] bool restartsCountdown(Act act) {
    platform.time.advanceBy(1s);
    EXPECT_LT(state().dismissProgress.get(), 0.9);
    act();
    return state().dismissProgress.get() == 1.0;
  }
};

}  // namespace quenlio
