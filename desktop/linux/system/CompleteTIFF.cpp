// A TIFF file is a chain of directories that say where the data is. Writers patch the place of the first directory into
// the header last, or write everything in order: either way the file is whole once all that is pointed to lies inside.
#include <algorithm>
#include <set>
#include <utility>

#include "desktop/linux/system/CompleteFormats.h"
#include "desktop/linux/system/TIFFDirectory.h"

namespace quenlio {
namespace {

constexpr std::size_t kMostDirectories = 64;

// Tags that tell where data is, with those that tell how long it is.
constexpr std::pair<std::uint16_t, std::uint16_t> kData[] = {
    {273, 279},  // strips
    {324, 325},  // tiles
    {513, 514},  // an embedded JPEG
};

// Tags that lead to further directories: more pictures, EXIF, GPS, interoperability.
constexpr std::uint16_t kSubdirectories[] = {330, 34665, 34853, 40965};

bool areDataInside(TIFFReader& reader, const TIFFDirectory& directory) {
  for (const auto& [placeTag, lengthTag] : kData) {
    const TIFFEntry* places = directory.find(placeTag);
    const TIFFEntry* lengths = directory.find(lengthTag);
    if (places == nullptr) {
      continue;
    }
    if (lengths == nullptr || lengths->count != places->count) {
      return false;
    }
    const auto offsets = reader.numbers(*places);
    const auto sizes = reader.numbers(*lengths);
    if (!offsets || !sizes) {
      return false;
    }
    for (std::size_t i = 0; i < offsets->size(); ++i) {
      // A strip that has no place or length yet is one that its writer has still to write.
      if ((*offsets)[i] == 0 || (*sizes)[i] == 0 || !reader.contains((*offsets)[i], (*sizes)[i])) {
        return false;
      }
    }
  }
  return true;
}

bool areValuesInside(const TIFFReader& reader, const TIFFDirectory& directory) {
  return std::ranges::all_of(directory.entries, [&](const TIFFEntry& entry) {
    return entry.bytes == 0 || reader.contains(entry.offset, entry.bytes);
  });
}

bool hasPicture(const TIFFDirectory& directory) {
  return std::ranges::any_of(kData, [&](const auto& tags) { return directory.find(tags.first) != nullptr; });
}

}  // namespace

bool isCompleteTIFF(ByteSource& source) {
  TIFFReader reader(source, 0, source.size());
  const auto first = reader.firstDirectory();
  if (!first) {
    return false;
  }
  std::vector<std::uint64_t> waiting{*first};
  std::set<std::uint64_t> seen;
  bool isPicture = false;
  while (!waiting.empty()) {
    const std::uint64_t offset = waiting.back();
    waiting.pop_back();
    if (!seen.insert(offset).second || seen.size() > kMostDirectories) {
      return false;  // a loop, or more than a screenshot has
    }
    const auto directory = reader.directory(offset);
    if (!directory || !areValuesInside(reader, *directory) || !areDataInside(reader, *directory)) {
      return false;
    }
    isPicture = isPicture || hasPicture(*directory);
    if (directory->next != 0) {
      waiting.push_back(directory->next);
    }
    for (const std::uint16_t tag : kSubdirectories) {
      if (const TIFFEntry* entry = directory->find(tag)) {
        const auto offsets = reader.numbers(*entry);
        if (!offsets || offsets->size() > kMostDirectories) {
          return false;
        }
        waiting.insert(waiting.end(), offsets->begin(), offsets->end());
      }
    }
  }
  return isPicture;
}

}  // namespace quenlio
