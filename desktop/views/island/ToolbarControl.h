// One control of the island's toolbar: an icon that comes forward under the pointer. What is behind the icon, the pill
// that goes from control to control, belongs to the row. Owned by the toolbar row. Main thread.
#pragma once

#include <functional>
#include <string_view>

#include "core/base/WeakOwner.h"
#include "core/island/IslandLayoutMetrics.h"
#include "core/island/IslandThemeTokens.h"
#include "core/platform/Scheduler.h"

#include "desktop/views/common/Motion.h"
#include "desktop/views/common/PaintedButton.h"

namespace quenlio {

class ToolbarControl : public PaintedButton {
 public:
  // All outlive the control; the symbol is a literal.
  ToolbarControl(QWidget* row, std::string_view symbol, Scheduler& scheduler, const Clock& clock);
  ~ToolbarControl() override;

  void apply(const IslandThemeTokens& tokens, const IslandLayoutMetrics& metrics);
  void setAvailable(bool available);

  struct Callbacks {
    std::function<void()> onPointerChanged;  // came, went, presses or lets go
    std::function<void(int)> onStep;         // an arrow key: one control to the left (-1) or to the right (1)
  };
  void setCallbacks(Callbacks callbacks) { callbacks_ = std::move(callbacks); }

  // Under the pointer, and of use.
  [[nodiscard]] bool isActive() const { return isHovered() && isEnabled(); }

 protected:
  [[nodiscard]] bool usesKey(const QKeyEvent& key) const override;
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void hideEvent(QHideEvent* event) override;

  // Behind the icon.
  virtual void paintBackground(QPainter& /*painter*/) {}
  [[nodiscard]] const IslandThemeTokens& tokens() const { return tokens_; }
  [[nodiscard]] virtual double iconSize() const { return iconSize_; }

 private:
  void pointerChanged();
  void turn();

  WeakOwner<ToolbarControl> weak_{this};
  std::string_view symbol_;
  IslandThemeTokens tokens_;
  double iconSize_ = 16;
  Callbacks callbacks_;
  Motion opacity_;
  Motion scale_;
};

}  // namespace quenlio
