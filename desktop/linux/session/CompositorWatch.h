// Whether a compositor runs, which is who owns the selection _NET_WM_CM_S0, and whether it blurs behind windows that
// ask for it; told live. Owned by LinuxPlatform, outlives every panel. Main thread.
#pragma once

#include <QtCore/QAbstractNativeEventFilter>

#include "core/base/Published.h"

namespace quenlio {

class CompositorWatch final : private QAbstractNativeEventFilter {
 public:
  // Off X11 a compositor counts as there.
  CompositorWatch();
  ~CompositorWatch() override;
  CompositorWatch(const CompositorWatch&) = delete;
  CompositorWatch& operator=(const CompositorWatch&) = delete;

  [[nodiscard]] Published<bool>& isThere() { return isThere_; }
  [[nodiscard]] Published<bool>& blursBehind() { return blursBehind_; }

 private:
  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

  void selectionChanged(const void* event);
  void rootPropertyChanged(const void* event);

  Published<bool> isThere_{true};
  Published<bool> blursBehind_{false};
  int selectionNotify_ = -1;  // the number of the event that tells of a new owner; -1: not watched
};

}  // namespace quenlio
