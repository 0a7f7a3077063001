#include "core/base/ImageExtensions.h"

#include <algorithm>
#include <array>

#include "core/base/Text.h"

namespace quenlio {

bool hasImageExtension(const FileURL& url) {
  static constexpr auto extensions = std::to_array<std::string_view>({"png", "jpg", "jpeg", "heic", "tiff", "pdf"});
  return std::ranges::find(extensions, lowercased(url.pathExtension())) != extensions.end();
}

}  // namespace quenlio
