// A panel on either side, and what a person does to it.
#pragma once

#include <QtGui/QImage>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QWidget>
#include <functional>
#include <memory>
#include <optional>

#include "desktop/linux/session/QtPanel.h"
#include "desktop/linux/session/QtScreens.h"
#include "desktop/linux/session/X11.h"
#include "desktop/linux/system/LinuxClock.h"

#include "tests/contract/session/Until.h"
#include "tests/desktop/session/Desk.h"
#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakeIslandShell.h"

namespace quenlio {

// A key under its name for the X server, and as the program is told of it.
struct PressedKey {
  const char* name;
  KeyEvent event;
};

struct FakePanels {
  VirtualTime time;
  CallLog log;
  FakeScreens fakeScreens;
  FakePanel* made = nullptr;

  [[nodiscard]] std::unique_ptr<Panel> make(const Rect<Screen>& contentRect) {
    auto panel = std::make_unique<FakePanel>(contentRect, fakeScreens, time, log);
    made = panel.get();
    return panel;
  }
  bool waitFor(const std::function<bool()>& condition) { return until(time, condition); }
  [[nodiscard]] const Clock& clock() const { return time; }
  [[nodiscard]] const Screens& screens() const { return fakeScreens; }
  // The left half and the right half of what was one screen.
  void splitScreen() {
    fakeScreens.list = {{{{0, 0}, {640, 800}}, {{0, 0}, {640, 800}}, 1},
                        {{{640, 0}, {640, 800}}, {{640, 0}, {640, 800}}, 2}};
  }
  [[nodiscard]] bool blend() const { return true; }
  [[nodiscard]] double alpha() const { return made->alpha(); }
  void userAsks() const {}
  // The user goes into a text field of the content.
  void enterTextField() const { made->focus(FirstResponder::textField); }
  [[nodiscard]] bool anotherProgramTakesKeyboard() {
    if (made != nullptr) {
      made->resignKey();
    }
    return true;
  }
  [[nodiscard]] bool press(const PressedKey& key) const {
    (void)made->pressKey(key.event);
    return true;
  }
};

class RealPanels {
 public:
  RealPanels() { movePointer(5, 5); }

  [[nodiscard]] std::unique_ptr<Panel> make(const Rect<Screen>& contentRect) {
    auto panel = std::make_unique<QtPanel>(contentRect, intent_, compositor_);
    auto content = std::make_unique<QWidget>();
    content->setFocusPolicy(Qt::StrongFocus);
    content->setAutoFillBackground(true);
    field_ = new QLineEdit(content.get());
    panel->setContentView(std::move(content));
    window_ = &panel->window();
    return panel;
  }
  static bool waitFor(const std::function<bool()>& condition) { return waitUntil(condition); }
  [[nodiscard]] const Clock& clock() const { return clock_; }
  [[nodiscard]] const Screens& screens() const { return screens_; }
  void splitScreen() { monitors_.emplace(); }
  // From here on what is partly transparent looks so.
  [[nodiscard]] bool blend() {
    running_.emplace();
    return waitUntil([this] { return compositor_.isThere().get(); });
  }
  [[nodiscard]] double alpha() const {
    return static_cast<double>(const_cast<QWidget*>(window_)->grab().toImage().pixelColor(20, 20).alphaF());
  }
  void userAsks() { intent_.note(); }
  void enterTextField() const { field_->setFocus(); }
  [[nodiscard]] bool anotherProgramTakesKeyboard() {
    other_.emplace();
    return other_->showAndTakeKeyboard({100, 100, 300, 200});
  }
  // Waits until the other program has got the key, where it has the keyboard.
  [[nodiscard]] bool press(const PressedKey& key) {
    pressKeys(QString::fromLatin1(key.name));
    return !other_ || waitUntil([this] {
      const x11::Reply<xcb_generic_event_t> event(xcb_poll_for_event(other_->connection()));
      return event && (event->response_type & 0x7f) == XCB_KEY_PRESS;
    });
  }

 private:
  LinuxClock clock_;
  QtScreens screens_;
  UserIntent intent_;
  CompositorWatch compositor_;
  std::optional<Compositor> running_;
  std::optional<TwoMonitors> monitors_;
  std::optional<OtherProgram> other_;
  const QWidget* window_ = nullptr;
  QLineEdit* field_ = nullptr;
};

}  // namespace quenlio
