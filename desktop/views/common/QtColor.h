// From the program's colours to the toolkit's. Any thread.
#pragma once

#include <QtGui/QColor>

#include "core/geometry/Color.h"

namespace quenlio {

[[nodiscard]] inline QColor toQColor(const Color& color) {
  return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                          static_cast<float>(color.blue), static_cast<float>(color.alpha));
}

}  // namespace quenlio
