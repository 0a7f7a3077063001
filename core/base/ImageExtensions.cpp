#include "core/base/ImageExtensions.h"

#include <algorithm>
#include <array>

#include "core/base/Text.h"

namespace quenlio {
bool hasImageExtension(const FileURL& url) {
  const std::string_view path = url.path();
  return hasImageExtension(path.substr(path.rfind('/') + 1));  // without a slash the path is the name
}

bool hasImageExtension(std::string_view fileName) {
  static constexpr auto extensions = std::to_array<std::string_view>({"png", "jpg", "jpeg", "heic", "tiff", "pdf"});
  const std::string_view extension = extensionOf(fileName);
  return std::ranges::any_of(extensions, [extension](std::string_view known) {
    return std::ranges::equal(extension, known, {}, [](char letter) { return lowercased(letter); });
  });
}

}  // namespace quenlio
