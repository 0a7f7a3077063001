#include "desktop/render/FileImages.h"

#include <QBuffer>
#include <QImageWriter>
#include <cerrno>
#include <cmath>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "desktop/linux/system/CompleteFormats.h"
#include "desktop/linux/system/RegularFile.h"
#include "desktop/render/QtImage.h"

namespace quenlio {
namespace {

// More than the largest capture there is; what is larger is not taken into memory.
constexpr std::int64_t kMostBytes = 256 * 1024 * 1024;

std::optional<QByteArray> bytesOf(const FileURL& url) {
  const UniqueFd fd = openRegularFile(AT_FDCWD, url.path().c_str());
  struct stat status {};
  if (!fd || ::fstat(fd.get(), &status) != 0 || status.st_size == 0 || status.st_size > kMostBytes) {
    return std::nullopt;
  }
  QByteArray bytes(status.st_size, Qt::Uninitialized);
  qsizetype done = 0;
  while (done < bytes.size()) {
    const ssize_t got = ::read(fd.get(), bytes.data() + done, static_cast<std::size_t>(bytes.size() - done));
    if (got > 0) {
      done += got;
    } else if (got == 0 || errno != EINTR) {
      return std::nullopt;
    }
  }
  return bytes;
}

// The bytes as a file for those who read files, for as long as this lives.
class MemoryFile {
 public:
  explicit MemoryFile(const QByteArray& bytes) : fd_(::memfd_create("picture", MFD_CLOEXEC)) {
    qsizetype done = 0;
    while (fd_ && done < bytes.size()) {
      const ssize_t put = ::write(fd_.get(), bytes.data() + done, static_cast<std::size_t>(bytes.size() - done));
      if (put <= 0) {
        fd_.reset();
        break;
      }
      done += put;
    }
  }
  [[nodiscard]] std::optional<FileURL> url() const {
    return fd_ ? std::optional(FileURL("/proc/self/fd/" + std::to_string(fd_.get()))) : std::nullopt;
  }

 private:
  UniqueFd fd_;
};

std::optional<Size> headerSize(const ImageDecoder& decoder, const QByteArray& bytes, PictureKind kind) {
  if (kind != PictureKind::png && kind != PictureKind::jpeg) {
    return Size{};
  }
  const MemoryFile head(bytes.left(qsizetype{1024} * 1024));
  const auto url = head.url();
  const auto size = url ? decoder.pointSize(*url) : std::nullopt;
  return size ? std::optional(Size{size->width(), size->height()}) : std::nullopt;
}

bool isWhole(const QByteArray& bytes) {
  MemorySource source({bytes.data(), static_cast<std::size_t>(bytes.size())});
  return isCompleteByFormat(source);
}

QByteArray encoded(QImage image, QSizeF points) {
  constexpr double dotsAPoint = 72;
  constexpr double inchesAMetre = 1 / 0.0254;
  const double pixelsAPoint = points.width() > 0 ? image.width() / points.width() : 1;
  if (pixelsAPoint > 1) {
    const int density = static_cast<int>(std::lround(pixelsAPoint * dotsAPoint * inchesAMetre));
    image.setDotsPerMeterX(density);
    image.setDotsPerMeterY(density);
  }
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QImageWriter writer(&buffer, "png");
  constexpr int quick = 80;  // somebody may be waiting for it, and nobody keeps it
  writer.setQuality(quick);
  return writer.write(image) ? bytes : QByteArray();
}

}  // namespace

std::optional<DecodedImage> FileImage::decode(QSize fitWithin) const {
  const MemoryFile file(bytes_);
  const auto url = file.url();
  return url ? decoder_.decode(*url, fitWithin, false) : std::nullopt;
}

bool FileImage::isSound() const {
  constexpr QSize small(16, 16);  // from all the pixels, row by row
  return decode(small).has_value();
}

std::optional<DecodedImage> FileImage::decode() const {
  auto decoded = decode(QSize(kLongestSide, kLongestSide));
  if (decoded && kind_ == PictureKind::jpeg) {
    decoded->image.convertTo(QImage::Format_RGB32);  // has no transparent pixels, and need not say so of each
  }
  return decoded;
}

ImageRef FileImages::imageWithContentsOfFile(const FileURL& url) const {
  const auto bytes = bytesOf(url);
  const auto kind = bytes ? pictureKind({bytes->data(), static_cast<std::size_t>(bytes->size())}) : std::nullopt;
  const auto size = kind ? headerSize(decoder_, *bytes, *kind) : std::nullopt;
  if (!size) {
    return nullptr;
  }
  return std::make_shared<FileImage>(*bytes, *kind, *size, decoder_);
}

QByteArray pngBytes(const Image& image) {
  if (const auto* file = dynamic_cast<const FileImage*>(&image)) {
    if (file->kind() == PictureKind::png) {
      return isWhole(file->bytes()) || file->isSound() ? file->bytes() : QByteArray();
    }
    const auto decoded = file->decode();
    return decoded ? encoded(decoded->image, decoded->pointSize) : QByteArray();
  }
  const auto* pixels = dynamic_cast<const QtImage*>(&image);
  return pixels != nullptr ? encoded(pixels->image(), {pixels->size().width, pixels->size().height}) : QByteArray();
}

bool isSoundAsPNG(const Image& image) {
  const auto* file = dynamic_cast<const FileImage*>(&image);
  return file == nullptr || file->kind() != PictureKind::png || file->isSound();
}

}  // namespace quenlio
