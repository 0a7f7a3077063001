#include "desktop/linux/system/TIFFDirectory.h"

#include <algorithm>
#include <array>

namespace quenlio {
namespace {

constexpr std::uint64_t kEntryBytes = 12;
constexpr std::uint64_t kMostEntries = 1024;
constexpr std::uint64_t kMostNumbers = 32 * 1024;
constexpr std::uint64_t kMostText = 1024;

constexpr std::uint16_t kByte = 1;
constexpr std::uint16_t kASCII = 2;
constexpr std::uint16_t kShort = 3;
constexpr std::uint16_t kLong = 4;
constexpr std::uint16_t kIFD = 13;

// Bytes of one value, by its type; 0 for a type that does not exist.
std::uint64_t width(std::uint16_t type) {
  static constexpr std::array<std::uint8_t, 14> kWidths{0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
  return type < kWidths.size() ? kWidths[type] : 0;
}

}  // namespace

const TIFFEntry* TIFFDirectory::find(std::uint16_t tag) const {
  const auto found = std::ranges::find(entries, tag, &TIFFEntry::tag);
  return found == entries.end() ? nullptr : &*found;
}

std::optional<std::string> TIFFReader::read(std::uint64_t offset, std::uint64_t bytes) {
  return contains(offset, bytes) ? source_.read(base_ + offset, bytes) : std::nullopt;
}

std::optional<std::uint64_t> TIFFReader::firstDirectory() {
  const auto header = read(0, 8);
  if (!header) {
    return std::nullopt;
  }
  const bool isLittle = header->starts_with("II");
  if (!isLittle && !header->starts_with("MM")) {
    return std::nullopt;
  }
  order_ = isLittle ? std::endian::little : std::endian::big;
  const std::uint64_t first = number(*header, 4, 4, order_);
  return number(*header, 2, 2, order_) == 42 && first >= 8 ? std::optional(first) : std::nullopt;
}

std::optional<TIFFDirectory> TIFFReader::directory(std::uint64_t offset) {
  const auto counted = read(offset, 2);
  const std::uint64_t count = counted ? number(*counted, 0, 2, order_) : 0;
  if (count == 0 || count > kMostEntries) {
    return std::nullopt;
  }
  const auto bytes = read(offset + 2, count * kEntryBytes + 4);
  if (!bytes) {
    return std::nullopt;
  }
  TIFFDirectory result;
  result.entries.reserve(static_cast<std::size_t>(count));
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t at = i * kEntryBytes;
    TIFFEntry entry{.tag = static_cast<std::uint16_t>(number(*bytes, at, 2, order_)),
                    .type = static_cast<std::uint16_t>(number(*bytes, at + 2, 2, order_)),
                    .count = number(*bytes, at + 4, 4, order_)};
    entry.bytes = entry.count * width(entry.type);
    // A value of up to four bytes stands in the entry itself.
    entry.offset = entry.bytes <= 4 ? offset + 2 + at + 8 : number(*bytes, at + 8, 4, order_);
    result.entries.push_back(entry);
  }
  result.next = number(*bytes, static_cast<std::size_t>(count * kEntryBytes), 4, order_);
  return result;
}

std::optional<std::vector<std::uint64_t>> TIFFReader::numbers(const TIFFEntry& entry) {
  const bool isWhole = entry.type == kByte || entry.type == kShort || entry.type == kLong || entry.type == kIFD;
  if (!isWhole || entry.count > kMostNumbers) {
    return std::nullopt;
  }
  const auto bytes = read(entry.offset, entry.bytes);
  if (!bytes) {
    return std::nullopt;
  }
  std::vector<std::uint64_t> result;
  const auto each = static_cast<std::size_t>(width(entry.type));
  for (std::size_t at = 0; at < bytes->size(); at += each) {
    result.push_back(number(*bytes, at, each, order_));
  }
  return result;
}

std::optional<std::string> TIFFReader::text(const TIFFEntry& entry) {
  if (entry.type != kASCII || entry.count > kMostText) {
    return std::nullopt;
  }
  auto bytes = read(entry.offset, entry.bytes);
  if (bytes) {
    bytes->resize(std::min(bytes->size(), bytes->find('\0')));
  }
  return bytes;
}

}  // namespace quenlio
