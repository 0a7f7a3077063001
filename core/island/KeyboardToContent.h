// Within the island's panel the keyboard belongs to the content, where the shortcuts are. Main thread.
#pragma once

#include "core/platform/Panel.h"

namespace quenlio {

// A text field that is being edited keeps it: the next key is meant for its text, and a Backspace that went to the
// content would trash the screenshot.
inline void giveKeyboardToContent(Panel& panel) {
  const FirstResponder responder = panel.firstResponder();
  if (responder != FirstResponder::textField && responder != FirstResponder::textView) {
    panel.makeContentViewFirstResponder();
  }
}

}  // namespace quenlio
