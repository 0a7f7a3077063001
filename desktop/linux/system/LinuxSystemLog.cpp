#include "desktop/linux/system/LinuxSystemLog.h"

#include <string>
#include <unistd.h>

namespace quenlio {

void LinuxSystemLog::NSLog(std::string_view message) {
  std::string line = "quenlio: ";
  for (const char c : message) {
    line += c == '\n' ? ' ' : c;  // a file name may hold new lines
  }
  line += '\n';
  // Nothing is left to tell anybody when even this fails.
  [[maybe_unused]] const auto written = write(STDERR_FILENO, line.data(), line.size());
}

}  // namespace quenlio
