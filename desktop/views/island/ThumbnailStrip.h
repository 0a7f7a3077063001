// The history at the island's foot: one cell a screenshot, newest first, scrolled sideways. Owned by the root view.
// Main thread.
//
// It is one stop of the Tab key; what the arrows do there is the island's. All that is seen of it is on a canvas below
// it, which reaches a little beyond: cells throw shadows. There the strip fades out at an end where more lies beyond.
#pragma once

#include <QtWidgets/QWidget>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "core/base/WeakOwner.h"
#include "core/island/IslandLayoutMetrics.h"
#include "core/island/IslandThemeTokens.h"
#include "core/island/StripLayout.h"
#include "core/library/ScreenshotItem.h"

#include "desktop/render/SoftShadow.h"
#include "desktop/views/common/Motion.h"
#include "desktop/views/island/ThumbnailCell.h"

namespace quenlio {

class ThumbnailStrip final : public QWidget {
 public:
  static constexpr int kBleed = 8;  // points that the canvas reaches beyond the strip

  struct Callbacks {
    std::function<void(const ScreenshotItem& item, ModifierFlags flags)> onSelect;
    std::function<bool(const ScreenshotItem& item)> onStartItemDrag;
  };
  // Scheduler and clock outlive the view.
  ThumbnailStrip(QWidget* parent, Scheduler& scheduler, const Clock& clock, Callbacks callbacks);
  ~ThumbnailStrip() override;

  struct Contents {
    const std::vector<ScreenshotItem>& items;
    std::optional<Uuid> selectedItemID;     // what the preview shows
    const std::set<Uuid>& selectedItemIDs;  // all of them
    bool isDraggingOut = false;
  };
  void apply(const IslandThemeTokens& tokens, const IslandLayoutMetrics& metrics);
  void show(const Contents& contents);

  // Where the island's arrow keys go on from; nullptr when the strip is empty.
  [[nodiscard]] ThumbnailCell* currentCell() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  class Canvas;
  struct Entry {
    ThumbnailCell* cell = nullptr;  // a child
    double from = 0;                // where it was when the cells were last put in another order
  };

  [[nodiscard]] QWidget* makeCanvas(QWidget* parent);
  void placeCanvas();
  void takeUp(const Contents& contents);
  void dropGone(const std::vector<Uuid>& order);
  void arrange(std::vector<Uuid> order, const std::vector<Uuid>& arrived);
  [[nodiscard]] ThumbnailCell* makeCell();
  [[nodiscard]] StripLayout stripLayout() const;
  void place();
  [[nodiscard]] double leftOf(std::size_t index) const;  // as things move, before scrolling
  void scrollTo(double offset, bool animated);
  void scrollToSelected(bool animated);
  void repaint(const ThumbnailCell& cell);
  void paintOn(QPainter& painter, const QRect& exposed);
  void paintCells(QPainter& painter, const QRect& exposed);
  void fadeEnds(QPainter& painter) const;

  WeakOwner<ThumbnailStrip> weak_{this};  // first: its members are given callbacks while it is being made
  Callbacks callbacks_;
  Scheduler& scheduler_;
  const Clock& clock_;
  QWidget* canvas_;  // a child of the same parent, below this
  IslandThemeTokens tokens_;
  IslandLayoutMetrics metrics_;
  SoftShadow shadow_;
  std::vector<Uuid> order_;
  std::map<Uuid, Entry> cells_;
  std::optional<Uuid> primary_;
  Motion scroll_;   // points
  Motion arrival_;  // the share of the way from where the cells were to where they belong
  bool isDraggingOut_ = false;
  bool showsFocus_ = false;
};

}  // namespace quenlio
