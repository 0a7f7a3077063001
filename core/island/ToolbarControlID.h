// The controls of the island's toolbar: which there are, in the order that they stand in, and what each is drawn and
// called by. A table. Pure; any thread.
#pragma once

#include <array>
#include <cstddef>

#include "core/island/IslandTexts.h"

namespace quenlio {

enum class ToolbarControlID { copy, annotate, share, folder, trash, close };

inline constexpr std::size_t kToolbarControls = 6;

// By ToolbarControlID.
inline constexpr std::array<ControlText, kToolbarControls> kToolbarTexts{{
    {"doc.on.doc", "Copy", "Copy (⌘C)"},
    {"highlighter", "Edit", "Edit (⌘E)"},
    {"square.and.arrow.up", "Share", "Share (⇧⌘S)"},
    {"folder", "View in Folder", "View in Folder (⌘O)"},
    {"trash", "Move to Trash", "Move to Trash (⌫)"},
    {"xmark", "Close", "Close"},
}};

[[nodiscard]] constexpr const ControlText& controlText(ToolbarControlID control) {
  return kToolbarTexts.at(static_cast<std::size_t>(control));
}

}  // namespace quenlio
