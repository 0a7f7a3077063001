// Reads PNG files, row by row where they are not interlaced.
#pragma once

#include <cstdio>

#include "desktop/render/DecodedImage.h"
#include "desktop/render/Placement.h"

namespace quenlio {

// From the file's present position. Nothing when it is no PNG, ends early, is damaged or claims an unreasonable size.
// Any thread.
[[nodiscard]] ReadResult readPng(std::FILE* file, const Fit& fit, const ReadLimits& limits);

}  // namespace quenlio
