#include "desktop/linux/session/PlainTheme.h"

namespace quenlio {
namespace {

constexpr const char* kTheme = "QT_QPA_PLATFORMTHEME";
constexpr std::array kDesktopNames{"XDG_CURRENT_DESKTOP", "DESKTOP_SESSION", "GNOME_DESKTOP_SESSION_ID"};

}  // namespace

PlainTheme::PlainTheme() {
  // KDE's look comes with Qt itself.
  if (qEnvironmentVariableIsSet(kTheme) || qgetenv(kDesktopNames[0]).contains("KDE")) {
    return;
  }
  isSet_ = true;
  qputenv(kTheme, "xdgdesktopportal");
  for (std::size_t index = 0; index < kDesktopNames.size(); ++index) {
    if (qEnvironmentVariableIsSet(kDesktopNames[index])) {
      hidden_[index] = qgetenv(kDesktopNames[index]);
      qunsetenv(kDesktopNames[index]);
    }
  }
}

// The programs that this one starts need to know their desktop, and have themes of their own.
PlainTheme::~PlainTheme() {
  if (isSet_) {
    qunsetenv(kTheme);
  }
  for (std::size_t index = 0; index < kDesktopNames.size(); ++index) {
    if (hidden_[index]) {
      qputenv(kDesktopNames[index], *hidden_[index]);
    }
  }
}

}  // namespace quenlio
