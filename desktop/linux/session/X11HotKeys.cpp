#include "desktop/linux/session/X11HotKeys.h"

#include <QtCore/QByteArray>
#include <QtCore/QCoreApplication>
#include <algorithm>
#include <array>
#include <utility>
#include <vector>
#include <xcb/xcb_keysyms.h>

#include "desktop/linux/session/KeyTranslation.h"
#include "desktop/linux/session/X11.h"

namespace quenlio {
namespace {

// The modifiers of a hot key, in the numbers that it is registered with.
constexpr std::uint32_t kCommand = 0x100;
constexpr std::uint32_t kShift = 0x200;
constexpr std::uint32_t kOption = 0x800;
constexpr std::uint32_t kControl = 0x1000;

constexpr xcb_keysym_t kSuperLeft = 0xffeb;
constexpr xcb_keysym_t kNumLock = 0xff7f;
constexpr std::uint16_t kModifiers = 0xff;  // of a key event's state; above them are the pointer's buttons

// Which of the eight modifiers this key sets; the fallback when it sets none.
std::uint16_t modifierOf(xcb_keysym_t keysym, std::uint16_t fallback) {
  xcb_connection_t* connection = x11::connection();
  const x11::Reply<xcb_get_modifier_mapping_reply_t> mapping(
      xcb_get_modifier_mapping_reply(connection, xcb_get_modifier_mapping(connection), nullptr));
  const std::unique_ptr<xcb_key_symbols_t, void (*)(xcb_key_symbols_t*)> symbols(xcb_key_symbols_alloc(connection),
                                                                                 xcb_key_symbols_free);
  const std::unique_ptr<xcb_keycode_t, x11::FreeReply> keys(xcb_key_symbols_get_keycode(symbols.get(), keysym));
  if (!mapping || !keys) {
    return fallback;
  }
  const xcb_keycode_t* codes = xcb_get_modifier_mapping_keycodes(mapping.get());
  const int perModifier = mapping->keycodes_per_modifier;
  for (int index = 0; index < 8 * perModifier; ++index) {
    for (const xcb_keycode_t* key = keys.get(); *key != XCB_NO_SYMBOL; ++key) {
      if (codes[index] == *key) {
        return static_cast<std::uint16_t>(1U << static_cast<unsigned>(index / perModifier));
      }
    }
  }
  return fallback;
}

std::uint16_t numLock() {
  return modifierOf(kNumLock, XCB_MOD_MASK_2);
}

std::array<std::uint16_t, 4> lockVariants(std::uint16_t modifiers) {
  const unsigned number = numLock();
  const auto with = [modifiers](unsigned locks) { return static_cast<std::uint16_t>(modifiers | locks); };
  return {with(0), with(XCB_MOD_MASK_LOCK), with(number), with(XCB_MOD_MASK_LOCK | number)};
}

std::uint16_t x11Modifiers(std::uint32_t modifiers) {
  unsigned result = 0;
  result |= (modifiers & kCommand) != 0 ? modifierOf(kSuperLeft, XCB_MOD_MASK_4) : 0U;
  result |= (modifiers & kShift) != 0 ? static_cast<unsigned>(XCB_MOD_MASK_SHIFT) : 0U;
  result |= (modifiers & kOption) != 0 ? static_cast<unsigned>(XCB_MOD_MASK_1) : 0U;
  result |= (modifiers & kControl) != 0 ? static_cast<unsigned>(XCB_MOD_MASK_CONTROL) : 0U;
  return static_cast<std::uint16_t>(result);
}

}  // namespace

X11HotKeys::X11HotKeys(UserIntent& intent) : intent_(intent) {
  QCoreApplication::instance()->installNativeEventFilter(this);
}

X11HotKeys::~X11HotKeys() {
  for (const auto& [reference, grab] : grabs_) {
    ungrabAll(grab);
  }
  if (QCoreApplication::instance() != nullptr) {
    QCoreApplication::instance()->removeNativeEventFilter(this);
  }
}

OSStatus X11HotKeys::RegisterEventHotKey(HotKeyCombination combination, HotKeyID /*identifier*/,
                                         EventHotKeyRef& reference) {
  const auto evdev = evdevCodeFromVirtualKeyCode(combination.virtualKeyCode);
  if (x11::connection() == nullptr || !evdev || *evdev + kX11KeyCodeOffset > 0xff) {
    return paramErr;
  }
  const Press press{static_cast<std::uint8_t>(*evdev + kX11KeyCodeOffset), x11Modifiers(combination.modifiers)};
  const Grab grab{press, lockVariants(press.modifiers)};
  const bool isOurs = std::ranges::any_of(grabs_, [&press](const auto& entry) { return entry.second.press == press; });
  if (isOurs || !grabAll(grab)) {
    return eventHotKeyExistsErr;
  }
  reference = ++lastReference_;
  grabs_.emplace(reference, grab);
  return noErr;
}

void X11HotKeys::UnregisterEventHotKey(EventHotKeyRef reference) {
  if (const auto found = grabs_.find(reference); found != grabs_.end()) {
    ungrabAll(found->second);
    grabs_.erase(found);
  }
}

OSStatus X11HotKeys::InstallEventHandler(std::function<OSStatus()> handler, EventHandlerRef& reference) {
  reference = ++lastReference_;
  handlers_.emplace(reference, std::move(handler));
  return noErr;
}

void X11HotKeys::RemoveEventHandler(EventHandlerRef reference) {
  handlers_.erase(reference);
}

// All four or none.
bool X11HotKeys::grabAll(const Grab& grab) const {
  std::vector<xcb_void_cookie_t> cookies;
  for (const std::uint16_t modifiers : grab.variants) {
    cookies.push_back(xcb_grab_key_checked(x11::connection(), 0, x11::rootWindow(), modifiers, grab.press.keyCode,
                                           XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
  }
  bool isTaken = false;
  for (const xcb_void_cookie_t cookie : cookies) {
    const x11::Reply<xcb_generic_error_t> error(xcb_request_check(x11::connection(), cookie));
    isTaken = isTaken || error != nullptr;
  }
  if (isTaken) {
    ungrabAll(grab);
  }
  return !isTaken;
}

void X11HotKeys::ungrabAll(const Grab& grab) const {
  for (const std::uint16_t modifiers : grab.variants) {
    xcb_ungrab_key(x11::connection(), grab.press.keyCode, x11::rootWindow(), modifiers);
  }
  xcb_flush(x11::connection());
}

// Never swallows: Qt learns the server's time from these events, and needs it to ask for the keyboard.
bool X11HotKeys::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
  if (eventType != "xcb_generic_event_t" || grabs_.empty()) {
    return false;
  }
  const auto* event = static_cast<const xcb_key_press_event_t*>(message);
  const int number = event->response_type & x11::kEventNumber;
  if ((number != XCB_KEY_PRESS && number != XCB_KEY_RELEASE) || event->event != x11::rootWindow()) {
    return false;
  }
  if (number == XCB_KEY_RELEASE) {
    if (held_ == event->detail) {
      held_.reset();
      releasedAt_ = event->time;
    }
    return false;
  }
  const auto locks = static_cast<std::uint16_t>(XCB_MOD_MASK_LOCK | numLock());
  pressed({event->detail, static_cast<std::uint16_t>(event->state & kModifiers & ~locks)}, event->time);
  return false;
}

void X11HotKeys::pressed(const Press& press, std::uint32_t time) {
  const bool isGrabbed =
      std::ranges::any_of(grabs_, [&press](const auto& entry) { return entry.second.press == press; });
  // A held key repeats as press after press, or, where the server is not asked to tell them apart, with a release at
  // the very same time before each.
  const bool isRepetition = held_ == press.keyCode || releasedAt_ == time;
  if (!isGrabbed || isRepetition) {
    return;
  }
  held_ = press.keyCode;
  intent_.note();
  // A copy, since a handler may install or remove handlers; one that is removed is not called any more.
  const auto handlers = handlers_;
  for (const auto& [reference, handler] : handlers) {
    if (handlers_.contains(reference)) {
      handler();
    }
  }
}

}  // namespace quenlio
