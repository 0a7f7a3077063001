// Finding and making the folders of the freedesktop.org trash: the one in the user's own folder, and the one at the top
// of each other file system. Any thread; errors are the numbers of the system, 0 for success.
#pragma once

#include "core/base/FileURL.h"

#include "desktop/linux/system/UniqueFd.h"

namespace quenlio {

// A trash that is there, held open: what is put into it lands in it, whatever becomes of its path meanwhile.
struct TrashFolder {
  FileURL url;
  UniqueFd files;  // what was put there
  UniqueFd info;   // a note for each
};

// Made with the folders above it, for this user alone, when it is not there. It may be a link to another place.
[[nodiscard]] int openHomeTrash(const FileURL& url, TrashFolder& trash);

// The trash of the file system that is mounted at `top`: the user's own folder in the .Trash that its administrator has
// set up for all, else a folder .Trash-UID, which is made when it is not there. Others may be able to write to `top`:
// only real folders that belong to this user are taken, no links.
[[nodiscard]] int openMountTrash(const FileURL& top, TrashFolder& trash);

// Where the file system that the folder is on is mounted. Its path is absolute and leads over no links.
[[nodiscard]] FileURL mountPointOf(const FileURL& folder);

// Whether they lie on one device, or would, if the second were made. A rename between them may still be refused, as
// between two mounts of the same device.
[[nodiscard]] bool areOnOneDevice(const FileURL& folder, const FileURL& perhapsMissing);

}  // namespace quenlio
