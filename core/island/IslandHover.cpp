#include "core/island/IslandHover.h"

#include <chrono>
#include <utility>

#include "core/island/IslandAutoDismiss.h"
#include "core/island/KeyboardToContent.h"
#include "core/platform/Panel.h"
#include "core/platform/Screens.h"

namespace quenlio {
namespace {

using namespace std::chrono_literals;

constexpr Seconds kAfterEntry = 0.14s;

}  // namespace

void IslandHover::changed(bool hovering) {
  const bool wasHovering = std::exchange(dependencies_.autoDismiss.isHovered, hovering);
  if (hovering) {
    dependencies_.panel.makeKeyWindow();
    giveKeyboardToContent(dependencies_.panel);
  } else if (wasHovering) {
    dependencies_.panel.returnUnusedKeyboard();
  }
  dependencies_.autoDismiss.scheduleHideIfNeeded();
}

void IslandHover::syncWithCurrentPointer() {
  if (dependencies_.panel.isVisible()) {
    changed(dependencies_.panel.frame().contains(dependencies_.screens.mouseLocation()));
  }
}

void IslandHover::syncAfterEntry() {
  if (hasEnded_) {
    return;
  }
  afterEntries_.push_back(dependencies_.scheduler.after(kAfterEntry, weak_.bind([](IslandHover& self) {
    self.afterEntries_.pop_front();
    self.syncWithCurrentPointer();
  })));
}

void IslandHover::end() {
  hasEnded_ = true;
  afterEntries_.clear();
}

}  // namespace quenlio
