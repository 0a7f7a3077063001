#include "desktop/views/island/RenameEditor.h"

#include <QtGui/QAccessible>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QGraphicsOpacityEffect>
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
constexpr double kFocusedStroke = 0.6;
constexpr int kFade = 14;       // of the text at an end where more of it lies beyond
constexpr int kCursorRoom = 5;  // that the toolkit counts to the cursor on its left

bool isOnDark(const IslandThemeTokens& tokens) {
  return tokens.toolbarInteractionTint.red > 0.5;
}

QColor warning(const IslandThemeTokens& tokens) {
  return isOnDark(tokens) ? QColor(0xff, 0x6e, 0x64) : QColor(0xc6, 0x28, 0x28);
}

}  // namespace

// Text that is cut off fades out there: otherwise the extension would seem to follow what is seen last.
class RenameEditor::Field final : public QLineEdit {
 public:
  explicit Field(RenameEditor* editor) : QLineEdit(editor), editor_(*editor), fade_(new QGraphicsOpacityEffect) {
    fade_->setOpacity(1);
    fade_->setEnabled(false);
    setGraphicsEffect(fade_);
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
  // How far the text is scrolled is settled by painting it, and told by where the cursor is then.
  void paintEvent(QPaintEvent* event) override {
    QLineEdit::paintEvent(event);
    const int cursor = cursorRect().left() + kCursorRoom;
    const int left = cursor - fontMetrics().horizontalAdvance(text().left(cursorPosition()));
    const int right = left + fontMetrics().horizontalAdvance(text());
    // The cursor itself does not fade.
    fadeAt(
        {.width = width(), .left = left < 0 && cursor > kFade, .right = right > width() && cursor < width() - kFade});
  }

 private:
  struct Ends {
    int width = 0;  // from one to the other
    bool left = false;
    bool right = false;
    bool operator==(const Ends&) const = default;
  };
  void fadeAt(const Ends& ends) {
    if (ends == faded_) {
      return;
    }
    faded_ = ends;
    QLinearGradient mask(0, 0, ends.width, 0);
    const double share = static_cast<double>(kFade) / ends.width;
    mask.setColorAt(0, ends.left ? Qt::transparent : Qt::black);
    mask.setColorAt(share, Qt::black);
    mask.setColorAt(1 - share, Qt::black);
    mask.setColorAt(1, ends.right ? Qt::transparent : Qt::black);
    fade_->setOpacityMask(mask);
    fade_->setEnabled(ends.left || ends.right);
  }

  RenameEditor& editor_;
  QGraphicsOpacityEffect* fade_;  // this widget's
  Ends faded_;
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
  // Turned round: what is selected is to be seen at once, and still has to be read.
  colours.setColor(QPalette::Highlight, toQColor(tokens.iconPrimary));
  colours.setColor(QPalette::HighlightedText, isOnDark(tokens) ? Qt::black : Qt::white);
  colours.setColor(QPalette::PlaceholderText, toQColor(tokens.textSecondary));
  field_->setPalette(colours);
  colours.setColor(QPalette::WindowText, toQColor(tokens.bodyText()));
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
  // From its end: the cursor then stands at the beginning, and what is long is seen from there on.
  const auto length = static_cast<int>(field_->text().size());
  field_->setSelection(length, -length);
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
  refusal_ = reason;
  update();
  const QString words = reason ? QString::fromStdString(*reason) : QString();
  if (words != field_->accessibleDescription()) {
    field_->setAccessibleDescription(words);
  }
  placeRefusal();
  if (!reason) {
    return;
  }
  QAccessibleEvent alert(field_, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void RenameEditor::placeRefusal() {
  if (refusal_) {
    tooltips_.report({.id = refusalID_, .text = *refusal_, .rect = tooltips_.frameOf(*this, box_), .isUrgent = true});
  } else {
    tooltips_.withdraw(refusalID_);
  }
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
  placeRefusal();
}

void RenameEditor::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QRectF box = snappedToPixels(painter, box_);
  fillRounded(painter, box, kRadius, toQColor(tokens_.thumbnailPlateFill));
  const QColor stroke = refusal_             ? warning(tokens_)
                        : field_->hasFocus() ? toQColor(tokens_.iconPrimary.opacity(kFocusedStroke))
                                             : toQColor(tokens_.innerStrokeColor);
  strokeInside(painter, box, kRadius, stroke);
}

}  // namespace quenlio
