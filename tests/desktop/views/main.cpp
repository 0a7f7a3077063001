// One application for all tests of the program: Qt can have no second one.
#include <QtGui/QFont>
#include <QtWidgets/QApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  qputenv("QT_QPA_PLATFORM", "offscreen");  // here, so that it holds when the tests are only listed, too
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  // Pictures are compared, so letters have to be the same everywhere.
  QApplication::setFont(QFont(QStringLiteral("DejaVu Sans")));
  return RUN_ALL_TESTS();
}
