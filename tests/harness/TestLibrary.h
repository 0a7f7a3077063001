// A library on the fake platform, with real settings and with all that hands its items out. What the tests of the
// island and of its views stand on.
#pragma once

#include "core/detection/ScreenshotLocationResolver.h"
#include "core/diagnostics/QuenlioReleaseTestDiagnostics.h"
#include "core/identity/AppPaths.h"
#include "core/island/IslandOverlayController.h"
#include "core/library/DragDropProvider.h"
#include "core/library/ItemHandOut.h"
#include "core/library/QuickLookPreviewController.h"
#include "core/library/ScreenshotStore.h"
#include "core/settings/AppSettings.h"

#include "tests/harness/TestPlatform.h"

namespace quenlio {

class TestLibrary {
 public:
  // An island over this library. The callbacks are left to the caller.
  [[nodiscard]] IslandOverlayController::Dependencies islandDependencies(IslandShell& shell, const Screens& screens) {
    return {.settings = settings,
            .store = store,
            .shell = shell,
            .screens = screens,
            .scheduler = platform.time,
            .clock = platform.time,
            .application = platform.application,
            .appearance = platform.appearance,
            .eventMonitors = platform.eventMonitors,
            .dragDrop = dragDrop,
            .quickLook = quickLook,
            .previewPanel = platform.previewPanel,
            .editors = platform.editors,
            .files = platform.files,
            .locations = locations,
            .onRequestNewScreenshot = [] {},
            .onRequestFolderAccess = [] {}};
  }

  TestPlatform platform;
  AppPaths paths{platform.configuration, platform.files, platform.directories};
  AppSettings settings{platform.settingsDependencies()};
  ScreenshotLocationResolver locations{platform.locationDependencies()};
  QuenlioReleaseTestDiagnostics diagnostics{platform.configuration, platform.time, platform.time, platform.files,
                                            platform.files};
  ItemHandOut handOut{platform.handOutDependencies()};
  DragDropProvider dragDrop{{.files = platform.files,
                             .windows = platform.windows,
                             .screens = platform.screens,
                             .sessions = platform.draggingSessions,
                             .scheduler = platform.time}};
  QuickLookPreviewController quickLook{platform.files, platform.previewPanel};
  ScreenshotStore store{{.settings = settings,
                         .diagnostics = diagnostics,
                         .analytics = platform.analytics,
                         .paths = paths,
                         .files = platform.files,
                         .contents = platform.files,
                         .clock = platform.time,
                         .scheduler = platform.time,
                         .thumbnails = platform.thumbnails,
                         .handOut = handOut,
                         .log = platform.systemLog}};
};

}  // namespace quenlio
