#include "core/island/MetaRowText.h"

namespace quenlio {

std::string MetaRowText::titleText(std::size_t selectedCount, const std::optional<std::string>& fileName) {
  if (selectedCount >= 2) {
    return std::to_string(selectedCount) + " selected";
  }
  return fileName.value_or(std::string(kNoScreenshot));
}

std::string MetaRowText::filenameTooltip(std::size_t selectedCount, const std::optional<std::string>& fileName) {
  return selectedCount == 1 ? fileName.value_or("") : "";
}

}  // namespace quenlio
