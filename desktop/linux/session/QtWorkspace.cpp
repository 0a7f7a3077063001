#include "desktop/linux/session/QtWorkspace.h"

#include <QtCore/QStringList>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCall>
#include <QtDBus/QDBusPendingCallWatcher>
#include <algorithm>
#include <set>

#include "desktop/linux/system/FileURI.h"

namespace quenlio {
namespace {

QDBusMessage showItems(const std::vector<FileURL>& urls, const std::string& startupID) {
  QStringList addresses;
  for (const FileURL& url : urls) {
    addresses << QString::fromStdString(fileURI(url));
  }
  QDBusMessage call = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
      QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
  call << addresses << QString::fromStdString(startupID);
  return call;
}

}  // namespace

void QtWorkspace::activateFileViewerSelectingURLs(const std::vector<FileURL>& urls) {
  const QDBusConnection bus = QDBusConnection::sessionBus();
  if (urls.empty()) {
    return;
  }
  if (!bus.isConnected()) {
    openFolders(urls);
    return;
  }
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(showItems(urls, starter_.makeStartupID())));
  const std::function<void()> openInstead = weak_.bind([urls](QtWorkspace& self) { self.openFolders(urls); });
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, openInstead] {
    if (watcher->isError()) {
      openInstead();
    }
    watcher->deleteLater();
  });
}

void QtWorkspace::openFolders(const std::vector<FileURL>& urls) {
  std::set<FileURL> folders;
  for (const FileURL& url : urls) {
    folders.insert(url.parent());
  }
  for (const FileURL& folder : folders) {
    if (!openFolder(folder)) {
      log_.NSLog("Failed to show files: no program opens the folder “" + folder.lastPathComponent() + "”.");
    }
  }
}

bool QtWorkspace::openFolder(const FileURL& folder) {
  const DesktopEntries programs = starter_.programs();
  if (const auto opener = programs.findProgram("xdg-open"); opener && starter_.start(*opener, {folder.path()})) {
    return true;
  }
  return std::ranges::any_of(programs.programsFor({{"inode/directory"}}),
                             [&](const DesktopEntry& entry) { return starter_.open(entry, {folder}); });
}

}  // namespace quenlio
