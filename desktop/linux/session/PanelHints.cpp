#include "desktop/linux/session/PanelHints.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace quenlio {
namespace {

constexpr char kWindowClass[] = "quenlio\0Quenlio";  // instance and class, each with its closing zero

void replaceProperty(xcb_window_t window, const char* name, xcb_atom_t type, const std::uint32_t* values,
                     std::uint32_t count) {
  xcb_change_property(x11::connection(), XCB_PROP_MODE_REPLACE, window, x11::atom(name), type, 32, count, values);
}

std::vector<std::uint32_t> panelStates(PanelLayer layer) {
  std::vector<std::uint32_t> states{x11::atom("_NET_WM_STATE_STICKY"), x11::atom("_NET_WM_STATE_SKIP_TASKBAR"),
                                    x11::atom("_NET_WM_STATE_SKIP_PAGER")};
  if (layer == PanelLayer::aboveOthers) {
    states.push_back(x11::atom("_NET_WM_STATE_ABOVE"));
  }
  return states;
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

std::uint32_t cardinal(int value) {
  return static_cast<std::uint32_t>(value);
}

}  // namespace

void announcePanel(xcb_window_t window, PanelLayer layer) {
  xcb_change_property(x11::connection(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                      sizeof kWindowClass, kWindowClass);
  replaceProperty(window, "_MOTIF_WM_HINTS", x11::atom("_MOTIF_WM_HINTS"), kMotifHints.data(),
                  static_cast<std::uint32_t>(kMotifHints.size()));
  replaceProperty(window, "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, &x11::kAllDesktops, 1);
  const std::vector<std::uint32_t> states = panelStates(layer);
  replaceProperty(window, "_NET_WM_STATE", XCB_ATOM_ATOM, states.data(), static_cast<std::uint32_t>(states.size()));
}

void requestPanelStates(xcb_window_t window, PanelLayer layer) {
  sendToWindowManager(window, "_NET_WM_DESKTOP", {x11::kAllDesktops, kFromApplication, 0, 0, 0});
  for (const std::uint32_t state : panelStates(layer)) {
    sendToWindowManager(window, "_NET_WM_STATE", {kAddState, state, 0, kFromApplication, 0});
  }
}

void announceShadow(xcb_window_t window, const QMargins& extents) {
  constexpr const char* name = "_GTK_FRAME_EXTENTS";
  if (extents.isNull()) {
    xcb_delete_property(x11::connection(), window, x11::atom(name));
    return;
  }
  const std::array<std::uint32_t, 4> sides{cardinal(extents.left()), cardinal(extents.right()), cardinal(extents.top()),
                                           cardinal(extents.bottom())};
  replaceProperty(window, name, XCB_ATOM_CARDINAL, sides.data(), static_cast<std::uint32_t>(sides.size()));
}

void announceBlurBehind(xcb_window_t window, const QRegion& region) {
  if (region.isEmpty()) {
    xcb_delete_property(x11::connection(), window, x11::atom(kBlurBehind));
    return;
  }
  std::vector<std::uint32_t> rectangles;
  for (const QRect& rect : region) {
    rectangles.insert(rectangles.end(),
                      {cardinal(rect.x()), cardinal(rect.y()), cardinal(rect.width()), cardinal(rect.height())});
  }
  replaceProperty(window, kBlurBehind, XCB_ATOM_CARDINAL, rectangles.data(),
                  static_cast<std::uint32_t>(rectangles.size()));
}

bool canBlurBehind() {
  const auto cookie = xcb_list_properties(x11::connection(), x11::rootWindow());
  const x11::Reply<xcb_list_properties_reply_t> reply(xcb_list_properties_reply(x11::connection(), cookie, nullptr));
  if (!reply) {
    return false;
  }
  const xcb_atom_t* names = xcb_list_properties_atoms(reply.get());
  return std::find(names, names + xcb_list_properties_atoms_length(reply.get()), x11::atom(kBlurBehind)) !=
         names + xcb_list_properties_atoms_length(reply.get());
}

}  // namespace quenlio
