#include "desktop/linux/session/QtScreens.h"

#include <QtGui/QCursor>
#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>

#include "desktop/linux/session/ScreenGeometry.h"
#include "desktop/linux/session/X11Windows.h"

namespace quenlio {
namespace {

// With several screens Qt gives each as a whole: the desktop's one work area says nothing of a single screen.
QRect visibleGeometry(const QScreen& screen) {
  if (QGuiApplication::screens().size() < 2 || x11::connection() == nullptr) {
    return screen.availableGeometry();
  }
  const QRect pixels = x11::toPixels(screen.geometry(), screen);
  return x11::toPoints(workArea(pixels, x11::desktopSize(), x11::struts()), screen);
}

}  // namespace

std::uint32_t QtScreens::screenNumber(std::string_view connector, std::string_view serial) {
  std::uint32_t hash = 2166136261U;
  const auto add = [&hash](char byte) {
    hash ^= static_cast<std::uint8_t>(byte);
    hash *= 16777619U;
  };
  for (const char byte : connector) {
    add(byte);
  }
  add('\0');
  for (const char byte : serial) {
    add(byte);
  }
  return hash;
}

ScreenInfo QtScreens::infoFor(const QScreen& screen) {
  const ScreenGeometry geometry = ScreenGeometry::current();
  return {.frame = geometry.fromQt(screen.geometry()),
          .visibleFrame = geometry.fromQt(visibleGeometry(screen)),
          .screenNumber = screenNumber(screen.name().toStdString(), screen.serialNumber().toStdString())};
}

std::vector<ScreenInfo> QtScreens::screens() const {
  std::vector<ScreenInfo> result;
  for (const QScreen* screen : QGuiApplication::screens()) {
    result.push_back(infoFor(*screen));
  }
  return result;
}

std::optional<ScreenInfo> QtScreens::mainScreen() const {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen != nullptr ? std::optional(infoFor(*screen)) : std::nullopt;
}

Point<Screen> QtScreens::mouseLocation() const {
  return ScreenGeometry::current().fromQt(QCursor::pos());
}

}  // namespace quenlio
