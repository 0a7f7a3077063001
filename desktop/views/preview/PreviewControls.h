// The small parts of the preview window: its texts and the button that closes it. Owned by the view. Main thread.
#pragma once

#include <QtGui/QColor>
#include <QtWidgets/QLabel>

#include "desktop/views/common/PaintedButton.h"
#include "desktop/views/preview/PreviewPalette.h"

namespace quenlio {

// One line, cut in the middle where it does not fit: the name of a capture differs at its end.
class PreviewText final : public QLabel {
 public:
  PreviewText(QWidget* parent, const QFont& font, Qt::Alignment alignment);
  void setColour(const QColor& colour);
  // How wide the whole text is, in points.
  [[nodiscard]] int textWidth() const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor colour_;
};

class PreviewCloseButton final : public PaintedButton {
 public:
  explicit PreviewCloseButton(QWidget* parent);
  void apply(const PreviewPalette& palette);

 protected:
  void paintEvent(QPaintEvent* event) override;
  // Leaves the keys that step through the list to the window.
  void keyPressEvent(QKeyEvent* event) override;

 private:
  PreviewPalette palette_;
};

}  // namespace quenlio
