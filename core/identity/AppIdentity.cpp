#include "core/identity/AppIdentity.h"

#include <initializer_list>
#include <optional>

#include "core/base/Text.h"
#include "core/platform/ProcessInfo.h"

namespace quenlio {

std::string AppDisplayName::current(const ProcessInfo& process, const MainBundle& bundle) {
  for (const auto& candidate : {process.environment("QUENLIO_APP_DISPLAY_NAME"),
                                bundle.infoString("CFBundleDisplayName"), bundle.infoString("CFBundleName")}) {
    const std::string_view name = trimmed(candidate ? std::string_view(*candidate) : std::string_view());
    if (!name.empty()) {
      return std::string(name);
    }
  }
  return "Quenlio";
}

std::string AppVersion::current(const MainBundle& bundle) {
  return bundle.infoString("CFBundleShortVersionString").value_or("0.1.0");
}

}  // namespace quenlio
