// The kinds of files that the program takes for pictures.
#pragma once

#include "core/base/FileURL.h"

namespace quenlio {

// Whether the extension is one of png, jpg, jpeg, heic, tiff and pdf, in any case of letters. Any thread.
[[nodiscard]] bool hasImageExtension(const FileURL& url);

}  // namespace quenlio
