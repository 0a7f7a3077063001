#include "desktop/linux/session/SingleInstance.h"

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusMessage>
#include <utility>

namespace quenlio {
namespace {

const QString kPath = QStringLiteral("/com/quenlio/app");
const QString kInterface = QStringLiteral("com.quenlio.app");
const QString kShow = QStringLiteral("Show");
constexpr int kPatience = 5000;  // milliseconds that the running one has to answer

}  // namespace

std::string SingleInstance::serviceName(const std::optional<std::string>& runID) {
  std::string name = "com.quenlio.app";
  if (runID) {
    name += ".r" + QByteArray::fromStdString(*runID).toHex().toStdString();
  }
  return name;
}

SingleInstance::SingleInstance(const std::string& serviceName, UserIntent& intent)
    : serviceName_(QString::fromStdString(serviceName)), intent_(intent) {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    return;
  }
  // The object first: whoever finds the name finds it too.
  bus.registerVirtualObject(kPath, this);
  const auto reply = bus.interface()->registerService(serviceName_, QDBusConnectionInterface::DontQueueService,
                                                      QDBusConnectionInterface::DontAllowReplacement);
  isFirst_ = !reply.isValid() || reply.value() == QDBusConnectionInterface::ServiceRegistered;
}

SingleInstance::~SingleInstance() {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (bus.isConnected()) {
    bus.unregisterObject(kPath);
    if (isFirst_) {
      bus.unregisterService(serviceName_);
    }
  }
}

bool SingleInstance::showRunningInstance() const {
  const QDBusMessage call = QDBusMessage::createMethodCall(serviceName_, kPath, kInterface, kShow);
  const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, kPatience);
  return reply.type() == QDBusMessage::ReplyMessage;
}

void SingleInstance::setOnShow(std::function<void()> onShow) {
  onShow_ = std::move(onShow);
  if (std::exchange(isAsked_, false)) {
    onShow_();
  }
}

QString SingleInstance::introspect(const QString& /*path*/) const {
  return QStringLiteral("<interface name=\"com.quenlio.app\"><method name=\"Show\"/></interface>");
}

bool SingleInstance::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  if (message.type() != QDBusMessage::MethodCallMessage || message.member() != kShow) {
    return false;
  }
  connection.send(message.createReply());
  intent_.note();
  if (onShow_) {
    onShow_();
  } else {
    isAsked_ = true;
  }
  return true;
}

}  // namespace quenlio
