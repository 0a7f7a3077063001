#include "desktop/views/island/FolderAccessRecoveryView.h"

#include <QtGui/QPainter>
#include <string_view>
#include <utility>

#include "core/island/IslandLayoutMetrics.h"
#include "core/island/IslandTexts.h"

#include "desktop/views/common/BalancedText.h"
#include "desktop/views/common/Icon.h"
#include "desktop/views/common/PaintedButton.h"
#include "desktop/views/common/Pixels.h"
#include "desktop/views/common/QtColor.h"
#include "desktop/views/common/Type.h"
#include "desktop/views/island/PreviewWell.h"

namespace quenlio {
namespace {

QString text(std::string_view words) {
  return QString::fromUtf8(words);
}

void colour(QLabel& label, const QColor& text) {
  QPalette palette = label.palette();
  palette.setColor(QPalette::WindowText, text);
  label.setPalette(palette);
}

}  // namespace

class FolderAccessRecoveryView::Button final : public PaintedButton {
 public:
  explicit Button(QWidget* parent) : PaintedButton(parent) {
    setText(quenlio::text(IslandTexts::kAllowAccess.name));
    setAccessibleDescription(quenlio::text(IslandTexts::kAllowAccess.help));
  }
  void apply(const IslandTheme& theme, const FolderAccessRecoveryDesign& design) {
    theme_ = theme;
    height_ = design.button;
    setFont(typeOfSize(design.text, QFont::DemiBold));
    update();
  }
  [[nodiscard]] QSize sizeHint() const override {
    const int words = fontMetrics().horizontalAdvance(text());
    return {height_ / 2 + words + kSymbolGap + symbolSize() + height_ / 2, height_};
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    const double opacity = FolderAccessRecoveryDesign::pillOpacity(isHovered(), isDown());
    const QRectF pill = snappedToPixels(painter, rect());
    fillRounded(painter, pill, pill.height() / 2, toQColor(theme_.tokens.toolbarInteractionTint.opacity(opacity)));
    Color ink = theme_.material.hudWindow;
    ink.alpha = 1;
    if (showsFocus()) {
      strokeInside(painter, pill.adjusted(2, 2, -2, -2), pill.height() / 2 - 2, toQColor(ink));
    }
    const int words = fontMetrics().horizontalAdvance(text());
    painter.setPen(toQColor(ink));
    painter.drawText(QRectF(height_ / 2.0, 0, words + 1, height()), Qt::AlignVCenter | Qt::AlignLeft, text());
    paintIcon(painter, IslandTexts::kAllowAccess.symbol,
              {height_ / 2.0 + words + kSymbolGap + symbolSize() / 2.0, height() / 2.0},
              {.size = static_cast<double>(symbolSize()), .colour = toQColor(ink)});
  }

 private:
  static constexpr int kSymbolGap = 5;
  [[nodiscard]] int symbolSize() const { return height_ / 2 + 1; }
  IslandTheme theme_{};
  int height_ = 24;
};

FolderAccessRecoveryView::FolderAccessRecoveryView(QWidget* parent, AppTooltipHostModifier& tooltips,
                                                   std::function<void()> action)
    : QWidget(parent),
      action_(std::move(action)),
      title_(text(IslandTexts::kFolderAccessTitle), this),
      text_(text(IslandTexts::kFolderAccessText), this),
      button_(new Button(this)) {
  setAccessibleName(title_.text());
  for (QLabel* label : {&title_, &text_}) {
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
  }
  text_.setWordWrap(true);
  help_.emplace(tooltips, *button_, text(IslandTexts::kAllowAccess.help));
  QObject::connect(button_, &QAbstractButton::clicked, this, weak_.bind([](FolderAccessRecoveryView& self, bool) {
    if (self.action_) {
      self.action_();
    }
  }));
}

void FolderAccessRecoveryView::apply(const IslandTheme& theme, IslandSize size) {
  theme_ = theme;
  design_ = FolderAccessRecoveryDesign::forSize(size);
  cornerRadius_ = IslandLayoutMetrics::forSize(size).previewCornerRadius;
  title_.setFont(typeOfSize(design_.title, QFont::DemiBold));
  text_.setFont(typeOfSize(design_.text));
  colour(title_, toQColor(theme.tokens.textPrimary));
  colour(text_, toQColor(theme.tokens.bodyText()));
  button_->apply(theme, design_);
  layOut();
  update();
}

void FolderAccessRecoveryView::setFolderPath(const std::string& path) {
  setAccessibleDescription(QString::fromStdString(path));
}

void FolderAccessRecoveryView::resizeEvent(QResizeEvent* /*event*/) {
  layOut();
}

// From the top: symbol and title, text, button; together in the middle.
void FolderAccessRecoveryView::layOut() {
  const FolderAccessRecoveryDesign& lengths = design_;
  const int wide = balancedWidth(text_.fontMetrics(), text_.text(), width() - 2 * lengths.inset);
  const int titleHeight = title_.fontMetrics().height();
  const int textHeight = text_.heightForWidth(wide);
  const QSize button = button_->sizeHint();
  const int toButton = 2 * lengths.gap + 2;
  const int symbolHeight = lengths.isRoomy ? lengths.symbol + lengths.gap : 0;
  int top = (height() - symbolHeight - titleHeight - lengths.gap - textHeight - toButton - button.height()) / 2;
  const int titleWidth = title_.fontMetrics().horizontalAdvance(title_.text()) + 2;
  if (lengths.isRoomy) {
    symbolCentre_ = {width() / 2.0, top + lengths.symbol / 2.0};
    top += symbolHeight;
    title_.setGeometry((width() - titleWidth) / 2, top, titleWidth, titleHeight);
  } else {
    const int beside = lengths.symbol + lengths.gap;
    const int left = (width() - beside - titleWidth) / 2;
    symbolCentre_ = {left + lengths.symbol / 2.0, top + titleHeight / 2.0};
    title_.setGeometry(left + beside, top, titleWidth, titleHeight);
  }
  top += titleHeight + lengths.gap;
  text_.setGeometry((width() - wide) / 2, top, wide, textHeight);
  top += textHeight + toButton;
  button_->setGeometry((width() - button.width()) / 2, top, button.width(), button.height());
}

void FolderAccessRecoveryView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QRectF well = snappedToPixels(painter, rect());
  paintPreviewWell(painter, well, cornerRadius_, theme_, WellContent::words);
  strokePreviewWell(painter, well, cornerRadius_, theme_);
  paintIcon(painter, IslandTexts::kFolderAccessSymbol, symbolCentre_,
            {.size = static_cast<double>(design_.symbol), .colour = toQColor(theme_.tokens.iconPrimary)});
}

}  // namespace quenlio
