#include "desktop/linux/session/X11Windows.h"

#include <QtGui/QScreen>
#include <algorithm>
#include <cmath>
#include <limits>

namespace quenlio::x11 {
namespace {

constexpr std::uint32_t kMostValues = 4096;  // as many windows, or atoms, as are looked at

using PropertyCookie = xcb_get_property_cookie_t;

PropertyCookie ask(xcb_window_t window, const char* name) {
  return xcb_get_property(connection(), 0, window, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, kMostValues);
}

// None for a window that is gone, too.
std::vector<std::uint32_t> answer(PropertyCookie cookie) {
  const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection(), cookie, nullptr));
  if (!reply || reply->format != 32) {
    return {};
  }
  const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {values, values + reply->value_len};
}

std::vector<xcb_window_t> windows() {
  return answer(ask(rootWindow(), "_NET_CLIENT_LIST"));
}

// One answer a window; the questions are all on their way before the first answer is waited for.
std::vector<std::vector<std::uint32_t>> ofAll(const std::vector<xcb_window_t>& windows, const char* name) {
  std::vector<PropertyCookie> cookies;
  cookies.reserve(windows.size());
  for (const xcb_window_t window : windows) {
    cookies.push_back(ask(window, name));
  }
  std::vector<std::vector<std::uint32_t>> answers;
  answers.reserve(cookies.size());
  for (const PropertyCookie cookie : cookies) {
    answers.push_back(answer(cookie));
  }
  return answers;
}

bool contains(const std::vector<std::uint32_t>& values, std::uint32_t value) {
  return std::ranges::find(values, value) != values.end();
}

// A window on another desktop may stay mapped, as it may when it is put away as an icon.
bool isOnThisDesktop(xcb_window_t window) {
  const auto own = ask(window, "_NET_WM_DESKTOP");
  const auto current = answer(ask(rootWindow(), "_NET_CURRENT_DESKTOP"));
  const auto desktop = answer(own);
  return desktop.empty() || current.empty() || desktop.front() == kAllDesktops || desktop.front() == current.front();
}

QRect geometryOnScreen(xcb_window_t window) {
  const auto size = xcb_get_geometry(connection(), window);
  const auto place = xcb_translate_coordinates(connection(), window, rootWindow(), 0, 0);
  const Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(connection(), size, nullptr));
  const Reply<xcb_translate_coordinates_reply_t> origin(xcb_translate_coordinates_reply(connection(), place, nullptr));
  return geometry && origin ? QRect(origin->dst_x, origin->dst_y, geometry->width, geometry->height) : QRect();
}

int pixel(std::uint32_t value) {
  return static_cast<int>(std::min<std::uint32_t>(value, std::numeric_limits<std::int16_t>::max()));
}

constexpr std::size_t kEdges = 4;  // left, right, top, bottom

// From the thickness at each edge, followed by the beginning and the end along each.
void addStruts(std::vector<Strut>& struts, const std::vector<std::uint32_t>& values) {
  if (values.size() < 3 * kEdges) {
    return;
  }
  for (std::size_t edge = 0; edge < kEdges; ++edge) {
    if (values[edge] > 0) {
      struts.push_back({.edge = static_cast<Strut::Edge>(edge),
                        .thickness = pixel(values[edge]),
                        .begin = pixel(values[kEdges + 2 * edge]),
                        .end = pixel(values[kEdges + 2 * edge + 1])});
    }
  }
}

// What an older bar tells, which is the thickness alone, in the words of a newer one.
std::vector<std::uint32_t> alongWholeEdges(std::vector<std::uint32_t> thicknesses, const QSize& desktop) {
  if (thicknesses.size() < kEdges) {
    return {};
  }
  thicknesses.resize(kEdges);
  const auto lastRow = static_cast<std::uint32_t>(std::max(desktop.height() - 1, 0));
  const auto lastColumn = static_cast<std::uint32_t>(std::max(desktop.width() - 1, 0));
  for (const std::uint32_t end : {lastRow, lastRow, lastColumn, lastColumn}) {
    thicknesses.insert(thicknesses.end(), {0U, end});
  }
  return thicknesses;
}

}  // namespace

std::vector<std::uint32_t> numbers(xcb_window_t window, const char* property) {
  return answer(ask(window, property));
}

bool isCoveredByFullScreenWindow(const QRect& rect) {
  if (connection() == nullptr) {
    return false;
  }
  const std::vector<xcb_window_t> all = windows();
  const auto states = ofAll(all, "_NET_WM_STATE");
  for (std::size_t index = 0; index < all.size(); ++index) {
    const bool isSeen = contains(states[index], atom("_NET_WM_STATE_FULLSCREEN")) &&
                        !contains(states[index], atom("_NET_WM_STATE_HIDDEN")) && isOnThisDesktop(all[index]);
    if (isSeen && geometryOnScreen(all[index]).contains(rect)) {
      return true;
    }
  }
  return false;
}

bool isShowingDesktop() {
  if (connection() == nullptr) {
    return false;
  }
  const std::vector<std::uint32_t> state = numbers(rootWindow(), "_NET_SHOWING_DESKTOP");
  return !state.empty() && state.front() != 0;
}

std::vector<Strut> struts() {
  if (connection() == nullptr) {
    return {};
  }
  const std::vector<xcb_window_t> all = windows();
  const auto partial = ofAll(all, "_NET_WM_STRUT_PARTIAL");
  const auto whole = ofAll(all, "_NET_WM_STRUT");
  const QSize desktop = desktopSize();
  std::vector<Strut> result;
  for (std::size_t index = 0; index < all.size(); ++index) {
    addStruts(result, partial[index].size() >= 3 * kEdges ? partial[index] : alongWholeEdges(whole[index], desktop));
  }
  return result;
}

QSize desktopSize() {
  return connection() != nullptr ? geometryOnScreen(rootWindow()).size() : QSize();
}

xcb_window_t keyboardsOwner() {
  if (connection() == nullptr) {
    return XCB_NONE;
  }
  const Reply<xcb_get_input_focus_reply_t> reply(
      xcb_get_input_focus_reply(connection(), xcb_get_input_focus(connection()), nullptr));
  return reply ? reply->focus : static_cast<xcb_window_t>(XCB_NONE);
}

void giveKeyboard(xcb_window_t window) {
  const auto cookie = xcb_set_input_focus_checked(connection(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
  const Reply<xcb_generic_error_t> error(xcb_request_check(connection(), cookie));
  if (error) {
    xcb_set_input_focus(connection(), XCB_INPUT_FOCUS_POINTER_ROOT, XCB_INPUT_FOCUS_POINTER_ROOT, XCB_CURRENT_TIME);
  }
}

// Screens stand where their pixels do, and grow from there by their points.
QRect toPixels(const QRect& points, const QScreen& screen) {
  const QPointF corner = screen.geometry().topLeft();
  const double scale = screen.devicePixelRatio();
  return QRectF(corner + (QPointF(points.topLeft()) - corner) * scale, QSizeF(points.size()) * scale).toAlignedRect();
}

QRect toPoints(const QRect& pixels, const QScreen& screen) {
  const QPointF corner = screen.geometry().topLeft();
  const double scale = screen.devicePixelRatio();
  const QRectF exact(corner + (QPointF(pixels.topLeft()) - corner) / scale, QSizeF(pixels.size()) / scale);
  const QPoint first(static_cast<int>(std::ceil(exact.left())), static_cast<int>(std::ceil(exact.top())));
  const QPoint behind(static_cast<int>(std::floor(exact.right())), static_cast<int>(std::floor(exact.bottom())));
  return {first, behind - QPoint(1, 1)};
}

}  // namespace quenlio::x11
