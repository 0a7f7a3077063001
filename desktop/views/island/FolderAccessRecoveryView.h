// Takes the preview's place while the screenshot folder cannot be read: says so and offers the way out. Owned by the
// root view. Main thread.
#pragma once

#include <QtWidgets/QLabel>
#include <functional>
#include <optional>
#include <string>

#include "core/base/WeakOwner.h"
#include "core/island/FolderAccessRecoveryDesign.h"

#include "desktop/views/common/AppTooltipModifier.h"
#include "desktop/views/island/IslandTheme.h"

namespace quenlio {

class FolderAccessRecoveryView final : public QWidget {
 public:
  // The host outlives the view.
  FolderAccessRecoveryView(QWidget* parent, AppTooltipHostModifier& tooltips, std::function<void()> action);

  void apply(const IslandTheme& theme, IslandSize size);
  void setFolderPath(const std::string& path);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  class Button;
  void layOut();

  std::function<void()> action_;
  IslandTheme theme_{};
  FolderAccessRecoveryDesign design_ = FolderAccessRecoveryDesign::forSize(IslandSize::extraSmall);
  double cornerRadius_ = 0;  // points
  QLabel title_;
  QLabel text_;
  Button* button_;  // a child
  std::optional<AppTooltipModifier> help_;
  QPointF symbolCentre_;
  WeakOwner<FolderAccessRecoveryView> weak_{this};
};

}  // namespace quenlio
