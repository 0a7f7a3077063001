// The large picture of the selected screenshot: a click opens it in the preview window, a double click in the editor,
// and it can be dragged out. Owned by the root view. Main thread.
//
// It takes the pointer and the keyboard's focus, and is what screen readers find; what is seen is its card, which lies
// below it and reaches a little beyond.
#pragma once

#include <QtWidgets/QWidget>
#include <functional>
#include <optional>

#include "core/base/WeakOwner.h"
#include "core/island/DeferredClick.h"
#include "core/island/IslandLayoutMetrics.h"
#include "core/island/PressGesture.h"
#include "core/library/ScreenshotItem.h"

#include "desktop/views/island/PreviewCard.h"

namespace quenlio {

class MainPreview final : public QWidget {
 public:
  struct Callbacks {
    std::function<void(const ScreenshotItem&)> onOpenQuickLook;
    // It may be opened in a moment, and then: it is not after all.
    std::function<void(const ScreenshotItem&)> onPrepareQuickLook;
    std::function<void()> onDropPreparedQuickLook;
    std::function<void(const ScreenshotItem&)> onOpenEditor;
    std::function<void(const ScreenshotItem&)> onStartItemDrag;
    std::function<void(bool holding)> onHoldStateChanged;
  };
  // Scheduler and clock outlive the view.
  MainPreview(QWidget* parent, Scheduler& scheduler, const Clock& clock, SharpRendition sharpRendition,
              Callbacks callbacks);
  ~MainPreview() override;

  void apply(const IslandTheme& theme, const IslandLayoutMetrics& metrics);
  // nullptr: the placeholder.
  void show(const ScreenshotItem* item);
  // As a click does, but at once. Nothing without an item.
  void open();
  [[nodiscard]] bool hasItem() const { return item_.has_value(); }
  // What is dragged out hears no release any more.
  void setIsDraggingOut(bool isDraggingOut);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void placeCard();
  void press(const QMouseEvent& event, bool isSecond);
  void letGo();
  void setHolding(bool isHolding);
  void setHovering(bool isHovering);
  void useHoverCursor();
  void pushGrabCursor();
  void popGrabCursor(bool restoreHoverCursor);

  WeakOwner<MainPreview> weak_{this};  // first: its members are given callbacks while it is being made
  Callbacks callbacks_;
  PreviewCard* card_;  // a child of the same parent, below this
  std::optional<ScreenshotItem> item_;
  PressGesture press_;
  DeferredClick click_;
  QPointF pressedAt_;  // on the screen
  PreviewCard::Touch touch_;
  bool isDraggingOut_ = false;
  bool hasHoverCursor_ = false;
  bool hasGrabCursor_ = false;
};

}  // namespace quenlio
