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
  QObject::connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](const QScreen* screen) {
    watch(*screen);
    changed_();
  });
  QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, this, [this] { changed_(); });
  QObject::connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, [this] { changed_(); });
}

void ScreenChanges::watch(const QScreen& screen) {
  QObject::connect(&screen, &QScreen::geometryChanged, this, [this] { changed_(); });
  QObject::connect(&screen, &QScreen::logicalDotsPerInchChanged, this, [this] { changed_(); });
}

}  // namespace quenlio
