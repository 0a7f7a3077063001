#include "tests/house/SourceTree.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace quenlio::house {
namespace {

namespace fs = std::filesystem;

const fs::path& root() {
  static const fs::path path = QUENLIO_SOURCE_DIR;
  return path;
}

// Where the literal or comment that begins here ends, or the place itself when none begins.
std::size_t endOfNonCode(std::string_view text, std::size_t at) {
  const auto after = [&](std::string_view end, std::size_t from) {
    const std::size_t found = text.find(end, from);
    return found == std::string_view::npos ? text.size() : found + end.size();
  };
  const std::string_view rest = text.substr(at);
  if (rest.starts_with("//")) {
    return std::min(text.find('\n', at), text.size());
  }
  if (rest.starts_with("/*")) {
    return after("*/", at + 2);
  }
  if (rest.starts_with("R\"")) {
    const std::size_t open = text.find('(', at);
    return open == std::string_view::npos ? text.size()
                                          : after(")" + std::string(text.substr(at + 2, open - at - 2)) + "\"", open);
  }
  const bool isDigitSeparator =
      at > 0 && rest.starts_with('\'') && std::isalnum(static_cast<unsigned char>(text[at - 1])) != 0;
  if ((rest.starts_with('"') || rest.starts_with('\'')) && !isDigitSeparator) {
    std::size_t end = at + 1;
    while (end < text.size() && text[end] != text[at] && text[end] != '\n') {
      end += text[end] == '\\' ? 2 : 1;
    }
    return std::min(end + 1, text.size());
  }
  return at;
}

}  // namespace

std::string readSource(const std::string& path) {
  std::ifstream stream(root() / path, std::ios::binary);
  if (!stream) {
    throw std::runtime_error("cannot read " + path);
  }
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<SourceFile> sourcesBelow(const std::string& folder, const std::vector<std::string>& extensions,
                                     Missing missing) {
  std::vector<SourceFile> files;
  if (missing == Missing::isEmpty && !fs::exists(root() / folder)) {
    return files;
  }
  for (const auto& entry : fs::recursive_directory_iterator(root() / folder)) {
    if (entry.is_regular_file() && std::ranges::count(extensions, entry.path().extension().string()) > 0) {
      const std::string path = fs::relative(entry.path(), root()).generic_string();
      files.push_back({path, readSource(path)});
    }
  }
  std::ranges::sort(files, {}, &SourceFile::path);
  return files;
}

std::string codeOnly(std::string_view text) {
  std::string code(text);
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = endOfNonCode(text, at);
    if (end == at) {
      ++at;
      continue;
    }
    for (; at < end; ++at) {
      code[at] = text[at] == '\n' ? '\n' : ' ';
    }
  }
  return code;
}

int lineOf(std::string_view text, std::size_t at) {
  return 1 + static_cast<int>(std::ranges::count(text.substr(0, at), '\n'));
}

}  // namespace quenlio::house
