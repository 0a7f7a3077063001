// Places for the files of the library: what a typed name stands for, and names that no other file has. Names are bytes
// and need not be UTF-8. Any thread.
//
// A name is taken by a link that leads nowhere too. A free one is only free at that moment. Whoever moves a file there
// relies on a move that never overwrites.
//
// A name that had to be told apart keeps its extension and gets an ending before it. Where the whole would exceed the
// 255 bytes that file systems allow a name, its stem is shortened, between two characters, so that the ending fits.
#pragma once

#include <optional>
#include <string_view>

#include "core/base/FileURL.h"

namespace quenlio {

class FileManager;

// The place of a file once it has the typed name: in its folder, with its extension, which is always kept and never
// looked for in what was typed. White space and new lines at both ends do not count; "/" and ":" become "-". Nothing
// for a name without a letter left, and for one with a zero byte, which no file can have.
[[nodiscard]] std::optional<FileURL> renamedURL(const FileURL& file, std::string_view typedName);

// The preferred place if it is the file's own or free, otherwise "name 2", "name 3" and so on to 1000, otherwise
// "name-" with a random identity, unchecked.
[[nodiscard]] FileURL uniqueRenameURL(const FileURL& from, const FileURL& preferred, const FileManager& files);

// The preferred place if it is free, otherwise "name (Restored 1)" and so on to 1000, otherwise "name-restored-" with
// a random identity, unchecked.
[[nodiscard]] FileURL uniqueRestoreURL(const FileURL& preferred, const FileManager& files);

}  // namespace quenlio
