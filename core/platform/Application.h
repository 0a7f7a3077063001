// The application as the desktop sees it. Main thread.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Subscription.h"

namespace quenlio {

enum class ActivationPolicy { regular, accessory };

class Application {
 public:
  virtual ~Application() = default;
  virtual void setActivationPolicy(ActivationPolicy policy) = 0;
  virtual void activateIgnoringOtherApps() = 0;
  // Ends the main loop; applicationWillTerminate runs on the way out.
  virtual void terminate() = 0;
};

// Light or dark, and how much contrast the user asks for.
class Appearance {
 public:
  virtual ~Appearance() = default;
  // effectiveAppearance's best match of [darkAqua, aqua] is darkAqua.
  [[nodiscard]] virtual bool isDarkAqua() const = 0;
  [[nodiscard]] virtual bool accessibilityDisplayShouldIncreaseContrast() const = 0;
  // "NSApplicationDidChangeEffectiveAppearanceNotification".
  [[nodiscard]] virtual Subscription observeEffectiveAppearance(std::function<void()> changed) = 0;
  // "NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification".
  [[nodiscard]] virtual Subscription observeAccessibilityDisplayOptions(std::function<void()> changed) = 0;
};

}  // namespace quenlio
