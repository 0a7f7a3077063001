#include "desktop/views/island/MetaRow.h"

#include <QtGui/QPainter>
#include <QtWidgets/QLabel>
#include <algorithm>
#include <utility>

#include "core/island/IslandTexts.h"
#include "core/island/IslandTypeSizes.h"
#include "core/island/MetaRowText.h"

#include "desktop/views/common/LocalWording.h"
#include "desktop/views/common/QtColor.h"
#include "desktop/views/common/Type.h"

namespace quenlio {
namespace {

constexpr int kInset = 4;  // points, of the text
constexpr int kGap = 4;    // between the text and the pencil

}  // namespace

// The text as it fits, cut in the middle: a capture's name differs at its end.
class MetaRow::Name final : public QLabel {
 public:
  explicit Name(MetaRow* row) : QLabel(row), row_(*row) { setTextFormat(Qt::PlainText); }
  void setColour(const QColor& colour) {
    colour_ = colour;
    update();
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setPen(colour_);
    painter.drawText(rect(), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideMiddle, width()));
  }
  void mouseDoubleClickEvent(QMouseEvent* /*event*/) override { row_.beginRename(); }

 private:
  MetaRow& row_;
  QColor colour_;
};

MetaRow::MetaRow(QWidget* parent, AppTooltipHostModifier& tooltips, const Clock& clock,
                 RenameSession::OnRename onRename)
    : QWidget(parent),
      session_(std::move(onRename)),
      metrics_(IslandLayoutMetrics::forSize(IslandSize::extraSmall)),
      name_(new Name(this)),
      pencil_(this, IslandTexts::kRename.symbol, IslandTexts::kRename.name, tooltips.scheduler(), clock),
      editor_(this, tooltips, clock,
              {.onEdit = weak_.bind([](MetaRow& self, std::string draftName) {
                 self.session_.edit(std::move(draftName));
                 self.editor_.showRefusal({});
               }),
               .onCommit = weak_.bind([](MetaRow& self) { self.commit(); }),
               .onCancel = weak_.bind([](MetaRow& self) { self.endRename(); })}),
      nameHelp_(tooltips, *name_, QString()),
      pencilHelp_(tooltips, pencil_, localWording(IslandTexts::kRename.help)) {
  pencil_.setAccessibleDescription(pencilHelp_.text());
  pencil_.setRevealed(false);
  pencil_.setOnPresenceChanged(weak_.bind([](MetaRow& self) { self.layOut(); }));
  QObject::connect(&pencil_, &QAbstractButton::clicked, this,
                   weak_.bind([](MetaRow& self, bool) { self.beginRename(); }));
}

MetaRow::~MetaRow() {
  weak_.letGo();
}

void MetaRow::apply(const IslandThemeTokens& tokens, IslandSize size) {
  metrics_ = IslandLayoutMetrics::forSize(size);
  setFont(typeOfSize(IslandTypeSizes::forSize(size).nameRow, QFont::Medium));
  name_->setFont(font());
  name_->setColour(toQColor(tokens.bodyText()));
  pencil_.apply(tokens);
  editor_.apply(tokens, metrics_);
  layOut();
}

void MetaRow::show(const Contents& contents) {
  selectedItem_ = contents.selectedItem != nullptr ? std::optional(*contents.selectedItem) : std::nullopt;
  selectedCount_ = contents.selectedCount;
  const auto fileName = selectedItem_ ? std::optional(selectedItem_->fileURL.lastPathComponent()) : std::nullopt;
  const QString title = QString::fromStdString(MetaRowText::titleText(selectedCount_, fileName));
  if (title != name_->text()) {
    name_->setText(title);
  }
  const QString help = QString::fromStdString(MetaRowText::filenameTooltip(selectedCount_, fileName));
  if (help != nameHelp_.text()) {
    nameHelp_.setText(help);
    name_->setAccessibleDescription(help);
  }
  if (session_.selectionChanged(
          {.item = contents.selectedItem, .count = contents.selectedCount, .library = contents.items})) {
    endRename();
  }
  pencil_.setVisible(session_.isOffered(selection()));
  layOut();
  const auto lastToken = std::exchange(renameRequestToken_, contents.renameRequestToken);
  if (lastToken && lastToken != renameRequestToken_) {
    beginRename();
  }
}

RenameSession::Selection MetaRow::selection() const {
  return {.item = selectedItem_ ? &*selectedItem_ : nullptr, .count = selectedCount_};
}

void MetaRow::beginRename() {
  switch (session_.begin(selection())) {
    case RenameSession::Beginning::refused:
      return;
    case RenameSession::Beginning::goesOn:
      editor_.takeKeyboard();
      return;
    case RenameSession::Beginning::begun:
      name_->hide();
      pencil_.hide();
      editor_.open(session_.draftName(), session_.extension());
  }
}

void MetaRow::commit() {
  if (session_.commit()) {
    endRename();
  } else {
    editor_.showRefusal(session_.refusal());
    editor_.takeKeyboard();
  }
}

void MetaRow::endRename() {
  session_.cancel();
  editor_.close();
  name_->show();
  pencil_.setVisible(session_.isOffered(selection()));
  layOut();
}

void MetaRow::resizeEvent(QResizeEvent* /*event*/) {
  layOut();
}

void MetaRow::layOut() {
  const int side = std::min(height(), static_cast<int>(metrics_.toolbarControlSize) - 2) - 2;
  pencil_.setGeometry(width() - side, (height() - side) / 2, side, side);
  // The name has the pencil's room for as long as nobody sees that.
  const int end = pencil_.isSeen() ? pencil_.x() - kGap : width() - kInset;
  name_->setGeometry(kInset, 0, end - kInset, height());
  editor_.setGeometry(rect());
}

void MetaRow::enterEvent(QEnterEvent* /*event*/) {
  pencil_.setRevealed(true);
}

void MetaRow::leaveEvent(QEvent* /*event*/) {
  pencil_.setRevealed(false);
}

// What goes away under the pointer may not be told that the pointer left.
void MetaRow::hideEvent(QHideEvent* event) {
  pencil_.setRevealed(false);
  // A name that is being typed waits for the island to come back.
  if (!event->spontaneous()) {
    session_.putAside();
  }
}

}  // namespace quenlio
