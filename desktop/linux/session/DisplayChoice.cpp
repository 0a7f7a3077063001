#include "desktop/linux/session/DisplayChoice.h"

#include <QtCore/QByteArray>
#include <memory>
#include <xcb/xcb.h>

namespace quenlio {
namespace {

constexpr const char* kVariable = "QT_QPA_PLATFORM";

bool reachesX() {
  const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> probe(xcb_connect(nullptr, nullptr),
                                                                           &xcb_disconnect);
  return xcb_connection_has_error(probe.get()) == 0;
}

}  // namespace

bool chooseDisplay() {
  const QByteArray platform = qgetenv(kVariable);
  const bool isWayland = platform.contains("wayland");
  if (!platform.isEmpty() && platform != "xcb" && !isWayland) {
    return true;
  }
  const bool isThere = reachesX();
  if (isThere) {
    qputenv(kVariable, "xcb");
  }
  return isThere || isWayland;
}

}  // namespace quenlio
