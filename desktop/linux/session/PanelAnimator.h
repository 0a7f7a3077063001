// Runs a panel's animations: about sixty steps a second while one runs, and no timer otherwise. Owned by its panel.
// Main thread.
#pragma once

#include <QtCore/QBasicTimer>
#include <QtCore/QObject>
#include <chrono>
#include <functional>
#include <optional>
#include <vector>

#include "core/platform/Panel.h"

namespace quenlio {

class PanelAnimator final : private QObject {
 public:
  // What the steps are applied to.
  class Target {
   public:
    virtual ~Target() = default;
    virtual void applyAlpha(double alpha) = 0;
    virtual void applyFrame(const Rect<Screen>& frame) = 0;
  };

  // The target outlives the animator.
  explicit PanelAnimator(Target& target) : target_(target) {}

  struct Start {
    double alpha;
    Rect<Screen> frame;
  };
  // Takes the first step at once, a frame's length in: nobody gets to see a panel that is still wholly transparent. A
  // running animation ends where it stands; its completion still runs in its own time, as this one's will. Completions
  // are dropped with the animator, and none runs before this returns.
  void run(const PanelAnimation& animation, const Start& start, std::function<void()> completion);

  // What was set by hand meanwhile is no longer animated. Completions still run.
  void leaveAlpha();
  void leaveFrame();

 private:
  using Time = std::chrono::steady_clock::time_point;
  struct Running {
    PanelAnimation animation;
    Start from;
    Time began;
    bool movesAlpha = true;
    bool movesFrame = true;
  };
  struct Ending {
    Time due;
    std::function<void()> completion;
  };

  void timerEvent(QTimerEvent* event) override;
  void step(Time now);
  void runDueCompletions(Time now);

  Target& target_;
  std::optional<Running> running_;
  std::vector<Ending> endings_;
  QBasicTimer timer_;
};

}  // namespace quenlio
