#include "bench/screen/ScreenRegion.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <stdexcept>
#include <xcb/xtest.h>

namespace quenlio::bench {
namespace {

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
template <class T>
using Reply = std::unique_ptr<T, Free>;

}  // namespace

ScreenRegion::ScreenRegion(Area area) : area_(area), connection_(xcb_connect(nullptr, nullptr)) {
  xcb_connection_t* connection = connection_.get();
  if (xcb_connection_has_error(connection) != 0) {
    throw std::runtime_error("no display");
  }
  const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
  root_ = screen->root;
  const xcb_query_extension_reply_t* extension = xcb_get_extension_data(connection, &xcb_damage_id);
  if (extension == nullptr || extension->present == 0 || screen->root_depth != 24) {
    throw std::runtime_error("the display does not tell what is drawn, or has other pixels than expected");
  }
  damageEvent_ = static_cast<std::uint8_t>(extension->first_event + XCB_DAMAGE_NOTIFY);
  Reply<xcb_damage_query_version_reply_t>(
      xcb_damage_query_version_reply(connection, xcb_damage_query_version(connection, 1, 1), nullptr));
  damage_ = xcb_generate_id(connection);
  xcb_damage_create(connection, damage_, root_, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
}

Frame ScreenRegion::look() {
  // Before the pixels are fetched: what is drawn from here on is reported anew.
  xcb_damage_subtract(connection_.get(), damage_, XCB_NONE, XCB_NONE);
  const auto cookie =
      xcb_get_image(connection_.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, root_, static_cast<std::int16_t>(area_.x),
                    static_cast<std::int16_t>(area_.y), static_cast<std::uint16_t>(area_.width),
                    static_cast<std::uint16_t>(area_.height), ~0U);
  const Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(connection_.get(), cookie, nullptr));
  const auto count = static_cast<std::size_t>(area_.width) * static_cast<std::size_t>(area_.height);
  if (!reply || static_cast<std::size_t>(xcb_get_image_data_length(reply.get())) != count * sizeof(std::uint32_t)) {
    throw std::runtime_error("the screen cannot be read");
  }
  Frame frame{.seen = std::chrono::steady_clock::now(), .pixels = std::vector<std::uint32_t>(count)};
  std::memcpy(frame.pixels.data(), xcb_get_image_data(reply.get()), count * sizeof(std::uint32_t));
  for (std::uint32_t& pixel : frame.pixels) {
    pixel &= 0xffffff;
  }
  return frame;
}

std::optional<Frame> ScreenRegion::next(Time deadline) {
  xcb_flush(connection_.get());
  while (!takeDamage()) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0) {
      return std::nullopt;
    }
    pollfd waiting{.fd = xcb_get_file_descriptor(connection_.get()), .events = POLLIN, .revents = 0};
    poll(&waiting, 1, static_cast<int>(left.count()));
  }
  return look();
}

bool ScreenRegion::takeDamage() {
  bool drawn = false;
  while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
    drawn = drawn || (event->response_type & 0x7f) == damageEvent_;
  }
  if (xcb_connection_has_error(connection_.get()) != 0) {
    throw std::runtime_error("the display has gone");
  }
  return drawn;
}

void ScreenRegion::movePointer(int x, int y) {
  fake(XCB_MOTION_NOTIFY, 0, x, y);
  xcb_flush(connection_.get());
}

void ScreenRegion::click(int x, int y) {
  fake(XCB_MOTION_NOTIFY, 0, x, y);
  fake(XCB_BUTTON_PRESS, XCB_BUTTON_INDEX_1, x, y);
  fake(XCB_BUTTON_RELEASE, XCB_BUTTON_INDEX_1, x, y);
  xcb_flush(connection_.get());
}

void ScreenRegion::type(std::uint32_t symbol) {
  const std::uint8_t code = keyCode(symbol);
  fake(XCB_KEY_PRESS, code, 0, 0);
  fake(XCB_KEY_RELEASE, code, 0, 0);
  xcb_flush(connection_.get());
}

std::uint8_t ScreenRegion::keyCode(std::uint32_t symbol) const {
  const xcb_setup_t* setup = xcb_get_setup(connection_.get());
  const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
  const Reply<xcb_get_keyboard_mapping_reply_t> reply(xcb_get_keyboard_mapping_reply(
      connection_.get(), xcb_get_keyboard_mapping(connection_.get(), setup->min_keycode, count), nullptr));
  for (int code = 0; reply && code < count; ++code) {
    if (xcb_get_keyboard_mapping_keysyms(reply.get())[code * reply->keysyms_per_keycode] == symbol) {
      return static_cast<std::uint8_t>(setup->min_keycode + code);
    }
  }
  throw std::runtime_error("no such key");
}

void ScreenRegion::fake(std::uint8_t type, std::uint8_t detail, int x, int y) {
  xcb_test_fake_input(connection_.get(), type, detail, XCB_CURRENT_TIME, root_, static_cast<std::int16_t>(x),
                      static_cast<std::int16_t>(y), 0);
}

}  // namespace quenlio::bench
