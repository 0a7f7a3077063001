// Small files of every kind, built byte by byte, so that the tests know where each one ends.
#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quenlio::samples {

// One chunk with its length and checksum.
std::string pngChunk(std::string_view type, std::string_view data);
// A grey PNG of that many rows of 16 pixels, with the given chunks before its pixels.
std::string png(std::string_view chunks = {}, std::uint32_t rows = 4);
// The zlib stream of a text.
std::string deflated(std::string_view text);

struct JPEGOptions {
  std::string make{};   // no EXIF make when empty
  std::string model{};  // no EXIF model when empty
  bool hasPreview = false;
  bool isProgressive = false;
};
std::string jpeg(const JPEGOptions& options = {});

enum class DirectoryPlace { beforeTheData, afterTheData };
struct TIFFOptions {
  std::endian order = std::endian::little;
  DirectoryPlace place = DirectoryPlace::afterTheData;
  std::string make{};
  int pages = 1;
};
std::string tiff(const TIFFOptions& options = {});

std::string pdf();
// Laid out for the web: a first section with an end mark of its own, then the rest.
std::string linearizedPdf();

enum class MetaPlace { beforeTheData, afterTheData };
std::string heic(MetaPlace place = MetaPlace::beforeTheData);
// With an EXIF item, in one piece, that holds this TIFF data behind that many bytes of another head.
std::string heicWithExif(std::string_view tiffData, std::uint32_t headLength = 6);

// One of each, under a name for messages.
std::vector<std::pair<std::string, std::string>> all();

}  // namespace quenlio::samples
