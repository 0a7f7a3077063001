// Reads PNG files, row by row where they are not interlaced.
#pragma once

#include <QSizeF>
#include <cstdio>
#include <optional>

#include "desktop/render/DecodedImage.h"
#include "desktop/render/Placement.h"

namespace quenlio {

// From the file's present position. Nothing when it is no PNG, ends early, is damaged or claims an unreasonable size.
// Any thread.
[[nodiscard]] ReadResult readPng(std::FILE* file, const Fit& fit, const ReadLimits& limits);

// The size in points, by the header alone. Nothing when the header cannot be read or claims an unreasonable size.
[[nodiscard]] std::optional<QSizeF> pngPointSize(std::FILE* file);

}  // namespace quenlio
