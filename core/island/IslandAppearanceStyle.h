// Whether the island is drawn light or dark. A plain value.
#pragma once

#include <string_view>

namespace quenlio {

enum class IslandAppearanceStyle { light, dark };

[[nodiscard]] constexpr std::string_view rawValue(IslandAppearanceStyle style) {
  return style == IslandAppearanceStyle::dark ? "dark" : "light";
}

}  // namespace quenlio
