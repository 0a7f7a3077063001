// The program's own icons, one drawing a symbol, in the colour and at the size that they are asked for. Main thread.
//
// A symbol is known by its name: "doc.on.doc", "highlighter", "square.and.arrow.up", "folder", "trash", "xmark",
// "photo", "lock.shield", "arrow.up.right.square", "checkmark", "pencil".
#pragma once

#include <QtCore/QPointF>
#include <QtGui/QColor>
#include <string_view>

QT_BEGIN_NAMESPACE
class QPainter;
QT_END_NAMESPACE

namespace quenlio {

struct IconLook {
  double size;  // points, of the square that the symbol is drawn in
  QColor colour;
  // Larger or smaller than its size without another place for its middle, for as long as an animation goes on.
  double scale = 1;
};

// Drawn anew for the pixels of the screen that it is painted on, with its main lines on whole pixels.
void paintIcon(QPainter& painter, std::string_view symbol, QPointF centre, const IconLook& look);

}  // namespace quenlio
