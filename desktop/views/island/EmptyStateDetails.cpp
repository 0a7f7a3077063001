#include "desktop/views/island/EmptyStateDetails.h"

#include "core/island/IslandTexts.h"
#include "core/island/IslandTypeSizes.h"

#include "desktop/views/common/QtColor.h"
#include "desktop/views/common/Type.h"

namespace quenlio {
namespace {

constexpr int kStep = 2;  // points

}  // namespace

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
  colours.setColor(QPalette::WindowText, toQColor(tokens.textSecondary));
  setPalette(colours);
}

void EmptyStateDetails::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  balance();
}

void EmptyStateDetails::balance() {
  const auto heightAt = [this](int room) {
    return fontMetrics().boundingRect(QRect(0, 0, room, 0), Qt::TextWordWrap | Qt::AlignHCenter, text()).height();
  };
  const int lowest = heightAt(width());
  int narrowest = width();
  for (int room = width(); room > 0 && heightAt(room) == lowest; room -= kStep) {
    narrowest = room;
  }
  const int aside = (width() - narrowest) / 2;
  setContentsMargins(aside, 0, aside, 0);
}

}  // namespace quenlio
