#include "desktop/linux/session/TerminationSignals.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

namespace quenlio {
namespace {

// What a handler may touch is a number and the system call that writes to it. A child that is forked but has not yet
// become another program shares it, and a signal to that child would end us instead: an acceptable moment.
volatile std::sig_atomic_t wakeUp = -1;

void wake(int) {
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = write(wakeUp, &one, sizeof one);
}

int openWakeUp() {
  wakeUp = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  return wakeUp;
}

}  // namespace

TerminationSignals::TerminationSignals(std::function<void()> terminate)
    : terminate_(std::move(terminate)), notifier_(openWakeUp(), QSocketNotifier::Read) {
  const std::function<void()> signalled = weak_.bind([](TerminationSignals& self) {
    std::uint64_t count = 0;
    [[maybe_unused]] const auto got = read(wakeUp, &count, sizeof count);
    self.terminate_();
  });
  QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, signalled);
  struct sigaction action {};
  action.sa_handler = wake;
  action.sa_flags = SA_RESTART;
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    sigaction(kSignals[i], &action, &previous_[i]);
  }
  QCoreApplication::instance()->installEventFilter(this);
}

// A logout asks each window first, and one that does not close would refuse it.
bool TerminationSignals::eventFilter(QObject* object, QEvent* event) {
  const bool isLogout = event->type() == QEvent::Quit && object == QCoreApplication::instance();
  if (isLogout) {
    terminate_();
  }
  return isLogout;
}

TerminationSignals::~TerminationSignals() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    sigaction(kSignals[i], &previous_[i], nullptr);
  }
  notifier_.setEnabled(false);
  close(wakeUp);
}

}  // namespace quenlio
