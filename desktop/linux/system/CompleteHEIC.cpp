// The HEIC family: boxes after boxes, each with its length. The file is whole when the boxes fill it exactly and every
// piece of every item that the table of items points to lies inside.
#include "desktop/linux/system/CompleteFormats.h"
#include "desktop/linux/system/HEICBoxes.h"

namespace quenlio {
namespace {

constexpr int kMostBoxes = 256;

// The box of metadata: holds a table of items, whose pieces lie inside the file.
bool isMetaComplete(ByteSource& source, const HEICBox& meta) {
  const auto box = findHEICBox(source, "iloc", meta.payload + 4, meta.end);  // after version and flags
  const auto table = box ? heicPayload(source, *box) : std::nullopt;
  return table && walkHEICPieces(*table, [&source](const HEICPiece& piece) {
           return !piece.isInFile || piece.isInside(source.size());
         });
}

}  // namespace

bool isCompleteHEIC(ByteSource& source) {
  std::uint64_t offset = 0;
  bool isDescribed = false;
  for (int i = 0; i < kMostBoxes && offset < source.size(); ++i) {
    const auto box = heicBoxAt(source, offset, source.size());
    if (!box || (offset == 0) != (box->type == "ftyp")) {
      return false;
    }
    if (box->type == "meta") {
      if (isDescribed || !isMetaComplete(source, *box)) {
        return false;
      }
      isDescribed = true;
    }
    offset = box->end;
  }
  return isDescribed && offset == source.size();
}

}  // namespace quenlio
