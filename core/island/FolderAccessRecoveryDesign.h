// The lengths of what stands in the preview's place while the folder cannot be read. A table, set by hand. A plain
// value; any thread.
#pragma once

#include "core/settings/AppSettings.h"

namespace quenlio {

// All in points.
struct FolderAccessRecoveryDesign {
  bool isRoomy;  // the symbol stands above the title, not beside it
  int inset;
  int symbol;
  int title;  // sizes of type
  int text;
  int button;  // its height
  int gap;     // between title and text

  [[nodiscard]] static constexpr FolderAccessRecoveryDesign forSize(IslandSize size);
  // Of the button's pill, which is as light as the text is: what asks to be pressed stands out the most.
  [[nodiscard]] static constexpr double pillOpacity(bool isHovering, bool isPressed) {
    return isPressed ? 0.72 : isHovering ? 0.96 : 0.86;
  }
  bool operator==(const FolderAccessRecoveryDesign&) const = default;
};

constexpr FolderAccessRecoveryDesign FolderAccessRecoveryDesign::forSize(IslandSize size) {
  switch (size) {
    case IslandSize::extraSmall:
      return {.isRoomy = false, .inset = 12, .symbol = 18, .title = 12, .text = 11, .button = 24, .gap = 3};
    case IslandSize::small:
      return {.isRoomy = false, .inset = 18, .symbol = 20, .title = 13, .text = 11, .button = 26, .gap = 5};
    case IslandSize::medium:
      return {.isRoomy = true, .inset = 34, .symbol = 34, .title = 14, .text = 12, .button = 28, .gap = 4};
    case IslandSize::large:
      return {.isRoomy = true, .inset = 52, .symbol = 44, .title = 16, .text = 12, .button = 30, .gap = 6};
    case IslandSize::xLarge:
      return {.isRoomy = true, .inset = 72, .symbol = 52, .title = 17, .text = 13, .button = 32, .gap = 7};
  }
  return {.isRoomy = false, .inset = 12, .symbol = 18, .title = 12, .text = 11, .button = 24, .gap = 3};
}

}  // namespace quenlio
