// A folder opened for reading its entries, closed by whoever holds it.
#pragma once

#include <cerrno>
#include <dirent.h>
#include <memory>
#include <string_view>

namespace quenlio {

struct CloseDirectory {
  void operator()(DIR* directory) const { ::closedir(directory); }
};
using OpenDirectory = std::unique_ptr<DIR, CloseDirectory>;

// The next entry but "." and ".."; null at the end, with errno 0, or on an error.
[[nodiscard]] inline const dirent* nextEntry(const OpenDirectory& directory) {
  while (true) {
    errno = 0;
    const dirent* entry = ::readdir(directory.get());
    const std::string_view name = entry == nullptr ? std::string_view{} : entry->d_name;
    if (entry == nullptr || (name != "." && name != "..")) {
      return entry;
    }
  }
}

}  // namespace quenlio
