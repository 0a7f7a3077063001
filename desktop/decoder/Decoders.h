// The decoders of the child process, one a format. Each is given the whole file and gives nothing when it is damaged,
// not of its format or unreasonably large. One picture a process, one thread.
#pragma once

#include <QByteArray>
#include <optional>

#include "desktop/render/DecodedImage.h"
#include "desktop/render/Placement.h"

namespace quenlio::decoder {

// The first page, on white paper.
[[nodiscard]] std::optional<DecodedImage> decodePdf(const QByteArray& file, const Fit& fit);
// The primary picture.
[[nodiscard]] std::optional<DecodedImage> decodeHeic(const QByteArray& file, const Fit& fit);
// The first picture.
[[nodiscard]] std::optional<DecodedImage> decodeTiff(const QByteArray& file, const Fit& fit);

}  // namespace quenlio::decoder
