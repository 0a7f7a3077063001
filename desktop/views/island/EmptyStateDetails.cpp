#include "desktop/views/island/EmptyStateDetails.h"

#include "core/island/IslandTexts.h"
#include "core/island/IslandTypeSizes.h"

#include "desktop/views/common/BalancedText.h"
#include "desktop/views/common/QtColor.h"
#include "desktop/views/common/Type.h"

namespace quenlio {

EmptyStateDetails::EmptyStateDetails(QWidget* parent) : QLabel(QString::fromUtf8(IslandTexts::kEmptyLibrary), parent) {
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
}

void EmptyStateDetails::apply(const IslandThemeTokens& tokens, IslandSize size) {
  if (const QFont type = typeOfSize(IslandTypeSizes::forSize(size).emptyLibrary); type != font()) {
    setFont(type);
    balance();
  }
  QPalette colours = palette();
  colours.setColor(QPalette::WindowText, toQColor(tokens.bodyText()));
  setPalette(colours);
}

void EmptyStateDetails::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  balance();
}

void EmptyStateDetails::balance() {
  const int aside = (width() - balancedWidth(fontMetrics(), text(), width())) / 2;
  setContentsMargins(aside, 0, aside, 0);
}

}  // namespace quenlio
