// The marker segments that open a JPEG file. Any thread; any bytes may be fed in.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "desktop/linux/system/ByteSource.h"

namespace quenlio {

struct JPEGSegment {
  std::uint8_t marker = 0;   // the byte after 0xFF
  std::uint64_t offset = 0;  // of the payload, after marker and length
  std::uint64_t length = 0;  // of the payload
};

inline constexpr std::uint8_t kJPEGApp1 = 0xE1;
inline constexpr std::uint8_t kJPEGStartOfScan = 0xDA;

// Visits the segments up to and including the first scan's header, or until the visitor answers false. Gives the
// offset right after that header, where the picture's data begins; nothing when the file does not get that far.
[[nodiscard]] std::optional<std::uint64_t> walkJPEGSegments(ByteSource& source,
                                                            const std::function<bool(const JPEGSegment&)>& visit);

}  // namespace quenlio
