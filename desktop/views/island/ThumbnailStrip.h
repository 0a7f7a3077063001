// The history at the island's foot: one cell a screenshot, newest first, scrolled sideways. Owned by the root view.
// Main thread.
//
// A click selects one alone: modifiers that would add to the selection, and dragging screenshots out, do nothing yet.
#pragma once

#include <QtWidgets/QWidget>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "core/base/WeakOwner.h"
#include "core/island/IslandLayoutMetrics.h"
#include "core/library/ScreenshotItem.h"

#include "desktop/views/island/ThumbnailCell.h"

namespace quenlio {

class ThumbnailStrip final : public QWidget {
 public:
  ThumbnailStrip(QWidget* parent, std::function<void(const Uuid&)> onSelect);

  struct Contents {
    const std::vector<ScreenshotItem>& items;
    std::optional<Uuid> primary;     // what the preview shows
    const std::set<Uuid>& selected;  // all of them
  };
  void apply(const IslandPalette& palette, const IslandLayoutMetrics& metrics);
  void show(const Contents& contents);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  [[nodiscard]] ThumbnailCell& cellFor(const Uuid& id);
  void place();
  void putCellsInOrder();
  void scrollTo(double offset);
  void scrollToPrimary();
  [[nodiscard]] double step() const { return thumbSize_ + thumbSpacing_; }

  std::function<void(const Uuid&)> onSelect_;
  IslandPalette palette_;
  IslandLayoutMetrics metrics_ = IslandLayoutMetrics::forSize(IslandSize::extraSmall);
  double thumbSize_ = 24;
  double thumbSpacing_ = 8;
  std::vector<Uuid> order_;
  std::map<Uuid, ThumbnailCell*> cells_;  // children
  std::optional<Uuid> primary_;
  double offset_ = 0;  // points scrolled
  WeakOwner<ThumbnailStrip> weak_{this};
};

}  // namespace quenlio
