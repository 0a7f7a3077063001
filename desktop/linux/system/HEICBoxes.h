// The boxes that a file of the HEIC family is made of, and its table of items. Any thread; any bytes may be fed in.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "desktop/linux/system/ByteSource.h"

namespace quenlio {

struct HEICBox {
  std::string type;
  std::uint64_t payload = 0;  // offset of what follows the header
  std::uint64_t end = 0;
};

// The box at the offset, which must end at the limit or before it.
[[nodiscard]] std::optional<HEICBox> heicBoxAt(ByteSource& source, std::uint64_t offset, std::uint64_t limit);

// The first box of that type, of the boxes that stand one after the other up to the limit. A limited number is looked
// at.
[[nodiscard]] std::optional<HEICBox> findHEICBox(ByteSource& source, std::string_view type, std::uint64_t offset,
                                                 std::uint64_t limit);

// The bytes behind the header. Nothing when there are more of them than any picture needs.
[[nodiscard]] std::optional<std::string> heicPayload(ByteSource& source, const HEICBox& box);

// Reads numbers one after the other; running out of bytes is remembered.
class NumberCursor {
 public:
  explicit NumberCursor(std::string_view bytes) : bytes_(bytes) {}

  std::uint64_t take(std::size_t width) {
    if (width > bytes_.size()) {
      isGood_ = false;
      return 0;
    }
    const std::uint64_t value = number(bytes_, 0, width);
    bytes_.remove_prefix(width);
    return value;
  }
  [[nodiscard]] bool isGood() const { return isGood_; }

 private:
  std::string_view bytes_;
  bool isGood_ = true;
};

// One piece of an item.
struct HEICPiece {
  std::uint64_t item = 0;
  bool isInFile = false;  // the place is one in the file itself
  std::uint64_t base = 0;
  std::uint64_t offset = 0;  // from the base
  std::uint64_t length = 0;  // 0 means the whole of the file, wherever that ends by now

  // Whether it lies whole inside a file of that size.
  [[nodiscard]] bool isInside(std::uint64_t fileSize) const {
    return length != 0 && base <= fileSize && offset <= fileSize - base && length <= fileSize - base - offset;
  }
};

// Visits the pieces that a table of items (the payload of "iloc") tells of, until the visitor answers false. True when
// the table was read to its end and is not empty.
bool walkHEICPieces(std::string_view table, const std::function<bool(const HEICPiece&)>& visit);

}  // namespace quenlio
