// What the island needs of the shell to come into being: its panel, and the view in it. Main thread.
#pragma once

#include <memory>

#include "core/geometry/Geometry.h"
#include "core/platform/Panel.h"

namespace quenlio {

struct IslandOverlayRootViewModel;

class IslandShell {
 public:
  virtual ~IslandShell() = default;
  // Borderless and non-activating (style mask 128), buffered, not deferred, ordered out.
  [[nodiscard]] virtual std::unique_ptr<Panel> makePanel(const Rect<Screen>& contentRect) = 0;
  // Builds IslandOverlayRootView over the model and makes it the panel's content view: a first click on the panel acts,
  // also while another window is active, and a wish from without to close the panel comes to the model's onClose. The
  // panel is one of makePanel's.
  virtual void setContentView(Panel& panel, const IslandOverlayRootViewModel& model) = 0;
};

}  // namespace quenlio
