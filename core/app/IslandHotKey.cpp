#include "core/app/IslandHotKey.h"

#include <string>
#include <utility>

#include "core/platform/SystemLog.h"

namespace quenlio {
namespace {

constexpr HotKeyID kIdentifier{.signature = 0x49534C44, .id = 1};                        // "ISLD"
constexpr HotKeyCombination kCombination{.virtualKeyCode = 19, .modifiers = 256 + 512};  // the 2 key, command and shift

}  // namespace

void IslandHotKey::registerIslandOpenHotKey(std::function<OSStatus()> pressed) {
  unregister();
  const OSStatus registered = hotKeys_.RegisterEventHotKey(kCombination, kIdentifier, islandHotKeyRef_);
  if (registered != noErr) {
    log_.NSLog("Failed to register Cmd+Shift+2 island hotkey: " + std::to_string(registered));
    islandHotKeyRef_ = 0;
    return;
  }
  const OSStatus installed = hotKeys_.InstallEventHandler(std::move(pressed), islandHotKeyHandlerRef_);
  if (installed != noErr) {
    log_.NSLog("Failed to install island hotkey event handler: " + std::to_string(installed));
    islandHotKeyHandlerRef_ = 0;
    unregister();
  }
}

void IslandHotKey::unregister() {
  if (const auto reference = std::exchange(islandHotKeyRef_, 0)) {
    hotKeys_.UnregisterEventHotKey(reference);
  }
  if (const auto reference = std::exchange(islandHotKeyHandlerRef_, 0)) {
    hotKeys_.RemoveEventHandler(reference);
  }
}

}  // namespace quenlio
