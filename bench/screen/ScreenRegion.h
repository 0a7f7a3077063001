// One part of the screen as anybody sees it: its pixels, fetched each time they change, and the pointer that acts on
// it.
//
// The server reports that something was drawn, and only then are the pixels fetched, so that looking costs the program
// under test next to nothing. Each frame carries the moment when its pixels had come, which is never before they were
// on the screen. Owned by the benchmark; one thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>
#include <xcb/damage.h>
#include <xcb/xcb.h>

namespace quenlio::bench {

using Time = std::chrono::steady_clock::time_point;

struct Area {
  int x = 0;  // pixels from the top left
  int y = 0;
  int width = 0;
  int height = 0;
};

struct Frame {
  Time seen;
  std::vector<std::uint32_t> pixels;  // 0xRRGGBB, row by row
};

class ScreenRegion {
 public:
  // On the display that the environment names. Throws std::runtime_error without one.
  explicit ScreenRegion(Area area);

  [[nodiscard]] const Area& area() const { return area_; }
  // The pixels as they are now.
  [[nodiscard]] Frame look();
  // The pixels after the next time that something was drawn anywhere on the screen; nothing when nothing was until the
  // deadline. What was drawn before the last look is not reported again.
  [[nodiscard]] std::optional<Frame> next(Time deadline);

  void movePointer(int x, int y);
  void click(int x, int y);
  // Presses and releases the key that has this symbol. Throws when the keyboard has none.
  void type(std::uint32_t symbol);

 private:
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  };

  bool takeDamage();
  [[nodiscard]] std::uint8_t keyCode(std::uint32_t symbol) const;
  void fake(std::uint8_t type, std::uint8_t detail, int x, int y);

  Area area_;
  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  xcb_window_t root_ = 0;
  xcb_damage_damage_t damage_ = 0;
  std::uint8_t damageEvent_ = 0;
};

}  // namespace quenlio::bench
