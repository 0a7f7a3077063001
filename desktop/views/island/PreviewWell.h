// The well in the panel that the picture lies in, and what stands in its place. Main thread.
#pragma once

#include <QtCore/QRectF>

#include "desktop/views/island/IslandTheme.h"

QT_BEGIN_NAMESPACE
class QPainter;
QT_END_NAMESPACE

namespace quenlio {

// What lies in it. A picture's colours stand out before the wash; words are easier to read without.
enum class WellContent { picture, words };

// Material, wash and fill, and the light on the inner edge. The line around it comes last, over what is in the well.
void paintPreviewWell(QPainter& painter, const QRectF& well, double radius, const IslandTheme& theme,
                      WellContent content);
void strokePreviewWell(QPainter& painter, const QRectF& well, double radius, const IslandTheme& theme);

}  // namespace quenlio
