// A program that is started and then goes its own way: it is nobody's child, outlives this one and is never waited for.
// No shell reads its command. Any thread.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/base/FileURL.h"

namespace quenlio {

struct DetachedProgram {
  FileURL program;
  std::vector<std::string> arguments;                                 // without the program's own name; any bytes
  std::string workingDirectory = {};                                  // empty: this program's
  std::vector<std::pair<std::string, std::string>> environment = {};  // beside, or in place of, this program's
};

// False when it cannot be started.
[[nodiscard]] bool startDetached(const DetachedProgram& start);

}  // namespace quenlio
