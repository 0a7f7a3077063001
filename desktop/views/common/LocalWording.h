// Texts come with the key glyphs of the platform that they were written for. Shown here, they name the keys as people
// know them on this desktop: "Share (⇧⌘S)" is "Share (Ctrl+Shift+S)". Pure; any thread.
#pragma once

#include <QtCore/QString>
#include <string_view>

namespace quenlio {

[[nodiscard]] QString localWording(std::string_view wording);

}  // namespace quenlio
