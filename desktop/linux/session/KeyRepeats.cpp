#include "desktop/linux/session/KeyRepeats.h"

#include <QtCore/QCoreApplication>

namespace quenlio {

bool KeyRepeats::hides(const QKeyEvent& key) {
  if (key.type() == QEvent::KeyRelease) {
    released_ = key.nativeScanCode();
    releasedAt_ = key.timestamp();
    return false;
  }
  return !key.isAutoRepeat() && key.nativeScanCode() == released_ && key.timestamp() == releasedAt_ && released_ != 0;
}

void KeyRepeats::sendAsRepeat(const QKeyEvent& press, QObject& window) {
  QKeyEvent repeat(QEvent::KeyPress, press.key(), press.modifiers(), press.nativeScanCode(), press.nativeVirtualKey(),
                   press.nativeModifiers(), press.text(), true, static_cast<quint16>(press.count()));
  repeat.setTimestamp(press.timestamp());
  QCoreApplication::sendEvent(&window, &repeat);
}

}  // namespace quenlio
