// Where the controls of the island's toolbar stand. Pure; any thread.
#pragma once

#include <array>

#include "core/geometry/Geometry.h"
#include "core/island/IslandLayoutMetrics.h"
#include "core/island/ToolbarControlID.h"

namespace quenlio {

// The row in points, y growing downward from its top left.
struct ToolbarSpace;

// By ToolbarControlID, on whole points. The actions stand together at the left end; the button that closes stands at
// the right one, never nearer to them than a zone's spacing.
[[nodiscard]] std::array<Rect<ToolbarSpace>, kToolbarControls> toolbarLayout(const IslandLayoutMetrics& metrics,
                                                                             Size row);

}  // namespace quenlio
