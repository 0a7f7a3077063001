#include "desktop/views/island/EmptyStateDetails.h"

#include "desktop/views/common/QtColor.h"
#include "desktop/views/common/Type.h"

namespace quenlio {
namespace {

constexpr int kStep = 2;  // points

// From 11 points in the smallest island to 15 in the largest.
int typeSize(const IslandLayoutMetrics& metrics) {
  struct Step {
    double metadataHeight;
    int size;
  };
  constexpr Step steps[] = {{34, 15}, {32, 14}, {30, 13}, {28, 12}};
  for (const Step& step : steps) {
    if (metrics.metadataHeight >= step.metadataHeight) {
      return step.size;
    }
  }
  return 11;
}

}  // namespace

EmptyStateDetails::EmptyStateDetails(QWidget* parent)
    : QLabel(QStringLiteral("Take a screenshot to see it here, then rename, edit, copy, save, or share it."), parent) {
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
}

void EmptyStateDetails::apply(const IslandThemeTokens& tokens, const IslandLayoutMetrics& metrics) {
  if (const QFont type = typeOfSize(typeSize(metrics)); type != font()) {
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
