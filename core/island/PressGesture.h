// What a press of the pointer on a screenshot becomes: a click, or the start of a drag. Owned by the view that is
// pressed, which tells it of every press, move and release of the primary button. Main thread.
#pragma once

#include "core/geometry/Geometry.h"

namespace quenlio {

class PressGesture {
 public:
  // A hand trembles: as far as this from where it pressed, in points, nothing is dragged yet.
  static constexpr double kDragThreshold = 3;

  void pressed();
  // The distance from where it was pressed. True once a press: it has just become a drag.
  [[nodiscard]] bool moved(Size translation);
  // True when the press was a click.
  [[nodiscard]] bool released();
  // The view has gone or has lost the pointer: no click comes of the press any more.
  void cancelled() { state_ = State::idle; }

  [[nodiscard]] bool isPressed() const { return state_ != State::idle; }
  [[nodiscard]] bool hasStartedDrag() const { return state_ == State::dragging; }

 private:
  enum class State { idle, pressed, dragging };
  State state_ = State::idle;
};

}  // namespace quenlio
