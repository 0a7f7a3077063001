#include "desktop/linux/system/HEICBoxes.h"

namespace quenlio {
namespace {

constexpr int kMostBoxes = 256;
constexpr std::uint64_t kMostPayload = 128 * 1024;

}  // namespace

std::optional<HEICBox> heicBoxAt(ByteSource& source, std::uint64_t offset, std::uint64_t limit) {
  const auto head = limit - offset >= 8 ? source.read(offset, 8) : std::nullopt;
  if (!head) {
    return std::nullopt;
  }
  HEICBox box{.type = head->substr(4), .payload = offset + 8};
  std::uint64_t size = number(*head, 0, 4);
  if (size == 1) {  // the length did not fit and follows
    const auto large = source.read(offset + 8, 8);
    if (!large) {
      return std::nullopt;
    }
    size = number(*large, 0, 8);
    box.payload += 8;
  }
  // Length 0 means "up to the end of the file", wherever that is by now: no proof of anything.
  if (size < box.payload - offset || size > limit - offset) {
    return std::nullopt;
  }
  box.end = offset + size;
  return box;
}

std::optional<HEICBox> findHEICBox(ByteSource& source, std::string_view type, std::uint64_t offset,
                                   std::uint64_t limit) {
  for (int i = 0; i < kMostBoxes && offset < limit; ++i) {
    auto box = heicBoxAt(source, offset, limit);
    if (!box || box->type == type) {
      return box;
    }
    offset = box->end;
  }
  return std::nullopt;
}

std::optional<std::string> heicPayload(ByteSource& source, const HEICBox& box) {
  const std::uint64_t length = box.end - box.payload;
  return length <= kMostPayload ? source.read(box.payload, length) : std::nullopt;
}

bool walkHEICPieces(std::string_view table, const std::function<bool(const HEICPiece&)>& visit) {
  NumberCursor cursor(table);
  const std::uint64_t version = cursor.take(1);
  (void)cursor.take(3);
  const std::uint64_t widths = cursor.take(2);
  const auto offsetWidth = static_cast<std::size_t>(widths >> 12U & 15U);
  const auto lengthWidth = static_cast<std::size_t>(widths >> 8U & 15U);
  const auto baseWidth = static_cast<std::size_t>(widths >> 4U & 15U);
  const auto indexWidth = version == 0 ? std::size_t{0} : static_cast<std::size_t>(widths & 15U);
  if (version > 2 || offsetWidth > 8 || lengthWidth > 8 || baseWidth > 8 || indexWidth > 8) {
    return false;
  }
  const std::uint64_t items = cursor.take(version < 2 ? 2 : 4);
  for (std::uint64_t i = 0; i < items && cursor.isGood(); ++i) {
    HEICPiece piece{.item = cursor.take(version < 2 ? 2 : 4)};
    piece.isInFile = version == 0 || (cursor.take(2) & 15U) == 0;
    (void)cursor.take(2);
    piece.base = cursor.take(baseWidth);
    const std::uint64_t pieces = cursor.take(2);
    for (std::uint64_t k = 0; k < pieces && cursor.isGood(); ++k) {
      (void)cursor.take(indexWidth);
      piece.offset = cursor.take(offsetWidth);
      piece.length = cursor.take(lengthWidth);
      if (!visit(piece)) {
        return false;
      }
      if (offsetWidth + lengthWidth + indexWidth == 0) {
        break;  // pieces that take no bytes at all are all alike
      }
    }
  }
  return cursor.isGood() && items > 0;
}

}  // namespace quenlio
