// One screenshot of the library. A plain value.
#pragma once

#include <cstdint>
#include <optional>

#include "core/base/Date.h"
#include "core/base/FileURL.h"
#include "core/base/Uuid.h"
#include "core/identity/ScreenUtilities.h"
#include "core/platform/Image.h"

namespace quenlio {

struct ScreenshotItem {
  Uuid id;  // fresh for every ingest and every restore; a rename or an edit keeps it
  FileURL fileURL;
  Date createdAt;             // the file's creation date, else the moment of ingest
  std::int64_t fileSize = 0;  // bytes, 0 when unknown
  bool isPinned = false;
  ImageRef thumbnail;  // absent until it has been rendered, and for good when it cannot be
  std::optional<DisplayID> sourceDisplayID;
  bool operator==(const ScreenshotItem&) const = default;
};

}  // namespace quenlio
