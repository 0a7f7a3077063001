// The content of the island's panel: toolbar, preview, name and strip, one below the other. It observes the library,
// the settings and the presentation state, and tells what the user does to the callbacks of its model. Owned by its
// panel. Main thread.
#pragma once

#include <QtWidgets/QWidget>
#include <cstdint>
#include <functional>
#include <optional>

#include "core/base/Subscription.h"
#include "core/base/WeakOwner.h"
#include "core/island/IslandLayoutMetrics.h"
#include "core/island/IslandMotion.h"
#include "core/island/IslandOverlayRoot.h"
#include "core/island/IslandOverlayRootViewModel.h"
#include "core/platform/Scheduler.h"

#include "desktop/linux/session/CompositorWatch.h"
#include "desktop/linux/session/PanelWindow.h"
#include "desktop/views/common/AppTooltipModifier.h"
#include "desktop/views/common/Motion.h"
#include "desktop/views/common/PopupEnd.h"
#include "desktop/views/common/ViewRefresh.h"
#include "desktop/views/island/EmptyStateDetails.h"
#include "desktop/views/island/FolderAccessRecoveryView.h"
#include "desktop/views/island/GlassSurfaceModifier.h"
#include "desktop/views/island/IslandTheme.h"
#include "desktop/views/island/MainPreview.h"
#include "desktop/views/island/MetaRow.h"
#include "desktop/views/island/ThumbnailStrip.h"
#include "desktop/views/island/ToolbarRow.h"

namespace quenlio {

class IslandOverlayRootView final : public QWidget {
 public:
  struct Shell {
    CompositorWatch& compositor;  // outlives the view
    SharpRendition sharpRendition;
    // The body's shape, tone and shadow, at once and after every change.
    std::function<void(const PanelSurface&)> onSurfaceChanged;
  };
  IslandOverlayRootView(const IslandOverlayRootViewModel& model, Shell shell);
  ~IslandOverlayRootView() override;

  [[nodiscard]] IslandOverlayRoot& root() { return root_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  void observe();
  void refresh();
  void refreshCountdown();
  [[nodiscard]] GlassBacking backing() const;
  void turnTo(const IslandTheme& theme);
  void refreshContainerOpacity();
  void useSize(IslandSize size);
  void applyLook();
  void tellSurface();
  void layOut();
  void itemDragStateChanged(bool dragging);
  void pointerFreed();

  WeakOwner<IslandOverlayRootView> weak_{this};  // first: its members are given callbacks while it is being made
  IslandOverlayRootViewModel model_;
  Shell shell_;
  IslandTheme theme_ = IslandTheme::forAppearance(IslandAppearanceStyle::light, false, GlassBacking::composited);
  IslandTheme origin_ = theme_;  // the theme is on its way from here
  IslandTheme target_ = theme_;  // to there
  Motion themeShare_;            // and has come so far
  Motion containerOpacity_;
  IslandMotion::Container container_;    // as last seen
  std::optional<PanelSurface> surface_;  // as last told
  IslandSize size_;
  IslandLayoutMetrics metrics_ = IslandLayoutMetrics::forSize(size_);
  IslandOverlayRoot root_;
  AppTooltipHostModifier tooltips_;  // before the views that have tooltips
  ToolbarRow toolbar_;
  MainPreview preview_;
  FolderAccessRecoveryView recovery_;
  MetaRow meta_;
  EmptyStateDetails emptyState_;
  ThumbnailStrip strip_;
  GlassSurfaceModifier glass_;  // above all of them
  PopupEnd popupEnd_;
  std::int64_t renameRequestToken_ = 0;  // as last announced
  Subscription renameRequests_;
  std::optional<ViewRefresh> refresh_;  // once the view stands
  Subscription sizeChange_;
  // On its own: while the island counts down, nothing but the ring changes, thirty times a second.
  std::optional<ViewRefresh> countdown_;
};

}  // namespace quenlio
