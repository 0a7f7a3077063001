// What this process was given: environment, arguments, bundle. Any thread; nothing of it changes during a run.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/FileURL.h"

namespace quenlio {

class ProcessInfo {
 public:
  virtual ~ProcessInfo() = default;
  [[nodiscard]] virtual std::optional<std::string> environment(std::string_view name) const = 0;
  // The program's name first.
  [[nodiscard]] virtual const std::vector<std::string>& arguments() const = 0;
};

class MainBundle {
 public:
  virtual ~MainBundle() = default;
  // The application bundle, a folder with the extension "app"; without one, the folder of the program.
  [[nodiscard]] virtual FileURL bundleURL() const = 0;
  // A string of the Info dictionary.
  [[nodiscard]] virtual std::optional<std::string> infoString(std::string_view key) const = 0;
};

}  // namespace quenlio
