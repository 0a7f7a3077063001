// The project's own source files as the house rules read them.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace quenlio::house {

struct SourceFile {
  std::string path;  // from the project's root, "core/base/Json.h"
  std::string text;
};

// Every file with one of the extensions below the folder, sorted by path. Throws when the folder is not there; a
// folder that may be missing is given as such.
enum class Missing { isAnError, isEmpty };
[[nodiscard]] std::vector<SourceFile> sourcesBelow(const std::string& folder,
                                                   const std::vector<std::string>& extensions,
                                                   Missing missing = Missing::isAnError);

// One file of the project, whole.
[[nodiscard]] std::string readSource(const std::string& path);

// C++ text with comments and the contents of string and character literals turned into blanks, so that only code is
// left. Lines and columns stay where they are.
[[nodiscard]] std::string codeOnly(std::string_view text);

// The line, counted from 1, of a place in the text.
[[nodiscard]] int lineOf(std::string_view text, std::size_t at);

}  // namespace quenlio::house
