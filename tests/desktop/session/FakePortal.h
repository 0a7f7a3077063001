// The part of the desktop's portal that tells the settings, on a bus connection of its own. Main thread.
#pragma once

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusVariant>
#include <QtDBus/QDBusVirtualObject>

namespace quenlio {

class FakePortal final : public QDBusVirtualObject {
 public:
  FakePortal() {
    bus_.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), this);
    bus_.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
  }
  ~FakePortal() override {
    bus_.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
    bus_.unregisterObject(QStringLiteral("/org/freedesktop/portal/desktop"));
  }

  void change(const char* key, quint32 value) {
    QDBusMessage signal =
        QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                   QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
    signal << QStringLiteral("org.freedesktop.appearance") << QString::fromLatin1(key)
           << QVariant::fromValue(QDBusVariant(value));
    bus_.send(signal);
  }

  quint32 colorScheme = 0;
  quint32 contrast = 0;
  int answered = 0;

 private:
  [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    const QString key = message.arguments().value(1).toString();
    const quint32 value = key == QStringLiteral("color-scheme") ? colorScheme : contrast;
    const QDBusVariant inner(value);
    connection.send(message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(inner)))));
    ++answered;
    return true;
  }

  QDBusConnection bus_ = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"));
};

}  // namespace quenlio
