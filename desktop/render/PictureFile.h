// A file that may be a picture, opened by its bytes' path. Owned by who opens it; used by one thread at a time.
#pragma once

#include <cstdio>
#include <memory>
#include <optional>
#include <string_view>

#include "core/base/FileURL.h"

namespace quenlio {

enum class PictureKind { png, jpeg, heic, tiff, pdf };

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, CloseFile>;

struct PictureFile {
  std::unique_ptr<char[]> buffer;  // the file's, and gone after it
  OpenFile file;                   // at its beginning
  PictureKind kind;
};

// Nothing when the file cannot be opened, is not a regular one or is of no kind that is shown. The kind is told by the
// contents: a name's extension proves nothing.
[[nodiscard]] std::optional<PictureFile> openPicture(const FileURL& url);

// The kind by the first bytes of a file; at most a thousand are looked at.
[[nodiscard]] std::optional<PictureKind> pictureKind(std::string_view head);

}  // namespace quenlio
