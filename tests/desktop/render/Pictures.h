// Pictures for the tests, made here byte by byte or by a codec's own writer, in a folder that goes away with them.
#pragma once

#include <QImage>
#include <QSize>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/FileURL.h"

#include "desktop/render/ImageDecoder.h"

namespace quenlio::test {

class PictureFolder {
 public:
  PictureFolder();
  PictureFolder(const PictureFolder&) = delete;
  PictureFolder& operator=(const PictureFolder&) = delete;
  ~PictureFolder();

  [[nodiscard]] FileURL url(std::string_view name) const { return FileURL(path_).appending(name); }
  FileURL write(std::string_view name, std::string_view bytes) const;
  FileURL save(std::string_view name, const QImage& image, const char* format, int quality = -1) const;

 private:
  std::string path_;
};

// The decoder with the real child program.
[[nodiscard]] ImageDecoder realDecoder();

[[nodiscard]] QImage filled(QSize size, QColor color);
// Red, green above blue, white: each a quarter.
[[nodiscard]] QImage quarters(QSize size);
[[nodiscard]] QImage checkerboard(QSize size);

struct PngForm {
  QSize size;
  int bitDepth = 8;
  int colorType = 2;
  bool interlaced = false;
};
// The bytes of a PNG file with these rows as they are.
[[nodiscard]] std::string pngBytes(const PngForm& form, const std::vector<std::vector<std::uint8_t>>& rows);
// A PNG that claims this size and holds next to nothing.
[[nodiscard]] std::string hollowPng(std::uint32_t width, std::uint32_t height);

[[nodiscard]] std::string jpegBytes(const QImage& image, int quality = 95, bool progressive = false);
// The JPEG with another size in its header.
[[nodiscard]] std::string jpegClaiming(std::string jpeg, std::uint16_t width, std::uint16_t height);
// The JPEG with camera metadata that holds this orientation.
[[nodiscard]] std::string jpegTurned(const std::string& jpeg, std::uint8_t orientation);

// Eight bits of red, green and blue without compression. Claims the given size, whatever rows it holds.
[[nodiscard]] std::string tiffBytes(std::uint32_t width, std::uint32_t height, std::string_view pixels);
[[nodiscard]] std::string tiffBytes(const QImage& image);

// One page of this size in points, its left half red.
[[nodiscard]] std::string pdfBytes(int width, int height);

// Made by ImageMagick, as there is no writing it by hand.
[[nodiscard]] std::string heicBytes(const PictureFolder& folder, const QImage& image);
[[nodiscard]] std::string heicClaiming(std::string heic, std::uint32_t width, std::uint32_t height);

[[nodiscard]] std::string contents(const FileURL& url);

}  // namespace quenlio::test
