#include "desktop/linux/session/QtPanel.h"

#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLineEdit>
#include <algorithm>
#include <utility>

#include "desktop/linux/session/QtScreens.h"
#include "desktop/linux/session/ScreenGeometry.h"

namespace quenlio {
namespace {

double overlap(const Rect<Screen>& a, const Rect<Screen>& b) {
  const double width = std::min(a.maxX(), b.maxX()) - std::max(a.minX(), b.minX());
  const double height = std::min(a.maxY(), b.maxY()) - std::max(a.minY(), b.minY());
  return width > 0 && height > 0 ? width * height : 0;
}

// A dialog of this program comes up from under the pointer that has asked for it, and may well leave that on the panel.
bool isDialogOpen() {
  return std::ranges::any_of(QApplication::topLevelWidgets(), [](const QWidget* window) {
    return window->isVisible() && qobject_cast<const QDialog*>(window) != nullptr;
  });
}

}  // namespace

QtPanel::QtPanel(const Rect<Screen>& contentRect, const UserIntent& intent, CompositorWatch& compositor,
                 PanelLayer layer)
    : intent_(intent),
      window_(ScreenGeometry::current().toQt(contentRect), layer),
      animator_(*this),
      frame_(contentRect) {
  compositorWatch_ = compositor.isThere().subscribe(
      weak_.bind([](QtPanel& self, bool isThere) { self.window_.setComposited(isThere); }));
  blurWatch_ = compositor.blursBehind().subscribe(
      weak_.bind([](QtPanel& self, bool blurs) { self.window_.setBlursBehind(blurs); }));
  screenChanges_.emplace(weak_.bind([](QtPanel& self) { self.screensChanged(); }));
}

// The window is made floating, above others, translucent and on all desktops, and stays so.
void QtPanel::setFloatingPanel(bool /*floating*/) {}
void QtPanel::setLevel(int /*level*/) {}
void QtPanel::setClearBackgroundWithShadow() {}
void QtPanel::setCollectionBehavior(std::uint32_t /*behavior*/) {}
void QtPanel::setHidesOnDeactivate(bool /*hides*/) {}
// The compositor follows the window by itself.
void QtPanel::invalidateShadow() {}

void QtPanel::setIgnoresMouseEvents(bool ignores) {
  window_.setTakesMouse(!ignores);
}

void QtPanel::setAlphaValue(double alpha) {
  animator_.leaveAlpha();
  applyAlpha(alpha);
}

void QtPanel::setFrame(const Rect<Screen>& frame) {
  animator_.leaveFrame();
  applyFrame(frame);
}

void QtPanel::setFrameOrigin(Point<Screen> origin) {
  setFrame({origin, frame_.size});
}

void QtPanel::orderFrontRegardless() {
  if (!isVisible_ || window_.isOutOfSight()) {
    isVisible_ = true;
    window_.orderOut();
    window_.showOnAllDesktops();
  }
  window_.raise();
}

void QtPanel::makeKeyAndOrderFront() {
  orderFrontRegardless();
  makeKeyWindow();
}

void QtPanel::makeKeyWindow() {
  if (!isVisible_) {
    return;
  }
  window_.raise();
  if (!mayTakeKeyboard()) {
    return;
  }
  window_.takeKeyboard(intent_.recent() ? PanelKeyboard::Reason::user : PanelKeyboard::Reason::pointer);
  // Hiding takes the activity from the widget at once and from its window only when the server's word comes. A window
  // that is shown again before that never hears that it has become active, so its widget has to be told.
  if (QGuiApplication::focusWindow() == window_.windowHandle() && !window_.isActiveWindow()) {
    QApplication::setActiveWindow(&window_);
  }
}

void QtPanel::returnUnusedKeyboard() {
  window_.returnUnusedKeyboard();
}

void QtPanel::makeContentViewFirstResponder() {
  if (QWidget* content = window_.content()) {
    content->setFocus(Qt::OtherFocusReason);
  }
}

void QtPanel::orderOut() {
  // First, while the panel still counts as shown: going, the window lets go of what the pointer holds, and the end of a
  // move is heard only of a panel that is there.
  window_.orderOut();
  isVisible_ = false;
}

void QtPanel::runAnimationGroup(const PanelAnimation& animation, std::function<void()> completion) {
  animator_.run(animation, {.alpha = alpha_, .frame = frame_}, std::move(completion));
}

bool QtPanel::isKeyWindow() const {
  return window_.isActiveWindow();
}

FirstResponder QtPanel::firstResponder() const {
  const QWidget* focused = window_.focusWidget();
  if (focused == nullptr || focused == window_.content()) {
    return FirstResponder::contentView;
  }
  if (qobject_cast<const QLineEdit*>(focused) != nullptr) {
    return FirstResponder::textField;
  }
  return focused->inherits("QTextEdit") || focused->inherits("QPlainTextEdit") ? FirstResponder::textView
                                                                               : FirstResponder::other;
}

std::optional<ScreenInfo> QtPanel::screen() const {
  const ScreenGeometry geometry = ScreenGeometry::current();
  const QScreen* best = nullptr;
  double most = 0;
  for (const QScreen* candidate : QGuiApplication::screens()) {
    const double area = overlap(geometry.fromQt(candidate->geometry()), frame_);
    if (area > most) {
      most = area;
      best = candidate;
    }
  }
  return best != nullptr ? std::optional(QtScreens::infoFor(*best)) : std::nullopt;
}

void QtPanel::setOnKeyDown(std::function<bool(const KeyEvent&)> onKeyDown) {
  window_.setOnKeyDown(std::move(onKeyDown));
}

void QtPanel::applyAlpha(double alpha) {
  alpha_ = alpha;
  window_.setAlpha(alpha);
}

void QtPanel::applyFrame(const Rect<Screen>& frame) {
  frame_ = frame;
  window_.setFrame(ScreenGeometry::current().toQt(frame));
}

void QtPanel::screensChanged() {
  animator_.leaveFrame();
  frame_ = ScreenGeometry::current().fromQt(window_.frame());
}

bool QtPanel::mayTakeKeyboard() const {
  return intent_.recent() || (frame_.contains(QtScreens().mouseLocation()) && !isDialogOpen());
}

}  // namespace quenlio
