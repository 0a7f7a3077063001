// Text that is wrapped into lines of about the same length. Main thread.
#pragma once

#include <QtCore/QString>
#include <QtGui/QFontMetrics>

namespace quenlio {

// The least width, in points and even steps down from the widest, in which the words need no more lines than in that.
[[nodiscard]] int balancedWidth(const QFontMetrics& metrics, const QString& words, int widest);

}  // namespace quenlio
