// The place of a file: an absolute or relative path, kept byte for byte. Paths need not be UTF-8, and no conversion
// through a text type ever touches them. A plain value; any thread.
#pragma once

#include <compare>
#include <string>
#include <string_view>
#include <utility>

namespace quenlio {

class FileURL {
 public:
  FileURL() = default;
  // A trailing slash marks a directory and is not part of the path.
  explicit FileURL(std::string path);

  [[nodiscard]] const std::string& path() const { return path_; }

  // "." and empty components removed, ".." taken back, without asking the file system. Links are not followed.
  [[nodiscard]] FileURL standardized() const;

  // The path with one more component.
  [[nodiscard]] FileURL appending(std::string_view component) const;

  // "/a/b.png": "/a". The root is its own parent.
  [[nodiscard]] FileURL parent() const;

  // "/a/b.png": "b.png".
  [[nodiscard]] std::string lastPathComponent() const;

  // "/a/b.tar.gz": "gz". Empty when there is none: "/a/.hidden" and "/a/b." have no extension.
  [[nodiscard]] std::string pathExtension() const;

  // The last component without its extension and the dot before it: "/a/b.png": "b".
  [[nodiscard]] std::string stem() const;

  auto operator<=>(const FileURL&) const = default;

 private:
  std::string path_;
};

// The extension of a file's name: "b.tar.gz": "gz". Empty when there is none: ".hidden" and "b." have no extension. It
// is a part of the name that is given.
[[nodiscard]] std::string_view extensionOf(std::string_view fileName);

}  // namespace quenlio
