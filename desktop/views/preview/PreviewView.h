// What the preview window shows: a row with the file's name, its place in the list and the button that closes, and
// below it the picture, or a word on why there is none. Owned by its window. Main thread.
//
// It decides nothing: keys, presses and drags are handed to the actions.
#pragma once

#include <QtGui/QImage>
#include <QtWidgets/QWidget>
#include <functional>
#include <optional>

#include "desktop/views/preview/PreviewControls.h"
#include "desktop/views/preview/PreviewPalette.h"

namespace quenlio {

enum class PreviewMove { toPrevious, toNext, toFirst, toLast };

struct PreviewContent {
  QString name;
  QString position;  // such as "3 of 12"
  QImage picture;    // in device pixels; a null image for none
  bool isClearInPlaces = false;
  QString message;  // where there is no picture
};

class PreviewView final : public QWidget {
 public:
  // They hold their owner weakly.
  struct Actions {
    std::function<void(PreviewMove, bool isRepeated)> onMove;  // repeated by a key that is held
    std::function<void()> onClose;
    std::function<void(const QPoint& by)> onDrag;  // the window, by the pointer
  };
  explicit PreviewView(Actions actions);

  void apply(const PreviewPalette& palette);
  void show(const PreviewContent& content);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void arrange();
  void paintPicture(QPainter& painter) const;

  Actions actions_;
  PreviewPalette palette_;
  QImage picture_;
  bool isClearInPlaces_ = false;
  std::optional<QPoint> dragged_;  // where the pointer was last, while it moves the window
  // Children.
  PreviewText* name_;
  PreviewText* position_;
  PreviewText* message_;
  PreviewCloseButton* close_;
};

}  // namespace quenlio
