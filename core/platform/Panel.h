// The floating panel and the keys that reach it. Main thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/base/Date.h"
#include "core/base/Subscription.h"
#include "core/geometry/Easing.h"
#include "core/geometry/Geometry.h"
#include "core/platform/Screens.h"

namespace quenlio {

using ModifierFlags = std::uint32_t;
inline constexpr ModifierFlags kModifierShift = 0x20000;
inline constexpr ModifierFlags kModifierControl = 0x40000;
inline constexpr ModifierFlags kModifierOption = 0x80000;
inline constexpr ModifierFlags kModifierCommand = 0x100000;

struct KeyEvent {
  ModifierFlags modifierFlags = 0;
  std::uint16_t keyCode = 0;                               // a virtual key code: the physical key
  std::optional<std::string> charactersIgnoringModifiers;  // UTF-8
  bool isARepeat = false;                                  // of a key that is held down
};

struct PanelAnimation {
  Seconds duration;
  TimingCurve curve;
  double alpha;        // 0 to 1, where it ends
  Rect<Screen> frame;  // where it ends
};

inline constexpr std::uint32_t kCollectionBehaviorIsland = 257;  // canJoinAllSpaces and fullScreenAuxiliary
inline constexpr int kStatusWindowLevel = 25;

// What has the keyboard inside a window.
enum class FirstResponder { contentView, textView, textField, other };

// A borderless, non-activating window that floats over others. It can take the keyboard and never becomes main.
class Panel {
 public:
  virtual ~Panel() = default;

  virtual void setFloatingPanel(bool floating) = 0;
  virtual void setLevel(int level) = 0;
  virtual void setClearBackgroundWithShadow() = 0;  // background clear, not opaque, shadow on
  virtual void setCollectionBehavior(std::uint32_t behavior) = 0;
  virtual void setHidesOnDeactivate(bool hides) = 0;
  virtual void setIgnoresMouseEvents(bool ignores) = 0;
  virtual void setAlphaValue(double alpha) = 0;
  virtual void setFrame(const Rect<Screen>& frame) = 0;  // and displays
  virtual void setFrameOrigin(Point<Screen> origin) = 0;
  virtual void orderFrontRegardless() = 0;
  virtual void makeKeyAndOrderFront() = 0;
  virtual void makeKeyWindow() = 0;
  // The keyboard that came with the pointer goes back to the window it came from, unless something has been pressed
  // here since.
  virtual void returnUnusedKeyboard() = 0;
  virtual void makeContentViewFirstResponder() = 0;
  virtual void orderOut() = 0;
  virtual void invalidateShadow() = 0;
  // NSAnimationContext.runAnimationGroup on alpha and frame. The completion runs once, at the end, also when other
  // calls have moved the panel in between; it is dropped with the panel.
  virtual void runAnimationGroup(const PanelAnimation& animation, std::function<void()> completion) = 0;

  [[nodiscard]] virtual bool isVisible() const = 0;
  [[nodiscard]] virtual bool isKeyWindow() const = 0;
  [[nodiscard]] virtual FirstResponder firstResponder() const = 0;
  [[nodiscard]] virtual Rect<Screen> frame() const = 0;
  // The screen that holds most of it; nothing when it is on none.
  [[nodiscard]] virtual std::optional<ScreenInfo> screen() const = 0;

  // Key presses that reach the panel; true means consumed.
  virtual void setOnKeyDown(std::function<bool(const KeyEvent&)> onKeyDown) = 0;
};

// Key presses anywhere in the application, before they reach a window.
class EventMonitors {
 public:
  virtual ~EventMonitors() = default;
  // The handler answers whether it swallows the event. The monitor ends with the Subscription.
  [[nodiscard]] virtual Subscription addLocalMonitorForKeyDown(std::function<bool(const KeyEvent&)> handler) = 0;
};

}  // namespace quenlio
