// The toolbar's last control, which closes the island. While the island counts down to hiding by itself, a ring around
// the glyph tells how much of the time is left. Owned by the toolbar row. Main thread.
#pragma once

#include <optional>

#include "desktop/views/island/ToolbarControl.h"

namespace quenlio {

class CloseToolbarButton final : public ToolbarControl {
 public:
  CloseToolbarButton(QWidget* row, Scheduler& scheduler, const Clock& clock);
  ~CloseToolbarButton() override;

  // The share of the time that is left, 1 falling to 0, or nothing while nothing is counted: the ring then fades as it
  // stood last.
  void showDismissProgress(std::optional<double> progress);

 protected:
  void paintBackground(QPainter& painter) override;
  void hideEvent(QHideEvent* event) override;

 private:
  [[nodiscard]] double ringRadius() const { return iconSize() * 0.62; }

  WeakOwner<CloseToolbarButton> weak_{this};
  bool isCounting_ = false;
  double progress_ = 1;
  Motion ringOpacity_;
};

}  // namespace quenlio
