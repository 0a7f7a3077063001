// The directories of tags that TIFF files are made of, and that JPEG files carry as EXIF. Any thread; any bytes may be
// fed in.
#pragma once

#include <bit>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "desktop/linux/system/ByteSource.h"

namespace quenlio {

struct TIFFEntry {
  std::uint16_t tag = 0;
  std::uint16_t type = 0;
  std::uint64_t count = 0;
  std::uint64_t offset = 0;  // of the value, from the start of the TIFF data
  std::uint64_t bytes = 0;   // of the value; 0 for a type that does not exist
};

struct TIFFDirectory {
  std::vector<TIFFEntry> entries;
  std::uint64_t next = 0;  // offset of the next directory; 0 for the last

  [[nodiscard]] const TIFFEntry* find(std::uint16_t tag) const;
};

// TIFF data that begins at `base` of the source, `length` bytes long: offsets count from the base.
class TIFFReader {
 public:
  TIFFReader(ByteSource& source, std::uint64_t base, std::uint64_t length)
      : source_(source), base_(base), length_(length) {}

  // Reads the header and answers where the first directory is. Nothing when this is no TIFF data, or its writer has
  // not yet told.
  [[nodiscard]] std::optional<std::uint64_t> firstDirectory();
  // Nothing when it does not lie whole inside the data. Values are not looked at.
  [[nodiscard]] std::optional<TIFFDirectory> directory(std::uint64_t offset);
  // Unsigned whole numbers. Nothing when the entry holds something else, or its value is not there.
  [[nodiscard]] std::optional<std::vector<std::uint64_t>> numbers(const TIFFEntry& entry);
  // Text without its closing zero. Nothing when the entry holds something else, or its value is not there.
  [[nodiscard]] std::optional<std::string> text(const TIFFEntry& entry);
  // Whether that range lies inside the data.
  [[nodiscard]] bool contains(std::uint64_t offset, std::uint64_t bytes) const {
    return offset <= length_ && bytes <= length_ - offset;
  }

 private:
  [[nodiscard]] std::optional<std::string> read(std::uint64_t offset, std::uint64_t bytes);

  ByteSource& source_;
  std::uint64_t base_;
  std::uint64_t length_;
  std::endian order_ = std::endian::little;
};

}  // namespace quenlio
