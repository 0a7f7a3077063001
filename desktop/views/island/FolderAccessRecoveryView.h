// Takes the preview's place while the screenshot folder cannot be read: says so and offers the way out. Owned by the
// root view. Main thread.
#pragma once

#include <QtWidgets/QLabel>
#include <functional>
#include <optional>
#include <string>

#include "core/base/WeakOwner.h"
#include "core/island/IslandLayoutMetrics.h"

#include "desktop/views/common/Tooltip.h"
#include "desktop/views/island/IslandTheme.h"

namespace quenlio {

class FolderAccessRecoveryView final : public QWidget {
 public:
  // The host outlives the view.
  FolderAccessRecoveryView(QWidget* parent, TooltipHost& tooltips, std::function<void()> action);

  void apply(const IslandTheme& theme, const IslandLayoutMetrics& metrics);
  void setFolderPath(const std::string& path);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  class Button;
  // The lengths of one size of the island, points.
  struct Design;
  [[nodiscard]] Design design() const;
  void layOut();

  std::function<void()> action_;
  IslandTheme theme_{};
  IslandLayoutMetrics metrics_;
  QLabel title_;
  QLabel text_;
  Button* button_;  // a child
  std::optional<AppTooltip> help_;
  QPointF symbolCentre_;
  WeakOwner<FolderAccessRecoveryView> weak_{this};
};

}  // namespace quenlio
