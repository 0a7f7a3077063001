#include "desktop/linux/session/QtApplication.h"

#include <QtGui/QGuiApplication>

namespace quenlio {

void QtApplication::setActivationPolicy(ActivationPolicy policy) {
  QGuiApplication::setQuitOnLastWindowClosed(policy == ActivationPolicy::regular);
}

void QtApplication::activateIgnoringOtherApps() {
  intent_.note();
}

// Not quit(), which a window may refuse.
void QtApplication::terminate() {
  QCoreApplication::exit(0);
}

}  // namespace quenlio
