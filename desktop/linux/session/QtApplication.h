// The application object on Qt's. Main thread.
#pragma once

#include "core/platform/Application.h"

#include "desktop/linux/session/UserIntent.h"

namespace quenlio {

class QtApplication final : public Application {
 public:
  // The intent outlives this.
  explicit QtApplication(UserIntent& intent) : intent_(intent) {}

  // No desktop here shows programs apart from their windows: an accessory goes on without any, a regular one ends with
  // its last.
  void setActivationPolicy(ActivationPolicy policy) override;
  // Windows come to the front by themselves; what this grants is the keyboard, to the window that is made key next.
  void activateIgnoringOtherApps() override;
  void terminate() override;

 private:
  UserIntent& intent_;
};

}  // namespace quenlio
