#include "desktop/linux/session/QtDistributedNotificationCenter.h"

#include <QtDBus/QDBusArgument>
#include <utility>

namespace quenlio {
namespace {

NotificationUserInfo userInfoFrom(const QVariantMap& map) {
  NotificationUserInfo info;
  for (auto entry = map.begin(); entry != map.end(); ++entry) {
    auto& value = info[entry.key().toStdString()];
    if (entry.value().metaType() == QMetaType::fromType<QString>()) {
      value = entry.value().toString().toStdString();
    }
  }
  return info;
}

}  // namespace

Subscription QtDistributedNotificationCenter::addObserverForName(
    std::string_view name, std::function<void(const NotificationUserInfo&)> block) {
  if (!signal_) {
    signal_.emplace(
        DBusSignal::Address{.service = {},
                            .path = {},
                            .interface = QStringLiteral("com.quenlio.DistributedNotification"),
                            .name = QStringLiteral("Posted")},
        weak_.bind([](QtDistributedNotificationCenter& self, const QDBusMessage& message) { self.receive(message); }));
  }
  return observers_[std::string(name)].add(std::move(block));
}

void QtDistributedNotificationCenter::receive(const QDBusMessage& message) {
  if (message.signature() != QStringLiteral("sa{sv}")) {
    return;
  }
  const auto named = observers_.find(message.arguments().at(0).toString().toStdString());
  if (named != observers_.end()) {
    named->second.call(userInfoFrom(qdbus_cast<QVariantMap>(message.arguments().at(1))));
  }
}

}  // namespace quenlio
