// One control of the island's toolbar: an icon that comes forward under the pointer. What is behind the icon, the pill
// that goes from control to control, belongs to the row. Owned by the toolbar row. Main thread.
#pragma once

#include <functional>

#include "core/base/WeakOwner.h"
#include "core/island/IslandLayoutMetrics.h"
#include "core/island/IslandThemeTokens.h"
#include "core/island/ToolbarControlID.h"
#include "core/island/ToolbarEmphasis.h"
#include "core/platform/Scheduler.h"

#include "desktop/views/common/Motion.h"
#include "desktop/views/common/PaintedButton.h"

namespace quenlio {

class ToolbarControl : public PaintedButton {
 public:
  // All outlive the control.
  ToolbarControl(QWidget* row, ToolbarControlID id, Scheduler& scheduler, const Clock& clock);
  ~ToolbarControl() override;

  void apply(const IslandThemeTokens& tokens, const IslandLayoutMetrics& metrics);
  void setAvailable(bool available);

  // The pointer came, went, presses or lets go.
  void setOnPointerChanged(std::function<void()> onPointerChanged) { onPointerChanged_ = std::move(onPointerChanged); }

  // Under the pointer, and of use.
  [[nodiscard]] bool isActive() const { return isHovered() && isEnabled(); }
  [[nodiscard]] ToolbarEmphasis emphasis() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;

  // Behind the icon.
  virtual void paintBackground(QPainter& /*painter*/) {}
  [[nodiscard]] const IslandThemeTokens& tokens() const { return tokens_; }
  [[nodiscard]] virtual double iconSize() const { return iconSize_; }

 private:
  void pointerChanged();
  void turn();

  WeakOwner<ToolbarControl> weak_{this};
  ToolbarControlID id_;
  IslandThemeTokens tokens_;
  double iconSize_ = 16;
  std::function<void()> onPointerChanged_;
  Motion opacity_;
  Motion scale_;
};

}  // namespace quenlio
