// Whether a camera made a picture, as its EXIF data tells. Any thread; a bounded part of the file is read.
#pragma once

#include "desktop/linux/system/ByteSource.h"

namespace quenlio {

// Whether the picture names the make or model of a camera: JPEG, TIFF, PNG (where that stands before the pixels, as
// writers put it) and the HEIC family (where it lies in one piece in the file itself, as cameras write it).
[[nodiscard]] bool isCameraPicture(ByteSource& source);

}  // namespace quenlio
