// The preview window's colours, light and dark: the island's tones, quieter around the picture. A plain value; main
// thread.
#pragma once

#include <QtGui/QColor>

#include "desktop/views/common/Checker.h"

namespace quenlio {

struct PreviewPalette {
  QColor tone;     // the body's colour, opaque
  QColor bodyTop;  // the body, from top to bottom; nearly opaque, so that text is readable over anything
  QColor bodyBottom;
  QColor edgeTop;  // the body's edge, from top to bottom
  QColor edgeBottom;
  QColor name;
  QColor detail;       // text that is less important
  QColor well;         // behind the picture
  Checker checker;     // where that is clear
  QColor outline;      // around the picture
  QColor controlFill;  // under a control that the pointer is on
  QColor glyph;
  QColor focus;

  [[nodiscard]] static PreviewPalette forAppearance(bool isDark, bool increasesContrast);
};

}  // namespace quenlio
