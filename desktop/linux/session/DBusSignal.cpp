#include "desktop/linux/session/DBusSignal.h"

#include <QtDBus/QDBusConnection>
#include <utility>

namespace quenlio {

DBusSignal::DBusSignal(const Address& address, std::function<void(const QDBusMessage&)> heard)
    : heard_(std::move(heard)) {
  QDBusConnection::sessionBus().connect(address.service, address.path, address.interface, address.name, this,
                                        SLOT(receive(QDBusMessage)));
}

void DBusSignal::receive(const QDBusMessage& message) {
  heard_(message);
}

}  // namespace quenlio
