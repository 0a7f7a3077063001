// The kinds of files that the program takes for pictures.
#pragma once

#include <string_view>

#include "core/base/FileURL.h"

namespace quenlio {

// Whether the extension is one of png, jpg, jpeg, heic, tiff and pdf, in any case of letters. Any thread.
[[nodiscard]] bool hasImageExtension(const FileURL& url);

// The same by the file's name alone, at no cost to speak of: long listings ask it of every entry.
[[nodiscard]] bool hasImageExtension(std::string_view fileName);

}  // namespace quenlio
