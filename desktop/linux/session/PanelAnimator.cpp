#include "desktop/linux/session/PanelAnimator.h"

#include <QtCore/QPointer>
#include <algorithm>
#include <utility>

namespace quenlio {
namespace {

constexpr std::chrono::milliseconds kStep{16};

// The end itself at a share of 1, and not what rounding makes of it.
double between(double from, double to, double share) {
  return share >= 1 ? to : from + (to - from) * share;
}

Rect<Screen> between(const Rect<Screen>& from, const Rect<Screen>& to, double share) {
  return {{between(from.origin.x, to.origin.x, share), between(from.origin.y, to.origin.y, share)},
          {between(from.size.width, to.size.width, share), between(from.size.height, to.size.height, share)}};
}

}  // namespace

void PanelAnimator::run(const PanelAnimation& animation, const Start& start, std::function<void()> completion) {
  const Time now = std::chrono::steady_clock::now();
  running_ = Running{.animation = animation, .from = start, .began = now};
  endings_.push_back({now + std::chrono::duration_cast<Time::duration>(animation.duration), std::move(completion)});
  step(now);
  if (!timer_.isActive()) {
    timer_.start(static_cast<int>(kStep.count()), Qt::PreciseTimer, this);
  }
}

void PanelAnimator::leaveAlpha() {
  if (running_) {
    running_->movesAlpha = false;
  }
}

void PanelAnimator::leaveFrame() {
  if (running_) {
    running_->movesFrame = false;
  }
}

void PanelAnimator::timerEvent(QTimerEvent* /*event*/) {
  const Time now = std::chrono::steady_clock::now();
  step(now);
  runDueCompletions(now);
}

void PanelAnimator::step(Time now) {
  if (!running_) {
    return;
  }
  const Running current = *running_;
  const Seconds elapsed = now - current.began;
  const bool ended = elapsed >= current.animation.duration;
  if (ended) {
    running_.reset();
  }
  const double time = std::max<Seconds>(elapsed, kStep) / current.animation.duration;
  const double share = ended ? 1 : progress(current.animation.curve, time);
  if (current.movesFrame) {
    target_.applyFrame(between(current.from.frame, current.animation.frame, share));
  }
  if (current.movesAlpha) {
    target_.applyAlpha(between(current.from.alpha, current.animation.alpha, share));
  }
}

void PanelAnimator::runDueCompletions(Time now) {
  std::vector<Ending> due;
  for (auto ending = endings_.begin(); ending != endings_.end();) {
    if (ending->due <= now) {
      due.push_back(std::move(*ending));
      ending = endings_.erase(ending);
    } else {
      ++ending;
    }
  }
  if (endings_.empty() && !running_) {
    timer_.stop();
  }
  // A completion may start the next animation, or destroy the panel and this with it.
  const QPointer<QObject> alive(this);
  for (const Ending& ending : due) {
    if (!alive.isNull() && ending.completion) {
      ending.completion();
    }
  }
}

}  // namespace quenlio
