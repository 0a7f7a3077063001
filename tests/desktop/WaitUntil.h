// Waiting for what happens outside the test: looks again until a deadline and never counts on a length of time.
#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <chrono>
#include <functional>

namespace quenlio {

// Handles events until the condition holds; false when the deadline has passed first.
[[nodiscard]] inline bool waitUntil(const std::function<bool()>& condition,
                                    std::chrono::milliseconds deadline = std::chrono::seconds(10)) {
  const QDeadlineTimer end(deadline);
  // Wakes the loop when no event does: what other programs have done is seen by looking.
  QTimer wake;
  wake.start(5);
  while (!condition()) {
    if (end.hasExpired()) {
      return false;
    }
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
  }
  return true;
}

}  // namespace quenlio
