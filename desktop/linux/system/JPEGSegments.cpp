#include "desktop/linux/system/JPEGSegments.h"

namespace quenlio {
namespace {

constexpr int kMostSegments = 512;

}  // namespace

std::optional<std::uint64_t> walkJPEGSegments(ByteSource& source,
                                              const std::function<bool(const JPEGSegment&)>& visit) {
  std::uint64_t offset = 2;  // after the start of image
  for (int i = 0; i < kMostSegments; ++i) {
    const auto head = source.read(offset, 4);
    if (!head || number(*head, 0, 1) != 0xFF) {
      return std::nullopt;
    }
    const auto marker = static_cast<std::uint8_t>(number(*head, 1, 1));
    if (marker == 0xFF) {  // a fill byte before the marker
      ++offset;
      continue;
    }
    const bool hasLength = marker >= 0xC0 && !(marker >= 0xD0 && marker <= 0xD9);
    const std::uint64_t length = number(*head, 2, 2);
    if (!hasLength || length < 2) {
      return std::nullopt;
    }
    const JPEGSegment segment{.marker = marker, .offset = offset + 4, .length = length - 2};
    offset = segment.offset + segment.length;
    if (offset > source.size() || !visit(segment)) {
      return std::nullopt;
    }
    if (marker == kJPEGStartOfScan) {
      return offset;
    }
  }
  return std::nullopt;
}

}  // namespace quenlio
