#include "desktop/linux/session/CompositorWatch.h"

#include <QtCore/QByteArray>
#include <QtCore/QCoreApplication>
#include <xcb/xfixes.h>

#include "desktop/linux/session/PanelHints.h"
#include "desktop/linux/session/X11.h"

namespace quenlio {
namespace {

constexpr const char* kSelection = "_NET_WM_CM_S0";

bool selectionHasOwner() {
  const auto cookie = xcb_get_selection_owner(x11::connection(), x11::atom(kSelection));
  const x11::Reply<xcb_get_selection_owner_reply_t> reply(
      xcb_get_selection_owner_reply(x11::connection(), cookie, nullptr));
  return reply && reply->owner != XCB_NONE;
}

}  // namespace

CompositorWatch::CompositorWatch() {
  xcb_connection_t* connection = x11::connection();
  if (connection == nullptr) {
    return;
  }
  const auto* extension = xcb_get_extension_data(connection, &xcb_xfixes_id);
  if (extension != nullptr && extension->present != 0) {
    // The extension answers nobody who has not asked for its version first; asking twice does no harm.
    const auto version = xcb_xfixes_query_version(connection, 1, 0);
    const x11::Reply<xcb_xfixes_query_version_reply_t> reply(
        xcb_xfixes_query_version_reply(connection, version, nullptr));
    selectionNotify_ = extension->first_event + XCB_XFIXES_SELECTION_NOTIFY;
    xcb_xfixes_select_selection_input(connection, x11::rootWindow(), x11::atom(kSelection),
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
  }
  // Qt asks for the root window's changes itself.
  QCoreApplication::instance()->installNativeEventFilter(this);
  isThere_.set(selectionHasOwner());
  blursBehind_.set(canBlurBehind());
}

CompositorWatch::~CompositorWatch() {
  if (QCoreApplication::instance() != nullptr) {
    QCoreApplication::instance()->removeNativeEventFilter(this);
  }
}

bool CompositorWatch::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
  if (eventType != "xcb_generic_event_t") {
    return false;
  }
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  const int kind = event->response_type & x11::kEventNumber;
  if (kind == selectionNotify_) {
    selectionChanged(message);
  } else if (kind == XCB_PROPERTY_NOTIFY) {
    rootPropertyChanged(message);
  }
  return false;
}

void CompositorWatch::selectionChanged(const void* event) {
  const auto* notify = static_cast<const xcb_xfixes_selection_notify_event_t*>(event);
  if (notify->selection == x11::atom(kSelection)) {
    const bool there = notify->owner != XCB_NONE;
    if (there != isThere_.get()) {
      isThere_.set(there);
    }
  }
}

void CompositorWatch::rootPropertyChanged(const void* event) {
  const auto* notify = static_cast<const xcb_property_notify_event_t*>(event);
  if (notify->window == x11::rootWindow() && notify->atom == x11::atom(kBlurBehind)) {
    const bool blurs = notify->state == XCB_PROPERTY_NEW_VALUE;
    if (blurs != blursBehind_.get()) {
      blursBehind_.set(blurs);
    }
  }
}

}  // namespace quenlio
