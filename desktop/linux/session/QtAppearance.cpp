#include "desktop/linux/session/QtAppearance.h"

#include <QtCore/QEvent>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>
#include <QtDBus/QDBusVariant>
#include <QtGui/QGuiApplication>
#include <QtGui/QPalette>
#include <utility>

namespace quenlio {
namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kNamespace = QStringLiteral("org.freedesktop.appearance");
const QString kColorScheme = QStringLiteral("color-scheme");
const QString kContrast = QStringLiteral("contrast");
constexpr std::uint32_t kPrefersDark = 1;
constexpr std::uint32_t kPrefersLight = 2;
constexpr std::uint32_t kHigherContrast = 1;

// Read wraps its answer once more than the signal does.
QVariant unwrapped(QVariant value) {
  while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
    value = qvariant_cast<QDBusVariant>(value).variant();
  }
  return value;
}

bool paletteIsDark() {
  const QPalette palette = QGuiApplication::palette();
  return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

}  // namespace

QtAppearance::QtAppearance() {
  settingChanged_.emplace(
      DBusSignal::Address{
          .service = kService, .path = kPath, .interface = kInterface, .name = QStringLiteral("SettingChanged")},
      weak_.bind([](QtAppearance& self, const QDBusMessage& message) {
        if (message.signature() == QStringLiteral("ssv") && message.arguments().at(0).toString() == kNamespace) {
          self.take(message.arguments().at(1).toString(), message.arguments().at(2));
        }
      }));
  qGuiApp->installEventFilter(this);
  update();
  read(kColorScheme);
  read(kContrast);
}

QtAppearance::~QtAppearance() = default;

Subscription QtAppearance::observeEffectiveAppearance(std::function<void()> changed) {
  return appearanceObservers_.add(std::move(changed));
}

Subscription QtAppearance::observeAccessibilityDisplayOptions(std::function<void()> changed) {
  return contrastObservers_.add(std::move(changed));
}

void QtAppearance::read(const QString& key) {
  QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
  call << kNamespace << key;
  auto* answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
  QObject::connect(answer, &QDBusPendingCallWatcher::finished, this,
                   weak_.bind([key](QtAppearance& self, QDBusPendingCallWatcher* watcher) {
                     const QDBusPendingReply<QDBusVariant> reply = *watcher;
                     if (!reply.isError()) {
                       self.take(key, QVariant::fromValue(reply.value()));
                     }
                     watcher->deleteLater();
                   }));
}

void QtAppearance::take(const QString& key, const QVariant& value) {
  if (key == kColorScheme) {
    colorScheme_ = unwrapped(value).toUInt();
  } else if (key == kContrast) {
    contrast_ = unwrapped(value).toUInt();
  }
  update();
}

void QtAppearance::update() {
  const bool prefers = colorScheme_ == kPrefersDark || colorScheme_ == kPrefersLight;
  const bool dark = prefers ? colorScheme_ == kPrefersDark : paletteIsDark();
  if (dark != isDark_) {
    isDark_ = dark;
    appearanceObservers_.call();
  }
  const bool contrast = contrast_ == kHigherContrast;
  if (contrast != increaseContrast_) {
    increaseContrast_ = contrast;
    contrastObservers_.call();
  }
}

bool QtAppearance::eventFilter(QObject* object, QEvent* event) {
  if (object == qGuiApp && event->type() == QEvent::ApplicationPaletteChange) {
    update();
  }
  return false;
}

}  // namespace quenlio
