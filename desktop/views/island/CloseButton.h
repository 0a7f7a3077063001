// The button that closes the island. Owned by the handle row. Main thread.
#pragma once

#include "desktop/views/common/PaintedButton.h"
#include "desktop/views/island/IslandPalette.h"

namespace quenlio {

class CloseButton final : public PaintedButton {
 public:
  explicit CloseButton(QWidget* parent);
  // The icon's size is in points.
  void apply(const IslandPalette& palette, double iconSize);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  IslandPalette palette_;
  double iconSize_ = 16;
};

}  // namespace quenlio
