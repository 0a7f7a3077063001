// Giving a file another name, which must be free, within one file system. None of these ways ever overwrites anything,
// also when another program takes the name at the same moment. They follow no link in the last component, and answer 0
// or the error's number: EEXIST when something has the name, EXDEV across file systems. Any thread.
#pragma once

#include <fcntl.h>
#include <string>
#include <utility>

#include "desktop/linux/system/UniqueFd.h"

namespace quenlio {

// A path, or a name in an open folder, which stays open for as long as this is used.
struct FilePlace {
  FilePlace(std::string path) : name(std::move(path)) {}  // every path is a place
  FilePlace(int openFolder, std::string nameInIt) : folder(openFolder), name(std::move(nameInIt)) {}

  int folder = AT_FDCWD;
  std::string name;
};

// Whether the name is that of the open file, itself and not where a link leads.
[[nodiscard]] bool isNamed(const UniqueFd& file, const FilePlace& place);

// Removes a name if it is the open file's, whatever other programs do with that name meanwhile: what they have put
// there keeps it, and EBUSY is the answer.
[[nodiscard]] int removeNameOf(const UniqueFd& file, const FilePlace& place);

[[nodiscard]] int renameWithoutReplacing(const FilePlace& from, const FilePlace& to);

// The two ways to the same end, for a file system whose rename can do no better than replace.
[[nodiscard]] int linkAndUnlink(const FilePlace& from, const FilePlace& to);
[[nodiscard]] int claimAndRename(const FilePlace& from, const FilePlace& to);

}  // namespace quenlio
