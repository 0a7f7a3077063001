#include "desktop/linux/system/PictureKind.h"

#include <algorithm>
#include <array>

namespace quenlio {
namespace {

using namespace std::string_view_literals;

bool isHEIC(std::string_view head) {
  constexpr std::array brands{"heic"sv, "heix"sv, "heim"sv, "heis"sv, "hevc"sv, "mif1"sv, "msf1"sv};
  return head.size() >= 12 && head.substr(4, 4) == "ftyp" &&
         std::ranges::find(brands, head.substr(8, 4)) != brands.end();
}

}  // namespace

std::optional<PictureKind> pictureKind(std::string_view head) {
  head = head.substr(0, kPictureHead);
  if (head.starts_with(kPNGSignature)) {
    return PictureKind::png;
  }
  if (head.starts_with("\xFF\xD8\xFF"sv)) {
    return PictureKind::jpeg;
  }
  if (isHEIC(head)) {
    return PictureKind::heic;
  }
  for (const auto mark : {"II*\0"sv, "MM\0*"sv, "II+\0"sv, "MM\0+"sv}) {
    if (head.starts_with(mark)) {
      return PictureKind::tiff;
    }
  }
  if (head.find("%PDF-") != std::string_view::npos) {
    return PictureKind::pdf;
  }
  return std::nullopt;
}

}  // namespace quenlio
