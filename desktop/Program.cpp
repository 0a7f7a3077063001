#include "desktop/Program.h"

#include <QtWidgets/QApplication>

#include "core/app/AppDelegate.h"
#include "core/platform/Application.h"

#include "desktop/linux/session/SingleInstance.h"
#include "desktop/linux/session/TerminationSignals.h"

namespace quenlio {

int runUntilTermination(AppDelegate& app, Application& application, SingleInstance& instance) {
  const TerminationSignals signals([&application] { application.terminate(); });
  const QObject context;  // the connection ends with this run
  QObject::connect(qApp, &QCoreApplication::aboutToQuit, &context, [&app] { app.applicationWillTerminate(); });
  app.applicationDidFinishLaunching();
  // Not before: a second start that came meanwhile is answered at once, by an application that has launched.
  instance.setOnShow([&app] { app.openIslandToolFromMenu(); });
  return QApplication::exec();
}

}  // namespace quenlio
