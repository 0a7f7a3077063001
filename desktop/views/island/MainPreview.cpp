#include "desktop/views/island/MainPreview.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QMouseEvent>
#include <QtGui/QStyleHints>
#include <utility>

#include "core/island/IslandTexts.h"

#include "desktop/views/island/PreviewAccessible.h"

namespace quenlio {

MainPreview::MainPreview(QWidget* parent, Scheduler& scheduler, const Clock& clock, SharpRendition sharpRendition,
                         Callbacks callbacks)
    : QWidget(parent),
      callbacks_(std::move(callbacks)),
      card_(new PreviewCard(parent, scheduler, clock, std::move(sharpRendition))),
      click_(
          scheduler, clock,
          {.onMayBecomeClick = weak_.bind([](MainPreview& self) { self.callbacks_.onPrepareQuickLook(*self.item_); }),
           .onClick = weak_.bind([](MainPreview& self) { self.open(); }),
           .onNoClick = weak_.bind([](MainPreview& self) { self.callbacks_.onDropPreparedQuickLook(); }),
           .onDoubleClick = weak_.bind([](MainPreview& self) { self.callbacks_.onOpenEditor(*self.item_); })}) {
  makePreviewAccessible();
  card_->stackUnder(this);
  setFocusPolicy(Qt::TabFocus);
}

MainPreview::~MainPreview() {
  weak_.letGo();
}

void MainPreview::apply(const IslandTheme& theme, const IslandLayoutMetrics& metrics) {
  card_->apply(theme, metrics);
}

void MainPreview::show(const ScreenshotItem* item) {
  const auto fileName = item != nullptr ? std::optional(item->fileURL.lastPathComponent()) : std::nullopt;
  const QString spoken = QString::fromStdString(IslandTexts::previewName(fileName));
  if (spoken != accessibleName()) {
    setAccessibleName(spoken);
  }
  const bool isAnother = card_->show(item);
  item_ = item != nullptr ? std::optional(*item) : std::nullopt;
  if (isAnother) {
    click_.cancel();
    letGo();
    useHoverCursor();
  }
}

void MainPreview::open() {
  if (item_) {
    const ScreenshotItem item = *item_;  // what opens may bring another one
    callbacks_.onOpenQuickLook(item);
  }
}

void MainPreview::setIsDraggingOut(bool isDraggingOut) {
  if (std::exchange(isDraggingOut_, isDraggingOut) && !isDraggingOut) {
    letGo();
    setHovering(underMouse());
  }
}

// Its card is what is seen.
void MainPreview::paintEvent(QPaintEvent* /*event*/) {}

void MainPreview::placeCard() {
  constexpr int bleed = PreviewCard::kBleed;
  card_->setGeometry(geometry().adjusted(-bleed, -bleed, bleed, bleed));
}

void MainPreview::moveEvent(QMoveEvent* /*event*/) {
  placeCard();
}

void MainPreview::resizeEvent(QResizeEvent* /*event*/) {
  placeCard();
}

void MainPreview::showEvent(QShowEvent* /*event*/) {
  card_->setVisible(true);
}

void MainPreview::hideEvent(QHideEvent* /*event*/) {
  click_.cancel();
  letGo();
  setHovering(false);
  if (!isVisibleTo(parentWidget())) {
    card_->setVisible(false);  // with its parent it goes by itself
  }
}

void MainPreview::enterEvent(QEnterEvent* /*event*/) {
  setHovering(true);
}

void MainPreview::leaveEvent(QEvent* /*event*/) {
  setHovering(false);
}

void MainPreview::focusInEvent(QFocusEvent* event) {
  touch_.isFocused = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
  card_->setTouch(touch_);
}

void MainPreview::focusOutEvent(QFocusEvent* /*event*/) {
  touch_.isFocused = false;
  card_->setTouch(touch_);
}

void MainPreview::mousePressEvent(QMouseEvent* event) {
  press(*event, false);
}

void MainPreview::mouseDoubleClickEvent(QMouseEvent* event) {
  press(*event, true);
}

void MainPreview::press(const QMouseEvent& event, bool isSecond) {
  if (event.button() != Qt::LeftButton || !item_) {
    return;
  }
  pressedAt_ = event.globalPosition();
  press_.pressed();
  click_.pressed(isSecond);
  setHolding(true);
}

void MainPreview::mouseMoveEvent(QMouseEvent* event) {
  const QPointF moved = event->globalPosition() - pressedAt_;
  if (press_.moved({moved.x(), moved.y()}) && item_) {
    const ScreenshotItem item = *item_;  // the drag may bring another one
    callbacks_.onStartItemDrag(item);
  }
}

void MainPreview::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !press_.isPressed()) {
    return;
  }
  const bool isClick = press_.released();
  setHolding(false);
  if (isClick && item_) {
    click_.clicked(std::chrono::milliseconds(QGuiApplication::styleHints()->mouseDoubleClickInterval()));
  }
}

void MainPreview::letGo() {
  press_.cancelled();
  setHolding(false);
}

void MainPreview::setHolding(bool isHolding) {
  if (touch_.isHolding == isHolding) {
    return;
  }
  touch_.isHolding = isHolding;
  if (isHolding) {
    pushGrabCursor();
  } else {
    popGrabCursor(touch_.isHovering);
  }
  card_->setTouch(touch_);
  callbacks_.onHoldStateChanged(isHolding);
}

void MainPreview::setHovering(bool isHovering) {
  touch_.isHovering = isHovering;
  useHoverCursor();
  card_->setTouch(touch_);
}

// The hand shows that there is something to be opened.
void MainPreview::useHoverCursor() {
  const bool wants = touch_.isHovering && item_;
  if (hasGrabCursor_ || wants == hasHoverCursor_) {
    return;
  }
  hasHoverCursor_ = wants;
  wants ? setCursor(Qt::PointingHandCursor) : unsetCursor();
}

void MainPreview::pushGrabCursor() {
  if (!hasGrabCursor_) {
    hasGrabCursor_ = true;
    setCursor(Qt::ClosedHandCursor);
  }
}

void MainPreview::popGrabCursor(bool restoreHoverCursor) {
  if (!hasGrabCursor_) {
    return;
  }
  hasGrabCursor_ = false;
  hasHoverCursor_ = restoreHoverCursor && item_.has_value();
  hasHoverCursor_ ? setCursor(Qt::PointingHandCursor) : unsetCursor();
}

}  // namespace quenlio
