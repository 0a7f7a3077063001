// One application for all tests of the program: Qt can have no second one. As "--second-start NAME" the program is
// what a test starts beside itself: it ends with 0 when somebody else runs under that name and has been asked to show
// itself.
#include <QtWidgets/QApplication>
#include <gtest/gtest.h>

#include "desktop/linux/session/SingleInstance.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  const QStringList arguments = QApplication::arguments();
  if (arguments.value(1) == QStringLiteral("--second-start")) {
    quenlio::UserIntent intent;
    const quenlio::SingleInstance instance(arguments.value(2).toStdString(), intent);
    return !instance.isFirst() && instance.showRunningInstance() ? 0 : 1;
  }
  return RUN_ALL_TESTS();
}
