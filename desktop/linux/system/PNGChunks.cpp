#include "desktop/linux/system/PNGChunks.h"

#include "desktop/linux/system/PictureKind.h"

namespace quenlio {
namespace {
constexpr int kMostChunks = 128;
}

void walkPNGChunks(ByteSource& source, const std::function<bool(const PNGChunk&)>& visit) {
  if (source.readUpTo(0, kPNGSignature.size()) != kPNGSignature) {
    return;
  }
  std::uint64_t offset = kPNGSignature.size();
  for (int i = 0; i < kMostChunks; ++i) {
    const auto head = source.read(offset, 8);
    if (!head) {
      return;
    }
    const PNGChunk chunk{.type = head->substr(4), .offset = offset + 8, .length = number(*head, 0, 4)};
    if (chunk.type == "IDAT" || !visit(chunk)) {
      return;
    }
    offset += chunk.length + 12;  // length, type and checksum
  }
}

}  // namespace quenlio
