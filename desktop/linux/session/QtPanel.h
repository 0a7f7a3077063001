// The floating panel as an X11 window under a window manager.
//
// Where it stands and whether it is shown is kept here: the window manager answers late, and another's answer would
// make the island's own decisions depend on it. Taking the keyboard follows the desktop's rule against stealing focus:
// making the panel key raises it always, and takes the keyboard only when the pointer is inside, with no dialog of this
// program open, or the user has just asked for it. Hiding gives the keyboard back, and so does a pointer that goes
// without having used it. Levels and collection behaviours have one meaning each here, on all desktops and above other
// windows, which every showing renews. Main thread.
#pragma once

#include <QtWidgets/QWidget>
#include <optional>

#include "core/base/Subscription.h"
#include "core/base/WeakOwner.h"
#include "core/platform/Panel.h"

#include "desktop/linux/session/CompositorWatch.h"
#include "desktop/linux/session/PanelAnimator.h"
#include "desktop/linux/session/PanelWindow.h"
#include "desktop/linux/session/ScreenChanges.h"
#include "desktop/linux/session/UserIntent.h"

namespace quenlio {

class QtPanel final : public Panel, private PanelAnimator::Target {
 public:
  // Both outlive the panel. It starts ordered out.
  QtPanel(const Rect<Screen>& contentRect, const UserIntent& intent, CompositorWatch& compositor,
          PanelLayer layer = PanelLayer::aboveOthers);

  void setContentView(std::unique_ptr<QWidget> content) { window_.setContent(std::move(content)); }
  // What the content's body looks like; it changes with the size and the appearance.
  void setSurface(const PanelSurface& surface) { window_.setSurface(surface); }
  // Who wants the panel closed from without, as by a window manager's key, is told to this; the panel itself stays.
  void setOnClose(std::function<void()> onClose) { window_.setOnClose(std::move(onClose)); }
  // How the window is called where windows are listed and read out.
  void setTitle(const QString& title) {
    window_.setWindowTitle(title);
    window_.setAccessibleName(title);
  }
  void setObjectName(const QString& name) { window_.setObjectName(name); }
  [[nodiscard]] const QWidget& window() const { return window_; }

  void setFloatingPanel(bool floating) override;
  void setLevel(int level) override;
  void setClearBackgroundWithShadow() override;
  void setCollectionBehavior(std::uint32_t behavior) override;
  void setHidesOnDeactivate(bool hides) override;
  void setIgnoresMouseEvents(bool ignores) override;
  void setAlphaValue(double alpha) override;
  void setFrame(const Rect<Screen>& frame) override;
  void setFrameOrigin(Point<Screen> origin) override;
  void orderFrontRegardless() override;
  void makeKeyAndOrderFront() override;
  void makeKeyWindow() override;
  void returnUnusedKeyboard() override;
  void makeContentViewFirstResponder() override;
  void orderOut() override;
  void invalidateShadow() override;
  void runAnimationGroup(const PanelAnimation& animation, std::function<void()> completion) override;

  [[nodiscard]] bool isVisible() const override { return isVisible_; }
  [[nodiscard]] bool isKeyWindow() const override;
  [[nodiscard]] FirstResponder firstResponder() const override;
  [[nodiscard]] Rect<Screen> frame() const override { return frame_; }
  [[nodiscard]] std::optional<ScreenInfo> screen() const override;
  void setOnKeyDown(std::function<bool(const KeyEvent&)> onKeyDown) override;

 private:
  void applyAlpha(double alpha) override;
  void applyFrame(const Rect<Screen>& frame) override;
  [[nodiscard]] bool mayTakeKeyboard() const;
  // The window has stayed where it is, and that place has other numbers now.
  void screensChanged();

  const UserIntent& intent_;
  PanelWindow window_;
  PanelAnimator animator_;
  Rect<Screen> frame_;
  double alpha_ = 1;
  bool isVisible_ = false;
  Subscription compositorWatch_;
  Subscription blurWatch_;
  std::optional<ScreenChanges> screenChanges_;  // once the panel stands
  WeakOwner<QtPanel> weak_{this};
};

}  // namespace quenlio
