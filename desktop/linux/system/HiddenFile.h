// A file of ours that is being written under a hidden name, in the folder where it will be renamed to its own.
//
// The hidden name is the same each time, and its file is locked (flock) as long as the descriptor is open. A process
// that is killed leaves the file without its lock; whoever needs that name next removes it. So what kills leave behind
// does not add up, and nobody's work in progress is taken away.
//
// Removed is only what is certain to be such a remnant: a regular file of this user's under that very name, with no
// second name, locked by nobody. Where something else has the name, or another process or thread is just writing under
// it, or the file system knows no locks, a name of its own is used, with a random end. Any thread.
#pragma once

#include <string>
#include <string_view>

#include "core/base/FileURL.h"

#include "desktop/linux/system/UniqueFd.h"

namespace quenlio {

// Opened for reading and writing, empty, and for this user alone. What is written under one and the same `name` in one
// folder shares its hidden name. The file's path goes into `path`. Nothing, with errno set, when none can be made. Keep
// the descriptor open until the file has been renamed or removed.
[[nodiscard]] UniqueFd makeHiddenFile(const FileURL& folder, std::string_view name, std::string& path);

}  // namespace quenlio
