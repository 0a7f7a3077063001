#include "desktop/views/island/FolderAccessRecoveryView.h"

#include <QtGui/QPainter>
#include <utility>

#include "desktop/views/common/PaintedButton.h"
#include "desktop/views/common/Pixels.h"
#include "desktop/views/common/Type.h"

namespace quenlio {
namespace {

constexpr int kInset = 10;  // points
constexpr int kGap = 4;
constexpr int kButtonHeight = 26;

void colour(QLabel& label, const QColor& text) {
  QPalette palette = label.palette();
  palette.setColor(QPalette::WindowText, text);
  label.setPalette(palette);
}

}  // namespace

// A filled pill.
class FolderAccessRecoveryView::Button final : public PaintedButton {
 public:
  explicit Button(QWidget* parent) : PaintedButton(parent) {
    setText(QStringLiteral("Allow Access"));
    setAccessibleDescription(QStringLiteral("Open Privacy settings and re-check folder access"));
    setFont(typeOfSize(12, QFont::DemiBold));
  }
  void apply(const IslandPalette& palette) {
    palette_ = palette;
    update();
  }
  [[nodiscard]] QSize sizeHint() const override {
    return {fontMetrics().horizontalAdvance(text()) + 2 * kButtonHeight / 2 + 4, kButtonHeight};
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    const QColor fill = isDown()      ? palette_.accent.darker(115)
                        : isHovered() ? palette_.accent.lighter(108)
                                      : palette_.accent;
    fillRounded(painter, snappedToPixels(painter, rect()), kButtonHeight / 2.0, fill);
    if (showsFocus()) {
      strokeInside(painter, QRectF(rect()).adjusted(2, 2, -2, -2), kButtonHeight / 2.0 - 2, palette_.accentText);
    }
    painter.setPen(palette_.accentText);
    painter.drawText(rect(), Qt::AlignCenter, text());
  }

 private:
  IslandPalette palette_;
};

FolderAccessRecoveryView::FolderAccessRecoveryView(QWidget* parent, std::function<void()> action)
    : QWidget(parent),
      action_(std::move(action)),
      title_(QStringLiteral("Folder Access Needed"), this),
      text_(QStringLiteral("Allow access to your screenshot folder so the island can display captures."), this),
      button_(new Button(this)) {
  setAccessibleName(title_.text());
  for (QLabel* label : {&title_, &text_}) {
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
  }
  text_.setWordWrap(true);
  QObject::connect(button_, &QAbstractButton::clicked, this, weak_.bind([](FolderAccessRecoveryView& self, bool) {
    if (self.action_) {
      self.action_();
    }
  }));
}

void FolderAccessRecoveryView::apply(const IslandPalette& palette, const IslandLayoutMetrics& metrics) {
  palette_ = palette;
  cornerRadius_ = metrics.previewCornerRadius;
  const bool roomy = metrics.previewHeight > 180;
  title_.setFont(typeOfSize(roomy ? 15 : 13, QFont::DemiBold));
  text_.setFont(typeOfSize(roomy ? 12 : 11));
  colour(title_, palette.textPrimary);
  colour(text_, palette.textSecondary);
  button_->apply(palette);
  layOut();
  update();
}

void FolderAccessRecoveryView::setFolderPath(const std::string& path) {
  setAccessibleDescription(QString::fromStdString(path));
}

void FolderAccessRecoveryView::resizeEvent(QResizeEvent* /*event*/) {
  layOut();
}

// From the top: title, text, button; together in the middle.
void FolderAccessRecoveryView::layOut() {
  const int wide = width() - 2 * kInset;
  const int titleHeight = title_.fontMetrics().height();
  const int textHeight = text_.heightForWidth(wide);
  const QSize button = button_->sizeHint();
  int top = (height() - titleHeight - textHeight - button.height() - 3 * kGap) / 2;
  title_.setGeometry(kInset, top, wide, titleHeight);
  top += titleHeight + kGap;
  text_.setGeometry(kInset, top, wide, textHeight);
  top += textHeight + 2 * kGap;
  button_->setGeometry((width() - button.width()) / 2, top, button.width(), button.height());
}

void FolderAccessRecoveryView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QRectF well = snappedToPixels(painter, rect());
  fillRounded(painter, well, cornerRadius_, palette_.wellFill);
  strokeInside(painter, well, cornerRadius_, palette_.wellStroke);
}

}  // namespace quenlio
