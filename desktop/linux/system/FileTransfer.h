// Copying and moving a file to a name that must be free, in one step that others see whole or not at all.
//
// All operations here work on paths, follow no link in the last component unless told so, and answer 0 or the error's
// number. None of them ever overwrites anything. Any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>

#include "core/base/Date.h"
#include "core/base/FileURL.h"

#include "desktop/linux/system/OwnFiles.h"
#include "desktop/linux/system/RegularFile.h"
#include "desktop/linux/system/RenameWithoutReplacing.h"
#include "desktop/linux/system/UniqueFd.h"

namespace quenlio {

// The extended attribute that carries a file's original moment of creation, where the file itself is younger than its
// contents: nanoseconds since 1970, in decimal.
inline constexpr const char* kCreatedMark = "user.quenlio.created";

// When the item was created: the mark above, else the birth time that the file system keeps. `status` belongs to
// `path` and holds STATX_BTIME where the file system gives it.
[[nodiscard]] std::optional<Date> creationDate(const std::string& path, const struct statx& status);

[[nodiscard]] int writeAll(int fd, std::string_view bytes);

enum class Durability { whenTheSystemLikes, onDisk };

// A copy of one regular file with its mode, times, user attributes and date of creation. It is made under a hidden name
// and gets its own once it is whole; a copy that has got none is removed with this object. Any one thread.
class FileCopy {
 public:
  explicit FileCopy(OwnFiles& own) : own_(own) {}
  FileCopy(const FileCopy&) = delete;
  FileCopy& operator=(const FileCopy&) = delete;
  ~FileCopy();

  // Made in a folder of the file system where it will get its name. Links are followed.
  [[nodiscard]] int make(const FileURL& from, const FileURL& folder, Durability durability);
  // Noted as our own first. After EEXIST another name may be tried.
  [[nodiscard]] int giveName(const FilePlace& to);
  // The same, onto the disk, and then removes what it is a copy of. EBUSY when that has been written to since, or
  // something else has its name: then the copy goes instead.
  [[nodiscard]] int takeOver(const FilePlace& to);

 private:
  [[nodiscard]] int removeSource() const;

  OwnFiles& own_;
  FileURL from_;
  UniqueFd source_;
  FileStamp copied_;
  std::string hidden_;  // empty without a hidden copy
  UniqueFd fd_;
};

// Copies one file. It is written in the destination's folder. Links are followed.
[[nodiscard]] int copyFile(const FileURL& from, const FileURL& to, OwnFiles& own, Durability durability);

// The same for a copy that the user asks for: of a link, another link that leads to the same place is made.
[[nodiscard]] int copyFileOrLink(const FileURL& from, const FileURL& to, OwnFiles& own);

// Moves a file or a link to another file system: copied whole, onto the disk, before the source goes. EBUSY, and all as
// it was, when the source is written to meanwhile.
[[nodiscard]] int moveAcrossFileSystems(const FileURL& from, const FileURL& to, OwnFiles& own);

}  // namespace quenlio
