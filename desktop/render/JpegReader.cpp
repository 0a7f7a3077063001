#include "desktop/render/JpegReader.h"

#include <algorithm>
#include <cmath>
#include <csetjmp>
#include <cstddef>  // the library's header needs these two before it
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <jerror.h>
#include <jpeglib.h>
#include <optional>
#include <span>
#include <vector>

#include "desktop/render/ColorProfile.h"
#include "desktop/render/Exif.h"
#include "desktop/render/PictureSink.h"

namespace quenlio {
namespace {

// A progressive file refines the whole picture once a scan. Real ones have about ten; without a bound a small file
// could keep us busy for hours.
constexpr int kMostScans = 100;

// The library reports a failure by jumping out of its call, past our destructors. So all that owns memory is a member
// here, and the steps that call the library have none but plain locals.
class JpegReader {
 public:
  JpegReader(std::FILE* file, const Fit& fit, const ReadLimits& limits) : file_(file), fit_(fit), limits_(limits) {
    jpeg_.err = jpeg_std_error(&errors_);
    errors_.error_exit = [](j_common_ptr jpeg) { std::longjmp(self(jpeg).failed_, 1); };
    errors_.emit_message = [](j_common_ptr jpeg, int level) { self(jpeg).warned(level); };
    errors_.output_message = [](j_common_ptr) {};
    progress_.progress_monitor = [](j_common_ptr jpeg) { self(jpeg).progressed(); };
    jpeg_.client_data = this;
  }
  JpegReader(const JpegReader&) = delete;
  JpegReader& operator=(const JpegReader&) = delete;
  ~JpegReader() { jpeg_destroy_decompress(&jpeg_); }

  std::optional<QSizeF> pointSize() {
    if (!succeeds(&JpegReader::readHeader)) {
      return std::nullopt;
    }
    readMetadata();
    return isReasonable(shownSize()) ? std::optional(inPoints(shownSize(), density())) : std::nullopt;
  }

  ReadResult read() {
    if (!succeeds(&JpegReader::readHeader)) {
      return {};
    }
    const QSize stored = storedSize();
    if (!isReasonable(stored)) {
      return {};
    }
    const double pixels = static_cast<double>(stored.width()) * stored.height();
    if (jpeg_has_multiple_scans(&jpeg_) != 0 && pixels > limits_.mostPixelsHeld) {
      return {.decoded = std::nullopt, .tooLargeToHold = true};
    }
    readMetadata();
    const QSize shown = shownSize();
    if (!succeeds(&JpegReader::start)) {
      return {};
    }
    const QSize decoded(static_cast<int>(jpeg_.output_width), static_cast<int>(jpeg_.output_height));
    sink_.emplace(decoded, PixelLayout::rgb, storedPlacement(placed(shown, fit_)));
    row_.resize(static_cast<std::size_t>(decoded.width()) * 4);
    if (!sink_->ok() || !succeeds(&JpegReader::readRows) || endsEarly_) {
      return {};
    }
    const QImage image = convertedToSRgb(upright(sink_->take(), exif_.orientation), colorSpaceOfProfile(profile_));
    return {.decoded = DecodedImage{image, inPoints(shown, density())}};
  }

 private:
  static JpegReader& self(j_common_ptr jpeg) { return *static_cast<JpegReader*>(jpeg->client_data); }

  bool succeeds(void (JpegReader::*step)()) {
    if (setjmp(failed_) != 0) {
      return false;
    }
    (this->*step)();
    return true;
  }

  void warned(int level) {
    if (level < 0) {
      ++errors_.num_warnings;
      endsEarly_ = endsEarly_ || errors_.msg_code == JWRN_JPEG_EOF;
    }
  }

  void progressed() {
    if (jpeg_.input_scan_number > kMostScans || limits_.stop.stop_requested()) {
      std::longjmp(failed_, 1);
    }
  }

  void readHeader() {
    jpeg_create_decompress(&jpeg_);
    jpeg_.client_data = this;
    jpeg_.progress = &progress_;
    jpeg_stdio_src(&jpeg_, file_);
    jpeg_save_markers(&jpeg_, kExifMarker, 0xFFFF);
    jpeg_save_markers(&jpeg_, kProfileMarker, 0xFFFF);
    jpeg_read_header(&jpeg_, TRUE);
  }

  void readMetadata() {
    constexpr std::size_t prefix = 6;  // "Exif" and two zeros
    for (jpeg_saved_marker_ptr marker = jpeg_.marker_list; marker != nullptr; marker = marker->next) {
      const std::span<const std::uint8_t> data(marker->data, marker->data_length);
      if (marker->marker == kExifMarker && data.size() > prefix && std::memcmp(data.data(), "Exif\0", prefix) == 0) {
        exif_ = parseExif(data.subspan(prefix));
        break;
      }
    }
    succeeds(&JpegReader::readProfile);
  }

  void readProfile() {
    JOCTET* bytes = nullptr;
    unsigned length = 0;
    if (jpeg_read_icc_profile(&jpeg_, &bytes, &length) != 0) {
      profile_ = QByteArray(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(length));
      std::free(bytes);
    }
  }

  // The codec decodes at an eighth, a quarter or half of the size: the smallest that is still twice what is wanted, so
  // that our own averaging decides the quality.
  void start() {
    const QSize shown = shownSize();
    const double wanted = placed(shown, fit_).picture.width() / shown.width();
    jpeg_.scale_denom = 8;
    jpeg_.scale_num = 1;
    while (jpeg_.scale_num < 8 && jpeg_.scale_num / 8.0 < 2 * wanted) {
      jpeg_.scale_num *= 2;
    }
    const bool fourInks = jpeg_.jpeg_color_space == JCS_CMYK || jpeg_.jpeg_color_space == JCS_YCCK;
    jpeg_.out_color_space = fourInks ? JCS_CMYK : JCS_RGB;
    jpeg_start_decompress(&jpeg_);
  }

  void readRows() {
    while (jpeg_.output_scanline < jpeg_.output_height) {
      JSAMPROW row = row_.data();
      jpeg_read_scanlines(&jpeg_, &row, 1);
      if (jpeg_.out_color_space == JCS_CMYK) {
        convertInks();
      }
      sink_->addRow(row_.data());
    }
    jpeg_finish_decompress(&jpeg_);
  }

  // Four inks to three lights, without a profile: each light is what its ink and the black let through. The program
  // that marks its files with an Adobe segment stores the inks inverted.
  void convertInks() {
    const bool inverted = jpeg_.saw_Adobe_marker != 0;
    for (std::size_t x = 0; x < jpeg_.output_width; ++x) {
      const auto light = [&](std::size_t ink) {
        const unsigned value = row_[x * 4 + ink];
        return inverted ? value : 255 - value;
      };
      const unsigned black = light(3);
      for (std::size_t c = 0; c < 3; ++c) {
        row_[x * 3 + c] = static_cast<std::uint8_t>((light(c) * black + 127) / 255);
      }
    }
  }

  [[nodiscard]] QSize storedSize() const {
    return {static_cast<int>(jpeg_.image_width), static_cast<int>(jpeg_.image_height)};
  }
  [[nodiscard]] QSize shownSize() const {
    return swapsSides(exif_.orientation) ? storedSize().transposed() : storedSize();
  }

  // The placement of the picture as it is stored, before it is turned upright.
  [[nodiscard]] Placement storedPlacement(const Placement& shown) const {
    if (!swapsSides(exif_.orientation)) {
      return shown;  // a mirrored placement is the same one: it fills its canvas or is in the middle of it
    }
    const QRectF picture(shown.picture.y(), shown.picture.x(), shown.picture.height(), shown.picture.width());
    return {shown.canvas.transposed(), picture};
  }

  [[nodiscard]] int density() const {
    constexpr int dotsAnInch = 1;
    constexpr int dotsACentimetre = 2;
    if (jpeg_.saw_JFIF_marker != 0 && jpeg_.density_unit == dotsAnInch) {
      return pixelsAPoint(jpeg_.X_density);
    }
    if (jpeg_.saw_JFIF_marker != 0 && jpeg_.density_unit == dotsACentimetre) {
      return pixelsAPointOfMetre(jpeg_.X_density * 100.0);
    }
    return pixelsAPoint(exif_.density.value_or(0));
  }

  static constexpr int kExifMarker = JPEG_APP0 + 1;
  static constexpr int kProfileMarker = JPEG_APP0 + 2;

  std::FILE* file_;
  Fit fit_;
  ReadLimits limits_;
  jpeg_decompress_struct jpeg_{};
  jpeg_error_mgr errors_{};
  jpeg_progress_mgr progress_{};
  std::jmp_buf failed_{};
  bool endsEarly_ = false;
  ExifFields exif_;
  QByteArray profile_;
  std::optional<PictureSink> sink_;
  std::vector<std::uint8_t> row_;
};

}  // namespace

ReadResult readJpeg(std::FILE* file, const Fit& fit, const ReadLimits& limits) {
  return JpegReader(file, fit, limits).read();
}

std::optional<QSizeF> jpegPointSize(std::FILE* file) {
  return JpegReader(file, {}, {}).pointSize();
}

}  // namespace quenlio
