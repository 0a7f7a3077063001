// The island's top row: what can be done with the selection on the left, the button that closes the island on the
// right. The empty parts are a handle to move the panel by. Owned by the root view. Main thread.
#pragma once

#include <QtWidgets/QWidget>
#include <array>
#include <functional>
#include <optional>

#include "core/base/WeakOwner.h"
#include "core/geometry/Geometry.h"
#include "core/island/IslandLayoutMetrics.h"
#include "core/island/IslandThemeTokens.h"
#include "core/island/ToolbarControlID.h"

#include "desktop/views/common/AppTooltipModifier.h"
#include "desktop/views/common/Motion.h"
#include "desktop/views/island/CloseToolbarButton.h"
#include "desktop/views/island/ToolbarControl.h"

namespace quenlio {

class ToolbarRow final : public QWidget {
 public:
  struct Callbacks {
    std::function<void()> onCopy;
    std::function<void()> onEdit;
    std::function<void()> onShare;
    std::function<void()> onViewInFolder;
    std::function<void()> onTrash;
    std::function<void()> onClose;
    // Points moved since the press, y growing downward. Only once the pointer has moved by a point.
    std::function<void(Size translation, bool ended)> onWindowDrag;
  };
  // The host, its scheduler and the clock outlive the row.
  ToolbarRow(QWidget* parent, AppTooltipHostModifier& tooltips, const Clock& clock, Callbacks callbacks);
  ~ToolbarRow() override;

  void apply(const IslandThemeTokens& tokens, const IslandLayoutMetrics& metrics);
  // Without a selected item there is nothing to be done but to close.
  void setHasSelectedItem(bool hasSelectedItem);
  // The share of the time that is left until the island hides, or nothing while nothing is counted.
  void showDismissProgress(std::optional<double> progress) { close_.showDismissProgress(progress); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  struct Drag {
    QPointF pressedAt;  // on the screen: the row moves along with the pointer
    Size translation;
    bool hasStarted = false;
  };
  void connectControls();
  void perform(ToolbarControlID control);
  void layOut();
  void movePill();
  [[nodiscard]] QRectF pill() const;
  void updatePill();
  void endDrag();

  WeakOwner<ToolbarRow> weak_{this};
  Callbacks callbacks_;
  ToolbarControl copy_;
  ToolbarControl annotate_;
  ToolbarControl share_;
  ToolbarControl folder_;
  ToolbarControl trash_;
  CloseToolbarButton close_;
  std::array<ToolbarControl*, kToolbarControls> controls_{&copy_, &annotate_, &share_, &folder_, &trash_, &close_};
  std::array<std::optional<AppTooltipModifier>, kToolbarControls> tooltips_;
  IslandThemeTokens tokens_;
  IslandLayoutMetrics metrics_;
  Motion pillX_;         // its left edge
  Motion pillStrength_;  // how much of the tint there is, 0 for none
  QRect pillDrawn_;
  std::optional<Drag> drag_;
};

}  // namespace quenlio
