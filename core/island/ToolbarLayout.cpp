#include "core/island/ToolbarLayout.h"

#include <algorithm>
#include <cmath>

namespace quenlio {

std::array<Rect<ToolbarSpace>, kToolbarControls> toolbarLayout(const IslandLayoutMetrics& metrics, Size row) {
  constexpr auto last = static_cast<std::size_t>(ToolbarControlID::close);
  const double side = metrics.toolbarControlSize;
  const double top = std::floor((row.height - side) / 2);
  std::array<Rect<ToolbarSpace>, kToolbarControls> places;
  double left = metrics.toolbarContentInset;
  for (std::size_t control = 0; control < last; ++control) {
    places.at(control) = {{std::floor(left), top}, {side, side}};
    left += side + metrics.toolbarIconSpacing;
  }
  const double nearest = left - metrics.toolbarIconSpacing + metrics.toolbarZoneSpacing;
  const double atEnd = row.width - metrics.toolbarContentInset - side;
  places.at(last) = {{std::floor(std::max(nearest, atEnd)), top}, {side, side}};
  return places;
}

}  // namespace quenlio
