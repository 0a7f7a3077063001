// When the user last asked this program for something: by the hot key, by a second start, or by what makes the program
// activate itself. For a second from then a panel may take the keyboard; otherwise it would steal it from whatever the
// user is typing into. Owned by main, which lends it to those who note and those who ask. Main thread.
#pragma once

#include <chrono>
#include <optional>

namespace quenlio {

class UserIntent {
 public:
  using Time = std::chrono::steady_clock::time_point;
  static constexpr std::chrono::seconds kLasts{1};

  void note(Time now = std::chrono::steady_clock::now()) { noted_ = now; }
  [[nodiscard]] bool recent(Time now = std::chrono::steady_clock::now()) const {
    return noted_ && now - *noted_ < kLasts;
  }

 private:
  std::optional<Time> noted_;
};

}  // namespace quenlio
