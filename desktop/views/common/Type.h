// The type of the program's own views: the desktop's family at sizes in points of the layout. Main thread.
#pragma once

#include <QtGui/QFont>

namespace quenlio {

[[nodiscard]] inline QFont typeOfSize(int points, QFont::Weight weight = QFont::Normal) {
  QFont font;  // the application's
  font.setPixelSize(points);
  font.setWeight(weight);
  return font;
}

}  // namespace quenlio
