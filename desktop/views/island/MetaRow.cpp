#include "desktop/views/island/MetaRow.h"

#include <QtGui/QPainter>

#include "core/island/MetaRowText.h"

#include "desktop/views/common/Type.h"

namespace quenlio {
namespace {

constexpr int kInset = 4;  // points, on both sides

}  // namespace

MetaRow::MetaRow(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
}

void MetaRow::apply(const IslandPalette& palette, const IslandLayoutMetrics& metrics) {
  palette_ = palette;
  setFont(typeOfSize(metrics.metadataHeight < 28 ? 11 : 12, QFont::Medium));
  update();
}

void MetaRow::show(std::size_t selectedCount, const std::optional<std::string>& fileName) {
  const QString title = QString::fromStdString(MetaRowText::titleText(selectedCount, fileName));
  if (title != text()) {
    setText(title);
  }
  const QString whole = QString::fromStdString(MetaRowText::filenameTooltip(selectedCount, fileName));
  if (whole != accessibleDescription()) {
    setAccessibleDescription(whole);
  }
}

void MetaRow::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(palette_.textPrimary);
  const QRect line = rect().adjusted(kInset, 0, -kInset, 0);
  painter.drawText(line, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                   fontMetrics().elidedText(text(), Qt::ElideMiddle, line.width()));
}

}  // namespace quenlio
