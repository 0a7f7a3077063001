#include "desktop/linux/system/ScreenshotMetadata.h"

#include <array>
#include <fcntl.h>
#include <libdeflate.h>
#include <memory>
#include <sys/xattr.h>

#include "core/base/Text.h"

#include "desktop/linux/system/CompleteFormats.h"
#include "desktop/linux/system/JPEGSegments.h"
#include "desktop/linux/system/RegularFile.h"
#include "desktop/linux/system/ScreenshotNames.h"
#include "desktop/linux/system/TIFFDirectory.h"

namespace quenlio {
namespace {

constexpr int kMostChunks = 128;
constexpr std::uint64_t kMostChunkBytes = 4096;
constexpr std::string_view kExifHead{"Exif\0\0", 6};

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

// A zlib stream of a short text; empty for anything else.
std::string inflatedText(std::string_view packed) {
  const std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)> unpacker(
      libdeflate_alloc_decompressor(), &libdeflate_free_decompressor);
  std::array<char, 256> text{};
  std::size_t size = 0;
  const bool isGood =
      unpacker != nullptr && libdeflate_zlib_decompress(unpacker.get(), packed.data(), packed.size(), text.data(),
                                                        text.size(), &size) == LIBDEFLATE_SUCCESS;
  return isGood ? std::string(text.data(), size) : std::string{};
}

// Takes the text up to the next zero byte, and the zero byte, off the front.
std::string_view takeString(std::string_view& bytes) {
  const std::size_t end = std::min(bytes.find('\0'), bytes.size());
  const std::string_view text = bytes.substr(0, end);
  bytes.remove_prefix(std::min(end + 1, bytes.size()));
  return text;
}

// The text of a text chunk behind its key.
std::string chunkText(std::string_view type, std::string_view rest) {
  if (type == "tEXt") {
    return std::string(rest);
  }
  bool isPacked = true;
  if (type == "iTXt") {
    if (rest.size() < 2) {
      return {};
    }
    isPacked = rest[0] != '\0';
    rest.remove_prefix(2);
    (void)takeString(rest);  // the language
    (void)takeString(rest);  // the key in that language
  } else if (!rest.empty()) {
    rest.remove_prefix(1);  // the method, of which there is one
  }
  return isPacked ? inflatedText(rest) : std::string(rest);
}

bool isToolText(std::string_view type, std::string_view chunk) {
  const std::string_view key = takeString(chunk);
  if (key == "Software") {
    const std::string text = chunkText(type, chunk);
    return text == "gnome-screenshot" || text == "mate-screenshot";
  }
  return key == "windowTitle" || key == "screen";
}

bool hasScreenshotMark(const FileURL& url) {
  return ::getxattr(url.path().c_str(), kScreenshotMark, nullptr, 0) >= 0;
}

}  // namespace

bool isCameraPicture(ByteSource& source) {
  const std::string head = source.readUpTo(0, 4);
  if (head.starts_with("II") || head.starts_with("MM")) {
    return hasMakeOrModel(TIFFReader(source, 0, source.size()));
  }
  bool isCamera = false;
  if (head.starts_with("\xFF\xD8\xFF")) {
    (void)walkJPEGSegments(source, [&](const JPEGSegment& segment) {
      const std::uint64_t skip = kExifHead.size();
      if (segment.marker == kJPEGApp1 && segment.length > skip && source.readUpTo(segment.offset, skip) == kExifHead) {
        isCamera = hasMakeOrModel(TIFFReader(source, segment.offset + skip, segment.length - skip));
        return false;
      }
      return true;
    });
  }
  return isCamera;
}

bool hasScreenshotToolText(ByteSource& source) {
  if (source.readUpTo(0, kPNGSignature.size()) != kPNGSignature) {
    return false;
  }
  std::uint64_t offset = kPNGSignature.size();
  for (int i = 0; i < kMostChunks; ++i) {
    const auto head = source.read(offset, 8);
    if (!head || head->substr(4) == "IDAT") {
      return false;
    }
    const std::uint64_t length = number(*head, 0, 4);
    const std::string type = head->substr(4);
    if (type == "tEXt" || type == "iTXt" || type == "zTXt") {
      // Up to a limit: the key comes first, and a longer text is none that is looked for.
      if (isToolText(type, source.readUpTo(offset + 8, std::min(length, kMostChunkBytes)))) {
        return true;
      }
    }
    offset += length + 12;  // length, type and checksum
  }
  return false;
}

std::optional<MetadataValue> ScreenshotMetadata::MDItemCopyAttribute(const FileURL& url,
                                                                     std::string_view attribute) const {
  struct stat status {};
  if (attribute != kMDItemIsScreenCapture || ::stat(url.path().c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  if (own_.contains(url)) {
    return false;
  }
  if (const UniqueFd fd = openRegularFile(AT_FDCWD, url.path().c_str())) {
    if (FileSource source(fd.get(), status.st_size); isCameraPicture(source)) {
      return false;
    }
    if (FileSource source(fd.get(), status.st_size); hasScreenshotToolText(source)) {
      return true;
    }
  }
  if (hasScreenshotMark(url) || isScreenshotName(url.stem()) ||
      isScreenshotFolderName(url.parent().lastPathComponent())) {
    return true;
  }
  return std::nullopt;
}

}  // namespace quenlio
