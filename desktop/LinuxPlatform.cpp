#include "desktop/LinuxPlatform.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <algorithm>

#include "core/diagnostics/QuenlioReleaseTestConfiguration.h"

#include "desktop/linux/system/GSettings.h"

namespace quenlio {
namespace {

// A thumbnail may be shown on any screen.
double densestScale() {
  double scale = 1;
  for (const QScreen* screen : QGuiApplication::screens()) {
    scale = std::max(scale, screen->devicePixelRatio());
  }
  return scale;
}

}  // namespace

LinuxPlatform::LinuxPlatform(const LinuxProcessInfo& process, const LinuxMainBundle& bundle,
                             const QuenlioReleaseTestConfiguration& configuration, UserIntent& intent)
    : process_(process),
      bundle_(bundle),
      directories_(process),
      files_(ownFiles_, clock_, directories_),
      defaults_(userDefaultsFolder(process, directories_), kStandardSuiteName),
      preferences_({.suites = defaults_,
                    .diagnosticsFolder = configuration.isEnabled ? configuration.screenshotDirectory : std::nullopt,
                    .desktop = DesktopScreenshotFolder(process, directories_, gsettingsGet)}),
      eventStreams_(clock_),
      metadata_(ownFiles_),
      loginItem_({.files = files_, .contents = contents_, .process = process, .directories = directories_},
                 LinuxMainBundle::executableURL()),
      application_(intent),
      hotKeys_(intent),
      decoder_(ChildDecoder(LinuxMainBundle::executableURL().parent().appending("quenlio-decoder"))),
      thumbnailScale_(densestScale()),
      screenChanges_([&scale = thumbnailScale_] { scale = densestScale(); }),
      thumbnails_(decoder_, [&scale = thumbnailScale_] { return scale.load(); }),
      images_(decoder_),
      pasteboard_(scheduler_),
      programStarter_(process, directories_, windows_),
      sharingServicePicker_({.scheduler = scheduler_,
                             .files = files_,
                             .windows = windows_,
                             .appearance = appearance_,
                             .compositor = compositor_,
                             .starter = programStarter_}),
      workspace_(programStarter_, log_),
      draggingSessions_(compositor_),
      previewPanel_({.scheduler = scheduler_,
                     .compositor = compositor_,
                     .appearance = appearance_,
                     .windows = windows_,
                     .pictures = PictureSource::from(decoder_)}) {}

LinuxPlatform::~LinuxPlatform() {
  previewPanel_.orderOut();
  pasteboard_.handOver();
  decoder_.stop();
}

Platform LinuxPlatform::platform() {
  return {
      .scheduler = scheduler_,
      .clock = clock_,
      .log = log_,
      .process = process_,
      .bundle = bundle_,
      .defaults = defaults_,
      .files = files_,
      .contents = contents_,
      .directories = directories_,
      .eventStreams = eventStreams_,
      .metadata = metadata_,
      .preferences = preferences_,
      .bookmarks = bookmarks_,
      .screens = screens_,
      .application = application_,
      .appearance = appearance_,
      .eventMonitors = eventMonitors_,
      .hotKeys = hotKeys_,
      .notifications = notifications_,
      .loginItem = loginItem_,
      .openPanel = openPanel_,
      .screenCapture = screenCapture_,
      .thumbnails = thumbnails_,
      .images = images_,
      .pasteboard = pasteboard_,
      .sharingServicePicker = sharingServicePicker_,
      .workspace = workspace_,
      .windows = windows_,
      .draggingSessions = draggingSessions_,
      .previewPanel = previewPanel_,
  };
}

}  // namespace quenlio
