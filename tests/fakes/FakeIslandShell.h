// The island's panel without a window: it keeps its frame, alpha and key state, animates on the scheduler, and tells
// the call log each call under the platform's name.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/island/IslandOverlayRootViewModel.h"
#include "core/island/IslandShell.h"
#include "core/platform/Scheduler.h"

#include "tests/fakes/CallLog.h"

namespace quenlio {

class FakePanel final : public Panel {
 public:
  FakePanel(const Rect<Screen>& contentRect, const Screens& screens, Scheduler& scheduler, CallLog& log)
      : frame_(contentRect), screens_(screens), scheduler_(scheduler), log_(log) {}

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
  [[nodiscard]] bool isKeyWindow() const override { return isKey_; }
  [[nodiscard]] FirstResponder firstResponder() const override { return firstResponder_; }
  [[nodiscard]] Rect<Screen> frame() const override { return frame_; }
  [[nodiscard]] std::optional<ScreenInfo> screen() const override;
  void setOnKeyDown(std::function<bool(const KeyEvent&)> onKeyDown) override { onKeyDown_ = std::move(onKeyDown); }

  [[nodiscard]] double alpha() const { return alpha_; }
  [[nodiscard]] bool ignoresMouseEvents() const { return ignoresMouseEvents_; }
  [[nodiscard]] const std::optional<PanelAnimation>& lastAnimation() const { return lastAnimation_; }
  // A key press of the user's, which reaches the panel only while it has the keyboard; whether it was consumed.
  [[nodiscard]] bool pressKey(const KeyEvent& event) {
    isKeyUnused_ = isKeyUnused_ && !isKey_;
    return isKey_ && handKeyDown(event);
  }
  // The same for a test of what a key means, whoever has the keyboard.
  [[nodiscard]] bool handKeyDown(const KeyEvent& event) const { return onKeyDown_ && onKeyDown_(event); }
  // The user clicks into something inside the panel.
  void focus(FirstResponder responder) { firstResponder_ = responder; }
  // Takes the keyboard away, as another window would.
  void resignKey() { isKey_ = false; }
  // What the view hears while the panel goes: the end of whatever the pointer holds.
  std::function<void()> duringOrderOut;
  // When set, screen() gives this: what a window manager may do with a window behind the program's back.
  std::optional<ScreenInfo> screenOverride;

 private:
  Rect<Screen> frame_;
  const Screens& screens_;
  Scheduler& scheduler_;
  CallLog& log_;
  double alpha_ = 1;
  bool isVisible_ = false;
  bool isKey_ = false;
  bool isKeyUnused_ = false;  // it came with the pointer, and nothing has been pressed since
  FirstResponder firstResponder_ = FirstResponder::contentView;
  bool ignoresMouseEvents_ = false;
  std::optional<PanelAnimation> lastAnimation_;
  std::vector<ScheduledTask> animations_;  // all there ever were; only the last moves the panel
  bool isAlphaAnimated_ = false;           // by the last, unless it was set by hand since
  bool isFrameAnimated_ = false;
  std::function<bool(const KeyEvent&)> onKeyDown_;
};

class FakeIslandShell final : public IslandShell {
 public:
  FakeIslandShell(const Screens& screens, Scheduler& scheduler, CallLog& log)
      : screens_(screens), scheduler_(scheduler), log_(log) {}

  [[nodiscard]] std::unique_ptr<Panel> makePanel(const Rect<Screen>& contentRect) override;
  void setContentView(Panel&, const IslandOverlayRootViewModel& model) override {
    log_.add("setContentView");
    view.emplace(model);
  }

  FakePanel* panel = nullptr;  // the one that was made; it lives as long as the controller
  std::optional<IslandOverlayRootViewModel> view;

 private:
  const Screens& screens_;
  Scheduler& scheduler_;
  CallLog& log_;
};

}  // namespace quenlio
