// The island's colours, light and dark. A plain value; main thread.
#pragma once

#include <QtGui/QColor>

#include "core/island/IslandAppearanceStyle.h"

namespace quenlio {

struct IslandPalette {
  QColor tone;     // the body's colour, opaque
  QColor bodyTop;  // the body, from top to bottom; nearly opaque, so that text is readable over anything
  QColor bodyBottom;
  QColor edgeTop;  // the body's edge, from top to bottom
  QColor edgeBottom;
  QColor textPrimary;
  QColor textSecondary;
  QColor wellFill;  // behind the preview
  QColor wellStroke;
  QColor plateFill;  // behind a thumbnail
  QColor thumbnailStroke;
  QColor selectedStroke;
  QColor controlFill;  // under a control that the pointer is on
  QColor glyph;
  QColor grip;
  QColor accent;  // a button that asks to be pressed, and the keyboard's focus
  QColor accentText;

  [[nodiscard]] static IslandPalette forAppearance(IslandAppearanceStyle style, bool increaseContrast);
  // Each colour the share of the way from one to the other, 0 to 1.
  [[nodiscard]] static IslandPalette between(const IslandPalette& from, const IslandPalette& to, double share);
  bool operator==(const IslandPalette&) const = default;
};

}  // namespace quenlio
