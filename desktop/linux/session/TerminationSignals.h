// Turns SIGTERM, SIGINT, SIGHUP and the desktop's logout into an orderly end. One at a time; made on the main thread
// after the application object. The signals' handlers before it are put back when it goes.
#pragma once

#include <QtCore/QSocketNotifier>
#include <array>
#include <csignal>
#include <functional>

#include "core/base/WeakOwner.h"

namespace quenlio {

class TerminationSignals final : private QObject {
 public:
  // The callback runs on the main thread, from the event loop. Signals that come before it has run count as one; one
  // that comes later, or a logout, calls it again.
  explicit TerminationSignals(std::function<void()> terminate);
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;
  ~TerminationSignals() override;

 private:
  bool eventFilter(QObject* object, QEvent* event) override;

  static constexpr std::array kSignals{SIGTERM, SIGINT, SIGHUP};

  std::function<void()> terminate_;
  std::array<struct sigaction, kSignals.size()> previous_{};
  QSocketNotifier notifier_;
  WeakOwner<TerminationSignals> weak_{this};
};

}  // namespace quenlio
