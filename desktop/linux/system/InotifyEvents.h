// The kernel's records of changes in folders, taken out of the bytes that it hands over. Any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quenlio {

struct InotifyEvent {
  int watch = -1;          // -1 when records were lost
  std::uint32_t mask = 0;  // IN_...
  std::string name;        // of the entry; empty when the event is about the watched folder itself
};

// A record that is cut off at the end is left out.
[[nodiscard]] std::vector<InotifyEvent> parseInotifyEvents(std::string_view bytes);

}  // namespace quenlio
