// What is seen of the large preview: a well in the panel that comes forward under the pointer, with the picture in it,
// or what stands there while there is none. Owned by the preview, which lies over it and takes the pointer. Main
// thread.
//
// It is larger than its place in the layout by kBleed, for its shadow and for coming forward.
#pragma once

#include <QtWidgets/QWidget>

#include "core/base/WeakOwner.h"
#include "core/island/IslandLayoutMetrics.h"
#include "core/island/PreviewEmphasis.h"
#include "core/island/PreviewReveal.h"

#include "desktop/render/SoftShadow.h"
#include "desktop/views/common/Motion.h"
#include "desktop/views/island/IslandTheme.h"
#include "desktop/views/island/SelectedPicture.h"

namespace quenlio {

class PreviewCard final : public QWidget {
 public:
  static constexpr int kBleed = 18;  // points

  PreviewCard(QWidget* parent, Scheduler& scheduler, const Clock& clock, SharpRendition sharpRendition);
  ~PreviewCard() override;

  void apply(const IslandTheme& theme, const IslandLayoutMetrics& metrics);
  // nullptr: the placeholder. True when that is another item than before.
  bool show(const ScreenshotItem* item);

  struct Touch {
    bool isHovering = false;
    bool isHolding = false;
    bool isFocused = false;
    bool operator==(const Touch&) const = default;
  };
  void setTouch(const Touch& touch);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void revealCurrentImage();
  void endReveal();
  void useRoom(double pixelsAPoint);
  [[nodiscard]] PreviewEmphasis emphasis() const;
  [[nodiscard]] QRectF card(const QPainter& painter) const;
  void paintWell(QPainter& painter, const QRectF& well);
  void paintPicture(QPainter& painter, const QRectF& well);
  void paintPlaceholder(QPainter& painter);
  void paintBroken(QPainter& painter);

  WeakOwner<PreviewCard> weak_{this};  // first: its members are given callbacks while it is being made
  IslandTheme theme_{};
  IslandLayoutMetrics metrics_;
  QString extension_;  // of the file that is shown
  Touch touch_;
  PreviewEmphasis from_ = PreviewEmphasis::of(false, false);
  PreviewEmphasis to_ = from_;
  Motion emphasisShare_;  // the share of the way between the two
  Motion revealOpacity_;
  Motion revealOffsetY_;
  PreviewReveal reveal_;
  SoftShadow cardShadow_;
  SoftShadow imageShadow_;
  SelectedPicture picture_;
};

}  // namespace quenlio
