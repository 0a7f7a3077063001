// Bytes of a picture, read piece by piece at any offset. The parsers of this folder read files only through it, and
// never trust what they read: the source hands out a limited number of pieces and bytes in all, then nothing more, so
// that a hostile file costs bounded work whatever its counts and offsets claim.
//
// One thread at a time.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quenlio {

class ByteSource {
 public:
  virtual ~ByteSource() = default;

  [[nodiscard]] virtual std::uint64_t size() const = 0;

  // Exactly count bytes at the offset. Nothing when they do not all exist, cannot be read or go over the limits.
  [[nodiscard]] std::optional<std::string> read(std::uint64_t offset, std::uint64_t count) {
    if (offset > size() || count > size() - offset || count > bytesLeft_ || piecesLeft_ == 0) {
      return std::nullopt;
    }
    bytesLeft_ -= count;
    --piecesLeft_;
    std::string bytes(static_cast<std::size_t>(count), '\0');
    return readBytes(offset, bytes) ? std::optional(std::move(bytes)) : std::nullopt;
  }

  // As many of the bytes as the file has there, up to count.
  [[nodiscard]] std::string readUpTo(std::uint64_t offset, std::uint64_t count) {
    const std::uint64_t there = offset > size() ? 0 : size() - offset;
    return read(offset, std::min(count, there)).value_or(std::string{});
  }

  // The last bytes of the file, up to count.
  [[nodiscard]] std::string readTail(std::uint64_t count) {
    const std::uint64_t there = std::min(count, size());
    return read(size() - there, there).value_or(std::string{});
  }

 private:
  virtual bool readBytes(std::uint64_t offset, std::string& bytes) = 0;

  std::uint64_t bytesLeft_ = 512 * 1024;
  int piecesLeft_ = 2048;
};

// Bytes in memory.
class MemorySource final : public ByteSource {
 public:
  explicit MemorySource(std::string_view bytes) : bytes_(bytes) {}
  [[nodiscard]] std::uint64_t size() const override { return bytes_.size(); }

 private:
  bool readBytes(std::uint64_t offset, std::string& bytes) override {
    bytes = bytes_.substr(static_cast<std::size_t>(offset), bytes.size());
    return true;
  }

  std::string_view bytes_;
};

// An unsigned number of `width` bytes (at most 8) at the offset, which must lie inside the bytes.
[[nodiscard]] inline std::uint64_t number(std::string_view bytes, std::size_t offset, std::size_t width,
                                          std::endian order = std::endian::big) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < width; ++i) {
    const std::size_t place = order == std::endian::big ? i : width - 1 - i;
    value = value << 8U | static_cast<std::uint8_t>(bytes[offset + place]);
  }
  return value;
}

}  // namespace quenlio
