// Keys grabbed from the X server: they work wherever the keyboard is. Main thread.
//
// Only X11 is served. The program runs as an X11 client in a Wayland session, too, through XWayland; there a grab
// succeeds, but the key is heard only while an X11 window has the keyboard. Off X11 no key can be registered.
//
// Command is the Super key here. A key is grabbed for each state of Caps Lock and Num Lock, since the server compares
// modifiers to the letter. A press counts, a release or a repetition of a held key does not.
#pragma once

#include <QtCore/QAbstractNativeEventFilter>
#include <array>
#include <cstdint>
#include <map>
#include <optional>

#include "core/platform/HotKeys.h"

#include "desktop/linux/session/UserIntent.h"

namespace quenlio {

inline constexpr OSStatus eventHotKeyExistsErr = -9878;
inline constexpr OSStatus paramErr = -50;

class X11HotKeys final : public HotKeys, private QAbstractNativeEventFilter {
 public:
  // Each press is noted there; it outlives this.
  explicit X11HotKeys(UserIntent& intent);
  ~X11HotKeys() override;
  X11HotKeys(const X11HotKeys&) = delete;
  X11HotKeys& operator=(const X11HotKeys&) = delete;

  // paramErr for a key that no keyboard here has, and off X11; eventHotKeyExistsErr when it is taken.
  [[nodiscard]] OSStatus RegisterEventHotKey(HotKeyCombination combination, HotKeyID identifier,
                                             EventHotKeyRef& reference) override;
  void UnregisterEventHotKey(EventHotKeyRef reference) override;
  [[nodiscard]] OSStatus InstallEventHandler(std::function<OSStatus()> handler, EventHandlerRef& reference) override;
  void RemoveEventHandler(EventHandlerRef reference) override;

 private:
  struct Press {
    std::uint8_t keyCode;
    std::uint16_t modifiers;
    bool operator==(const Press&) const = default;
  };
  struct Grab {
    Press press;
    // The modifiers with each state of the locks, as they were grabbed: which modifier a lock is may change later.
    std::array<std::uint16_t, 4> variants;
  };

  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
  void pressed(const Press& press, std::uint32_t time);
  [[nodiscard]] bool grabAll(const Grab& grab) const;
  void ungrabAll(const Grab& grab) const;

  UserIntent& intent_;
  std::map<EventHotKeyRef, Grab> grabs_;
  std::map<EventHandlerRef, std::function<OSStatus()>> handlers_;
  std::uint32_t lastReference_ = 0;
  std::optional<std::uint8_t> held_;  // the grabbed key that is down
  std::uint32_t releasedAt_ = 0;      // server time
};

}  // namespace quenlio
