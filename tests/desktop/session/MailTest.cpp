// Letters begun through the desktop's portal, where there is no program for that.
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusUnixFileDescriptor>
#include <QtDBus/QDBusVirtualObject>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/linux/session/Mail.h"

#include "tests/desktop/WaitUntil.h"
#include "tests/desktop/system/TemporaryFolder.h"
#include "tests/fakes/FakeDesktop.h"

namespace quenlio {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The part of the desktop's portal that writes letters, on a bus connection of its own.
class FakeMailPortal final : public QDBusVirtualObject {
 public:
  FakeMailPortal() {
    bus_.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), this);
    bus_.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
  }
  ~FakeMailPortal() override {
    bus_.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
    bus_.unregisterObject(QStringLiteral("/org/freedesktop/portal/desktop"));
  }

  std::vector<std::string> letters;      // the operation that began each
  std::vector<std::string> attachments;  // what is in the files, of all letters

 private:
  static std::string contentsOf(const QDBusUnixFileDescriptor& file) {
    std::string bytes(4096, '\0');
    const ssize_t got = ::pread(file.fileDescriptor(), bytes.data(), bytes.size(), 0);
    bytes.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    return bytes;
  }

  [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    letters.push_back((message.interface() + u'.' + message.member()).toStdString());
    const auto options = qdbus_cast<QVariantMap>(message.arguments().value(1));
    for (const auto& file :
         qdbus_cast<QList<QDBusUnixFileDescriptor>>(options.value(QStringLiteral("attachment_fds")))) {
      attachments.push_back(contentsOf(file));
    }
    connection.send(message.createReply());
    return true;
  }

  QDBusConnection bus_ = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("mail portal"));
};

class MailTest : public testing::Test {
 protected:
  MailTest() {
    directories_.applicationSupport = folder_ / "share";
    process_.variables = {{"PATH", (folder_ / "bin").path()},
                          {"XDG_CONFIG_HOME", (folder_ / "config").path()},
                          {"XDG_DATA_DIRS", (folder_ / "data").path()}};
    for (const char* name : {"bin", "data/xdg-desktop-portal/portals"}) {
      std::filesystem::create_directories((folder_ / name).path());
    }
  }
  void putPortal(const std::string& interfaces) const {
    writeFile(folder_ / "data/xdg-desktop-portal/portals/desk.portal", "[portal]\nInterfaces=" + interfaces + "\n");
  }
  [[nodiscard]] bool canCompose() const { return canComposeMail(starter_.programs()); }

  TemporaryFolder folder_;
  FakeProcessInfo process_;
  FakeDirectories directories_;
  QtWindows windows_;
  ProgramStarter starter_{process_, directories_, windows_};
};

TEST_F(MailTest, canBeWrittenByAPortalThatSaysSoOrByAProgram) {
  EXPECT_FALSE(canCompose());
  putPortal("org.freedesktop.impl.portal.FileChooser;org.freedesktop.impl.portal.Print");
  EXPECT_FALSE(canCompose());
  putPortal("org.freedesktop.impl.portal.FileChooser;org.freedesktop.impl.portal.Email;");
  EXPECT_TRUE(canCompose());
  putPortal("");
  EXPECT_FALSE(canCompose());
  writeFile(folder_ / "bin/xdg-email", "#!/bin/sh\n");
  std::filesystem::permissions((folder_ / "bin/xdg-email").path(), std::filesystem::perms::owner_all);
  EXPECT_TRUE(canCompose());
}

TEST_F(MailTest, thePortalIsHandedTheFilesThemselves) {
  FakeMailPortal portal;
  writeFile(folder_ / "a\xff\n.png", "the first");
  writeFile(folder_ / "b.png", "the second");
  composeMail({folder_ / "a\xff\n.png", folder_ / "gone.png", folder_ / "b.png"}, starter_);
  EXPECT_THAT(portal.letters, IsEmpty()) << "nobody is waited for";
  ASSERT_TRUE(waitUntil([&portal] { return !portal.letters.empty(); }));
  EXPECT_THAT(portal.letters, ElementsAre("org.freedesktop.portal.Email.ComposeEmail"));
  EXPECT_THAT(portal.attachments, ElementsAre("the first", "the second"));
}

}  // namespace
}  // namespace quenlio
