#include "core/library/UniqueNames.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "core/base/Text.h"
#include "core/base/Uuid.h"
#include "core/platform/FileManager.h"

namespace quenlio {
namespace {

constexpr std::size_t kNameLimit = 255;  // bytes
constexpr int kLastNumber = 1000;

bool isTaken(const FileURL& url, const FileManager& files) {
  return files.identityOfItemAtPath(url).has_value();
}

FileURL withEnding(const FileURL& url, std::string ending) {
  if (const std::string extension = url.pathExtension(); !extension.empty()) {
    ending += "." + extension;
  }
  const std::size_t room = kNameLimit - std::min(kNameLimit, ending.size());
  return url.parent().appending(std::string(beginning(url.stem(), room)) + ending);
}

}  // namespace

std::optional<FileURL> renamedURL(const FileURL& file, std::string_view typedName) {
  std::string name(trimmed(typedName));
  std::ranges::replace(name, '/', '-');
  std::ranges::replace(name, ':', '-');
  if (name.empty() || name.find('\0') != std::string::npos) {
    return std::nullopt;
  }
  if (const std::string extension = file.pathExtension(); !extension.empty()) {
    name += "." + extension;
  }
  return file.parent().appending(name);
}

FileURL uniqueRenameURL(const FileURL& from, const FileURL& preferred, const FileManager& files) {
  if (preferred == from || !isTaken(preferred, files)) {
    return preferred;
  }
  for (int number = 2; number <= kLastNumber; ++number) {
    FileURL candidate = withEnding(preferred, " " + std::to_string(number));
    if (!isTaken(candidate, files)) {
      return candidate;
    }
  }
  return withEnding(preferred, "-" + Uuid::random().string());
}

FileURL uniqueRestoreURL(const FileURL& preferred, const FileManager& files) {
  if (!isTaken(preferred, files)) {
    return preferred;
  }
  for (int number = 1; number <= kLastNumber; ++number) {
    FileURL candidate = withEnding(preferred, " (Restored " + std::to_string(number) + ")");
    if (!isTaken(candidate, files)) {
      return candidate;
    }
  }
  return withEnding(preferred, "-restored-" + Uuid::random().string());
}

}  // namespace quenlio
