// What the application is called and which version it is.
#pragma once

#include <string>

namespace quenlio {

class MainBundle;
class ProcessInfo;

struct AppDisplayName {
  // QUENLIO_APP_DISPLAY_NAME, else the bundle's name, else "Quenlio"; blanks count as nothing.
  [[nodiscard]] static std::string current(const ProcessInfo& process, const MainBundle& bundle);
};

struct AppVersion {
  // The bundle's version, else "0.1.0".
  [[nodiscard]] static std::string current(const MainBundle& bundle);
};

}  // namespace quenlio
