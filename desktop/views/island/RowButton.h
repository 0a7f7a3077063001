// A small round button of the name row: a symbol, and under the pointer a disc behind it. Main thread.
#pragma once

#include <functional>
#include <string_view>
#include <utility>

#include "core/base/WeakOwner.h"
#include "core/island/IslandThemeTokens.h"
#include "core/island/RowButtonEmphasis.h"
#include "core/platform/Scheduler.h"

#include "desktop/views/common/Motion.h"
#include "desktop/views/common/PaintedButton.h"

namespace quenlio {

class RowButton : public PaintedButton {
 public:
  // All outlive the button; the symbol is a literal.
  RowButton(QWidget* row, std::string_view symbol, std::string_view name, Scheduler& scheduler, const Clock& clock);
  ~RowButton() override;

  void apply(const IslandThemeTokens& tokens);
  // A button that is not revealed is there all the same: for the keyboard, which reveals it, and for screen readers.
  void setRevealed(bool isRevealed);
  // Something of it is on the screen, or will be in a moment.
  [[nodiscard]] bool isSeen() const;
  // Called when that may have changed.
  void setOnPresenceChanged(std::function<void()> onPresenceChanged) {
    onPresenceChanged_ = std::move(onPresenceChanged);
  }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  [[nodiscard]] RowButtonEmphasis emphasis() const;
  void turn();
  void presenceChanged();

  WeakOwner<RowButton> weak_{this};
  std::string_view symbol_;
  IslandThemeTokens tokens_;
  bool isRevealed_ = true;
  std::function<void()> onPresenceChanged_;
  Motion presence_;
};

}  // namespace quenlio
