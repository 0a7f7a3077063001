// Reads JPEG files. The codec itself makes large ones smaller while it decodes.
#pragma once

#include <QSizeF>
#include <cstdio>
#include <optional>

#include "desktop/render/DecodedImage.h"
#include "desktop/render/Placement.h"

namespace quenlio {

// From the file's present position. Nothing when it is no JPEG, ends early, cannot be decoded or claims an
// unreasonable size. Any thread.
[[nodiscard]] ReadResult readJpeg(std::FILE* file, const Fit& fit, const ReadLimits& limits);

// The size in points of the picture turned upright, by the header alone. Nothing when the header cannot be read or
// claims an unreasonable size.
[[nodiscard]] std::optional<QSizeF> jpegPointSize(std::FILE* file);

}  // namespace quenlio
