// Whether a picture or document is whole, told from its own structure: each format says where its data ends. The answer
// errs on one side only. A file that lacks as much as its last byte is never called complete; an unusual file that is
// whole may be called incomplete, and is then taken after its two seconds.
//
// Nothing here decodes pixels. Any bytes may be fed in; the work is bounded by the source.
#pragma once

#include "desktop/linux/system/ByteSource.h"

namespace quenlio {

// By the contents: PNG, JPEG, TIFF, PDF and the HEIC family. False for every other kind.
[[nodiscard]] bool isCompleteByFormat(ByteSource& source);

// Each one expects a source whose head is that of the format.
[[nodiscard]] bool isCompletePNG(ByteSource& source);
[[nodiscard]] bool isCompleteJPEG(ByteSource& source);
[[nodiscard]] bool isCompletePDF(ByteSource& source);
[[nodiscard]] bool isCompleteTIFF(ByteSource& source);
[[nodiscard]] bool isCompleteHEIC(ByteSource& source);

}  // namespace quenlio
