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
  auto observer = std::make_shared<Observer>(Observer{.name = std::string(name), .block = std::move(block)});
  observers_->push_back(observer);
  return Subscription([observer, list = std::weak_ptr(observers_)] {
    observer->isActive = false;
    if (const auto observers = list.lock()) {
      std::erase(*observers, observer);
    }
  });
}

void QtDistributedNotificationCenter::receive(const QDBusMessage& message) {
  if (message.signature() != QStringLiteral("sa{sv}")) {
    return;
  }
  const std::string name = message.arguments().at(0).toString().toStdString();
  const NotificationUserInfo info = userInfoFrom(qdbus_cast<QVariantMap>(message.arguments().at(1)));
  // A copy, since a block may add or end observers.
  const Observers observers = *observers_;
  for (const auto& observer : observers) {
    if (observer->isActive && observer->name == name) {
      observer->block(info);
    }
  }
}

}  // namespace quenlio
