#include "desktop/render/PngReader.h"

#include <cmath>
#include <csetjmp>
#include <cstddef>
#include <optional>
#include <png.h>
#include <vector>

#include "desktop/render/ColorProfile.h"
#include "desktop/render/PictureSink.h"

namespace quenlio {
namespace {

// The library reports a failure by jumping out of its call, past our destructors. So all that owns memory is a member
// here, and the steps that call the library have none but plain locals.
class PngReader {
 public:
  PngReader(std::FILE* file, const Fit& fit, const ReadLimits& limits)
      : file_(file),
        fit_(fit),
        limits_(limits),
        png_(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignoreWarning)) {
    if (png_ != nullptr) {
      info_ = png_create_info_struct(png_);
    }
  }
  PngReader(const PngReader&) = delete;
  PngReader& operator=(const PngReader&) = delete;
  ~PngReader() { png_destroy_read_struct(&png_, &info_, nullptr); }

  std::optional<QSizeF> pointSize() {
    if (info_ == nullptr || !succeeds(&PngReader::readHeader) || !isReasonable(size_)) {
      return std::nullopt;
    }
    return inPoints(size_, density());
  }

  ReadResult read() {
    if (info_ == nullptr || !succeeds(&PngReader::readHeader) || !isReasonable(size_)) {
      return {};
    }
    const double pixels = static_cast<double>(size_.width()) * size_.height();
    if (isInterlaced() && pixels > limits_.mostPixelsHeld) {
      return {.decoded = std::nullopt, .tooLargeToHold = true};
    }
    layout_ = hasAlpha() ? PixelLayout::rgba : PixelLayout::rgb;
    sink_.emplace(size_, layout_, placed(size_, fit_));
    if (!sink_->ok() || !succeeds(&PngReader::prepareRows)) {
      return {};
    }
    rows_.resize(isInterlaced() ? rowBytes() * static_cast<std::size_t>(size_.height()) : rowBytes());
    if (!succeeds(isInterlaced() ? &PngReader::readInterlaced : &PngReader::readRows)) {
      return {};
    }
    const QColorSpace space = colorSpace();
    return {.decoded = DecodedImage{convertedToSRgb(sink_->take(), space), inPoints(size_, density())}};
  }

 private:
  // The library's own handlers write to standard error.
  [[noreturn]] static void fail(png_structp png, png_const_charp) { png_longjmp(png, 1); }
  static void ignoreWarning(png_structp, png_const_charp) {}

  bool succeeds(void (PngReader::*step)()) {
    if (setjmp(png_jmpbuf(png_)) != 0) {
      return false;
    }
    (this->*step)();
    return true;
  }

  [[nodiscard]] bool isInterlaced() const { return png_get_interlace_type(png_, info_) != PNG_INTERLACE_NONE; }

  void readHeader() {
    png_set_user_limits(png_, kLongestSide, kLongestSide);
    // Each chunk has a checksum of its own already, and this second one over all of them costs a twentieth of the time.
    png_set_option(png_, PNG_IGNORE_ADLER32, PNG_OPTION_ON);
    png_init_io(png_, file_);
    png_read_info(png_, info_);
    size_ =
        QSize(static_cast<int>(png_get_image_width(png_, info_)), static_cast<int>(png_get_image_height(png_, info_)));
  }

  [[nodiscard]] bool hasAlpha() const {
    return (png_get_color_type(png_, info_) & PNG_COLOR_MASK_ALPHA) != 0 ||
           png_get_valid(png_, info_, PNG_INFO_tRNS) != 0;
  }

  [[nodiscard]] std::size_t rowBytes() const { return static_cast<std::size_t>(size_.width()) * bytesAPixel(layout_); }

  // Whatever the file holds becomes eight bits of red, green, blue and, where it has one, alpha.
  void prepareRows() {
    png_set_expand(png_);
    png_set_scale_16(png_);
    png_set_gray_to_rgb(png_);
    if (isInterlaced()) {
      png_set_interlace_handling(png_);
    }
    png_read_update_info(png_, info_);
    if (png_get_rowbytes(png_, info_) != rowBytes()) {
      png_error(png_, "unexpected row size");
    }
  }

  void readRow(std::uint8_t* row) {
    if (limits_.stop.stop_requested()) {
      png_error(png_, "stopped");
    }
    png_read_row(png_, row, nullptr);
  }

  void readRows() {
    for (int y = 0; y < size_.height(); ++y) {
      readRow(rows_.data());
      take(rows_.data());
    }
  }

  void readInterlaced() {
    for (int pass = 0; pass < PNG_INTERLACE_ADAM7_PASSES; ++pass) {
      for (std::size_t at = 0; at < rows_.size(); at += rowBytes()) {
        readRow(&rows_[at]);
      }
    }
    for (std::size_t at = 0; at < rows_.size(); at += rowBytes()) {
      take(&rows_[at]);
    }
  }

  void take(std::uint8_t* row) {
    if (layout_ == PixelLayout::rgba) {
      premultiply(row, size_.width());
    }
    sink_->addRow(row);
  }

  // A profile wins over everything else; without one, an own gamma and own primaries count unless they are about those
  // of sRGB, as most programs write them.
  [[nodiscard]] QColorSpace colorSpace() const {
    png_charp name = nullptr;
    int compression = 0;
    png_bytep profile = nullptr;
    png_uint_32 length = 0;
    if (png_get_iCCP(png_, info_, &name, &compression, &profile, &length) != 0) {
      return colorSpaceOfProfile(QByteArray(reinterpret_cast<const char*>(profile), static_cast<qsizetype>(length)));
    }
    double gamma = 0;
    if (png_get_valid(png_, info_, PNG_INFO_sRGB) != 0 || png_get_gAMA(png_, info_, &gamma) == 0 || gamma <= 0) {
      return {};
    }
    constexpr double usual = 0.45455;
    const bool usualGamma = std::abs(gamma - usual) < 0.01;
    double wx = 0.3127, wy = 0.3290, rx = 0.64, ry = 0.33, gx = 0.30, gy = 0.60, bx = 0.15, by = 0.06;
    const bool primaries = png_get_cHRM(png_, info_, &wx, &wy, &rx, &ry, &gx, &gy, &bx, &by) != 0;
    const bool usualPrimaries =
        std::abs(rx - 0.64) < 0.005 && std::abs(gx - 0.30) < 0.005 && std::abs(bx - 0.15) < 0.005;
    if (usualGamma && (!primaries || usualPrimaries)) {
      return {};
    }
    return QColorSpace(QPointF(wx, wy), QPointF(rx, ry), QPointF(gx, gy), QPointF(bx, by),
                       QColorSpace::TransferFunction::Gamma, static_cast<float>(1 / gamma));
  }

  [[nodiscard]] int density() const {
    return pixelsAPointOfMetre(static_cast<double>(png_get_pixels_per_meter(png_, info_)));
  }

  std::FILE* file_;
  Fit fit_;
  ReadLimits limits_;
  png_structp png_;
  png_infop info_ = nullptr;
  QSize size_;
  PixelLayout layout_ = PixelLayout::rgba;
  std::optional<PictureSink> sink_;
  std::vector<std::uint8_t> rows_;
};

}  // namespace

ReadResult readPng(std::FILE* file, const Fit& fit, const ReadLimits& limits) {
  return PngReader(file, fit, limits).read();
}

std::optional<QSizeF> pngPointSize(std::FILE* file) {
  return PngReader(file, {}, {}).pointSize();
}

}  // namespace quenlio
