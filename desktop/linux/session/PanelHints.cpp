#include "desktop/linux/session/PanelHints.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace quenlio {
namespace {

constexpr std::uint32_t kAllDesktops = 0xffffffff;
constexpr char kWindowClass[] = "quenlio\0Quenlio";  // instance and class, each with its closing zero

void replaceProperty(xcb_window_t window, const char* name, xcb_atom_t type, const std::uint32_t* values,
                     std::uint32_t count) {
  xcb_change_property(x11::connection(), XCB_PROP_MODE_REPLACE, window, x11::atom(name), type, 32, count, values);
}

using States = std::array<std::uint32_t, 4>;
States panelStates() {
  return {x11::atom("_NET_WM_STATE_ABOVE"), x11::atom("_NET_WM_STATE_STICKY"), x11::atom("_NET_WM_STATE_SKIP_TASKBAR"),
          x11::atom("_NET_WM_STATE_SKIP_PAGER")};
}

// No window manager lets the user move, resize or put away a window with these hints: where the panel is, is for it to
// say. Its own wishes are heard all the same.
constexpr std::uint32_t kHasFunctionsAndDecorations = 1 | 2;
constexpr std::uint32_t kCanBeClosed = 32;
constexpr std::array<std::uint32_t, 5> kMotifHints{kHasFunctionsAndDecorations, kCanBeClosed, 0, 0, 0};

constexpr std::uint32_t kAddState = 1;
constexpr std::uint32_t kFromApplication = 1;

void sendToWindowManager(xcb_window_t window, const char* type, const std::array<std::uint32_t, 5>& data) {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = x11::atom(type);
  std::copy(data.begin(), data.end(), event.data.data32);
  xcb_send_event(x11::connection(), 0, x11::rootWindow(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&event));
}

}  // namespace

void announcePanel(xcb_window_t window) {
  xcb_change_property(x11::connection(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                      sizeof kWindowClass, kWindowClass);
  replaceProperty(window, "_MOTIF_WM_HINTS", x11::atom("_MOTIF_WM_HINTS"), kMotifHints.data(),
                  static_cast<std::uint32_t>(kMotifHints.size()));
  replaceProperty(window, "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, &kAllDesktops, 1);
  const States states = panelStates();
  replaceProperty(window, "_NET_WM_STATE", XCB_ATOM_ATOM, states.data(), static_cast<std::uint32_t>(states.size()));
}

void requestPanelStates(xcb_window_t window) {
  sendToWindowManager(window, "_NET_WM_DESKTOP", {kAllDesktops, kFromApplication, 0, 0, 0});
  const States states = panelStates();
  sendToWindowManager(window, "_NET_WM_STATE", {kAddState, states[0], states[1], kFromApplication, 0});
  sendToWindowManager(window, "_NET_WM_STATE", {kAddState, states[2], states[3], kFromApplication, 0});
}

}  // namespace quenlio
