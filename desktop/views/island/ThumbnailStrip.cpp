#include "desktop/views/island/ThumbnailStrip.h"

#include <QtGui/QCursor>
#include <QtGui/QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "core/island/IslandMotion.h"
#include "core/island/IslandTexts.h"

#include "desktop/views/island/ThumbnailAccessible.h"

namespace quenlio {
namespace {

constexpr double kShadowRadius = 5;  // points, like all lengths here
constexpr double kShadowY = 2;

}  // namespace

ThumbnailStrip::ThumbnailStrip(QWidget* parent, Scheduler& scheduler, const Clock& clock, Callbacks callbacks)
    : QWidget(parent),
      callbacks_(std::move(callbacks)),
      scheduler_(scheduler),
      clock_(clock),
      canvas_(makeCanvas(parent)),
      tokens_(IslandThemeTokens::forAppearance(IslandAppearanceStyle::light, false)),
      metrics_(IslandLayoutMetrics::forSize(IslandSize::extraSmall)),
      scroll_(scheduler, clock, 0, weak_.bind([](ThumbnailStrip& self) { self.place(); })),
      arrival_(scheduler, clock, 1, weak_.bind([](ThumbnailStrip& self) { self.place(); })) {
  makeThumbnailsAccessible();
  canvas_->stackUnder(this);
  setAccessibleName(QString::fromUtf8(IslandTexts::kScreenshots));
  setFocusPolicy(Qt::TabFocus);
}

ThumbnailStrip::~ThumbnailStrip() {
  weak_.letGo();
}

void ThumbnailStrip::apply(const IslandThemeTokens& tokens, const IslandLayoutMetrics& metrics) {
  const bool hasOtherLengths = metrics != metrics_;
  tokens_ = tokens;
  metrics_ = metrics;
  shadow_.setLook(
      {.cornerRadius = metrics.thumbRadius,
       .layers = {{.opacity = tokens.thumbnailSelectedShadowOpacity, .radius = kShadowRadius, .y = kShadowY}}});
  if (hasOtherLengths) {
    arrival_.jumpTo(1);
    place();
    scrollToSelected(false);
  }
  canvas_->update();
}

void ThumbnailStrip::show(const Contents& contents) {
  takeUp(contents);
  const bool wasDraggingOut = std::exchange(isDraggingOut_, contents.isDraggingOut);
  if (wasDraggingOut && !isDraggingOut_) {
    for (const auto& [id, entry] : cells_) {
      entry.cell->letGo();
    }
  }
  // A strip without cells is no place to stop at.
  setFocusPolicy(order_.empty() ? Qt::NoFocus : Qt::TabFocus);
}

void ThumbnailStrip::takeUp(const Contents& contents) {
  std::vector<Uuid> order;
  std::vector<Uuid> arrived;
  order.reserve(contents.items.size());
  for (const ScreenshotItem& item : contents.items) {
    order.push_back(item.id);
    Entry& entry = cells_[item.id];
    if (entry.cell == nullptr) {
      entry.cell = makeCell();
      arrived.push_back(item.id);
    }
    entry.cell->show(item, contents.selectedItemIDs.contains(item.id), item.id == contents.selectedItemID);
  }
  dropGone(order);
  const bool hasMoved = order != order_;
  const bool selectedAnother = std::exchange(primary_, contents.selectedItemID) != contents.selectedItemID;
  if (hasMoved) {
    arrange(std::move(order), arrived);
  }
  if (hasMoved || selectedAnother) {
    scrollToSelected(isVisible());
    canvas_->update();
    if (ThumbnailCell* current = currentCell(); current != nullptr && hasFocus()) {
      tellFocusOf(*current);
    }
  }
}

void ThumbnailStrip::dropGone(const std::vector<Uuid>& order) {
  const std::set<Uuid> listed(order.begin(), order.end());
  std::erase_if(cells_, [&listed](const auto& entry) {
    const bool isGone = !listed.contains(entry.first);
    if (isGone) {
      entry.second.cell->hide();
      entry.second.cell->deleteLater();  // it may be its own click that removed it
    }
    return isGone;
  });
}

// Cells that were there slide to their new places; those that are new come up, the newest sliding in from the side that
// the others go away from.
void ThumbnailStrip::arrange(std::vector<Uuid> order, const std::vector<Uuid>& arrived) {
  for (std::size_t index = 0; index < order_.size(); ++index) {
    if (const auto found = cells_.find(order_[index]); found != cells_.end()) {
      found->second.from = leftOf(index);
    }
  }
  const bool isAnimated = isVisible() && !order_.empty();
  order_ = std::move(order);
  for (std::size_t index = 0; index < order_.size(); ++index) {
    Entry& entry = cells_.at(order_[index]);
    if (std::ranges::find(arrived, order_[index]) != arrived.end()) {
      entry.from = (static_cast<double>(index) - (index == 0 ? 0.5 : 0)) * stripLayout().step();
      if (isVisible()) {
        entry.cell->arrive();
      }
    }
    entry.cell->raise();  // screen readers go by the order of the children
  }
  arrival_.jumpTo(isAnimated ? 0 : 1);
  if (isAnimated) {
    arrival_.animateTo(1, IslandMotion::kSpring);
  }
  place();
}

ThumbnailCell* ThumbnailStrip::makeCell() {
  auto* cell = new ThumbnailCell(
      this, scheduler_, clock_,
      {.onSelect = callbacks_.onSelect,
       .onStartItemDrag = callbacks_.onStartItemDrag,
       .onLookChanged = weak_.bind([](ThumbnailStrip& self, const ThumbnailCell& of) { self.repaint(of); })});
  cell->setVisible(true);
  return cell;
}

ThumbnailCell* ThumbnailStrip::currentCell() const {
  const auto found = primary_ ? cells_.find(*primary_) : cells_.end();
  if (found != cells_.end()) {
    return found->second.cell;
  }
  return order_.empty() ? nullptr : cells_.at(order_.front()).cell;
}

StripLayout ThumbnailStrip::stripLayout() const {
  return {.metrics = metrics_, .count = order_.size(), .width = static_cast<double>(width())};
}

double ThumbnailStrip::leftOf(std::size_t index) const {
  return std::lerp(cells_.at(order_[index]).from, stripLayout().leftOf(index), arrival_.value());
}

void ThumbnailStrip::place() {
  const double side = metrics_.thumbSize;
  const double top = stripLayout().top();
  for (std::size_t index = 0; index < order_.size(); ++index) {
    ThumbnailCell* cell = cells_.at(order_[index]).cell;
    const QRectF square(leftOf(index) - scroll_.value(), top, side, side);
    cell->setSquare(square, square.right() > -kBleed && square.left() < width() + kBleed);
    // A square too, however it lies between the points.
    cell->setGeometry(QRect(square.topLeft().toPoint(), square.size().toSize()));
  }
  if (underMouse()) {
    const QPoint pointer = mapFromGlobal(QCursor::pos());
    for (const auto& [id, entry] : cells_) {
      entry.cell->setHovered(entry.cell->geometry().contains(pointer));
    }
  }
  canvas_->update();
}

void ThumbnailStrip::scrollTo(double offset, bool animated) {
  const double target = stripLayout().within(offset);
  if (animated) {
    scroll_.animateTo(target, IslandMotion::kEase);
  } else {
    scroll_.jumpTo(target);
  }
}

void ThumbnailStrip::scrollToSelected(bool animated) {
  const auto found = primary_ ? std::ranges::find(order_, *primary_) : order_.end();
  const double offset = scroll_.target();
  scrollTo(found != order_.end() ? stripLayout().offsetShowing(static_cast<std::size_t>(found - order_.begin()), offset)
                                 : offset,
           animated);
}

void ThumbnailStrip::wheelEvent(QWheelEvent* event) {
  // A plain wheel has one direction only, so its turns scroll sideways too.
  const auto larger = [](QPoint delta) { return std::abs(delta.x()) > std::abs(delta.y()) ? delta.x() : delta.y(); };
  if (!event->pixelDelta().isNull()) {
    scrollTo(scroll_.value() - larger(event->pixelDelta()), false);
  } else {
    const double turns = larger(event->angleDelta()) / static_cast<double>(QWheelEvent::DefaultDeltasPerStep);
    scrollTo(scroll_.target() - stripLayout().step() * turns, true);
  }
  event->accept();
}

void ThumbnailStrip::placeCanvas() {
  canvas_->setGeometry(geometry().adjusted(-kBleed, -kBleed, kBleed, kBleed));
}

void ThumbnailStrip::moveEvent(QMoveEvent* /*event*/) {
  placeCanvas();
}

void ThumbnailStrip::resizeEvent(QResizeEvent* /*event*/) {
  placeCanvas();
  place();
  scrollToSelected(false);
}

void ThumbnailStrip::showEvent(QShowEvent* /*event*/) {
  canvas_->setVisible(true);
}

void ThumbnailStrip::hideEvent(QHideEvent* /*event*/) {
  scroll_.jumpTo(scroll_.target());
  arrival_.jumpTo(1);
  if (!isVisibleTo(parentWidget())) {
    canvas_->setVisible(false);  // with its parent it goes by itself
  }
}

void ThumbnailStrip::focusInEvent(QFocusEvent* event) {
  showsFocus_ = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
  scrollToSelected(isVisible());
  canvas_->update();
  if (ThumbnailCell* current = currentCell()) {
    tellFocusOf(*current);
  }
}

void ThumbnailStrip::focusOutEvent(QFocusEvent* /*event*/) {
  showsFocus_ = false;
  canvas_->update();
}

// The canvas is what is painted on.
void ThumbnailStrip::paintEvent(QPaintEvent* /*event*/) {}

}  // namespace quenlio
