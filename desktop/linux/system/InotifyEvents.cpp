#include "desktop/linux/system/InotifyEvents.h"

#include <cstring>
#include <sys/inotify.h>

namespace quenlio {

std::vector<InotifyEvent> parseInotifyEvents(std::string_view bytes) {
  std::vector<InotifyEvent> events;
  while (bytes.size() >= sizeof(inotify_event)) {
    inotify_event head{};
    std::memcpy(&head, bytes.data(), sizeof head);
    bytes.remove_prefix(sizeof head);
    if (head.len > bytes.size()) {
      break;
    }
    const std::string_view name = bytes.substr(0, head.len);  // filled up with zero bytes
    events.push_back({.watch = head.wd, .mask = head.mask, .name = std::string(name.substr(0, name.find('\0')))});
    bytes.remove_prefix(head.len);
  }
  return events;
}

}  // namespace quenlio
