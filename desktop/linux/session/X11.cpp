#include "desktop/linux/session/X11.h"

#include <QtGui/QGuiApplication>
#include <cstring>
#include <map>
#include <string>

namespace quenlio::x11 {

xcb_connection_t* connection() {
  if (qGuiApp == nullptr) {
    return nullptr;
  }
  const auto* native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return native != nullptr ? native->connection() : nullptr;
}

xcb_window_t rootWindow() {
  return xcb_setup_roots_iterator(xcb_get_setup(connection())).data->root;
}

xcb_atom_t atom(const char* name) {
  static std::map<std::string, xcb_atom_t> known;
  const auto found = known.find(name);
  if (found != known.end()) {
    return found->second;
  }
  const auto cookie = xcb_intern_atom(connection(), 0, static_cast<std::uint16_t>(std::strlen(name)), name);
  const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection(), cookie, nullptr));
  const xcb_atom_t atom = reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
  known.emplace(name, atom);
  return atom;
}

}  // namespace quenlio::x11
