#include "desktop/linux/session/ScreenChanges.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <utility>

namespace quenlio {

// The connections end with this object, which is their context.
ScreenChanges::ScreenChanges(std::function<void()> changed) : changed_(std::move(changed)) {
  for (const QScreen* screen : QGuiApplication::screens()) {
    watch(*screen);
  }
  const std::function<void(const QScreen*)> added = weak_.bind([](ScreenChanges& self, const QScreen* screen) {
    self.watch(*screen);
    self.changed_();
  });
  QObject::connect(qGuiApp, &QGuiApplication::screenAdded, this, added);
  QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, this, changed_);
  QObject::connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, changed_);
}

void ScreenChanges::watch(const QScreen& screen) {
  QObject::connect(&screen, &QScreen::geometryChanged, this, changed_);
  QObject::connect(&screen, &QScreen::logicalDotsPerInchChanged, this, changed_);
}

}  // namespace quenlio
