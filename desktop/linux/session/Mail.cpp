#include "desktop/linux/session/Mail.h"

#include <QtCore/QVariantMap>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusMetaType>
#include <QtDBus/QDBusPendingCall>
#include <QtDBus/QDBusUnixFileDescriptor>
#include <algorithm>
#include <fcntl.h>
#include <filesystem>

#include "desktop/linux/system/KeyFile.h"
#include "desktop/linux/system/LinuxFileContents.h"
#include "desktop/linux/system/RegularFile.h"

namespace quenlio {
namespace {

constexpr const char* kXdgEmail = "xdg-email";

bool offersMail(const FileURL& portal) {
  const auto text = LinuxFileContents().read(portal);
  const KeyFileGroup keys = text.ok() ? keyFileGroup(text.value(), "portal") : KeyFileGroup{};
  const auto interfaces = keys.find("Interfaces");
  return interfaces != keys.end() &&
         std::ranges::count(listOf(interfaces->second), "org.freedesktop.impl.portal.Email") > 0;
}

// The portal itself is there on every desktop; who serves a part of it says so in a file.
bool portalWritesMail(const std::vector<FileURL>& dataFolders) {
  return std::ranges::any_of(dataFolders, [](const FileURL& data) {
    std::error_code none;
    const auto folder = data.appending("xdg-desktop-portal").appending("portals");
    const std::filesystem::directory_iterator portals(folder.path(), none);
    return std::ranges::any_of(portals, [](const auto& file) { return offersMail(FileURL(file.path().string())); });
  });
}

void composeByPortal(const std::vector<FileURL>& attachments) {
  qDBusRegisterMetaType<QList<QDBusUnixFileDescriptor>>();
  QList<QDBusUnixFileDescriptor> descriptors;
  for (const FileURL& url : attachments) {
    if (const UniqueFd fd = openRegularFile(AT_FDCWD, url.path().c_str())) {
      descriptors.append(QDBusUnixFileDescriptor(fd.get()));  // one of its own
    }
  }
  QDBusMessage call = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
      QStringLiteral("org.freedesktop.portal.Email"), QStringLiteral("ComposeEmail"));
  call << QString() << QVariantMap{{QStringLiteral("attachment_fds"), QVariant::fromValue(descriptors)}};
  QDBusConnection::sessionBus().asyncCall(call);
}

}  // namespace

bool canComposeMail(const DesktopEntries& programs) {
  return programs.findProgram(kXdgEmail) ||
         (QDBusConnection::sessionBus().isConnected() && portalWritesMail(programs.dataFolders()));
}

void composeMail(const std::vector<FileURL>& attachments, ProgramStarter& starter) {
  const auto program = starter.programs().findProgram(kXdgEmail);
  if (!program) {
    composeByPortal(attachments);
    return;
  }
  std::vector<std::string> arguments;
  for (const FileURL& url : attachments) {
    arguments.insert(arguments.end(), {"--attach", url.path()});
  }
  starter.start(*program, arguments);
}

}  // namespace quenlio
