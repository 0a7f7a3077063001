#include "tests/desktop/render/Pictures.h"

#include <QBuffer>
#include <QImageWriter>
#include <QPainter>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <png.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quenlio::test {
namespace {

std::string bigEndian(std::uint32_t value, int bytes = 4) {
  std::string text;
  for (int i = bytes - 1; i >= 0; --i) {
    text += static_cast<char>(value >> (8 * i));
  }
  return text;
}

std::string littleEndian(std::uint32_t value, int bytes) {
  const std::string reversed = bigEndian(value, bytes);
  return {reversed.rbegin(), reversed.rend()};
}

std::uint32_t checksum(std::string_view bytes) {
  std::uint32_t sum = ~0U;
  for (const char byte : bytes) {
    sum ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) {
      sum = sum >> 1 ^ (0xEDB88320U & (~(sum & 1) + 1));
    }
  }
  return ~sum;
}

std::string pngChunk(const std::string& name, const std::string& data) {
  return bigEndian(static_cast<std::uint32_t>(data.size())) + name + data + bigEndian(checksum(name + data));
}

}  // namespace

PictureFolder::PictureFolder() {
  std::string pattern = std::filesystem::temp_directory_path() / "quenlio-render-XXXXXX";
  path_ = ::mkdtemp(pattern.data());
}

PictureFolder::~PictureFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

FileURL PictureFolder::write(std::string_view name, std::string_view bytes) const {
  const FileURL place = url(name);
  std::ofstream(place.path(), std::ios::binary) << bytes;
  return place;
}

FileURL PictureFolder::save(std::string_view name, const QImage& image, const char* format, int quality) const {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  EXPECT_TRUE(image.save(&buffer, format, quality));
  return write(name, std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

ImageDecoder realDecoder() {
  return ImageDecoder(ChildDecoder(FileURL(QUENLIO_DECODER)));
}

QImage filled(QSize size, QColor color) {
  QImage image(size, color.alpha() == 255 ? QImage::Format_RGB888 : QImage::Format_RGBA8888);
  image.fill(color);
  return image;
}

QImage quarters(QSize size) {
  QImage image = filled(size, Qt::white);
  QPainter painter(&image);
  const int x = size.width() / 2;
  const int y = size.height() / 2;
  painter.fillRect(0, 0, x, y, QColor(255, 0, 0));
  painter.fillRect(x, 0, size.width() - x, y, QColor(0, 255, 0));
  painter.fillRect(0, y, x, size.height() - y, QColor(0, 0, 255));
  painter.end();
  return image;
}

QImage checkerboard(QSize size) {
  QImage image(size, QImage::Format_Grayscale8);
  for (int y = 0; y < size.height(); ++y) {
    for (int x = 0; x < size.width(); ++x) {
      image.scanLine(y)[x] = (x + y) % 2 == 0 ? 0 : 255;
    }
  }
  return image;
}

std::string pngBytes(const PngForm& form, const std::vector<std::vector<std::uint8_t>>& rows) {
  std::string bytes;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_write_fn(
      png, &bytes,
      [](png_structp writer, png_bytep data, png_size_t length) {
        static_cast<std::string*>(png_get_io_ptr(writer))->append(reinterpret_cast<char*>(data), length);
      },
      nullptr);
  png_set_IHDR(png, info, static_cast<png_uint_32>(form.size.width()), static_cast<png_uint_32>(form.size.height()),
               form.bitDepth, form.colorType, form.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  std::vector<std::vector<std::uint8_t>> copies = rows;
  std::vector<png_bytep> pointers;
  for (auto& row : copies) {
    pointers.push_back(row.data());
  }
  png_write_image(png, pointers.data());
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  return bytes;
}

std::string hollowPng(std::uint32_t width, std::uint32_t height) {
  const std::string form("\x08\x02\0\0\0", 5);
  return "\x89PNG\r\n\x1A\n" + pngChunk("IHDR", bigEndian(width) + bigEndian(height) + form) +
         pngChunk("IDAT", std::string("\x78\x9C\x63\x00\x00\x00\x01\x00\x01", 9)) + pngChunk("IEND", "");
}

std::string jpegBytes(const QImage& image, int quality, bool progressive) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QImageWriter writer(&buffer, "jpeg");
  writer.setQuality(quality);
  writer.setProgressiveScanWrite(progressive);
  EXPECT_TRUE(writer.write(image));
  return bytes.toStdString();
}

std::string jpegClaiming(std::string jpeg, std::uint16_t width, std::uint16_t height) {
  std::size_t frame = jpeg.find("\xFF\xC0");
  frame = frame == std::string::npos ? jpeg.find("\xFF\xC2") : frame;
  return jpeg.replace(frame + 5, 4, bigEndian(height, 2) + bigEndian(width, 2));
}

std::string jpegTurned(const std::string& jpeg, std::uint8_t orientation) {
  const std::string fields = std::string("MM\0*", 4) + bigEndian(8) + bigEndian(1, 2) +  // one field:
                             bigEndian(0x0112, 2) + bigEndian(3, 2) + bigEndian(1) + bigEndian(orientation, 2) +
                             bigEndian(0, 2) + bigEndian(0);
  const std::string data = std::string("Exif\0\0", 6) + fields;
  return jpeg.substr(0, 2) + "\xFF\xE1" + bigEndian(static_cast<std::uint32_t>(data.size()) + 2, 2) + data +
         jpeg.substr(2);
}

std::string tiffBytes(std::uint32_t width, std::uint32_t height, std::string_view pixels) {
  struct Field {
    std::uint32_t tag, type, count, value;
  };
  constexpr std::uint32_t isShort = 3;
  constexpr std::uint32_t isLong = 4;
  const std::uint32_t data = 8 + 2 + 10 * 12 + 4;
  const std::uint32_t depths = data + static_cast<std::uint32_t>(pixels.size());
  const std::array<Field, 10> fields{{{256, isLong, 1, width},
                                      {257, isLong, 1, height},
                                      {258, isShort, 3, depths},
                                      {259, isShort, 1, 1},
                                      {262, isShort, 1, 2},
                                      {273, isLong, 1, data},
                                      {277, isShort, 1, 3},
                                      {278, isLong, 1, height},
                                      {279, isLong, 1, static_cast<std::uint32_t>(pixels.size())},
                                      {284, isShort, 1, 1}}};
  std::string bytes("II*\0", 4);
  bytes += littleEndian(8, 4) + littleEndian(static_cast<std::uint32_t>(fields.size()), 2);
  for (const auto& field : fields) {
    bytes += littleEndian(field.tag, 2) + littleEndian(field.type, 2) + littleEndian(field.count, 4) +
             littleEndian(field.value, 4);
  }
  bytes += littleEndian(0, 4);
  return bytes.append(pixels) + littleEndian(8, 2) + littleEndian(8, 2) + littleEndian(8, 2);
}

std::string tiffBytes(const QImage& image) {
  std::string pixels;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QRgb pixel = image.pixel(x, y);
      pixels += {static_cast<char>(qRed(pixel)), static_cast<char>(qGreen(pixel)), static_cast<char>(qBlue(pixel))};
    }
  }
  return tiffBytes(static_cast<std::uint32_t>(image.width()), static_cast<std::uint32_t>(image.height()), pixels);
}

std::string pdfBytes(int width, int height) {
  const auto text = [](int number) { return std::to_string(number); };
  const std::string drawing = "1 0 0 rg 0 0 " + text(width / 2) + " " + text(height) + " re f";
  const std::array<std::string, 4> objects{
      "<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
      "<</Type/Page/Parent 2 0 R/MediaBox[0 0 " + text(width) + " " + text(height) + "]/Contents 4 0 R/Resources<<>>>>",
      "<</Length " + std::to_string(drawing.size()) + ">>stream\n" + drawing + "\nendstream"};
  std::string bytes = "%PDF-1.4\n";
  std::string table = "xref\n0 5\n0000000000 65535 f \n";
  for (std::size_t i = 0; i < objects.size(); ++i) {
    const std::string offset = std::to_string(bytes.size());
    table += std::string(10 - offset.size(), '0') + offset + " 00000 n \n";
    bytes += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
  }
  return bytes + table + "trailer<</Size 5/Root 1 0 R>>\nstartxref\n" + std::to_string(bytes.size()) + "\n%%EOF\n";
}

std::string heicBytes(const PictureFolder& folder, const QImage& image) {
  std::string from = folder.save("heic-source.png", image, "png").path();
  std::string to = "heic:" + folder.url("sample.heic").path();
  std::string program = "convert";
  std::array<char*, 4> arguments{program.data(), from.data(), to.data(), nullptr};
  pid_t process = 0;
  int status = -1;
  EXPECT_EQ(::posix_spawnp(&process, program.c_str(), nullptr, nullptr, arguments.data(), environ), 0);
  EXPECT_EQ(::waitpid(process, &status, 0), process);
  EXPECT_EQ(status, 0);
  return contents(folder.url("sample.heic"));
}

std::string heicClaiming(std::string heic, std::uint32_t width, std::uint32_t height) {
  for (std::size_t at = heic.find("ispe"); at != std::string::npos; at = heic.find("ispe", at + 4)) {
    heic.replace(at + 8, 8, bigEndian(width) + bigEndian(height));
  }
  return heic;
}

std::string contents(const FileURL& url) {
  std::ifstream file(url.path(), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace quenlio::test
