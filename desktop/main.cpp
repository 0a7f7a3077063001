// The program: makes the platform and the application on it, and runs the loop.
#include <QtWidgets/QApplication>
#include <csignal>
#include <cstdlib>
#include <malloc.h>
#include <memory>
#include <optional>
#include <stop_token>

#include "core/app/AppDelegate.h"
#include "core/editor/ScreenshotEditorManager.h"

#include "desktop/LinuxPlatform.h"
#include "desktop/Program.h"
#include "desktop/linux/session/DisplayChoice.h"
#include "desktop/linux/session/PlainTheme.h"
#include "desktop/linux/session/SingleInstance.h"
#include "desktop/render/QtImage.h"
#include "desktop/views/island/QtIslandShell.h"

namespace quenlio {
namespace {

// A decoded picture's memory goes back to the system at once, instead of staying with the program for the next one; and
// the few threads share their arenas.
void keepMemorySmall() {
  mallopt(M_MMAP_THRESHOLD, 256 * 1024);
  mallopt(M_TRIM_THRESHOLD, 256 * 1024);
  mallopt(M_ARENA_MAX, 2);
}

// Pictures for the preview where it shows more pixels than a thumbnail has.
SharpRendition sharpRendition(Scheduler& scheduler, const ImageDecoder& decoder) {
  return [&scheduler, &decoder](const FileURL& url, QSize pixels, std::function<void(const ImageRef&)> completion) {
    const auto stopping = std::make_shared<std::stop_source>();
    scheduler.detached(
        QualityOfService::userInitiated,
        [&scheduler, &decoder, url, pixels, stop = stopping->get_token(), completion = std::move(completion)] {
          if (stop.stop_requested()) {
            return;
          }
          const auto decoded = decoder.decode(url, pixels, true, stop);
          ImageRef image = decoded ? std::make_shared<QtImage>(
                                         decoded->image, Size{decoded->pointSize.width(), decoded->pointSize.height()})
                                   : nullptr;
          scheduler.post([completion, image = std::move(image)] { completion(image); });
        });
    return Subscription([stopping] { stopping->request_stop(); });
  };
}

int run(const LinuxProcessInfo& process, const LinuxMainBundle& bundle) {
  const auto configuration = QuenlioReleaseTestConfiguration::fromEnvironment(process);
  UserIntent intent;
  SingleInstance instance(
      SingleInstance::serviceName(configuration.isEnabled ? std::optional(configuration.runID) : std::nullopt), intent);
  if (!instance.isFirst()) {
    (void)instance.showRunningInstance();
    return EXIT_SUCCESS;
  }
  LinuxPlatform linux_(process, bundle, configuration, intent);
  QtIslandShell shell({.scheduler = linux_.scheduler(),
                       .intent = intent,
                       .compositor = linux_.compositor(),
                       .sharpRendition = sharpRendition(linux_.scheduler(), linux_.decoder())});
  NoAnalytics analytics;
  NoEditor editors;
  AppDelegate app(linux_.platform(),
                  {.islandShell = shell,
                   .analytics = analytics,
                   .editors = editors,
                   .makeUpdater = [] { return std::make_unique<NoUpdater>(); }},
                  configuration);
  return runUntilTermination(app, linux_.platform().application, instance);
}

}  // namespace
}  // namespace quenlio

int main(int argc, char** argv) {
  using namespace quenlio;
  keepMemorySmall();
  std::signal(SIGPIPE, SIG_IGN);
  const LinuxProcessInfo process({argv, argv + argc});
  const LinuxMainBundle bundle(LinuxMainBundle::executableURL());
  if (!chooseDisplay()) {
    LinuxSystemLog().NSLog("There is no X display to show the island on.");
    return EXIT_FAILURE;
  }
  std::optional<PlainTheme> theme(std::in_place);
  const QApplication application(argc, argv);
  theme.reset();
  QApplication::setApplicationName(QStringLiteral("quenlio"));
  QApplication::setDesktopFileName(QStringLiteral("com.quenlio.app"));
  return run(process, bundle);
}
