#include "desktop/views/island/EmptyStateDetails.h"

#include "desktop/views/common/Type.h"

namespace quenlio {

EmptyStateDetails::EmptyStateDetails(QWidget* parent)
    : QLabel(QStringLiteral("Take a screenshot to see it here, then rename, edit, copy, save, or share it."), parent) {
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
}

void EmptyStateDetails::apply(const IslandPalette& palette, const IslandLayoutMetrics& metrics) {
  // From 11 points in the smallest island to 14 in the largest.
  setFont(typeOfSize(metrics.metadataHeight < 28 ? 11 : static_cast<int>(metrics.metadataHeight / 2) - 3));
  QPalette colours = this->palette();
  colours.setColor(QPalette::WindowText, palette.textSecondary);
  setPalette(colours);
}

}  // namespace quenlio
