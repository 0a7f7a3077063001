// Reads JPEG files. The codec itself makes large ones smaller while it decodes.
#pragma once

#include <cstdio>

#include "desktop/render/DecodedImage.h"
#include "desktop/render/Placement.h"

namespace quenlio {

// From the file's present position. Nothing when it is no JPEG, ends early, cannot be decoded or claims an
// unreasonable size. Any thread.
[[nodiscard]] ReadResult readJpeg(std::FILE* file, const Fit& fit, const ReadLimits& limits);

}  // namespace quenlio
