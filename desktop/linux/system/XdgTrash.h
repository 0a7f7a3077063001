// The trash of this desktop, shared with all its other programs: a file that is put here shows in the desktop's trash
// with the place it came from, and any of them can bring it back. docs/adr/0009-trash.md tells why it works like this.
//
// Nothing is ever deleted or overwritten, and a file that cannot be put there stays where it is. Any thread; these run
// on the main thread, so they take about a millisecond, and where a file must be copied its size is limited.
#pragma once

#include <cstdint>

#include "core/base/Date.h"
#include "core/base/FileURL.h"

#include "desktop/linux/system/OwnFiles.h"

namespace quenlio {

// The largest file that is copied from one file system to another for the trash's sake, in bytes. The user waits for
// the copy, which is on the disk before the file goes.
inline constexpr std::int64_t kLargestTrashCopy = 32 * 1024 * 1024;

struct TrashContext {
  FileURL homeTrash;  // the trash in the user's own folder, which need not be there yet
  Date now;           // the moment of deletion
  OwnFiles& own;
};

// Moves a file, a link itself or a folder with its contents to the trash of its file system. Where that has none and
// can have none, a file is copied to the trash in the user's own folder. Gives 0 and the place where the file is now,
// or the error's number: EEXIST for what lies in a trash already, EFBIG for a file too large to be copied.
[[nodiscard]] int moveToTrash(const FileURL& url, const TrashContext& context, FileURL& place);

// Removes what the trash notes of a file that has been moved out of it. Does nothing for a file that lay elsewhere.
void forgetInTrash(const FileURL& formerPlace);

}  // namespace quenlio
