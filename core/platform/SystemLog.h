// The system's log. A failed file or system call is reported here and nowhere else.
#pragma once

#include <string_view>

namespace quenlio {

class SystemLog {
 public:
  virtual ~SystemLog() = default;
  // One line. Any thread.
  virtual void NSLog(std::string_view message) = 0;
};

}  // namespace quenlio
