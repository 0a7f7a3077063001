// The HEIC family: boxes after boxes, each with its length. The file is whole when the boxes fill it exactly and every
// piece of every item that the table of items points to lies inside.
#include "desktop/linux/system/CompleteFormats.h"

namespace quenlio {
namespace {

constexpr int kMostBoxes = 256;
constexpr std::uint64_t kMostItemTable = 128 * 1024;

struct Box {
  std::string type;
  std::uint64_t payload = 0;  // offset of what follows the header
  std::uint64_t end = 0;
};

// The box at the offset, which must end at the limit or before it.
std::optional<Box> boxAt(ByteSource& source, std::uint64_t offset, std::uint64_t limit) {
  const auto head = limit - offset >= 8 ? source.read(offset, 8) : std::nullopt;
  if (!head) {
    return std::nullopt;
  }
  Box box{.type = head->substr(4), .payload = offset + 8};
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

// Reads numbers one after the other; running out of bytes is remembered.
class Cursor {
 public:
  explicit Cursor(std::string_view bytes) : bytes_(bytes) {}

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

// The table of items: whether every piece that is told by its place in the file lies inside it.
bool areItemsInside(std::string_view table, std::uint64_t fileSize) {
  Cursor cursor(table);
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
    (void)cursor.take(version < 2 ? 2 : 4);
    const std::uint64_t method = version == 0 ? 0 : cursor.take(2) & 15U;
    (void)cursor.take(2);
    const std::uint64_t base = cursor.take(baseWidth);
    const std::uint64_t pieces = cursor.take(2);
    for (std::uint64_t k = 0; k < pieces && cursor.isGood(); ++k) {
      (void)cursor.take(indexWidth);
      const std::uint64_t offset = cursor.take(offsetWidth);
      const std::uint64_t length = cursor.take(lengthWidth);
      // Length 0 means the whole of the file, wherever that ends by now.
      const bool isInside =
          length != 0 && base <= fileSize && offset <= fileSize - base && length <= fileSize - base - offset;
      if (method == 0 && !isInside) {
        return false;
      }
      if (offsetWidth + lengthWidth + indexWidth == 0) {
        break;  // pieces that take no bytes at all are all alike
      }
    }
  }
  return cursor.isGood() && items > 0;
}

// The box of metadata: holds a table of items, whose pieces lie inside the file.
bool isMetaComplete(ByteSource& source, const Box& meta) {
  std::uint64_t offset = meta.payload + 4;  // after version and flags
  for (int i = 0; i < kMostBoxes && offset < meta.end; ++i) {
    const auto box = boxAt(source, offset, meta.end);
    if (!box) {
      return false;
    }
    if (box->type == "iloc") {
      const std::uint64_t length = box->end - box->payload;
      const auto table = length <= kMostItemTable ? source.read(box->payload, length) : std::nullopt;
      return table && areItemsInside(*table, source.size());
    }
    offset = box->end;
  }
  return false;
}

}  // namespace

bool isCompleteHEIC(ByteSource& source) {
  std::uint64_t offset = 0;
  bool isDescribed = false;
  for (int i = 0; i < kMostBoxes && offset < source.size(); ++i) {
    const auto box = boxAt(source, offset, source.size());
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
