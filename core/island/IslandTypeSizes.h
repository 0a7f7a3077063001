// The sizes of the type that changes with the island. A table, set by hand; it leaves out what has a design of its own.
// A plain value; any thread.
#pragma once

#include "core/settings/AppSettings.h"

namespace quenlio {

// Points of the layout.
struct IslandTypeSizes {
  int nameRow;
  int emptyLibrary;

  [[nodiscard]] static constexpr IslandTypeSizes forSize(IslandSize size);
  bool operator==(const IslandTypeSizes&) const = default;
};

constexpr IslandTypeSizes IslandTypeSizes::forSize(IslandSize size) {
  switch (size) {
    case IslandSize::extraSmall:
      return {.nameRow = 11, .emptyLibrary = 11};
    case IslandSize::small:
      return {.nameRow = 12, .emptyLibrary = 12};
    case IslandSize::medium:
      return {.nameRow = 12, .emptyLibrary = 13};
    case IslandSize::large:
      return {.nameRow = 13, .emptyLibrary = 14};
    case IslandSize::xLarge:
      return {.nameRow = 13, .emptyLibrary = 15};
  }
  return {.nameRow = 11, .emptyLibrary = 11};
}

}  // namespace quenlio
