// The content of the island's panel: handle, preview, name and strip, one below the other. It observes the library, the
// settings and the presentation state, and tells what the user does to the callbacks of its model. Owned by its panel.
// Main thread.
#pragma once

#include <QtWidgets/QWidget>
#include <functional>
#include <optional>

#include "core/base/WeakOwner.h"
#include "core/island/IslandLayoutMetrics.h"
#include "core/island/IslandOverlayRootViewModel.h"
#include "core/platform/Scheduler.h"

#include "desktop/linux/session/PanelWindow.h"
#include "desktop/views/common/ViewRefresh.h"
#include "desktop/views/island/EmptyStateDetails.h"
#include "desktop/views/island/FolderAccessRecoveryView.h"
#include "desktop/views/island/HandleRow.h"
#include "desktop/views/island/IslandPalette.h"
#include "desktop/views/island/MainPreview.h"
#include "desktop/views/island/MetaRow.h"
#include "desktop/views/island/ThumbnailStrip.h"

namespace quenlio {

class IslandOverlayRootView final : public QWidget {
 public:
  struct Shell {
    Scheduler& scheduler;  // outlives the view
    SharpRendition sharpRendition;
    // The body's shape and tone, at once and after every change.
    std::function<void(const PanelSurface&)> onSurfaceChanged;
  };
  IslandOverlayRootView(const IslandOverlayRootViewModel& model, Shell shell);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  void observe();
  void refresh();
  void turnTo(const IslandPalette& palette);
  void fade();
  void useMetrics(const IslandLayoutMetrics& metrics);
  void applyLook();
  void layOut();

  IslandOverlayRootViewModel model_;
  Shell shell_;
  IslandPalette palette_ = IslandPalette::forAppearance(IslandAppearanceStyle::light, false);
  IslandPalette target_ = palette_;  // what the palette is on its way to
  IslandPalette origin_ = palette_;  // from where
  Seconds faded_{0};                 // how long it has been on its way
  ScheduledTask fade_;               // only while it is
  IslandLayoutMetrics metrics_ = IslandLayoutMetrics::forSize(IslandSize::extraSmall);
  HandleRow handle_;
  MainPreview preview_;
  FolderAccessRecoveryView recovery_;
  MetaRow meta_;
  EmptyStateDetails emptyState_;
  ThumbnailStrip strip_;
  std::optional<ViewRefresh> refresh_;  // once the view stands
  WeakOwner<IslandOverlayRootView> weak_{this};
};

}  // namespace quenlio
