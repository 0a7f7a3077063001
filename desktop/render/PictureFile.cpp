#include "desktop/render/PictureFile.h"

#include <array>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quenlio {
namespace {

constexpr std::size_t kReadBuffer = 128 * 1024;

}  // namespace

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
  std::array<char, kPictureHead> head{};
  const std::size_t length = std::fread(head.data(), 1, head.size(), file.get());
  const auto kind = pictureKind(std::string_view(head.data(), length));
  if (!kind) {
    return std::nullopt;
  }
  std::rewind(file.get());
  return PictureFile{std::move(buffer), std::move(file), *kind};
}

}  // namespace quenlio
