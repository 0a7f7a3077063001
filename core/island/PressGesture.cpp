#include "core/island/PressGesture.h"

#include <cmath>
#include <utility>

namespace quenlio {

void PressGesture::pressed() {
  state_ = State::pressed;
}

bool PressGesture::moved(Size translation) {
  if (state_ != State::pressed || std::hypot(translation.width, translation.height) <= kDragThreshold) {
    return false;
  }
  state_ = State::dragging;
  return true;
}

bool PressGesture::released() {
  return std::exchange(state_, State::idle) == State::pressed;
}

}  // namespace quenlio
