// The program with the settings that a user changes while it runs: linked beside the program's own main, this takes
// them from the file that QUENLIO_TEST_SETTINGS names, a name and a value a line. It takes them once the program has
// launched, which gives most of them their first values, and again whenever the file is written.
#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QFileSystemWatcher>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QtDebug>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

#include "core/settings/AppSettings.h"

namespace quenlio {
namespace {

// A value that is there already would be announced once more.
template <class T>
bool set(Setting<T>& setting, const std::optional<T>& value) {
  if (value && *value != setting.get()) {
    setting.set(*value);
  }
  return value.has_value();
}

template <class Number>
std::optional<Number> number(Number value, bool isNumber) {
  return isNumber ? std::optional(value) : std::nullopt;
}

// False when there is no such setting or no such value.
bool apply(AppSettings& settings, const QString& name, const QString& value) {
  const std::string raw = value.toStdString();
  bool isNumber = false;
  if (name == QStringLiteral("islandDurationMode")) {
    return set(settings.islandDurationMode, fromRawValue<IslandDurationMode>(raw));
  }
  if (name == QStringLiteral("islandSize")) {
    return set(settings.islandSize, fromRawValue<IslandSize>(raw));
  }
  if (name == QStringLiteral("islandDurationSeconds")) {
    const double seconds = value.toDouble(&isNumber);
    return set(settings.islandDurationSeconds, number(seconds, isNumber));
  }
  if (name == QStringLiteral("maxHistory")) {
    const std::int64_t count = value.toLongLong(&isNumber);
    return set(settings.maxHistory, number(count, isNumber));
  }
  return false;
}

void applyFile(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    qCritical() << "No settings in" << path;
    QCoreApplication::exit(EXIT_FAILURE);
    return;
  }
  for (const QString& line : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
    const QStringList words = line.split(u' ');
    if (words.size() != 2 || !apply(AppSettings::shared(), words[0], words[1])) {
      qCritical() << "No such setting:" << line;
      QCoreApplication::exit(EXIT_FAILURE);
    }
  }
}

void takeSettings() {
  const QString path = qEnvironmentVariable("QUENLIO_TEST_SETTINGS");
  auto* watcher = new QFileSystemWatcher({path}, QCoreApplication::instance());
  QObject::connect(watcher, &QFileSystemWatcher::fileChanged, &applyFile);
  applyFile(path);
}

// The loop runs once the program has launched.
void takeSettingsWhenLaunched() {
  QMetaObject::invokeMethod(QCoreApplication::instance(), &takeSettings, Qt::QueuedConnection);
}
Q_COREAPP_STARTUP_FUNCTION(takeSettingsWhenLaunched)

}  // namespace
}  // namespace quenlio
