// Reading and writing small files. Any thread.
#pragma once

#include "core/platform/FileManager.h"

namespace quenlio {

class LinuxFileContents final : public FileContents {
 public:
  // Regular files only: nothing that could block is opened.
  [[nodiscard]] PlatformResult<std::string> read(const FileURL& url) const override;
  // The new contents are whole before they take the old one's place in one step; a file that is there keeps its mode,
  // and a link keeps leading to its file. A kill in between leaves the old file, and a hidden one beside it that
  // the next write takes away (see HiddenFile.h).
  PlatformResult<Done> writeAtomically(const FileURL& url, std::string_view data) override;
  // What finds no room on the disk is taken back. Nobody else may append to the file at the same time.
  PlatformResult<Done> append(const FileURL& url, std::string_view data) override;
};

}  // namespace quenlio
