// What the trash keeps of a file beside the file itself: under which name it lies there, and the note of where it was
// and when it was put there, as the freedesktop.org trash has it. Any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "core/base/Date.h"
#include "core/base/FileURL.h"

namespace quenlio {

// Added to a file's name in the trash: the name of its note.
inline constexpr std::string_view kTrashInfoExtension = ".trashinfo";

// The note's text. The path may hold any bytes; the moment is written in local time, without fractions.
[[nodiscard]] std::string trashInfoText(std::string_view path, Date deleted);

// The name to try: the file's own at first, then numbered ones, in the end random ones. It keeps its extension and is
// at most `longest` bytes long; no character is cut in two.
[[nodiscard]] std::string nameInTrash(std::string_view fileName, int attempt, std::size_t longest);

// The note of a file that lies in a trash of this user's, there or not. Nothing for a file that lies elsewhere.
[[nodiscard]] std::optional<FileURL> trashInfoOf(const FileURL& trashed);

}  // namespace quenlio
