#include "desktop/linux/session/QtApplication.h"

#include <QtGui/QDrag>
#include <QtGui/QGuiApplication>

namespace quenlio {

void QtApplication::setActivationPolicy(ActivationPolicy policy) {
  QGuiApplication::setQuitOnLastWindowClosed(policy == ActivationPolicy::regular);
}

void QtApplication::activateIgnoringOtherApps() {
  intent_.note();
}

// Not quit(), which a window may refuse. A drag that still runs is given up, or what it drags would stay on the screen.
void QtApplication::terminate() {
  QDrag::cancel();
  QCoreApplication::exit(0);
}

}  // namespace quenlio
