#include "core/base/ImageExtensions.h"

#include <algorithm>
#include <array>

namespace quenlio {
namespace {

char lowercased(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

}  // namespace

bool hasImageExtension(const FileURL& url) {
  const std::string_view path = url.path();
  return hasImageExtension(path.substr(path.rfind('/') + 1));  // without a slash the path is the name
}

bool hasImageExtension(std::string_view fileName) {
  static constexpr auto extensions = std::to_array<std::string_view>({"png", "jpg", "jpeg", "heic", "tiff", "pdf"});
  const std::size_t dot = fileName.rfind('.');
  if (dot == std::string_view::npos || dot == 0) {
    return false;
  }
  const std::string_view extension = fileName.substr(dot + 1);
  return std::ranges::any_of(
      extensions, [extension](std::string_view known) { return std::ranges::equal(extension, known, {}, lowercased); });
}

}  // namespace quenlio
