// Files as other programs are told of them: file:// addresses that hold a path's bytes, whatever they are. Pure; any
// thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/base/FileURL.h"

namespace quenlio {

// "a/b%20c.png": every byte that an address does not take as it is, line ends too, becomes its number.
[[nodiscard]] std::string percentEncoded(std::string_view path);

// "file:///a/b%20c.png".
[[nodiscard]] std::string fileURI(const FileURL& url);

// What text/uri-list holds: each on a line, and each line ended by a carriage return and a line feed.
[[nodiscard]] std::string uriList(const std::vector<FileURL>& urls);

// The paths as text, one on a line.
[[nodiscard]] std::string pathLines(const std::vector<FileURL>& urls);

}  // namespace quenlio
