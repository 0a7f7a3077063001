#include "desktop/views/island/QtIslandShell.h"

#include <utility>

#include "desktop/linux/session/QtPanel.h"
#include "desktop/views/island/IslandOverlayRootView.h"

namespace quenlio {

QtIslandShell::QtIslandShell(Dependencies dependencies) : dependencies_(std::move(dependencies)) {}

std::unique_ptr<Panel> QtIslandShell::makePanel(const Rect<Screen>& contentRect) {
  return std::make_unique<QtPanel>(contentRect, dependencies_.intent, dependencies_.compositor);
}

void QtIslandShell::setContentView(Panel& panel, const IslandOverlayRootViewModel& model) {
  // Every panel that reaches this comes from makePanel. X11 hands the first press on an inactive window to it as any
  // other, so nothing has to be wrapped for that.
  auto& qtPanel = static_cast<QtPanel&>(panel);
  qtPanel.setOnClose(model.onClose);
  qtPanel.setContentView(std::make_unique<IslandOverlayRootView>(
      model, IslandOverlayRootView::Shell{
                 .compositor = dependencies_.compositor,
                 .sharpRendition = dependencies_.sharpRendition,
                 // The panel owns the view, so it is there for as long as the view can call.
                 .onSurfaceChanged = [&qtPanel](const PanelSurface& surface) { qtPanel.setSurface(surface); }}));
}

}  // namespace quenlio
