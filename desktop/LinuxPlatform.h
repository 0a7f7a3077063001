// The Linux desktop: every stand-in that core/ is given, built in one place. Made on the main thread after the
// application object; outlives the application's logic.
#pragma once

#include <atomic>

#include "core/platform/Platform.h"

#include "desktop/linux/session/CompositorWatch.h"
#include "desktop/linux/session/MainQueue.h"
#include "desktop/linux/session/ProgramStarter.h"
#include "desktop/linux/session/QtAppearance.h"
#include "desktop/linux/session/QtApplication.h"
#include "desktop/linux/session/QtDistributedNotificationCenter.h"
#include "desktop/linux/session/QtDraggingSessions.h"
#include "desktop/linux/session/QtEventMonitors.h"
#include "desktop/linux/session/QtOpenPanel.h"
#include "desktop/linux/session/QtPasteboard.h"
#include "desktop/linux/session/QtScreens.h"
#include "desktop/linux/session/QtSharingServicePicker.h"
#include "desktop/linux/session/QtWindows.h"
#include "desktop/linux/session/QtWorkspace.h"
#include "desktop/linux/session/ScreenChanges.h"
#include "desktop/linux/session/UserIntent.h"
#include "desktop/linux/session/X11HotKeys.h"
#include "desktop/linux/session/X11ScreenCaptureAccess.h"
#include "desktop/linux/system/DesktopPreferences.h"
#include "desktop/linux/system/InotifyEventStream.h"
#include "desktop/linux/system/JsonUserDefaults.h"
#include "desktop/linux/system/LinuxBookmarks.h"
#include "desktop/linux/system/LinuxClock.h"
#include "desktop/linux/system/LinuxFileContents.h"
#include "desktop/linux/system/LinuxFileManager.h"
#include "desktop/linux/system/LinuxProcess.h"
#include "desktop/linux/system/LinuxStandardDirectories.h"
#include "desktop/linux/system/LinuxSystemLog.h"
#include "desktop/linux/system/OwnFiles.h"
#include "desktop/linux/system/ScreenshotMetadata.h"
#include "desktop/linux/system/XdgLoginItem.h"
#include "desktop/render/FileImages.h"
#include "desktop/render/QtThumbnailRenderer.h"
#include "desktop/views/preview/QtPreviewPanel.h"

namespace quenlio {

struct QuenlioReleaseTestConfiguration;

class LinuxPlatform {
 public:
  // All outlive this object.
  LinuxPlatform(const LinuxProcessInfo& process, const LinuxMainBundle& bundle,
                const QuenlioReleaseTestConfiguration& configuration, UserIntent& intent);
  LinuxPlatform(const LinuxPlatform&) = delete;
  LinuxPlatform& operator=(const LinuxPlatform&) = delete;
  // Ends what is being decoded, for which the workers would have to be waited for.
  ~LinuxPlatform();

  [[nodiscard]] Platform platform();
  [[nodiscard]] CompositorWatch& compositor() { return compositor_; }
  [[nodiscard]] MainQueue& scheduler() { return scheduler_; }
  [[nodiscard]] const ImageDecoder& decoder() const { return decoder_; }

 private:
  const LinuxProcessInfo& process_;
  const LinuxMainBundle& bundle_;
  LinuxClock clock_;
  LinuxSystemLog log_;
  LinuxStandardDirectories directories_;
  OwnFiles ownFiles_;
  LinuxFileManager files_;
  LinuxFileContents contents_;
  JsonUserDefaultsSuites defaults_;
  DesktopPreferences preferences_;
  LinuxBookmarks bookmarks_;
  InotifyEventStreams eventStreams_;
  ScreenshotMetadata metadata_;
  XdgLoginItem loginItem_;
  QtScreens screens_;
  QtApplication application_;
  QtAppearance appearance_;
  QtEventMonitors eventMonitors_;
  X11HotKeys hotKeys_;
  QtDistributedNotificationCenter notifications_;
  QtOpenPanel openPanel_;
  X11ScreenCaptureAccess screenCapture_;
  CompositorWatch compositor_;
  ImageDecoder decoder_;
  // That of the densest screen, kept up to date: a thumbnail is made on another thread, where the screens must not be
  // touched.
  std::atomic<double> thumbnailScale_;
  ScreenChanges screenChanges_;
  QtThumbnailRenderer thumbnails_;
  FileImages images_;
  QtPasteboard pasteboard_;
  QtWindows windows_;
  ProgramStarter programStarter_;
  QtSharingServicePicker sharingServicePicker_;
  QtWorkspace workspace_;
  QtDraggingSessions draggingSessions_;
  QtPreviewPanel previewPanel_;
  MainQueue scheduler_;  // the first to go: it waits for work on other threads, which uses the others
};

}  // namespace quenlio
