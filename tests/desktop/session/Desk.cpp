#include "tests/desktop/session/Desk.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include "desktop/linux/session/X11.h"

namespace quenlio {
namespace {

using x11::Reply;

void askWindowManager(xcb_connection_t* connection, xcb_window_t window, const char* message,
                      const std::array<std::uint32_t, 2>& values) {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = x11::atom(message);
  std::ranges::copy(values, event.data.data32);
  xcb_send_event(connection, 0, x11::rootWindow(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&event));
  xcb_flush(connection);
}

Reply<xcb_get_property_reply_t> property(xcb_window_t window, const char* name) {
  const auto cookie =
      xcb_get_property(x11::connection(), 0, window, x11::atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, 1024);
  return Reply<xcb_get_property_reply_t>(xcb_get_property_reply(x11::connection(), cookie, nullptr));
}

}  // namespace

bool run(const QString& program, const QStringList& arguments) {
  QProcess process;
  process.start(program, arguments);
  return process.waitForFinished(10'000) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

void movePointer(int x, int y) {
  run(QStringLiteral("xdotool"), {QStringLiteral("mousemove"), QString::number(x), QString::number(y)});
}

void pressKeys(const QString& combination) {
  run(QStringLiteral("xdotool"), {QStringLiteral("key"), QStringLiteral("--clearmodifiers"), combination});
}

bool setScreenSize(const QString& size) {
  const QStringList sides = size.split('x');
  const QString xrandr = QStringLiteral("xrandr");
  const QString mode = QStringLiteral("test") + size;
  const QString none = QStringLiteral("0");
  // Both fail when the mode is known from before.
  run(xrandr, {QStringLiteral("--newmode"), mode, none, sides.at(0), none, none, none, sides.at(1), none, none, none});
  run(xrandr, {QStringLiteral("--addmode"), QStringLiteral("screen"), mode});
  const QSize wanted(sides.at(0).toInt(), sides.at(1).toInt());
  return run(xrandr, {QStringLiteral("--output"), QStringLiteral("screen"), QStringLiteral("--mode"), mode}) &&
         waitUntil([&wanted] { return QGuiApplication::primaryScreen()->size() == wanted; });
}

QColor screenPixel(int x, int y) {
  const auto cookie = xcb_get_image(x11::connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, x11::rootWindow(),
                                    static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 1, 1, ~0U);
  const Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(x11::connection(), cookie, nullptr));
  if (!reply || xcb_get_image_data_length(reply.get()) < 3) {
    return {};
  }
  const std::uint8_t* bgr = xcb_get_image_data(reply.get());
  return {bgr[2], bgr[1], bgr[0]};
}

xcb_window_t focusedWindow() {
  const auto cookie = xcb_get_input_focus(x11::connection());
  const Reply<xcb_get_input_focus_reply_t> reply(xcb_get_input_focus_reply(x11::connection(), cookie, nullptr));
  return reply ? reply->focus : static_cast<xcb_window_t>(XCB_NONE);
}

std::vector<std::uint32_t> numbersOf(xcb_window_t window, const char* name) {
  const auto reply = property(window, name);
  if (!reply || reply->format != 32) {
    return {};
  }
  const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {values, values + reply->value_len};
}

std::vector<std::string> atomsOf(xcb_window_t window, const char* name) {
  std::vector<std::string> names;
  for (const xcb_atom_t atom : numbersOf(window, name)) {
    const auto cookie = xcb_get_atom_name(x11::connection(), atom);
    const Reply<xcb_get_atom_name_reply_t> reply(xcb_get_atom_name_reply(x11::connection(), cookie, nullptr));
    if (reply) {
      names.emplace_back(xcb_get_atom_name_name(reply.get()),
                         static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get())));
    }
  }
  return names;
}

bool isMapped(xcb_window_t window) {
  const auto cookie = xcb_get_window_attributes(x11::connection(), window);
  const Reply<xcb_get_window_attributes_reply_t> reply(
      xcb_get_window_attributes_reply(x11::connection(), cookie, nullptr));
  return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

QRect geometryOnScreen(xcb_window_t window) {
  const auto size = xcb_get_geometry(x11::connection(), window);
  const auto place = xcb_translate_coordinates(x11::connection(), window, x11::rootWindow(), 0, 0);
  const Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(x11::connection(), size, nullptr));
  const Reply<xcb_translate_coordinates_reply_t> origin(
      xcb_translate_coordinates_reply(x11::connection(), place, nullptr));
  if (!geometry || !origin) {
    return {};
  }
  return {origin->dst_x, origin->dst_y, geometry->width, geometry->height};
}

OtherProgram::OtherProgram() : connection_(xcb_connect(nullptr, nullptr)), window_(xcb_generate_id(connection_)) {}

OtherProgram::~OtherProgram() {
  xcb_disconnect(connection_);
}

void OtherProgram::create(const QRect& geometry) {
  const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
  const std::uint32_t values[] = {screen->white_pixel, XCB_EVENT_MASK_KEY_PRESS};
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screen->root, static_cast<std::int16_t>(geometry.x()),
                    static_cast<std::int16_t>(geometry.y()), static_cast<std::uint16_t>(geometry.width()),
                    static_cast<std::uint16_t>(geometry.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                    screen->root_visual, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
  // A place asked for by the user, and no frame, so that the window is where the test says.
  const std::uint32_t userPosition[18] = {1};
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 32,
                      18, userPosition);
  const std::uint32_t noDecorations[5] = {2, 0, 0, 0, 0};
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, x11::atom("_MOTIF_WM_HINTS"),
                      x11::atom("_MOTIF_WM_HINTS"), 32, 5, noDecorations);
}

bool OtherProgram::showAndTakeKeyboard(const QRect& geometry) {
  create(geometry);
  xcb_map_window(connection_, window_);
  xcb_flush(connection_);
  return waitUntil([this] { return focusedWindow() == window_; });
}

bool OtherProgram::showFullScreen() {
  create({0, 0, 300, 200});
  const xcb_atom_t fullScreen = x11::atom("_NET_WM_STATE_FULLSCREEN");
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, x11::atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 32, 1,
                      &fullScreen);
  xcb_map_window(connection_, window_);
  xcb_flush(connection_);
  return waitUntil(
      [this] { return focusedWindow() == window_ && geometryOnScreen(window_) == QRect(0, 0, 1280, 800); });
}

void OtherProgram::askToClose(xcb_window_t window) {
  constexpr std::uint32_t fromUser = 2;
  askWindowManager(connection_, window, "_NET_CLOSE_WINDOW", {0, fromUser});
}

bool OtherProgram::showAsBar(int height, int left, int right) {
  const auto thickness = static_cast<std::uint32_t>(height);
  return showBar(
      {left, 800 - height, right - left + 1, height}, "_NET_WM_STRUT_PARTIAL",
      {0, 0, 0, thickness, 0, 0, 0, 0, 0, 0, static_cast<std::uint32_t>(left), static_cast<std::uint32_t>(right)});
}

bool OtherProgram::showAsOlderBar(int height, int left, int right) {
  return showBar({left, 800 - height, right - left + 1, height}, "_NET_WM_STRUT",
                 {0, 0, 0, static_cast<std::uint32_t>(height)});
}

bool OtherProgram::showBar(const QRect& geometry, const char* property, const std::vector<std::uint32_t>& strut) {
  create(geometry);
  const xcb_atom_t dock = x11::atom("_NET_WM_WINDOW_TYPE_DOCK");
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, x11::atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32,
                      1, &dock);
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, x11::atom(property), XCB_ATOM_CARDINAL, 32,
                      static_cast<std::uint32_t>(strut.size()), strut.data());
  xcb_map_window(connection_, window_);
  xcb_flush(connection_);
  return waitUntil([this] { return isMapped(window_); });
}

ShownDesktop::ShownDesktop() {
  askWindowManager(x11::connection(), x11::rootWindow(), "_NET_SHOWING_DESKTOP", {1, 0});
}

ShownDesktop::~ShownDesktop() {
  askWindowManager(x11::connection(), x11::rootWindow(), "_NET_SHOWING_DESKTOP", {0, 0});
  (void)waitUntil([] { return numbersOf(x11::rootWindow(), "_NET_SHOWING_DESKTOP") == std::vector{0U}; });
}

TwoMonitors::TwoMonitors() {
  const QString xrandr = QStringLiteral("xrandr");
  const QString set = QStringLiteral("--setmonitor");
  const bool isSet =
      run(xrandr, {set, QStringLiteral("Left"), QStringLiteral("640/160x800/200+0+0"), QStringLiteral("screen")}) &&
      run(xrandr, {set, QStringLiteral("Right"), QStringLiteral("640/160x800/200+640+0"), QStringLiteral("none")}) &&
      waitUntil([] { return QGuiApplication::screens().size() == 2; });
  if (!isSet) {
    throw std::runtime_error("There cannot be two monitors.");
  }
}

TwoMonitors::~TwoMonitors() {
  for (const QString& name : {QStringLiteral("Right"), QStringLiteral("Left")}) {
    run(QStringLiteral("xrandr"), {QStringLiteral("--delmonitor"), name});
  }
  const bool isGone = waitUntil([] {
    return QGuiApplication::screens().size() == 1 &&
           QGuiApplication::primaryScreen()->geometry() == QRect(0, 0, 1280, 800);
  });
  if (!isGone) {
    std::fputs("The one monitor did not come back.\n", stderr);
    std::abort();  // no test after this would see what it expects
  }
}

Compositor::Compositor() {
  process_.start(QStringLiteral("picom"), {QStringLiteral("--backend"), QStringLiteral("xrender"),
                                           QStringLiteral("--config"), QStringLiteral("/dev/null")});
  process_.waitForStarted();
}

Compositor::~Compositor() {
  process_.terminate();
  process_.waitForFinished();
}

}  // namespace quenlio
