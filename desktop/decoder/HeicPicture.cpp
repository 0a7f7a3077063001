#include <cstddef>
#include <cstdint>
#include <libheif/heif.h>
#include <memory>
#include <span>
#include <vector>

#include "desktop/decoder/Decoders.h"
#include "desktop/render/ColorProfile.h"
#include "desktop/render/Exif.h"
#include "desktop/render/PictureSink.h"

namespace quenlio::decoder {
namespace {

template <class T, void (*release)(T*)>
struct Release {
  void operator()(T* object) const { release(object); }
};
using Context = std::unique_ptr<heif_context, Release<heif_context, heif_context_free>>;

void releaseHandle(heif_image_handle* handle) {
  heif_image_handle_release(handle);
}
using Handle = std::unique_ptr<heif_image_handle, Release<heif_image_handle, releaseHandle>>;

void releaseImage(heif_image* image) {
  heif_image_release(image);
}
using Image = std::unique_ptr<heif_image, Release<heif_image, releaseImage>>;

bool succeeded(heif_error error) {
  return error.code == heif_error_Ok;
}

QColorSpace colorSpaceOf(const heif_image_handle* handle) {
  const std::size_t length = heif_image_handle_get_raw_color_profile_size(handle);
  if (length > 0) {
    QByteArray profile(static_cast<qsizetype>(length), '\0');
    return succeeded(heif_image_handle_get_raw_color_profile(handle, profile.data())) ? colorSpaceOfProfile(profile)
                                                                                      : QColorSpace();
  }
  heif_color_profile_nclx* codes = nullptr;
  if (!succeeded(heif_image_handle_get_nclx_color_profile(handle, &codes)) || codes == nullptr) {
    return {};
  }
  const bool wide = codes->color_primaries == heif_color_primaries_SMPTE_EG_432_1;
  heif_nclx_color_profile_free(codes);
  return wide ? QColorSpace(QColorSpace::DisplayP3) : QColorSpace();
}

// The camera's metadata tells the density. Its orientation is not for us: the file's own transformations say that, and
// the library has applied them.
int densityOf(const heif_image_handle* handle) {
  heif_item_id id = 0;
  if (heif_image_handle_get_list_of_metadata_block_IDs(handle, "Exif", &id, 1) != 1) {
    return 1;
  }
  std::vector<std::uint8_t> block(heif_image_handle_get_metadata_size(handle, id));
  constexpr std::size_t prefix = 4;  // four bytes tell how far behind them the fields begin
  if (block.size() <= prefix || !succeeded(heif_image_handle_get_metadata(handle, id, block.data()))) {
    return 1;
  }
  const std::size_t offset =
      prefix + (std::size_t{block[0]} << 24 | std::size_t{block[1]} << 16 | std::size_t{block[2]} << 8 | block[3]);
  const std::span<const std::uint8_t> bytes(block);
  return offset < bytes.size() ? pixelsAPoint(parseExif(bytes.subspan(offset)).density.value_or(0)) : 1;
}

QImage placedRows(const heif_image* image, bool premultiplied, const Fit& fit) {
  const QSize size(heif_image_get_width(image, heif_channel_interleaved),
                   heif_image_get_height(image, heif_channel_interleaved));
  int stride = 0;
  const std::uint8_t* const rows = heif_image_get_plane_readonly(image, heif_channel_interleaved, &stride);
  if (rows == nullptr || !isReasonable(size)) {
    return {};
  }
  PictureSink sink(size, PixelLayout::rgba, placed(size, fit));
  if (!sink.ok()) {
    return {};
  }
  std::vector<std::uint8_t> row(static_cast<std::size_t>(size.width()) * 4);
  for (int y = 0; y < size.height(); ++y) {
    const std::uint8_t* const from = rows + static_cast<std::ptrdiff_t>(y) * stride;
    row.assign(from, from + row.size());
    if (!premultiplied) {
      premultiply(row.data(), size.width());
    }
    sink.addRow(row.data());
  }
  return sink.take();
}

}  // namespace

std::optional<DecodedImage> decodeHeic(const QByteArray& file, const Fit& fit) {
  const Context context(heif_context_alloc());
  const auto size = static_cast<std::size_t>(file.size());
  if (!context || !succeeded(heif_context_read_from_memory_without_copy(context.get(), file.data(), size, nullptr))) {
    return std::nullopt;
  }
  heif_image_handle* found = nullptr;
  if (!succeeded(heif_context_get_primary_image_handle(context.get(), &found))) {
    return std::nullopt;
  }
  const Handle handle(found);
  const QSize pixels(heif_image_handle_get_width(found), heif_image_handle_get_height(found));
  if (!isReasonable(pixels)) {
    return std::nullopt;
  }
  heif_image* decoded = nullptr;
  if (!succeeded(heif_decode_image(found, &decoded, heif_colorspace_RGB, heif_chroma_interleaved_RGBA, nullptr))) {
    return std::nullopt;
  }
  const Image image(decoded);
  const bool premultiplied = heif_image_handle_is_premultiplied_alpha(found) != 0;
  const QImage result = placedRows(decoded, premultiplied, fit);
  return DecodedImage{convertedToSRgb(result, colorSpaceOf(found)), inPoints(pixels, densityOf(found))};
}

}  // namespace quenlio::decoder
