// Keys that work wherever the keyboard is. Main thread.
#pragma once

#include <cstdint>
#include <functional>

namespace quenlio {

using OSStatus = std::int32_t;
inline constexpr OSStatus noErr = 0;
inline constexpr OSStatus eventNotHandledErr = -9874;

using EventHotKeyRef = std::uint32_t;   // 0 is none
using EventHandlerRef = std::uint32_t;  // 0 is none

struct HotKeyID {
  std::uint32_t signature;  // a four-character code, big-endian
  std::uint32_t id;
  bool operator==(const HotKeyID&) const = default;
};

struct HotKeyCombination {
  std::uint32_t virtualKeyCode;
  std::uint32_t modifiers;  // cmdKey 256, shiftKey 512
  bool operator==(const HotKeyCombination&) const = default;
};

class HotKeys {
 public:
  virtual ~HotKeys() = default;
  // An error status when another program has the key.
  [[nodiscard]] virtual OSStatus RegisterEventHotKey(HotKeyCombination combination, HotKeyID identifier,
                                                     EventHotKeyRef& reference) = 0;
  virtual void UnregisterEventHotKey(EventHotKeyRef reference) = 0;
  // The handler is called for each press of a registered key.
  [[nodiscard]] virtual OSStatus InstallEventHandler(std::function<OSStatus()> handler, EventHandlerRef& reference) = 0;
  virtual void RemoveEventHandler(EventHandlerRef reference) = 0;
};

}  // namespace quenlio
