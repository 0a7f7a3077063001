// Where the parts of the island's content stand. Pure; any thread.
#pragma once

#include "core/geometry/Geometry.h"
#include "core/island/IslandLayoutMetrics.h"

namespace quenlio {

// The island's content in points, y growing downward from its top left.
struct IslandContent;

// One below the other, all equally wide. Aligned to the top: what the heights leave free lies below the tray.
struct IslandLayout {
  Rect<IslandContent> toolbar;
  Rect<IslandContent> preview;
  Rect<IslandContent> nameRow;
  Rect<IslandContent> tray;
  // What an empty library, which has neither name nor tray, says in their room.
  Rect<IslandContent> emptyState;

  bool operator==(const IslandLayout&) const = default;
};

// The side is that of the panel's square.
[[nodiscard]] IslandLayout islandLayout(const IslandLayoutMetrics& metrics, double side);

}  // namespace quenlio
