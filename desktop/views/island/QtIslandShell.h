// Makes the island's panel and puts the root view into it. Owned by the program's shell. Main thread.
#pragma once

#include "core/island/IslandShell.h"

#include "desktop/linux/session/CompositorWatch.h"
#include "desktop/linux/session/UserIntent.h"
#include "desktop/views/island/MainPreview.h"

namespace quenlio {

class Scheduler;

class QtIslandShell final : public IslandShell {
 public:
  // All outlive what this makes.
  struct Dependencies {
    Scheduler& scheduler;
    const UserIntent& intent;
    CompositorWatch& compositor;
    SharpRendition sharpRendition;
  };
  explicit QtIslandShell(Dependencies dependencies);

  [[nodiscard]] std::unique_ptr<Panel> makePanel(const Rect<Screen>& contentRect) override;
  void setContentView(Panel& panel, const IslandOverlayRootViewModel& model) override;

 private:
  Dependencies dependencies_;
};

}  // namespace quenlio
