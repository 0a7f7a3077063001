#include "core/island/StripLayout.h"

#include <algorithm>

namespace quenlio {

double StripLayout::top() const {
  const double spare = metrics.trayHeight - metrics.thumbSize;
  return spare >= 2 * metrics.trayVerticalInset ? metrics.trayVerticalInset : std::max(0.0, spare / 2);
}

double StripLayout::furthest() const {
  return std::max(0.0, leftOf(count) - metrics.thumbSpacing - width);
}

double StripLayout::within(double offset) const {
  return std::clamp(offset, 0.0, furthest());
}

double StripLayout::offsetShowing(std::size_t index, double offset) const {
  const double margin = fadeReach() + metrics.thumbSpacing;
  const double atLeft = leftOf(index) - margin;
  const double atRight = leftOf(index) + metrics.thumbSize + margin - width;
  return within(std::max(std::min(offset, atLeft), atRight));
}

}  // namespace quenlio
