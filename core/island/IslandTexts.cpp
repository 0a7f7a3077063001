#include "core/island/IslandTexts.h"

namespace quenlio {

std::string IslandTexts::previewName(const std::optional<std::string>& fileName) {
  return fileName ? *fileName + " preview" : "No preview";
}

}  // namespace quenlio
