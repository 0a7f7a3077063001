// A file that may be a picture, opened by its bytes' path. Owned by who opens it; used by one thread at a time.
#pragma once

#include <cstdio>
#include <memory>
#include <optional>

#include "core/base/FileURL.h"

#include "desktop/linux/system/PictureKind.h"

namespace quenlio {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, CloseFile>;

struct PictureFile {
  std::unique_ptr<char[]> buffer;  // the file's, and gone after it
  OpenFile file;                   // at its beginning
  PictureKind kind;
};

// Nothing when the file cannot be opened, is not a regular one or is of no kind that is shown.
[[nodiscard]] std::optional<PictureFile> openPicture(const FileURL& url);

}  // namespace quenlio
