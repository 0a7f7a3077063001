// Everything that core/ asks of the desktop, as references that outlive the application. The composition root hands
// each object only what it needs of this; no other code takes the whole.
#pragma once

namespace quenlio {

class Appearance;
class Application;
class Bookmarks;
class Clock;
class DistributedNotificationCenter;
class DraggingSessions;
class EventMonitors;
class FSEventStreams;
class FileContents;
class FileManager;
class FileMetadata;
class HotKeys;
class Images;
class LoginItem;
class MainBundle;
class OpenPanel;
class Panel;
class Pasteboard;
class Preferences;
class PreviewPanel;
class ProcessInfo;
class Scheduler;
class ScreenCaptureAccess;
class Screens;
class SharingServicePicker;
class StandardDirectories;
class SystemLog;
class ThumbnailRenderer;
class UserDefaultsSuites;
class Windows;
class Workspace;

struct Platform {
  Scheduler& scheduler;
  const Clock& clock;
  SystemLog& log;
  const ProcessInfo& process;
  const MainBundle& bundle;
  UserDefaultsSuites& defaults;
  FileManager& files;
  FileContents& contents;
  const StandardDirectories& directories;
  FSEventStreams& eventStreams;
  const FileMetadata& metadata;
  Preferences& preferences;
  Bookmarks& bookmarks;
  const Screens& screens;
  Application& application;
  Appearance& appearance;
  EventMonitors& eventMonitors;
  HotKeys& hotKeys;
  DistributedNotificationCenter& notifications;
  LoginItem& loginItem;
  OpenPanel& openPanel;
  const ScreenCaptureAccess& screenCapture;
  ThumbnailRenderer& thumbnails;
  const Images& images;
  Pasteboard& pasteboard;
  SharingServicePicker& sharingServicePicker;
  Workspace& workspace;
  const Windows& windows;
  DraggingSessions& draggingSessions;
  PreviewPanel& previewPanel;
};

}  // namespace quenlio
