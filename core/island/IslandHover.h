// Whether the pointer is on the island, and what follows from that: the keyboard comes with the pointer, and goes with
// one that has only passed; the hiding waits. Main thread. Part of IslandOverlayController, which tells it of the
// pointer's coming and going as its view does.
#pragma once

#include <deque>

#include "core/base/WeakOwner.h"
#include "core/platform/Scheduler.h"

namespace quenlio {

class IslandAutoDismiss;
class Panel;
class Screens;

class IslandHover {
 public:
  struct Dependencies {
    Panel& panel;
    const Screens& screens;
    Scheduler& scheduler;
    IslandAutoDismiss& autoDismiss;
  };
  explicit IslandHover(Dependencies dependencies) : dependencies_(dependencies) {}

  // The pointer has crossed the panel's edge.
  void changed(bool hovering);
  // The view tells of the pointer only when it crosses the edge: a panel that appears under a resting pointer would not
  // hear of it.
  void syncWithCurrentPointer();
  // The same, just after the entry has ended.
  void syncAfterEntry();
  // Gives up the looks that are still to come, and those that somebody may yet ask for.
  void end();

 private:
  Dependencies dependencies_;
  std::deque<ScheduledTask> afterEntries_;  // one an entry, in their order: one may begin before the last is over
  bool hasEnded_ = false;
  WeakOwner<IslandHover> weak_{this};
};

}  // namespace quenlio
