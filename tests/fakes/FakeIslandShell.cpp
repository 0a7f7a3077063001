#include "tests/fakes/FakeIslandShell.h"

#include <algorithm>
#include <sstream>

namespace quenlio {
namespace {

std::string text(const Rect<Screen>& frame) {
  std::ostringstream out;
  out << frame.minX() << ' ' << frame.minY() << ' ' << frame.size.width << ' ' << frame.size.height;
  return out.str();
}

std::string text(bool value) {
  return value ? "on" : "off";
}

double overlap(const Rect<Screen>& a, const Rect<Screen>& b) {
  const double width = std::min(a.maxX(), b.maxX()) - std::max(a.minX(), b.minX());
  const double height = std::min(a.maxY(), b.maxY()) - std::max(a.minY(), b.minY());
  return width > 0 && height > 0 ? width * height : 0;
}

}  // namespace

void FakePanel::setFloatingPanel(bool floating) {
  log_.add("setFloatingPanel " + text(floating));
}
void FakePanel::setLevel(int level) {
  log_.add("setLevel " + std::to_string(level));
}
void FakePanel::setClearBackgroundWithShadow() {
  log_.add("setClearBackgroundWithShadow");
}
void FakePanel::setCollectionBehavior(std::uint32_t behavior) {
  log_.add("setCollectionBehavior " + std::to_string(behavior));
}
void FakePanel::setHidesOnDeactivate(bool hides) {
  log_.add("setHidesOnDeactivate " + text(hides));
}
void FakePanel::setIgnoresMouseEvents(bool ignores) {
  log_.add("setIgnoresMouseEvents " + text(ignores));
  ignoresMouseEvents_ = ignores;
}
void FakePanel::setAlphaValue(double alpha) {
  log_.add(alpha > 0 ? "setAlphaValue 1" : "setAlphaValue 0");
  alpha_ = alpha;
  isAlphaAnimated_ = false;
}
void FakePanel::setFrame(const Rect<Screen>& frame) {
  log_.add("setFrame " + text(frame));
  frame_ = frame;
  isFrameAnimated_ = false;
}
void FakePanel::setFrameOrigin(Point<Screen> origin) {
  frame_.origin = origin;
  isFrameAnimated_ = false;
  log_.add("setFrameOrigin " + text(frame_));
}
void FakePanel::orderFrontRegardless() {
  log_.add("orderFrontRegardless");
  isVisible_ = true;
}
void FakePanel::makeKeyAndOrderFront() {
  log_.add("makeKeyAndOrderFront");
  isVisible_ = true;
  isKeyUnused_ = isKeyUnused_ && isKey_;
  isKey_ = true;
}
void FakePanel::makeKeyWindow() {
  log_.add("makeKeyWindow");
  isKeyUnused_ = isVisible_ && (isKeyUnused_ || !isKey_);
  isKey_ = isVisible_;
}
void FakePanel::returnUnusedKeyboard() {
  log_.add("returnUnusedKeyboard");
  isKey_ = isKey_ && !isKeyUnused_;
}
void FakePanel::makeContentViewFirstResponder() {
  log_.add("makeFirstResponder");
  firstResponder_ = FirstResponder::contentView;
}
void FakePanel::orderOut() {
  log_.add("orderOut");
  if (duringOrderOut) {
    duringOrderOut();
  }
  isVisible_ = false;
  isKey_ = false;
}
void FakePanel::invalidateShadow() {
  log_.add("invalidateShadow");
}

void FakePanel::runAnimationGroup(const PanelAnimation& animation, std::function<void()> completion) {
  log_.add("runAnimationGroup to " + text(animation.frame));
  lastAnimation_ = animation;
  isAlphaAnimated_ = true;
  isFrameAnimated_ = true;
  animations_.push_back(scheduler_.after(
      animation.duration, [this, animation, number = animations_.size() + 1, completion = std::move(completion)] {
        if (number == animations_.size()) {
          alpha_ = isAlphaAnimated_ ? animation.alpha : alpha_;
          frame_ = isFrameAnimated_ ? animation.frame : frame_;
        }
        if (completion) {
          completion();
        }
      }));
}

std::optional<ScreenInfo> FakePanel::screen() const {
  if (screenOverride) {
    return screenOverride;
  }
  const auto screens = screens_.screens();
  const auto most =
      std::ranges::max_element(screens, {}, [&](const ScreenInfo& screen) { return overlap(screen.frame, frame_); });
  return most != screens.end() && overlap(most->frame, frame_) > 0 ? std::optional(*most) : std::nullopt;
}

std::unique_ptr<Panel> FakeIslandShell::makePanel(const Rect<Screen>& contentRect) {
  log_.add("makePanel " + text(contentRect));
  auto made = std::make_unique<FakePanel>(contentRect, screens_, scheduler_, log_);
  panel = made.get();
  return made;
}

}  // namespace quenlio
