// What the island's views show that is neither a setting nor in the library. The controller owns it and writes it; the
// views read it. Main thread.
#pragma once

#include <cstdint>
#include <string>

#include "core/base/Date.h"
#include "core/base/Published.h"
#include "core/island/IslandAppearanceStyle.h"

namespace quenlio {

struct IslandOverlayPresentationState {
  Published<double> dismissProgress{1.0};  // the share of the time that is left, 1 falling to 0
  Published<bool> showDismissProgress{false};
  Published<IslandAppearanceStyle> appearanceStyle{IslandAppearanceStyle::light};
  Published<bool> increaseContrast{false};
  // How long the views take to come to the present style: 0.16 with an ease-out, or 0 for at once. Set before the two.
  Seconds appearanceTransition{0};
  Published<std::int64_t> renameRequestToken{0};  // each increment asks the name row to enter edit mode
  Published<bool> screenshotFolderReadable{true};
  Published<std::string> screenshotFolderPath{};
};

}  // namespace quenlio
