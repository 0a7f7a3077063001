// Hears one signal of the session bus for as long as it lives. The one class here that needs a slot: Qt's D-Bus hands
// signals to nothing else. Main thread.
#pragma once

#include <QtCore/QObject>
#include <QtDBus/QDBusMessage>
#include <functional>

namespace quenlio {

class DBusSignal final : public QObject {
  Q_OBJECT
 public:
  struct Address {
    QString service;  // empty: from anyone
    QString path;     // empty: on any path
    QString interface;
    QString name;
  };
  // Without a session bus nothing is ever heard.
  DBusSignal(const Address& address, std::function<void(const QDBusMessage&)> heard);

 private Q_SLOTS:
  void receive(const QDBusMessage& message);

 private:
  std::function<void(const QDBusMessage&)> heard_;
};

}  // namespace quenlio
