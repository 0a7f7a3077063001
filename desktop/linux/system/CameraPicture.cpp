#include "desktop/linux/system/CameraPicture.h"

#include "core/base/Text.h"

#include "desktop/linux/system/HEICBoxes.h"
#include "desktop/linux/system/JPEGSegments.h"
#include "desktop/linux/system/PNGChunks.h"
#include "desktop/linux/system/PictureKind.h"
#include "desktop/linux/system/TIFFDirectory.h"

namespace quenlio {
namespace {

constexpr std::string_view kExifHead{"Exif\0\0", 6};
constexpr int kMostItems = 1024;

constexpr std::uint16_t kMake = 0x010F;
constexpr std::uint16_t kModel = 0x0110;

bool hasMakeOrModel(TIFFReader reader) {
  const auto first = reader.firstDirectory();
  const auto directory = first ? reader.directory(*first) : std::nullopt;
  for (const std::uint16_t tag : {kMake, kModel}) {
    const TIFFEntry* entry = directory ? directory->find(tag) : nullptr;
    const auto text = entry != nullptr ? reader.text(*entry) : std::nullopt;
    if (text && !trimmed(*text).empty()) {
      return true;
    }
  }
  return false;
}

bool isCameraJPEG(ByteSource& source) {
  bool isCamera = false;
  (void)walkJPEGSegments(source, [&](const JPEGSegment& segment) {
    const std::uint64_t skip = kExifHead.size();
    if (segment.marker == kJPEGApp1 && segment.length > skip && source.readUpTo(segment.offset, skip) == kExifHead) {
      isCamera = hasMakeOrModel(TIFFReader(source, segment.offset + skip, segment.length - skip));
      return false;
    }
    return true;
  });
  return isCamera;
}

bool isCameraPNG(ByteSource& source) {
  bool isCamera = false;
  walkPNGChunks(source, [&](const PNGChunk& chunk) {
    if (chunk.type == "eXIf") {
      isCamera = hasMakeOrModel(TIFFReader(source, chunk.offset, chunk.length));
      return false;
    }
    return true;
  });
  return isCamera;
}

// The number of the EXIF item in the list of items (the payload of "iinf").
std::optional<std::uint64_t> exifItem(std::string_view list) {
  const std::uint64_t countWidth = list.starts_with('\0') ? 2 : 4;
  MemorySource source(list);
  std::uint64_t offset = 4 + countWidth;  // after version, flags and count
  for (int i = 0; i < kMostItems && offset < list.size(); ++i) {
    const auto box = heicBoxAt(source, offset, list.size());
    if (!box) {
      return std::nullopt;
    }
    NumberCursor cursor(
        list.substr(static_cast<std::size_t>(box->payload), static_cast<std::size_t>(box->end - box->payload)));
    const std::uint64_t version = cursor.take(1);
    (void)cursor.take(3);
    const std::uint64_t item = cursor.take(version == 3 ? 4 : 2);
    (void)cursor.take(2);  // how it is protected
    const std::uint64_t type = cursor.take(4);
    if (box->type == "infe" && version >= 2 && cursor.isGood() && type == number("Exif", 0, 4)) {
      return item;
    }
    offset = box->end;
  }
  return std::nullopt;
}

// Where an item lies that is one piece in the file.
std::optional<HEICPiece> pieceOf(std::uint64_t item, std::string_view table) {
  std::optional<HEICPiece> found;
  (void)walkHEICPieces(table, [&](const HEICPiece& piece) {
    if (piece.item == item) {
      found = piece;
    }
    return !found;
  });
  return found && found->isInFile ? found : std::nullopt;
}

bool isCameraHEIC(ByteSource& source) {
  const auto meta = findHEICBox(source, "meta", 0, source.size());
  const auto payload = [&](std::string_view type) {
    const auto box = meta ? findHEICBox(source, type, meta->payload + 4, meta->end) : std::nullopt;
    return box ? heicPayload(source, *box) : std::nullopt;
  };
  const auto list = payload("iinf");
  const auto item = list ? exifItem(*list) : std::nullopt;
  const auto table = item ? payload("iloc") : std::nullopt;
  const auto piece = table ? pieceOf(*item, *table) : std::nullopt;
  if (!piece || !piece->isInside(source.size()) || piece->length < 4) {
    return false;
  }
  // The data begins with how many more bytes lie before it.
  const std::uint64_t start = piece->base + piece->offset;
  const auto head = source.read(start, 4);
  const std::uint64_t skip = head ? 4 + number(*head, 0, 4) : piece->length;
  return skip < piece->length && hasMakeOrModel(TIFFReader(source, start + skip, piece->length - skip));
}

}  // namespace

bool isCameraPicture(ByteSource& source) {
  const auto kind = pictureKind(source.readUpTo(0, kPictureHead));
  if (!kind) {
    return false;
  }
  switch (*kind) {
    case PictureKind::png:
      return isCameraPNG(source);
    case PictureKind::jpeg:
      return isCameraJPEG(source);
    case PictureKind::heic:
      return isCameraHEIC(source);
    case PictureKind::tiff:
      return hasMakeOrModel(TIFFReader(source, 0, source.size()));
    case PictureKind::pdf:
      return false;
  }
  return false;
}

}  // namespace quenlio
