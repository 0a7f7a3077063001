#include "desktop/views/island/FolderAccessRecoveryView.h"

#include <QtGui/QPainter>
#include <utility>

#include "desktop/views/common/Icon.h"
#include "desktop/views/common/PaintedButton.h"
#include "desktop/views/common/Pixels.h"
#include "desktop/views/common/QtColor.h"
#include "desktop/views/common/Type.h"
#include "desktop/views/island/PreviewWell.h"

namespace quenlio {
namespace {

constexpr const char* kHelp = "Open Privacy settings and re-check folder access";
constexpr double kRoomy = 180;  // a preview this high has the symbol above the title, not beside it

void colour(QLabel& label, const QColor& text) {
  QPalette palette = label.palette();
  palette.setColor(QPalette::WindowText, text);
  label.setPalette(palette);
}

}  // namespace

struct FolderAccessRecoveryView::Design {
  bool isRoomy;
  int inset;
  int symbol;
  int title;  // sizes of type
  int text;
  int button;  // its height
  int gap;     // between title and text
};

// A filled pill, as light as the text is: what asks to be pressed stands out the most.
class FolderAccessRecoveryView::Button final : public PaintedButton {
 public:
  explicit Button(QWidget* parent) : PaintedButton(parent) {
    setText(QStringLiteral("Allow Access"));
    setAccessibleDescription(QString::fromUtf8(kHelp));
  }
  void apply(const IslandTheme& theme, const Design& design) {
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
    const double opacity = isDown() ? 0.72 : isHovered() ? 0.96 : 0.86;
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
    paintIcon(painter, "arrow.up.right.square",
              {height_ / 2.0 + words + kSymbolGap + symbolSize() / 2.0, height() / 2.0},
              {.size = static_cast<double>(symbolSize()), .colour = toQColor(ink)});
  }

 private:
  static constexpr int kSymbolGap = 5;
  [[nodiscard]] int symbolSize() const { return height_ / 2 + 1; }
  IslandTheme theme_{};
  int height_ = 24;
};

FolderAccessRecoveryView::FolderAccessRecoveryView(QWidget* parent, TooltipHost& tooltips, std::function<void()> action)
    : QWidget(parent),
      action_(std::move(action)),
      metrics_(IslandLayoutMetrics::forSize(IslandSize::extraSmall)),
      title_(QStringLiteral("Folder Access Needed"), this),
      text_(QStringLiteral("Allow access to your screenshot folder so the island can display captures."), this),
      button_(new Button(this)) {
  setAccessibleName(title_.text());
  for (QLabel* label : {&title_, &text_}) {
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
  }
  text_.setWordWrap(true);
  help_.emplace(tooltips, *button_, QString::fromUtf8(kHelp));
  QObject::connect(button_, &QAbstractButton::clicked, this, weak_.bind([](FolderAccessRecoveryView& self, bool) {
    if (self.action_) {
      self.action_();
    }
  }));
}

FolderAccessRecoveryView::Design FolderAccessRecoveryView::design() const {
  if (metrics_.previewHeight > 300) {
    return {.isRoomy = true, .inset = 72, .symbol = 52, .title = 17, .text = 13, .button = 32, .gap = 7};
  }
  if (metrics_.previewHeight > 240) {
    return {.isRoomy = true, .inset = 52, .symbol = 44, .title = 16, .text = 12, .button = 30, .gap = 6};
  }
  if (metrics_.previewHeight > kRoomy) {
    return {.isRoomy = true, .inset = 34, .symbol = 34, .title = 14, .text = 12, .button = 28, .gap = 4};
  }
  if (metrics_.previewHeight > 140) {
    return {.isRoomy = false, .inset = 18, .symbol = 20, .title = 13, .text = 11, .button = 26, .gap = 5};
  }
  return {.isRoomy = false, .inset = 12, .symbol = 18, .title = 12, .text = 11, .button = 24, .gap = 3};
}

void FolderAccessRecoveryView::apply(const IslandTheme& theme, const IslandLayoutMetrics& metrics) {
  theme_ = theme;
  metrics_ = metrics;
  title_.setFont(typeOfSize(design().title, QFont::DemiBold));
  text_.setFont(typeOfSize(design().text));
  colour(title_, toQColor(theme.tokens.textPrimary));
  colour(text_, toQColor(theme.tokens.textSecondary));
  button_->apply(theme, design());
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
  const Design lengths = design();
  const int wide = width() - 2 * lengths.inset;
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
  text_.setGeometry(lengths.inset, top, wide, textHeight);
  top += textHeight + toButton;
  button_->setGeometry((width() - button.width()) / 2, top, button.width(), button.height());
}

void FolderAccessRecoveryView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QRectF well = snappedToPixels(painter, rect());
  paintPreviewWell(painter, well, metrics_.previewCornerRadius, theme_, WellContent::words);
  strokePreviewWell(painter, well, metrics_.previewCornerRadius, theme_);
  paintIcon(painter, "lock.shield", symbolCentre_,
            {.size = static_cast<double>(design().symbol), .colour = toQColor(theme_.tokens.iconPrimary)});
}

}  // namespace quenlio
