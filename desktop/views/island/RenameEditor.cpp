#include "desktop/views/island/RenameEditor.h"

#include <QtGui/QAccessible>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <algorithm>
#include <utility>

#include "core/island/IslandTexts.h"

#include "desktop/views/common/LocalWording.h"
#include "desktop/views/common/Pixels.h"
#include "desktop/views/common/QtColor.h"
#include "desktop/views/common/Type.h"

namespace quenlio {
namespace {

constexpr int kInset = 7;   // of the text in its box, points like all lengths here
constexpr int kGap = 4;     // between the box and the buttons
constexpr int kMargin = 1;  // above and below the box
constexpr double kRadius = 8;
constexpr double kWidestExtension = 0.4;  // of the box
// What is selected still has to be read.
constexpr double kSelectionOnDark = 0.11;
constexpr double kSelectionOnLight = 0.20;
constexpr double kFocusedStroke = 0.6;

bool isOnDark(const IslandThemeTokens& tokens) {
  return tokens.toolbarInteractionTint.red > 0.5;
}

QColor warning(const IslandThemeTokens& tokens) {
  return isOnDark(tokens) ? QColor(0xff, 0x6e, 0x64) : QColor(0xc6, 0x28, 0x28);
}

}  // namespace

class RenameEditor::Field final : public QLineEdit {
 public:
  explicit Field(RenameEditor* editor) : QLineEdit(editor), editor_(*editor) {
    setFrame(false);
    setTextMargins(0, 0, 0, 0);
    setAccessibleName(QString::fromUtf8(IslandTexts::kFilename));
    setPlaceholderText(accessibleName());
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Escape) {
      editor_.callbacks_.onCancel();
    } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
      // The key that has opened the field may still be held down.
      if (!event->isAutoRepeat()) {
        editor_.callbacks_.onCommit();
      }
    } else {
      QLineEdit::keyPressEvent(event);
    }
  }
  void focusInEvent(QFocusEvent* event) override {
    QLineEdit::focusInEvent(event);
    editor_.update();
  }
  void focusOutEvent(QFocusEvent* event) override {
    QLineEdit::focusOutEvent(event);
    editor_.update();
  }

 private:
  RenameEditor& editor_;
};

// No key that it has no use for goes on to the island, where some delete.
class RenameEditor::Button final : public RowButton {
 public:
  Button(RenameEditor* editor, const ControlText& text, Scheduler& scheduler, const Clock& clock)
      : RowButton(editor, text.symbol, text.name, scheduler, clock), editor_(*editor) {}

 protected:
  [[nodiscard]] bool usesKey(const QKeyEvent& /*key*/) const override { return true; }
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Escape) {
      editor_.callbacks_.onCancel();
    } else {
      RowButton::keyPressEvent(event);
    }
    event->accept();
  }

 private:
  RenameEditor& editor_;
};

RenameEditor::RenameEditor(QWidget* row, AppTooltipHostModifier& tooltips, const Clock& clock, Callbacks callbacks)
    : QWidget(row),
      callbacks_(std::move(callbacks)),
      tokens_(IslandThemeTokens::forAppearance(IslandAppearanceStyle::light, false)),
      metrics_(IslandLayoutMetrics::forSize(IslandSize::extraSmall)),
      field_(new Field(this)),
      extension_(new QLabel(this)),
      confirm_(new Button(this, IslandTexts::kSaveFilename, tooltips.scheduler(), clock)),
      cancel_(new Button(this, IslandTexts::kCancelRename, tooltips.scheduler(), clock)),
      confirmHelp_(tooltips, *confirm_, localWording(IslandTexts::kSaveFilename.help)),
      cancelHelp_(tooltips, *cancel_, localWording(IslandTexts::kCancelRename.help)),
      tooltips_(tooltips) {
  extension_->setTextFormat(Qt::PlainText);
  connectControls();
  hide();
}

RenameEditor::~RenameEditor() {
  weak_.letGo();
}

void RenameEditor::connectControls() {
  confirm_->setAccessibleDescription(confirmHelp_.text());
  cancel_->setAccessibleDescription(cancelHelp_.text());
  QObject::connect(field_, &QLineEdit::textEdited, this, weak_.bind([](RenameEditor& self, const QString& text) {
    self.callbacks_.onEdit(text.toStdString());
  }));
  QObject::connect(confirm_, &QAbstractButton::clicked, this,
                   weak_.bind([](RenameEditor& self, bool) { self.callbacks_.onCommit(); }));
  QObject::connect(cancel_, &QAbstractButton::clicked, this,
                   weak_.bind([](RenameEditor& self, bool) { self.callbacks_.onCancel(); }));
}

void RenameEditor::apply(const IslandThemeTokens& tokens, const IslandLayoutMetrics& metrics) {
  tokens_ = tokens;
  metrics_ = metrics;
  QPalette colours = palette();
  colours.setColor(QPalette::Base, Qt::transparent);
  colours.setColor(QPalette::Text, toQColor(tokens.textPrimary));
  colours.setColor(
      QPalette::Highlight,
      toQColor(tokens.toolbarInteractionTint.opacity(isOnDark(tokens) ? kSelectionOnDark : kSelectionOnLight)));
  colours.setColor(QPalette::HighlightedText, toQColor(tokens.textPrimary));
  colours.setColor(QPalette::PlaceholderText, toQColor(tokens.textSecondary));
  field_->setPalette(colours);
  colours.setColor(QPalette::WindowText, toQColor(tokens.textSecondary));
  extension_->setPalette(colours);
  field_->setFont(font());
  extension_->setFont(font());
  confirm_->apply(tokens);
  cancel_->apply(tokens);
  layOut();
  update();
}

void RenameEditor::open(const std::string& draftName, const std::string& extension) {
  wholeExtension_ = extension.empty() ? QString() : QStringLiteral(".") + QString::fromStdString(extension);
  extension_->setAccessibleName(wholeExtension_);  // what is seen of it may be cut
  field_->setText(QString::fromStdString(draftName));
  field_->selectAll();
  showRefusal({});
  layOut();
  show();
  // Whatever gives the keyboard to the island as a whole gives it to the field for as long as that is open: the pointer
  // that comes back, a press beside it. A Backspace that went to the island would trash the screenshot.
  tooltips_.root().setFocusProxy(field_);
  takeKeyboard();
}

void RenameEditor::takeKeyboard() {
  field_->setFocus(Qt::OtherFocusReason);
}

// First the keyboard: from what is hidden it would go to just any control.
void RenameEditor::close() {
  showRefusal({});
  tooltips_.root().setFocusProxy(nullptr);
  if (isAncestorOf(QWidget::window()->focusWidget())) {
    tooltips_.root().setFocus(Qt::OtherFocusReason);
  }
  hide();
}

void RenameEditor::showRefusal(const std::optional<std::string>& reason) {
  isRefused_ = reason.has_value();
  update();
  const QString words = reason ? QString::fromStdString(*reason) : QString();
  if (words != field_->accessibleDescription()) {
    field_->setAccessibleDescription(words);
  }
  if (!reason) {
    tooltips_.withdraw(refusalID_);
    return;
  }
  tooltips_.report({.id = refusalID_, .text = *reason, .rect = tooltips_.frameOf(*this, box_), .isUrgent = true});
  QAccessibleEvent alert(field_, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void RenameEditor::resizeEvent(QResizeEvent* /*event*/) {
  layOut();
}

void RenameEditor::layOut() {
  const int side = std::min(height(), static_cast<int>(metrics_.toolbarControlSize) - 2) - 2 * kMargin;
  const int top = (height() - side) / 2;
  cancel_->setGeometry(width() - side, top, side, side);
  confirm_->setGeometry(cancel_->x() - side, top, side, side);
  box_ = QRect(0, kMargin, confirm_->x() - kGap, height() - 2 * kMargin);
  const QFontMetrics type(extension_->font());
  const int widest = static_cast<int>(box_.width() * kWidestExtension);
  extension_->setText(type.elidedText(wholeExtension_, Qt::ElideMiddle, widest));
  const int words = extension_->text().isEmpty() ? 0 : type.horizontalAdvance(extension_->text()) + 1;
  extension_->setGeometry(box_.right() + 1 - kInset - words, box_.y(), words, box_.height());
  field_->setGeometry(box_.x() + kInset, box_.y(), extension_->x() - box_.x() - kInset - 1, box_.height());
}

void RenameEditor::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QRectF box = snappedToPixels(painter, box_);
  fillRounded(painter, box, kRadius, toQColor(tokens_.thumbnailPlateFill));
  const QColor stroke = isRefused_           ? warning(tokens_)
                        : field_->hasFocus() ? toQColor(tokens_.iconPrimary.opacity(kFocusedStroke))
                                             : toQColor(tokens_.innerStrokeColor);
  strokeInside(painter, box, kRadius, stroke);
}

}  // namespace quenlio
