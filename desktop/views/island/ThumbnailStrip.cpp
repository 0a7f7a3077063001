#include "desktop/views/island/ThumbnailStrip.h"

#include <QtGui/QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

namespace quenlio {

ThumbnailStrip::ThumbnailStrip(QWidget* parent, std::function<void(const Uuid&)> onSelect)
    : QWidget(parent), onSelect_(std::move(onSelect)) {
  setAccessibleName(QStringLiteral("Screenshots"));
}

void ThumbnailStrip::apply(const IslandPalette& palette, const IslandLayoutMetrics& metrics) {
  palette_ = palette;
  metrics_ = metrics;
  thumbSize_ = metrics.thumbSize;
  thumbSpacing_ = metrics.thumbSpacing;
  for (const auto& [id, cell] : cells_) {
    cell->apply(palette, metrics);
  }
  place();
  scrollToPrimary();
}

void ThumbnailStrip::show(const Contents& contents) {
  std::vector<Uuid> order;
  order.reserve(contents.items.size());
  for (const ScreenshotItem& item : contents.items) {
    order.push_back(item.id);
    cellFor(item.id).show(item, contents.selected.contains(item.id));
  }
  std::erase_if(cells_, [&order](const auto& entry) {
    const bool isGone = std::find(order.begin(), order.end(), entry.first) == order.end();
    if (isGone) {
      entry.second->hide();
      entry.second->deleteLater();  // it may be its own click that removed it
    }
    return isGone;
  });
  const bool moved = order != order_;
  const bool selectedAnother = contents.primary != primary_;
  order_ = std::move(order);
  primary_ = contents.primary;
  if (moved) {
    putCellsInOrder();
    place();
  }
  if (moved || selectedAnother) {
    scrollToPrimary();
  }
}

// For the keyboard and for screen readers, which go by the order of focus and that of the children.
void ThumbnailStrip::putCellsInOrder() {
  QWidget* previous = nullptr;
  for (const Uuid& id : order_) {
    ThumbnailCell* cell = cells_.at(id);
    cell->raise();
    if (previous != nullptr) {
      setTabOrder(previous, cell);
    }
    previous = cell;
  }
}

ThumbnailCell& ThumbnailStrip::cellFor(const Uuid& id) {
  const auto [entry, isNew] = cells_.try_emplace(id, nullptr);
  if (isNew) {
    auto* cell = new ThumbnailCell(this);
    entry->second = cell;
    cell->apply(palette_, metrics_);
    QObject::connect(cell, &QAbstractButton::clicked, this,
                     weak_.bind([id](ThumbnailStrip& self, bool) { self.onSelect_(id); }));
    cell->setVisible(true);
  }
  return *entry->second;
}

void ThumbnailStrip::resizeEvent(QResizeEvent* /*event*/) {
  place();
  scrollToPrimary();
}

void ThumbnailStrip::wheelEvent(QWheelEvent* event) {
  // A plain wheel has one direction only, so its turns scroll sideways too.
  const QPoint pixels = event->pixelDelta();
  const QPoint degrees = event->angleDelta();
  double distance = std::abs(pixels.x()) > std::abs(pixels.y()) ? pixels.x() : pixels.y();
  if (pixels.isNull()) {
    const int eighths = std::abs(degrees.x()) > std::abs(degrees.y()) ? degrees.x() : degrees.y();
    distance = step() * eighths / static_cast<int>(QWheelEvent::DefaultDeltasPerStep);
  }
  scrollTo(offset_ - distance);
  event->accept();
}

void ThumbnailStrip::scrollTo(double offset) {
  const double content = static_cast<double>(order_.size()) * step() - thumbSpacing_;
  const double clamped = std::clamp(offset, 0.0, std::max(0.0, content - width()));
  if (clamped != offset_) {
    offset_ = clamped;
    place();
  }
}

void ThumbnailStrip::scrollToPrimary() {
  const auto found = primary_ ? std::find(order_.begin(), order_.end(), *primary_) : order_.end();
  double offset = offset_;
  if (found != order_.end()) {
    const double left = static_cast<double>(found - order_.begin()) * step();
    offset = std::min(offset, left);
    offset = std::max(offset, left + thumbSize_ - width());
  }
  scrollTo(offset);
}

void ThumbnailStrip::place() {
  const int side = static_cast<int>(thumbSize_);
  // Below the inset, or less far down where the tray is not high enough for a whole cell there.
  const int top = std::clamp(static_cast<int>(metrics_.trayVerticalInset), 0, std::max(0, height() - side));
  for (std::size_t index = 0; index < order_.size(); ++index) {
    ThumbnailCell* cell = cells_.at(order_[index]);
    const double left = static_cast<double>(index) * step() - offset_;
    cell->setGeometry(static_cast<int>(std::lround(left)), top, side, side);
    const double inside = std::min(left + thumbSize_, static_cast<double>(width())) - std::max(left, 0.0);
    const double share = std::clamp(inside / thumbSize_, 0.0, 1.0);
    cell->setEdgeOpacity(share * share);
  }
}

}  // namespace quenlio
