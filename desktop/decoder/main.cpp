// The decoding child: one file in, one picture out, then it ends. See DecoderProtocol.h.
//
// It assumes nothing good of the file. Before it looks at it, it gives up what it does not need and bounds what it may
// use, so that whatever the file does to a library ends here.
#include <QCoreApplication>
#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <limits>
#include <malloc.h>
#include <memory>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "desktop/decoder/Decoders.h"
#include "desktop/render/DecoderProtocol.h"
#include "desktop/render/JpegReader.h"
#include "desktop/render/PngReader.h"

namespace quenlio::decoder {
namespace {

void bound(int resource, rlim_t most) {
  const rlimit limit{most, most};
  if (::setrlimit(static_cast<__rlimit_resource>(resource), &limit) != 0) {
    std::exit(EXIT_FAILURE);
  }
}

void giveUpWhatIsNotNeeded() {
  bound(RLIMIT_CORE, 0);
  bound(RLIMIT_CPU, 10);
#ifndef __SANITIZE_ADDRESS__  // which reserves terabytes of address space
  bound(RLIMIT_AS, rlim_t{1} << 30);
#endif
  bound(RLIMIT_FSIZE, 0);  // pipes are not counted
  ::mallopt(M_ARENA_MAX, 1);
  ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
  ::close_range(STDERR_FILENO + 1, std::numeric_limits<unsigned>::max(), 0);
}

struct Request {
  PictureKind kind;
  Fit fit;
};

std::optional<Request> parseRequest(int count, char** arguments) {
  if (count != 5) {
    return std::nullopt;
  }
  const auto kind = std::ranges::find(kKinds, std::string_view(arguments[1]), &NamedKind::name);
  const auto mode = std::ranges::find(kModes, std::string_view(arguments[4]), &NamedMode::name);
  const auto width = parseNumber(arguments[2]);
  const auto height = parseNumber(arguments[3]);
  if (kind == kKinds.end() || mode == kModes.end() || !width || !height || *width < 1 || *height < 1) {
    return std::nullopt;
  }
  return Request{kind->kind, Fit{QSize(*width, *height), mode->mode}};
}

// All of standard input, which is a file.
QByteArray inputBytes() {
  struct stat status {};
  if (::fstat(STDIN_FILENO, &status) != 0 || status.st_size <= 0) {
    return {};
  }
  const auto length = static_cast<std::size_t>(status.st_size);
  void* const bytes = ::mmap(nullptr, length, PROT_READ, MAP_PRIVATE, STDIN_FILENO, 0);
  return bytes == MAP_FAILED ? QByteArray() : QByteArray::fromRawData(static_cast<const char*>(bytes), status.st_size);
}

std::optional<DecodedImage> decode(const Request& request) {
  const ReadLimits limits{.mostPixelsHeld = kMostPixels};
  ::lseek(STDIN_FILENO, 0, SEEK_SET);  // the file is where the program left off
  switch (request.kind) {
    case PictureKind::png:
      return readPng(stdin, request.fit, limits).decoded;
    case PictureKind::jpeg:
      return readJpeg(stdin, request.fit, limits).decoded;
    case PictureKind::heic:
      return decodeHeic(inputBytes(), request.fit);
    case PictureKind::tiff:
      return decodeTiff(inputBytes(), request.fit);
    case PictureKind::pdf:
      return decodePdf(inputBytes(), request.fit);
  }
  return std::nullopt;
}

bool writeAll(const void* bytes, std::size_t count) {
  const auto* next = static_cast<const char*>(bytes);
  while (count > 0) {
    const ssize_t length = ::write(STDOUT_FILENO, next, count);
    if (length < 0 && errno == EINTR) {
      continue;
    }
    if (length <= 0) {
      return false;
    }
    next += length;
    count -= static_cast<std::size_t>(length);
  }
  return true;
}

bool answer(const DecodedImage& decoded) {
  const QImage& image = decoded.image;
  const Header header{.width = image.width(),
                      .height = image.height(),
                      .pointWidth = decoded.pointSize.width(),
                      .pointHeight = decoded.pointSize.height()};
  // A row of four-byte pixels has no gap behind it, so the picture is one block.
  return writeAll(&header, sizeof header) && writeAll(image.constBits(), static_cast<std::size_t>(image.sizeInBytes()));
}

int run(int count, char** arguments) {
  const auto request = parseRequest(count, arguments);
  if (!request) {
    return EXIT_FAILURE;
  }
  const QCoreApplication application(count, arguments);  // finds the toolkit's picture formats
  const auto decoded = decode(*request);
  return decoded && !decoded->image.isNull() && answer(*decoded) ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace quenlio::decoder

int main(int argc, char** argv) {
  quenlio::decoder::giveUpWhatIsNotNeeded();
  return quenlio::decoder::run(argc, argv);
}
