// An orderly end, also while something is on the screen that does not want to go.
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtGui/QCloseEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>
#include <csignal>
#include <gtest/gtest.h>

#include "desktop/linux/session/QtApplication.h"
#include "desktop/linux/session/TerminationSignals.h"

namespace quenlio {
namespace {

class StubbornWindow final : public QWidget {
 private:
  void closeEvent(QCloseEvent* event) override { event->ignore(); }
};

TEST(Termination, aSignalEndsTheLoopWhateverWindowsAndLoopsAreOpen) {
  constexpr int tooLate = 99;
  UserIntent intent;
  QtApplication application(intent);
  const TerminationSignals signals([&application] { application.terminate(); });
  StubbornWindow window;
  window.show();
  QTimer alarm;
  alarm.setSingleShot(true);
  QObject::connect(&alarm, &QTimer::timeout, &alarm, [] { QCoreApplication::exit(tooLate); });
  alarm.start(std::chrono::seconds(10));
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    bool isNestedLeft = false;
    QMetaObject::invokeMethod(
        &window,
        [&] {
          QEventLoop dialog;
          std::raise(signal);
          dialog.exec();
          isNestedLeft = true;
        },
        Qt::QueuedConnection);
    EXPECT_EQ(QApplication::exec(), 0) << signal;
    EXPECT_TRUE(isNestedLeft) << signal;
  }
}

TEST(Termination, aLogoutEndsTheLoopThoughAWindowWillNotClose) {
  constexpr int tooLate = 99;
  UserIntent intent;
  QtApplication application(intent);
  const TerminationSignals signals([&application] { application.terminate(); });
  StubbornWindow window;
  window.show();
  QTimer alarm;
  alarm.setSingleShot(true);
  QObject::connect(&alarm, &QTimer::timeout, &alarm, [] { QCoreApplication::exit(tooLate); });
  alarm.start(std::chrono::seconds(10));
  QMetaObject::invokeMethod(
      &window,
      [] {
        QEvent logout(QEvent::Quit);  // what Qt makes of the session manager's word
        QCoreApplication::sendEvent(QCoreApplication::instance(), &logout);
      },
      Qt::QueuedConnection);
  EXPECT_EQ(QApplication::exec(), 0);
}

}  // namespace
}  // namespace quenlio
