#include "desktop/render/PictureFile.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quenlio {
namespace {

using namespace std::string_view_literals;

constexpr std::size_t kHead = 1024;
constexpr std::size_t kReadBuffer = 128 * 1024;

bool isHeic(std::string_view head) {
  constexpr std::array brands{"heic"sv, "heix"sv, "heim"sv, "heis"sv, "hevc"sv, "mif1"sv, "msf1"sv};
  return head.substr(4, 4) == "ftyp" && std::ranges::find(brands, head.substr(8, 4)) != brands.end();
}

}  // namespace

std::optional<PictureKind> pictureKind(std::string_view head) {
  head = head.substr(0, kHead);
  if (head.starts_with("\x89PNG\r\n\x1A\n"sv)) {
    return PictureKind::png;
  }
  if (head.starts_with("\xFF\xD8\xFF"sv)) {
    return PictureKind::jpeg;
  }
  if (head.size() >= 12 && isHeic(head)) {
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

std::optional<PictureFile> openPicture(const FileURL& url) {
  // Not to wait for a writer, should the name belong to a pipe.
  const int descriptor = ::open(url.path().c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) {
    return std::nullopt;
  }
  auto buffer = std::make_unique<char[]>(kReadBuffer);  // made before the file, and so gone after it
  OpenFile file(::fdopen(descriptor, "rb"));
  if (!file) {
    ::close(descriptor);
    return std::nullopt;
  }
  struct stat status {};
  if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  // Read in large pieces: a capture of megabytes would take thousands of calls otherwise.
  (void)std::setvbuf(file.get(), buffer.get(), _IOFBF, kReadBuffer);
  std::array<char, kHead> head{};
  const std::size_t length = std::fread(head.data(), 1, head.size(), file.get());
  const auto kind = pictureKind(std::string_view(head.data(), length));
  if (!kind) {
    return std::nullopt;
  }
  std::rewind(file.get());
  return PictureFile{std::move(buffer), std::move(file), *kind};
}

}  // namespace quenlio
