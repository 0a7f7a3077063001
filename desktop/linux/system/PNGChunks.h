// The chunks that open a PNG, up to its pixels. Any thread; any bytes may be fed in.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "desktop/linux/system/ByteSource.h"

namespace quenlio {

struct PNGChunk {
  std::string type;
  std::uint64_t offset = 0;  // of the data, after length and type
  std::uint64_t length = 0;  // of the data, as the chunk claims
};

// Visits the chunks before the first of the pixels, a limited number of them, until the visitor answers false. None
// when this is no PNG.
void walkPNGChunks(ByteSource& source, const std::function<bool(const PNGChunk&)>& visit);

}  // namespace quenlio
