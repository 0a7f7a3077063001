// One application for all tests of the program: Qt can have no second one. What a test needs as another program is this
// one again, in a part of its own:
//   --second-start NAME             ends with 0 when somebody else runs under that name and was asked to show itself
//   --accept-drops X Y WIDTH HEIGHT shows a window that files are dropped on
//   --copy FILE                     puts a file on the clipboard
#include <QtCore/QFile>
#include <QtWidgets/QApplication>
#include <gtest/gtest.h>
#include <optional>

#include "desktop/linux/session/SingleInstance.h"

#include "tests/desktop/session/OtherPrograms.h"

namespace quenlio {
namespace {

// The exit code, when the program was started for a part.
std::optional<int> playPart(const QStringList& arguments) {
  const QString part = arguments.value(1);
  if (part == QStringLiteral("--second-start")) {
    UserIntent intent;
    const SingleInstance instance(arguments.value(2).toStdString(), intent);
    return !instance.isFirst() && instance.showRunningInstance() ? 0 : 1;
  }
  if (part == QStringLiteral("--accept-drops")) {
    const auto number = [&arguments](int index) { return arguments.value(index).toInt(); };
    return acceptDrops({number(2), number(3), number(4), number(5)});
  }
  if (part == QStringLiteral("--copy")) {
    return copyAndStay(FileURL(QFile::encodeName(arguments.value(2)).toStdString()));
  }
  return std::nullopt;
}

}  // namespace
}  // namespace quenlio

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  const auto code = quenlio::playPart(QApplication::arguments());
  return code ? *code : RUN_ALL_TESTS();
}
