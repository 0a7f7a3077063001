// Putting a file under a name that must be free, in one step that others see whole or not at all.
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
#include "desktop/linux/system/UniqueFd.h"

namespace quenlio {

// The extended attribute that carries a file's original moment of creation, where the file itself is younger than its
// contents: nanoseconds since 1970, in decimal.
inline constexpr const char* kCreatedMark = "user.quenlio.created";

// When the item was created: the mark above, else the birth time that the file system keeps. `status` belongs to
// `path` and holds STATX_BTIME where the file system gives it.
[[nodiscard]] std::optional<Date> creationDate(const std::string& path, const struct statx& status);

// A new file of ours for writing, hidden, in that folder, and open for this user alone. Its path goes into `path`.
[[nodiscard]] UniqueFd makeHiddenFile(const FileURL& folder, std::string& path);

[[nodiscard]] int writeAll(int fd, std::string_view bytes);

// Renames within one file system. EEXIST when something has the name, EXDEV across file systems.
[[nodiscard]] int renameWithoutReplacing(const std::string& from, const std::string& to);

// The two ways to the same end, for a file system whose rename can do no better than replace.
[[nodiscard]] int linkAndUnlink(const std::string& from, const std::string& to);
[[nodiscard]] int claimAndRename(const std::string& from, const std::string& to);

enum class Durability { whenTheSystemLikes, onDisk };

// Copies one regular file with its mode, times, user attributes and date of creation. It is written under a hidden
// name in the destination's folder, noted as our own, and only then given its name. Links are followed.
[[nodiscard]] int copyFile(const FileURL& from, const FileURL& to, OwnFiles& own, Durability durability);

// The same for a copy that the user asks for: of a link, another link that leads to the same place is made.
[[nodiscard]] int copyFileOrLink(const FileURL& from, const FileURL& to, OwnFiles& own);

// Moves a file or a link to another file system: copied whole, onto the disk, before the source goes.
[[nodiscard]] int moveAcrossFileSystems(const FileURL& from, const FileURL& to, OwnFiles& own);

}  // namespace quenlio
