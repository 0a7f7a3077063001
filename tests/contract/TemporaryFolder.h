// A real folder for one test, gone with it.
#pragma once

#include <filesystem>
#include <stdlib.h>
#include <string>

#include "core/base/FileURL.h"

namespace quenlio {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string folder = (std::filesystem::temp_directory_path() / "quenlio-contract-XXXXXX").string();
    url_ = FileURL(mkdtemp(folder.data()));
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() { std::filesystem::remove_all(url_.path()); }

  [[nodiscard]] const FileURL& url() const { return url_; }

 private:
  FileURL url_;
};

}  // namespace quenlio
