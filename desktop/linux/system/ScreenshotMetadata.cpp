#include "desktop/linux/system/ScreenshotMetadata.h"

#include <array>
#include <fcntl.h>
#include <libdeflate.h>
#include <memory>
#include <sys/xattr.h>

#include "desktop/linux/system/CameraPicture.h"
#include "desktop/linux/system/PNGChunks.h"
#include "desktop/linux/system/RegularFile.h"
#include "desktop/linux/system/ScreenshotNames.h"

namespace quenlio {
namespace {

constexpr std::uint64_t kMostChunkBytes = 4096;

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

bool hasScreenshotToolText(ByteSource& source) {
  bool isTool = false;
  walkPNGChunks(source, [&](const PNGChunk& chunk) {
    if (chunk.type == "tEXt" || chunk.type == "iTXt" || chunk.type == "zTXt") {
      // Up to a limit: the key comes first, and a longer text is none that is looked for.
      isTool = isToolText(chunk.type, source.readUpTo(chunk.offset, std::min(chunk.length, kMostChunkBytes)));
    }
    return !isTool;
  });
  return isTool;
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
