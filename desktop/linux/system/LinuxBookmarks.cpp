#include "desktop/linux/system/LinuxBookmarks.h"

#include <cerrno>
#include <cstring>
#include <string>
#include <sys/stat.h>

#include "core/base/Json.h"

namespace quenlio {
namespace {

struct Identity {
  std::uint64_t device;
  std::uint64_t inode;
  bool operator==(const Identity&) const = default;
};

std::optional<Identity> identityOf(const FileURL& url) {
  struct stat status {};
  if (stat(url.path().c_str(), &status) != 0) {
    return std::nullopt;
  }
  return Identity{status.st_dev, status.st_ino};
}

}  // namespace

PlatformResult<Bytes> LinuxBookmarks::bookmarkDataWithSecurityScope(const FileURL& url) {
  const auto identity = identityOf(url);
  if (!identity) {
    return PlatformError{"The folder “" + url.lastPathComponent() + "” couldn’t be opened: " + std::strerror(errno)};
  }
  const std::string text = json::write({{"path", url.path()}, {"device", identity->device}, {"inode", identity->inode}},
                                       json::Style::compact);
  Bytes bytes(text.size());
  std::memcpy(bytes.data(), text.data(), text.size());
  return bytes;
}

PlatformResult<ResolvedBookmark> LinuxBookmarks::resolveBookmarkData(const Bytes& data) {
  std::string text(data.size(), '\0');
  if (!data.empty()) {
    std::memcpy(text.data(), data.data(), data.size());
  }
  const auto object = json::read(text);
  const auto holds = [&](const char* key) { return object->contains(key) && (*object)[key].is_number_unsigned(); };
  if (!object || !object->is_object() || !object->contains("path") || !(*object)["path"].is_string() ||
      !holds("device") || !holds("inode")) {
    return PlatformError{"The bookmark couldn’t be read because it isn’t in the correct format."};
  }
  const FileURL url((*object)["path"].get<std::string>());
  const Identity kept{(*object)["device"].get<std::uint64_t>(), (*object)["inode"].get<std::uint64_t>()};
  return ResolvedBookmark{url, identityOf(url) != kept};
}

bool LinuxBookmarks::startAccessingSecurityScopedResource(const FileURL& url) {
  return identityOf(url).has_value();
}

}  // namespace quenlio
