// One screenshot in the strip: a click selects it, a press that moves drags it out. Owned by the strip. Main thread.
//
// It takes the pointer, and is what screen readers find. The strip tells it where it stands and has it drawn on the
// canvas below, where shadows and rings are not cut off.
#pragma once

#include <QtGui/QImage>
#include <QtWidgets/QAbstractButton>
#include <functional>

#include "core/base/WeakOwner.h"
#include "core/island/IslandThemeTokens.h"
#include "core/island/PressGesture.h"
#include "core/island/ThumbnailLook.h"
#include "core/library/ScreenshotItem.h"
#include "core/platform/Panel.h"
#include "core/platform/Scheduler.h"

#include "desktop/views/common/Motion.h"

namespace quenlio {

class SoftShadow;

class ThumbnailCell final : public QAbstractButton {
 public:
  struct Callbacks {
    std::function<void(const ScreenshotItem& item, ModifierFlags flags)> onSelect;
    std::function<bool(const ScreenshotItem& item)> onStartItemDrag;  // false when no drag has begun
    std::function<void(const ThumbnailCell& cell)> onLookChanged;     // has to be drawn anew
  };
  // Scheduler and clock outlive the cell.
  ThumbnailCell(QWidget* strip, Scheduler& scheduler, const Clock& clock, Callbacks callbacks);
  ~ThumbnailCell() override;

  void show(const ScreenshotItem& item, bool isSelected, bool isPrimarySelected);
  // Comes up instead of being there.
  void arrive();
  // The square that is drawn, in the strip's points. A cell that is out of sight keeps no picture.
  void setSquare(const QRectF& square, bool isInSight);
  [[nodiscard]] const QRectF& square() const { return square_; }
  [[nodiscard]] bool isSelected() const { return to_.selected > 0; }
  [[nodiscard]] bool isInSight() const { return isInSight_; }
  [[nodiscard]] bool keepsPicture() const { return !cropped_.isNull(); }
  // A cell that moves under a pointer that rests is not told so.
  void setHovered(bool isHovered);
  // What is dragged out hears no release any more.
  void letGo();

  struct Setting {
    const IslandThemeTokens& tokens;
    double radius;
    SoftShadow& shadow;  // of a selected cell
    bool hasFocusRing;
  };
  // In the strip's points.
  void paint(QPainter& painter, const Setting& setting);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  [[nodiscard]] ThumbnailState state() const;
  void turnTo(const ThumbnailState& state);
  void setPressed(bool isPressed);
  void showThumbnail(const ImageRef& thumbnail);
  void waitForThumbnail();
  [[nodiscard]] bool isMoving() const;
  [[nodiscard]] bool isSeen() const { return isVisible() && isInSight_; }
  [[nodiscard]] const QImage& pictureAt(const QSize& pixels, double radius);
  void paintPicture(QPainter& painter, const QRectF& place, double radius, double opacity);
  void paintSymbol(QPainter& painter, const QRectF& place, const Color& tint) const;

  WeakOwner<ThumbnailCell> weak_{this};  // first: its members are given callbacks while it is being made
  Callbacks callbacks_;
  Scheduler& scheduler_;
  ScreenshotItem item_;
  QRectF square_;
  bool isInSight_ = false;
  PressGesture press_;
  QPointF pressedAt_;  // on the screen
  ThumbnailState from_;
  ThumbnailState to_;
  Motion stateShare_;  // the share of the way between the two
  Motion presence_;    // less than 1 while the cell comes up
  Motion picture_;     // while the thumbnail does
  Motion symbol_;      // what stands for a thumbnail that does not come
  ScheduledTask symbolsTurn_;
  QImage cropped_;  // the thumbnail's middle in so many pixels as it is drawn with
};

}  // namespace quenlio
